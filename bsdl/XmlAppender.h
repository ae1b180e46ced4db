// Builds lists of XML elements.
#pragma once

#include <wx/xml/xml.h>

// Appends children in constant time each: a boundary register can have thousands of cells, and
// wxXmlNode::AddChild walks the whole list.
class OmXmlAppender {
  public:
    explicit OmXmlAppender(wxXmlNode& parent) : parent_(parent), last_(parent.GetChildren()) {
        while (last_ && last_->GetNext())
            last_ = last_->GetNext();
    }

    wxXmlNode& Add(const char* name) {
        auto* child = new wxXmlNode(wxXML_ELEMENT_NODE, name); // owned by its parent
        parent_.InsertChildAfter(child, last_);
        last_ = child;
        return *child;
    }

  private:
    wxXmlNode& parent_;
    wxXmlNode* last_;
};
