#include "tests/windows/support/Languages.h"

#include "app/Translations.h"
#include "platform/Paths.h"
#include "tests/support/TemporaryFolder.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <regex>
#include <vector>
#include <wx/translation.h>

namespace {

constexpr size_t kShortText = 40;

using Catalogue = std::vector<std::pair<std::string, std::string>>; // sorted by the key

uint32_t ReadNumber(const std::string& bytes, size_t position) {
    uint32_t number = 0;
    std::memcpy(&number, bytes.data() + position, sizeof number);
    return number;
}

// The compiled form: a header of seven numbers, then two tables of length and offset.
std::string ReadText(const std::string& bytes, size_t table, size_t index) {
    const size_t row = ReadNumber(bytes, table) + 8 * index;
    return bytes.substr(ReadNumber(bytes, row + 4), ReadNumber(bytes, row));
}

Catalogue ReadCatalogue(const std::string& path) {
    const std::string bytes = ReadWholeFile(path);
    Catalogue texts;
    for (size_t index = 0; bytes.size() > 28 && index < ReadNumber(bytes, 8); ++index)
        texts.emplace_back(ReadText(bytes, 12, index), ReadText(bytes, 16, index));
    return texts;
}

void AppendNumber(std::string& bytes, size_t number) {
    const auto value = static_cast<uint32_t>(number);
    bytes.append(reinterpret_cast<const char*>(&value), sizeof value);
}

std::string WriteCatalogue(const Catalogue& texts) {
    constexpr uint32_t kMagic = 0x950412DE;
    constexpr size_t kHeaderSize = 28;
    const size_t tableSize = 8 * texts.size();
    std::string bytes;
    for (const size_t number : std::initializer_list<size_t>{kMagic, 0, texts.size(), kHeaderSize,
                                                             kHeaderSize + tableSize, 0, 0})
        AppendNumber(bytes, number);
    std::string tables[2];
    std::string pool;
    const auto add = [&](std::string& table, const std::string& text) {
        AppendNumber(table, text.size());
        AppendNumber(table, kHeaderSize + 2 * tableSize + pool.size());
        pool += text + '\0';
    };
    for (const auto& [key, text] : texts) {
        add(tables[0], key);
        add(tables[1], text);
    }
    return bytes + tables[0] + tables[1] + pool;
}

// Both forms of a text with a plural.
std::string LengthenForms(const std::string& forms) {
    const size_t end = forms.find('\0');
    if (end == std::string::npos)
        return LengthenText(forms);
    return LengthenText(forms.substr(0, end)) + '\0' + LengthenText(forms.substr(end + 1));
}

// Takes the keys of the German catalogue, whose rule for plurals is the English one.
class LongTextLoader : public wxTranslationsLoader {
  public:
    wxMsgCatalog* LoadCatalog(const wxString& domain, const wxString&) override {
        const std::string folder = wxString(GetProgramDirectory()).ToStdString();
        Catalogue texts = ReadCatalogue(folder + "/locale/de/LC_MESSAGES/velflash.mo");
        EXPECT_GT(texts.size(), 100u);
        for (auto& [key, text] : texts)
            if (!key.empty())
                text = LengthenForms(key);
        const std::string bytes = WriteCatalogue(texts);
        return wxMsgCatalog::CreateFromData(
            wxScopedCharBuffer::CreateNonOwned(bytes.data(), bytes.size()), domain);
    }

    wxArrayString GetAvailableTranslations(const wxString&) const override {
        return wxArrayString(1, std::array<wxString, 1>{"de"}.data());
    }
};

void UseEnglish() {
    wxTranslations::Set(nullptr);
}

} // namespace

InLanguage::InLanguage(const wxString& language) {
    LoadTranslations(language);
}

InLanguage::~InLanguage() {
    UseEnglish();
}

WithLongTexts::WithLongTexts() {
    auto* translations = new wxTranslations; // owned by the toolkit from the next line on
    wxTranslations::Set(translations);
    translations->SetLoader(new LongTextLoader);
    translations->SetLanguage("de");
    EXPECT_TRUE(translations->AddCatalog("velflash"));
}

WithLongTexts::~WithLongTexts() {
    UseEnglish();
}

std::string LengthenText(const std::string& english) {
    static const std::regex formats("%[-0-9.*]*(?:ll|l)?[a-zA-Z]|&");
    if (english.find('|') != std::string::npos)
        return english;
    const std::string text = english.substr(0, english.find('\t'));
    std::string more = std::regex_replace(text, formats, "");
    if (more.size() > kShortText)
        more.resize(more.size() * 2 / 5);
    return text + " " + more + english.substr(text.size());
}
