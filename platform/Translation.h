// Texts in the user's language. Whatever code below the windows says to the user (boxes, reports,
// the progress display) goes through here; the windows themselves use the toolkit's own macros. The
// English text is the key and, while no catalogue is loaded, also the answer: the console companion
// and the tests never load one.
//
// tools/translations finds the texts by the names of these functions, so each takes a literal. Not
// for what machines read: files, settings, the connection log.
#pragma once

#include "platform/Text.h"

#include <string>
#include <vector>

// Marks a literal in a table; whoever uses the table looks it up with Translated.
constexpr const char* ForTranslation(const char* english) {
    return english;
}

// `english` is UTF-8.
std::wstring Translated(const char* english);

// The form of a text that fits the count, `one` or `many` in English.
std::wstring TranslatedPlural(const char* one, const char* many, unsigned count);

// The English text is a format of OmFormat; it is translated before the arguments are put in.
template <typename... Arguments>
std::wstring TranslatedFormat(const char* english, Arguments... arguments) {
    return OmFormat(Translated(english).c_str(), arguments...);
}

// The first of `available` ("de", "pt_BR") that the user wants to read; empty for English, if the
// user wants that first or if none fits. A language without its country fits every country.
std::string ChooseLanguage(const std::vector<std::string>& available);
