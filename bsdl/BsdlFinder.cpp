#include "bsdl/BsdlFinder.h"

#include "bsdl/BsdlFinderThread.h"

#include <memory>

namespace {

constexpr unsigned long kPollMilliseconds = 50;

} // namespace

wxDEFINE_EVENT(OM_EVT_BSDL_FILE, wxCommandEvent);
wxDEFINE_EVENT(OM_EVT_BSDL_FOUND, wxCommandEvent);
wxDEFINE_EVENT(OM_EVT_BSDL_LOG, wxCommandEvent);
wxDEFINE_EVENT(OM_EVT_BSDL_DONE, wxCommandEvent);

void OmBsdlFinder::StartSearch() {
    CancelSearch();
    auto thread = std::make_unique<OmBsdlFinderThread>(idcode_, directories_, handler_);
    OmBsdlSearchFlags::Begin();
    if (thread->Create() == wxTHREAD_NO_ERROR && thread->Run() == wxTHREAD_NO_ERROR) {
        (void)thread.release(); // runs, and deletes itself
        return;
    }
    OmBsdlSearchFlags::Finish();
    SendBsdlFinderEvent(handler_, OM_EVT_BSDL_DONE, "canceled");
}

void OmBsdlFinder::CancelSearch() {
    OmBsdlSearchFlags::Cancel();
    while (!OmBsdlSearchFlags::IsFinished())
        wxMilliSleep(kPollMilliseconds);
}
