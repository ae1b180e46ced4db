#include "widgets/Help.h"

#include "widgets/Icons.h"

#ifdef __WXMSW__
#include <wx/msw/helpchm.h>
#else
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/html/helpctrl.h>
#include <wx/html/helpfrm.h>
#include <wx/html/htmlfilt.h>
#include <wx/sstream.h>
#endif

namespace {

OmHelpViewer* currentViewer = nullptr;

#ifdef __WXMSW__

class HostHelpViewer : public OmHelpViewer {
  public:
    void Initialize(const wxString& book) override { controller_.Initialize(book); }

    void DisplaySection(const wxString& topic) override { controller_.DisplaySection(topic); }

  private:
    wxCHMHelpController controller_;
};

#else

// Many systems know a .htm page as application/xhtml+xml, which the toolkit would show as source.
class HtmlPageFilter : public wxHtmlFilter {
  public:
    bool CanRead(const wxFSFile& file) const override {
        return file.GetMimeType() == "application/xhtml+xml";
    }

    wxString ReadFile(const wxFSFile& file) const override {
        wxStringOutputStream page(nullptr, wxConvUTF8);
        file.GetStream()->Read(page);
        return page.GetString();
    }
};

// Lays the window out where the toolkit makes it: over a modal dialog, showing a topic returns only
// when the user has closed the window again.
class HelpController : public wxHtmlHelpController {
  public:
    // A single book, so its topics need no book above them in the contents.
    HelpController() : wxHtmlHelpController(wxHF_DEFAULT_STYLE | wxHF_MERGE_BOOKS) {}

  protected:
    wxHtmlHelpFrame* CreateHelpFrame(wxHtmlHelpData* data) override {
        wxHtmlHelpFrame* frame = wxHtmlHelpController::CreateHelpFrame(data);
        frame->SetIcons(GetAppIcon());
        // Room for the contents beside a page as wide as its pictures.
        frame->SetSize(frame->FromDIP(wxSize(960, 720)));
        frame->CentreOnScreen();
        return frame;
    }
};

// Opens the book only when the first topic is asked for: starting the program stays fast, and a
// missing book is told to the user who wants it.
class HostHelpViewer : public OmHelpViewer {
  public:
    void Initialize(const wxString& book) override { book_ = book; }

    void DisplaySection(const wxString& topic) override {
        if (!opened_)
            Open();
        if (!opened_)
            return;
        controller_.DisplaySection(topic);
    }

  private:
    void Open() {
        wxFileSystem::AddHandler(new wxArchiveFSHandler);
        wxHtmlWindow::AddFilter(new HtmlPageFilter);
        opened_ = controller_.AddBook(wxFileName(book_ + ".htb"));
    }

    HelpController controller_;
    wxString book_;
    bool opened_ = false;
};

#endif

} // namespace

std::unique_ptr<OmHelpViewer> CreateHelpViewer() {
    return std::make_unique<HostHelpViewer>();
}

void SetCurrentHelpViewer(OmHelpViewer* viewer) {
    currentViewer = viewer;
}

void ShowHelpTopic(const wxString& topic) {
    if (currentViewer)
        currentViewer->DisplaySection(topic);
}
