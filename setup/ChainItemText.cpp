#include "setup/ChainItemText.h"

#include "bsdl/Idcode.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <cwchar>
#include <wx/filename.h>

namespace {

constexpr int kMinIrLength = 2; // IEEE 1149.1, clause 7.1.1
constexpr size_t kIdcodeBits = 32;

constexpr wchar_t kHead[] =
    L"<font size=\"2\"><table cellspacing=\"0\" cellpadding=\"0\"><tr><td nowrap>";
constexpr wchar_t kBehindName[] =
    L"</td></tr></table><table cellspacing=\"2\" cellpadding=\"0\" width=\"100%\"><tr><td "
    L"width=\"20\">&nbsp;</td><td><table cellspacing=\"2\" cellpadding=\"0\">";
constexpr wchar_t kTail[] = L"</table></td></tr></table></font>";

struct LinkPrefix {
    const wchar_t* prefix;
    OmChainAction action;
};

constexpr LinkPrefix kLinks[] = {
    {L"bsdl_", OmChainAction::Bsdl},
    {L"pinmap_", OmChainAction::PinMap},
    {L"irlen_", OmChainAction::IrLength},
};

// Names come from files, and are no markup.
std::wstring Escape(const std::wstring& text) {
    std::wstring escaped;
    for (const wchar_t c : text)
        switch (c) {
        case L'<':
            escaped += L"&lt;";
            break;
        case L'>':
            escaped += L"&gt;";
            break;
        case L'&':
            escaped += L"&amp;";
            break;
        default:
            escaped += c;
        }
    return escaped;
}

std::wstring MakeRow(const std::wstring& label, const std::wstring& value) {
    return L"<tr><td nowrap>" + label + L"</td><td nowrap>: " + value + L"</td></tr>\n";
}

std::wstring MakeLink(const wchar_t* kind, int index, const std::wstring& text) {
    return OmFormat(L"<a href=\"%ls_%d\">%ls</a>", kind, index, text.c_str());
}

std::wstring MakeGrey(const std::wstring& text) {
    return L"<font color=\"grey\">" + text + L"</font>";
}

std::wstring FormatIdcode(const OmChainDevice& device, int index) {
    if (device.Idcode.size() != kIdcodeBits)
        return TranslatedFormat("%d. (idcode is n/a)", index + 1);
    const OmIdcodeFields fields = DecodeIdcode(device.Idcode);
    return OmFormat(L"%d. %ls (%lsh)", index + 1, Escape(fields.manufacturerName).c_str(),
                    fields.hexadecimal.c_str());
}

std::wstring FormatBsdlFile(const OmChainDevice& device, int index) {
    std::wstring text = Translated("CLICK HERE TO SET");
    if (device.bsdl) {
        const wxString file = wxFileName(FromLocal(device.BsdlFile)).GetFullName();
        text = Escape(FromLocal(device.bsdl->entity) + L" (" + file.ToStdWstring() + L')');
    }
    return MakeRow(Translated("BSDL file"), MakeLink(L"bsdl", index, text));
}

std::wstring FormatPinMap(const OmChainDevice& device, int index) {
    const std::wstring label = Translated("BSDL pin map");
    if (!device.bsdl)
        return MakeRow(label, MakeGrey(Translated("(set the BSDL file first)")));
    const std::wstring name = device.PinMapping.empty() ? Translated("CLICK HERE TO CHOOSE")
                                                        : Escape(FromLocal(device.PinMapping));
    return MakeRow(label, MakeLink(L"pinmap", index, name));
}

std::wstring FormatIrLength(const OmChainDevice& device, int index) {
    const std::wstring label = Translated("IR length");
    if (!CanEnterIrLength(device))
        return MakeRow(label, MakeGrey(std::to_wstring(device.GetIRLength())));
    const std::wstring text = device.IRLen >= kMinIrLength ? std::to_wstring(device.IRLen)
                                                           : Translated("CLICK HERE TO SET");
    return MakeRow(label, MakeLink(L"irlen", index, text));
}

// Decimal digits that fill the text and an int; otherwise -1.
int ParseDevice(const std::wstring& text) {
    constexpr size_t kMaxDigits = 9;
    if (text.empty() || text.size() > kMaxDigits ||
        text.find_first_not_of(L"0123456789") != std::wstring::npos)
        return -1;
    return static_cast<int>(std::wcstol(text.c_str(), nullptr, 10));
}

} // namespace

bool CanChoosePinMap(const OmChainDevice& device) {
    return device.bsdl != nullptr;
}

bool CanEnterIrLength(const OmChainDevice& device) {
    return !device.bsdl && device.resolvedIRLen < kMinIrLength;
}

std::wstring FormatChainItem(const OmChainDevice& device, int index) {
    return kHead + FormatIdcode(device, index) + kBehindName + FormatBsdlFile(device, index) +
           FormatPinMap(device, index) + FormatIrLength(device, index) + kTail;
}

std::optional<OmChainLink> ParseChainLink(const std::wstring& href) {
    for (const LinkPrefix& link : kLinks) {
        const std::wstring prefix = link.prefix;
        if (!href.starts_with(prefix))
            continue;
        const int device = ParseDevice(href.substr(prefix.size()));
        if (device >= 0)
            return OmChainLink{link.action, device};
    }
    return std::nullopt;
}
