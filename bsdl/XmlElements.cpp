#include "bsdl/XmlElements.h"

#include "platform/Text.h"

OmXmlAppender::OmXmlAppender(wxXmlNode& parent) : parent_(parent), last_(parent.GetChildren()) {
    while (last_ && last_->GetNext())
        last_ = last_->GetNext();
}

wxXmlNode& OmXmlAppender::Add(const char* name) {
    auto* child = new wxXmlNode(wxXML_ELEMENT_NODE, name); // owned by its parent
    parent_.InsertChildAfter(child, last_);
    last_ = child;
    return *child;
}

void SetXml(wxXmlNode& node, const char* name, const std::wstring& value) {
    node.AddAttribute(name, value);
}

void SetXml(wxXmlNode& node, const char* name, const std::string& value) {
    node.AddAttribute(name, FromLocal(value));
}

void SetXml(wxXmlNode& node, const char* name, int64_t value) {
    node.AddAttribute(name, std::to_string(value));
}

void SetXml(wxXmlNode& node, const char* name, bool value) {
    node.AddAttribute(name, value ? "1" : "0");
}

std::wstring GetXmlWide(const wxXmlNode& node, const char* name) {
    return node.GetAttribute(name).ToStdWstring();
}

std::string GetXmlText(const wxXmlNode& node, const char* name) {
    return ToLocal(GetXmlWide(node, name));
}

std::optional<int64_t> GetXmlNumber(const wxXmlNode& node, const char* name, int64_t lowest,
                                    int64_t highest) {
    wxLongLong_t number = 0;
    if (!node.GetAttribute(name).ToLongLong(&number) || number < lowest || number > highest)
        return std::nullopt;
    return number;
}

const wxXmlNode* FindXmlChild(const wxXmlNode& node, const char* name) {
    const wxXmlNode* child = node.GetChildren();
    while (child && child->GetName() != name)
        child = child->GetNext();
    return child;
}
