#include "bsdl/BsdlParser.h"

#include "bsdl/BsdlActions.h"
#include "bsdl/BsdlGrammar.h"
#include "bsdl/BsdlScanner.h"
#include "platform/Translation.h"

void OmBsdlParserCallbackImpl::Error(const char* message) {
    text += ToLocal(Translated("Error: ")) + std::string(message) + "\n";
}

void OmBsdlParserCallbackImpl::Info(const char* message) {
    text += "        : " + std::string(message) + "\n";
}

bool ParseBsdlFile(const char* path, OmBsdlData& data, OmBsdlParserCallback* callback) {
    OmBsdlActions actions(data, callback);
    SetScannerErrorFunction([&actions](const char* message) { actions.Error(message); });
    bool accepted = false;
    if (OpenScannerFile(path) == 0) {
        accepted = bsdlparse(actions) == 0;
        CloseScanner();
    }
    SetScannerErrorFunction(nullptr);
    return accepted && !actions.HasErrors();
}
