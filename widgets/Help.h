// The help book of the program, shown by whatever viewer the host has: compiled help on Windows,
// the toolkit's HTML help elsewhere.
#pragma once

#include <memory>
#include <wx/string.h>

class OmHelpViewer {
  public:
    virtual ~OmHelpViewer() = default;

    // `book` is the path of the help book without its extension. A missing book is not an error
    // before a topic is asked for.
    virtual void Initialize(const wxString& book) = 0;

    // `topic` is the name of a page in the book ("welcome.htm").
    virtual void DisplaySection(const wxString& topic) = 0;
};

// The host's viewer.
std::unique_ptr<OmHelpViewer> CreateHelpViewer();

// The viewer behind ShowHelpTopic, not owned; null, as at the start, for none.
void SetCurrentHelpViewer(OmHelpViewer* viewer);

// Does nothing while there is no viewer.
void ShowHelpTopic(const wxString& topic);
