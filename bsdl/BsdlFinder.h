// Searches folders for the BSDL files that describe a device with a given IDCODE, on a thread of
// its own, so that the windows stay alive. All it has to say comes as events, each with a text.
//
// While a search runs nobody else may parse a BSDL file: the parser's state is process-wide. Used
// on the GUI thread only.
#pragma once

#include "bsdl/BsdlFinderEvents.h"
#include "jtag/BitVector.h"

#include <string>
#include <vector>

class OmBsdlFinder {
  public:
    // `handler` gets the events; not owned, must outlive the finder.
    explicit OmBsdlFinder(wxEvtHandler* handler) : handler_(handler) {}

    virtual ~OmBsdlFinder() { CancelSearch(); }

    OmBsdlFinder(const OmBsdlFinder&) = delete;
    OmBsdlFinder& operator=(const OmBsdlFinder&) = delete;

    void SetIdcode(const OmBitVector& idcode) { idcode_ = idcode; }

    void SetDirectories(const std::vector<std::string>& directories) { directories_ = directories; }

    // Cancels a search that still runs, then starts anew. A search that cannot be started ends at
    // once as canceled.
    void StartSearch();

    // Returns when no search runs any more, which can take as long as one file. No event is sent
    // after that, though some may still be pending.
    void CancelSearch();

  private:
    OmBitVector idcode_;
    std::vector<std::string> directories_;
    wxEvtHandler* handler_;
};
