#include "flash/CommandSet.h"

const wchar_t* GetCommandSetName(OmCommandSet set) {
    switch (set) {
    case OmCommandSet::Unknown:
        break;
    case OmCommandSet::IntelStandard:
        return L"Intel Std (Word-by-Word Prog.)";
    case OmCommandSet::IntelExtended:
        return L"Intel Ext (Buffered Prog.)";
    case OmCommandSet::AmdWord:
        return L"AMD (Word-by-Word Prog.)";
    case OmCommandSet::AmdBuffered:
        return L"AMD (Buffered Prog.)";
    }
    return L"Unknown";
}
