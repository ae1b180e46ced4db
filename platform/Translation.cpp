#include "platform/Translation.h"

#include "platform/Host.h"

#include <algorithm>
#include <wx/translation.h>

// The empty text is the key of a catalogue's own header.
std::wstring Translated(const char* english) {
    return *english ? wxGetTranslation(wxString::FromUTF8(english)).ToStdWstring() : std::wstring();
}

std::wstring TranslatedPlural(const char* one, const char* many, unsigned count) {
    return wxGetTranslation(wxString::FromUTF8(one), wxString::FromUTF8(many), count)
        .ToStdWstring();
}

std::string ChooseLanguage(const std::vector<std::string>& available) {
    for (const std::string& wanted : GetHostLanguages()) {
        const std::string language = wanted.substr(0, wanted.find('_'));
        if (language == "en")
            return {};
        for (const std::string& candidate : {wanted, language})
            if (std::find(available.begin(), available.end(), candidate) != available.end())
                return candidate;
    }
    return {};
}
