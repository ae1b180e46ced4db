#include "app/Translations.h"

#include "platform/Paths.h"
#include "platform/Translation.h"

#include <memory>
#include <mutex>
#include <wx/log.h>
#include <wx/translation.h>

namespace {

constexpr char kDomain[] = "velflash";

// Beside the program as it is built and on Windows, and where a Unix installation keeps catalogues.
constexpr const char* kFolders[] = {"/locale", "/../share/locale"};

// What the toolkit says in windows of the program. Its own catalogue is a package that may be
// missing; the program's has these texts too, and the toolkit finds them there.
[[maybe_unused]] constexpr const char* kToolkitTexts[] = {
    wxTRANSLATE("&Yes"),    wxTRANSLATE("&No"),     wxTRANSLATE("< &Back"),
    wxTRANSLATE("&Next >"), wxTRANSLATE("&Finish"),
};

void NameFolders() {
    for (const char* folder : kFolders)
        wxFileTranslationsLoader::AddCatalogLookupPathPrefix(wxString(GetProgramDirectory()) +
                                                             folder);
}

// None where the user wants none, so that the toolkit does not choose by rules of its own.
wxString ChooseAvailable(const wxTranslations& translations) {
    std::vector<std::string> available;
    for (const wxString& language : translations.GetAvailableTranslations(kDomain))
        available.push_back(language.ToStdString());
    return ChooseLanguage(available);
}

} // namespace

// A damaged catalogue is as good as none, and not worth a box at every start. The catalogue added
// last is asked first, so that the program's own words win over the toolkit's.
void LoadTranslations(const wxString& language) {
    const wxLogNull silence;
    static std::once_flag named;
    std::call_once(named, NameFolders);
    auto owned = std::make_unique<wxTranslations>();
    wxTranslations* const translations = owned.get();
    wxTranslations::Set(owned.release());
    const wxString chosen = language.empty() ? ChooseAvailable(*translations) : language;
    if (chosen.empty())
        return; // NOLINT(clang-analyzer-cplusplus.NewDeleteLeaks): the toolkit keeps what is set
    translations->SetLanguage(chosen);
    translations->AddStdCatalog();
    translations->AddCatalog(kDomain);
}
