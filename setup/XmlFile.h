// XML documents in files, for data that may come from anywhere.
#pragma once

#include <string>
#include <string_view>

class wxXmlDocument;

// False if the file cannot be read or holds no plain XML document: one with a document type, of
// absurd nesting or of absurd size, in whole or in its parts, is refused before it is parsed.
// Nothing is logged.
bool LoadXmlFile(wxXmlDocument& document, const std::wstring& path);

// Writes UTF-8 beside the target and renames. Characters that XML cannot hold, which would make the
// file unreadable, are left out; `document` loses them too. Nothing is logged.
bool SaveXmlFile(wxXmlDocument& document, const std::wstring& path);

// Whether elements are nested deeper than `limit`, or the text has a document type. Freeing a tree
// takes stack for every level, and entities can multiply levels.
bool IsNestedTooDeep(std::string_view text, int limit);

// Whether an element has thousands of attributes or a text between elements is longer than 64 KiB.
// The document puts both together piece by piece, in a time that grows with the square.
bool HasOvergrownParts(std::string_view text);
