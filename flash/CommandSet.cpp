#include "flash/CommandSet.h"

#include "platform/Translation.h"

std::wstring GetCommandSetName(OmCommandSet set) {
    switch (set) {
    case OmCommandSet::Unknown:
        break;
    case OmCommandSet::IntelStandard:
        return Translated("Intel Std (Word-by-Word Prog.)");
    case OmCommandSet::IntelExtended:
        return Translated("Intel Ext (Buffered Prog.)");
    case OmCommandSet::AmdWord:
        return Translated("AMD (Word-by-Word Prog.)");
    case OmCommandSet::AmdBuffered:
        return Translated("AMD (Buffered Prog.)");
    }
    return Translated("Unknown");
}
