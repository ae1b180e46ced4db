// A BSDL file: scanner, parser, content check, and the report that a window shows of it.

#include "bsdl/BsdlData.h"
#include "bsdl/BsdlParser.h"
#include "bsdl/BsdlReport.h"
#include "bsdl/BsdlXml.h"
#include "fuzz/Check.h"
#include "fuzz/MemoryFile.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const MemoryFile file(data, size);
    OmBsdlData parsed;
    OmBsdlParserCallbackImpl messages;
    const bool accepted = ParseBsdlFile(file.Path().c_str(), parsed, &messages);
    Check(accepted == messages.text.empty(), "a file is refused with a message, or accepted");
    if (!accepted)
        return 0;
    FormatBsdlReport(parsed);
    OmBsdlData copy;
    if (!CheckBsdlContent(parsed, copy))
        return 0;
    OmBsdlData second;
    Check(CheckBsdlContent(copy, second), "what could be stored once can be stored again");
    Check(copy == second, "storing changes nothing any more");
    return 0;
}
