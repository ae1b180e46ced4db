#include "setup/XmlFile.h"

#include "platform/FileReplacement.h"

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <type_traits>
#include <vector>
#include <wx/log.h>
#include <wx/mstream.h>
#include <wx/xml/xml.h>

namespace {

constexpr int kMaxNesting = 100;                 // a setup has seven levels
constexpr size_t kMaxFileSize = size_t{1} << 28; // a setup of 100 large devices has some 2^26
constexpr size_t kMaxText = size_t{64} * 1024;   // a setup has no text between its elements
constexpr int kMaxAttributes = 1000;             // an element of a setup has ten
constexpr size_t kBlock = size_t{64} * 1024;
constexpr int kIndentation = 1;

bool ReadWhole(const std::wstring& path, std::string& text) {
    std::ifstream stream(PathFromWide(path), std::ios::binary);
    std::vector<char> block(kBlock);
    while (stream && text.size() <= kMaxFileSize) {
        stream.read(block.data(), static_cast<std::streamsize>(block.size()));
        text.append(block.data(), static_cast<size_t>(stream.gcount()));
    }
    return stream.eof() && !text.empty();
}

// wxMemoryOutputStream grows by a kilobyte at a time, which takes minutes for a large chain.
class TextStream : public wxOutputStream {
  public:
    std::string text;

  protected:
    size_t OnSysWrite(const void* data, size_t size) override {
        text.append(static_cast<const char*>(data), size);
        return size;
    }
};

// Position past the next `end`, or the end of the text.
size_t SkipBehind(std::string_view text, size_t position, std::string_view end) {
    const size_t found = text.find(end, position);
    return found == std::string_view::npos ? text.size() : found + end.size();
}

// Position of the ">" that ends the tag, or the end of the text; values in quotes may hold one.
size_t FindTagEnd(std::string_view text, size_t position) {
    while (position < text.size() && text[position] != '>') {
        const char character = text[position++];
        if (character == '"' || character == '\'')
            position = SkipBehind(text, position, {&character, 1});
    }
    return position;
}

// Whether the tag at the start of `text` has more values in quotes than any element needs.
bool HasTooManyAttributes(std::string_view text) {
    int values = 0;
    for (size_t position = 0; position < text.size() && text[position] != '>';) {
        const char character = text[position++];
        if (character != '"' && character != '\'')
            continue;
        position = SkipBehind(text, position, {&character, 1});
        if (++values > kMaxAttributes)
            return true;
    }
    return false;
}

bool IsBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// XML 1.0, production 2.
bool IsXmlCharacter(wchar_t character) {
    // wchar_t has a sign on some hosts; what is below 0 is far above every character then.
    const auto code = static_cast<uint32_t>(static_cast<std::make_unsigned_t<wchar_t>>(character));
    return code == '\t' || code == '\n' || code == '\r' || (code >= 0x20 && code <= 0xD7FF) ||
           (code >= 0xE000 && code <= 0xFFFD) || (code >= 0x10000 && code <= 0x10FFFF) ||
           (sizeof(wchar_t) == 2 && code >= 0xD800 && code <= 0xDFFF);
}

void RemoveUnwritable(wxXmlNode& node) {
    for (wxXmlAttribute* attribute = node.GetAttributes(); attribute;
         attribute = attribute->GetNext()) {
        std::wstring value = attribute->GetValue().ToStdWstring();
        if (std::erase_if(value, [](wchar_t character) { return !IsXmlCharacter(character); }) > 0)
            attribute->SetValue(value);
    }
    for (wxXmlNode* child = node.GetChildren(); child; child = child->GetNext())
        RemoveUnwritable(*child);
}

} // namespace

bool IsNestedTooDeep(std::string_view text, int limit) {
    int depth = 0;
    size_t position = 0;
    while ((position = text.find('<', position)) != std::string_view::npos) {
        const std::string_view tag = text.substr(position);
        if (tag.starts_with("<!--")) {
            position = SkipBehind(text, position + 4, "-->");
        } else if (tag.starts_with("<![CDATA[")) {
            position = SkipBehind(text, position, "]]>");
        } else if (tag.starts_with("<?")) {
            position = SkipBehind(text, position, "?>");
        } else if (tag.starts_with("<!")) {
            return true;
        } else {
            position = FindTagEnd(text, position);
            if (tag.starts_with("</"))
                --depth;
            else if (text[position - 1] != '/' && ++depth > limit)
                return true;
        }
    }
    return false;
}

bool HasOvergrownParts(std::string_view text) {
    for (size_t position = 0; position < text.size();) {
        const std::string_view rest = text.substr(position);
        size_t size = 0;
        if (rest.starts_with("<!--")) {
            size = SkipBehind(rest, 4, "-->");
        } else if (rest.starts_with("<?")) {
            size = SkipBehind(rest, 0, "?>");
        } else if (rest.starts_with("<![CDATA[")) {
            size = SkipBehind(rest, 0, "]]>");
            if (size > kMaxText)
                return true;
        } else if (rest.starts_with("<")) {
            size = FindTagEnd(rest, 0) + 1;
            if (HasTooManyAttributes(rest))
                return true;
        } else {
            size = std::min(rest.find('<'), rest.size());
            if (size > kMaxText && !IsBlank(rest.substr(0, size)))
                return true;
        }
        position += size;
    }
    return false;
}

// A text with a zero byte is none in UTF-8, and the look at its nesting would be blind to it.
bool LoadXmlFile(wxXmlDocument& document, const std::wstring& path) {
    const wxLogNull silence;
    std::string text;
    if (!ReadWhole(path, text) || text.find('\0') != std::string::npos ||
        IsNestedTooDeep(text, kMaxNesting) || HasOvergrownParts(text))
        return false;
    wxMemoryInputStream stream(text.data(), text.size());
    return document.Load(stream, "UTF-8");
}

bool SaveXmlFile(wxXmlDocument& document, const std::wstring& path) {
    const wxLogNull silence;
    RemoveUnwritable(*document.GetRoot());
    document.SetFileEncoding("UTF-8");
    TextStream stream;
    if (!document.Save(stream, kIndentation))
        return false;
    OmFileReplacement file(PathFromWide(path), OmFileReplacement::Mode::Binary);
    file.Write(stream.text);
    return file.Commit();
}
