#include "bsdl/BsdlData.h"
#include "bsdl/BsdlParser.h"
#include "bsdl/BsdlReport.h"
#include "bsdl/BsdlXml.h"
#include "cli/Commands.h"
#include "platform/Text.h"

#include <cstdio>

bool RunBsdl(const OmCliOptions& options, OmConsoleProgress&) {
    OmBsdlData data;
    OmBsdlParserCallbackImpl messages;
    if (!ParseBsdlFile(options.bsdlFile.c_str(), data, &messages))
        return Fail(FromLocal(messages.text.substr(0, messages.text.find_last_not_of('\n') + 1)));
    std::fputs(FormatBsdlReport(data).c_str(), stdout);
    OmBsdlData copy;
    return CheckBsdlContent(data, copy) ||
           Fail(FromLocal(options.bsdlFile) + L" content integrity check error!");
}
