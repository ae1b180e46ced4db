// The thread behind OmBsdlFinder. Detached: deletes itself.
#pragma once

#include "jtag/BitVector.h"

#include <deque>
#include <filesystem>
#include <set>
#include <string>
#include <vector>
#include <wx/dir.h>
#include <wx/event.h>
#include <wx/log.h>
#include <wx/thread.h>

// The flags by which finder and thread meet. At most one thread runs, so they exist once.
class OmBsdlSearchFlags {
  public:
    static void Begin();
    static void Cancel();
    static void Finish();
    static bool IsCancelled();
    static bool IsFinished(); // true before the first search
};

// Turns what is logged on this thread into log events.
class OmLogString : public wxLog {
  public:
    explicit OmLogString(wxEvtHandler* handler);

  protected:
    void DoLogText(const wxString& text) override;

  private:
    wxEvtHandler* handler_; // not owned
};

class OmBsdlFinderThread : public wxThread, private wxDirTraverser {
  public:
    OmBsdlFinderThread(const OmBitVector& idcode, const std::vector<std::string>& directories,
                       wxEvtHandler* handler)
        : wxThread(wxTHREAD_DETACHED), idcode_(idcode), directories_(directories),
          handler_(handler) {}

    ~OmBsdlFinderThread() override = default;

  protected:
    ExitCode Entry() override;

  private:
    wxDirTraverseResult OnFile(const wxString& path) override;
    wxDirTraverseResult OnDir(const wxString& path) override;
    wxDirTraverseResult OnOpenError(const wxString& path) override;

    void SearchDirectories();
    void SearchTree(const wxString& root);
    void SearchFolder(const wxString& path);
    void SearchFile(const wxString& path);
    bool IsNew(const wxString& folder);

    OmBitVector idcode_;
    std::vector<std::string> directories_;
    wxEvtHandler* handler_;            // not owned
    std::deque<wxString> pending_;     // folders still to be searched
    std::vector<wxString> subfolders_; // of the folder being searched
    std::set<std::filesystem::path> entered_;
};

// Hands an event over; now and then gives the receiver time to work off its queue.
void SendBsdlFinderEvent(wxEvtHandler* handler, wxEventType type, const wxString& text);
