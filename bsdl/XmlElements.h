// Elements and attributes of an XML document, as the setup file and the BSDL data in it use them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <wx/xml/xml.h>

// Appends children in constant time each: a boundary register can have thousands of cells, and
// wxXmlNode::AddChild walks the whole list.
class OmXmlAppender {
  public:
    explicit OmXmlAppender(wxXmlNode& parent);

    wxXmlNode& Add(const char* name);

  private:
    wxXmlNode& parent_;
    wxXmlNode* last_;
};

void SetXml(wxXmlNode& node, const char* name, const std::wstring& value);
void SetXml(wxXmlNode& node, const char* name, const std::string& value); // local encoding
void SetXml(wxXmlNode& node, const char* name, int64_t value);
void SetXml(wxXmlNode& node, const char* name, bool value);
void SetXml(wxXmlNode& node, const char* name, const char* value) = delete; // would become a bool

// Empty if the attribute is missing. The second in the local encoding.
std::wstring GetXmlWide(const wxXmlNode& node, const char* name);
std::string GetXmlText(const wxXmlNode& node, const char* name);

// Nothing if the attribute is missing, no number as a whole, or beyond the limits.
std::optional<int64_t> GetXmlNumber(const wxXmlNode& node, const char* name, int64_t lowest,
                                    int64_t highest);

// The first child of that name; null if there is none.
const wxXmlNode* FindXmlChild(const wxXmlNode& node, const char* name);

// Calls `visit` for every child of that name; one that answers a bool ends it with the first false,
// which is then the result.
template <typename Visit>
bool ForEachXmlChild(const wxXmlNode& node, const char* name, Visit visit) {
    for (const wxXmlNode* child = node.GetChildren(); child; child = child->GetNext()) {
        if (child->GetName() != name)
            continue;
        if constexpr (std::is_void_v<std::invoke_result_t<Visit, const wxXmlNode&>>)
            visit(*child);
        else if (!visit(*child))
            return false;
    }
    return true;
}
