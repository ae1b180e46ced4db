#include "jtag/StaticPinsSchemes.h"

#include <optional>
#include <wx/confbase.h>

namespace {

constexpr char kDescriptionKey[] = "/Ftd2xxSchemeDesc_";
constexpr char kDirectionKey[] = "/Ftd2xxSchemeGpioDir_";
constexpr char kValueKey[] = "/Ftd2xxSchemeGpioValue_";
constexpr int kLimit = 1000; // the first number that is not read
constexpr uint16_t kStaticPins = 0xFFF0;

const OmFtd2xxStaticPinsScheme kPredefined[] = {
    {L"Amontec JTAGkey", 0x0710, 0x0300, true},
    {L"Olimex ARM-USB-OCD", 0x0710, 0x0300, true},
    {L"Turtelizer 2", 0x0010, 0x0000, true},
};

wxString MakeKey(const char* prefix, int number) {
    return prefix + wxString::Format("%d", number);
}

// None at the end of the list.
std::optional<OmFtd2xxStaticPinsScheme> ReadScheme(const wxConfigBase& store, int number) {
    const wxString description = store.Read(MakeKey(kDescriptionKey, number), wxString());
    long direction = 0;
    long value = 0;
    if (description.empty() || !store.Read(MakeKey(kDirectionKey, number), &direction) ||
        !store.Read(MakeKey(kValueKey, number), &value))
        return std::nullopt;
    return OmFtd2xxStaticPinsScheme{description.ToStdWstring(), static_cast<uint16_t>(direction),
                                    static_cast<uint16_t>(value), false};
}

void WriteScheme(wxConfigBase& store, int number, const OmFtd2xxStaticPinsScheme& scheme) {
    store.Write(MakeKey(kDescriptionKey, number), wxString(scheme.description));
    store.Write(MakeKey(kDirectionKey, number), static_cast<long>(scheme.gpioDir));
    store.Write(MakeKey(kValueKey, number), static_cast<long>(scheme.gpioValue));
}

bool IsSchemeEntry(const wxString& name) {
    const wxString key = "/" + name;
    for (const char* prefix : {kDescriptionKey, kDirectionKey, kValueKey})
        if (key.StartsWith(prefix))
            return true;
    return false;
}

// Collected first: deleting would disturb the enumeration. Deleted from the last to the first: a
// wxFileConfig whose first line goes before its second keeps a pointer to the one that is gone.
void DeleteSchemes(wxConfigBase& store) {
    const wxConfigPathChanger root(&store, "/Ftd2xxScheme");
    std::vector<wxString> names;
    wxString name;
    long cookie = 0;
    for (bool more = store.GetFirstEntry(name, cookie); more;
         more = store.GetNextEntry(name, cookie))
        if (IsSchemeEntry(name))
            names.push_back(name);
    for (auto old = names.rbegin(); old != names.rend(); ++old)
        store.DeleteEntry(*old, false);
}

bool& IsListUsed() {
    static bool used = false;
    return used;
}

} // namespace

OmStaticPinsSchemes& GetStaticPinsSchemes() {
    static OmStaticPinsSchemes schemes = LoadStaticPinsSchemes();
    IsListUsed() = true;
    return schemes;
}

OmStaticPinsSchemes LoadStaticPinsSchemes() {
    OmStaticPinsSchemes schemes(std::begin(kPredefined), std::end(kPredefined));
    const wxConfigBase& store = *wxConfigBase::Get();
    for (int number = 1; number < kLimit; ++number) {
        const std::optional<OmFtd2xxStaticPinsScheme> scheme = ReadScheme(store, number);
        if (!scheme)
            break;
        schemes.push_back(*scheme);
    }
    return schemes;
}

// A scheme without a description would end the list when it is read.
void SaveStaticPinsSchemes(const OmStaticPinsSchemes& schemes) {
    wxConfigBase& store = *wxConfigBase::Get();
    DeleteSchemes(store);
    int number = 1;
    for (const OmFtd2xxStaticPinsScheme& scheme : schemes)
        if (!scheme.isPredefined && !scheme.description.empty())
            WriteScheme(store, number++, scheme);
}

void SaveUsedStaticPinsSchemes() {
    if (IsListUsed())
        SaveStaticPinsSchemes(GetStaticPinsSchemes());
}

int FindScheme(const OmStaticPinsSchemes& schemes, const std::wstring& description,
               uint16_t gpioDir, uint16_t gpioValue) {
    int first = -1;
    for (size_t i = 0; i < schemes.size(); ++i) {
        const OmFtd2xxStaticPinsScheme& scheme = schemes[i];
        if ((scheme.gpioDir ^ gpioDir) & kStaticPins ||
            (scheme.gpioValue ^ gpioValue) & kStaticPins)
            continue;
        if (scheme.description == description)
            return static_cast<int>(i);
        if (first < 0)
            first = static_cast<int>(i);
    }
    return first;
}
