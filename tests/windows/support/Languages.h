// Windows in another language for the life of a test.
#pragma once

#include <string>
#include <wx/string.h>

// The program's own translation, as a user of that language has it.
class InLanguage {
  public:
    explicit InLanguage(const wxString& language);
    ~InLanguage();
    InLanguage(const InLanguage&) = delete;
    InLanguage& operator=(const InLanguage&) = delete;
};

// Every text much longer than in English, as the longest translations are: a short one twice, a
// long one by two fifths. Formats, mnemonics, accelerators and file filters stay as they are.
class WithLongTexts {
  public:
    WithLongTexts();
    ~WithLongTexts();
    WithLongTexts(const WithLongTexts&) = delete;
    WithLongTexts& operator=(const WithLongTexts&) = delete;
};

// "Erase entire &flash" becomes "Erase entire &flash Erase entire flash".
std::string LengthenText(const std::string& english);
