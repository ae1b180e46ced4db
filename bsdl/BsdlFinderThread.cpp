#include "bsdl/BsdlFinderThread.h"

#include "bsdl/BsdlData.h"
#include "bsdl/BsdlFinderEvents.h"
#include "bsdl/BsdlParser.h"
#include "bsdl/IdcodePattern.h"
#include "platform/Text.h"
#include "platform/Translation.h"

#include <memory>

namespace {

constexpr int kEventsInARow = 10;
constexpr unsigned long kPauseMilliseconds = 20;

constexpr const char* kExtensions[] = {".bsd", ".bsdl", ".bsm"};

wxCriticalSection section;
bool cancelled = false;  // under the section
bool finished = true;    // under the section
int eventsSinceRest = 0; // only touched by the one sender

// Log lines carry no time of day.
class TimelessFormatter : public wxLogFormatter {
  protected:
    wxString FormatTime(time_t) const override { return {}; }
};

bool HasBsdlExtension(const wxString& path) {
    const wxString lower = path.Lower();
    for (const char* extension : kExtensions)
        if (lower.EndsWith(extension))
            return true;
    return false;
}

wxString Joined(const std::vector<std::string>& texts) {
    std::string joined;
    for (const std::string& text : texts)
        joined += (joined.empty() ? "" : ", ") + text;
    return FromLocal(joined);
}

wxString DescribeFind(const wxString& path, const OmBsdlData& data, const std::string& pattern) {
    return path + ";" + FromLocal(data.entity) + ";" + Joined(data.GetPinMappingNames()) + ";" +
           FromLocal(pattern);
}

wxString DescribeBadPattern(const wxString& path) {
    return TranslatedFormat("Error: (in '%ls') semantic error\n        : IDCODE_REGISTER pattern "
                            "must have 32 bit length\n",
                            path.wc_str());
}

wxString DescribeOpenError(const wxString& path) {
    return TranslatedFormat("Cannot open directory '%ls'\n", path.wc_str());
}

// A folder that cannot be read shall cost one line, not two.
bool OpenSilently(wxDir& folder, const wxString& path) {
    const wxLogNull silence;
    return folder.Open(path);
}

} // namespace

void OmBsdlSearchFlags::Begin() {
    const wxCriticalSectionLocker lock(section);
    cancelled = false;
    finished = false;
}

void OmBsdlSearchFlags::Cancel() {
    const wxCriticalSectionLocker lock(section);
    cancelled = true;
}

void OmBsdlSearchFlags::Finish() {
    const wxCriticalSectionLocker lock(section);
    finished = true;
}

bool OmBsdlSearchFlags::IsCancelled() {
    const wxCriticalSectionLocker lock(section);
    return cancelled;
}

bool OmBsdlSearchFlags::IsFinished() {
    const wxCriticalSectionLocker lock(section);
    return finished;
}

void SendBsdlFinderEvent(wxEvtHandler* handler, wxEventType type, const wxString& text) {
    wxCommandEvent event(type);
    event.SetString(text);
    handler->AddPendingEvent(event);
    if (++eventsSinceRest <= kEventsInARow)
        return;
    eventsSinceRest = 0;
    wxMilliSleep(kPauseMilliseconds);
}

OmLogString::OmLogString(wxEvtHandler* handler) : handler_(handler) {
    // The log owns its formatter and hands back the one before.
    const std::unique_ptr<wxLogFormatter> before(
        SetFormatter(std::make_unique<TimelessFormatter>().release()));
}

void OmLogString::DoLogText(const wxString& text) {
    SendBsdlFinderEvent(handler_, OM_EVT_BSDL_LOG, text + "\n");
}

// The log is that of this thread alone; the windows keep theirs.
wxThread::ExitCode OmBsdlFinderThread::Entry() {
    OmLogString log(handler_);
    wxLog* const previous = wxLog::SetThreadActiveTarget(&log);
    SearchDirectories();
    SendBsdlFinderEvent(handler_, OM_EVT_BSDL_DONE,
                        OmBsdlSearchFlags::IsCancelled() ? "canceled" : "completed");
    wxLog::SetThreadActiveTarget(previous);
    OmBsdlSearchFlags::Finish(); // from here on the handler may be gone
    return nullptr;
}

void OmBsdlFinderThread::SearchDirectories() {
    for (const std::string& directory : directories_) {
        if (OmBsdlSearchFlags::IsCancelled())
            return;
        SearchTree(FromLocal(directory));
    }
}

// Files before subfolders, so that what lies on top is found first.
void OmBsdlFinderThread::SearchTree(const wxString& root) {
    entered_.clear();
    pending_ = {root};
    while (!pending_.empty() && !OmBsdlSearchFlags::IsCancelled()) {
        const wxString folder = pending_.front();
        pending_.pop_front();
        if (!IsNew(folder))
            continue;
        SearchFolder(folder);
        pending_.insert(pending_.begin(), subfolders_.begin(), subfolders_.end());
    }
}

// Links can lead back up, and two of them make a tree of no end: each folder is searched once.
bool OmBsdlFinderThread::IsNew(const wxString& folder) {
    using Character = std::filesystem::path::value_type; // wide on some hosts, and so is fn_str
    const std::filesystem::path path = static_cast<const Character*>(folder.fn_str());
    std::error_code error;
    const auto real = std::filesystem::canonical(path, error);
    return error || entered_.insert(real).second;
}

void OmBsdlFinderThread::SearchFolder(const wxString& path) {
    subfolders_.clear();
    wxDir folder;
    if (OpenSilently(folder, path))
        folder.Traverse(*this, "*", wxDIR_FILES | wxDIR_DIRS | wxDIR_HIDDEN);
    else
        OnOpenError(path);
}

wxDirTraverseResult OmBsdlFinderThread::OnFile(const wxString& path) {
    if (OmBsdlSearchFlags::IsCancelled())
        return wxDIR_STOP;
    if (HasBsdlExtension(path))
        SearchFile(path);
    return wxDIR_CONTINUE;
}

wxDirTraverseResult OmBsdlFinderThread::OnDir(const wxString& path) {
    if (OmBsdlSearchFlags::IsCancelled())
        return wxDIR_STOP;
    subfolders_.push_back(path); // for later
    return wxDIR_IGNORE;
}

wxDirTraverseResult OmBsdlFinderThread::OnOpenError(const wxString& path) {
    if (!OmBsdlSearchFlags::IsCancelled())
        SendBsdlFinderEvent(handler_, OM_EVT_BSDL_LOG, DescribeOpenError(path));
    return wxDIR_IGNORE;
}

void OmBsdlFinderThread::SearchFile(const wxString& path) {
    SendBsdlFinderEvent(handler_, OM_EVT_BSDL_FILE, path);
    OmBsdlData data;
    OmBsdlParserCallbackImpl callback;
    if (!ParseBsdlFile(ToLocal(path.ToStdWstring()).c_str(), data, &callback)) {
        SendBsdlFinderEvent(handler_, OM_EVT_BSDL_LOG, FromLocal(callback.text));
        return;
    }
    const OmIdcodeMatch match = MatchIdcode(idcode_, data.GetIdcodes());
    for (int bad = 0; bad < match.badPatterns; ++bad)
        SendBsdlFinderEvent(handler_, OM_EVT_BSDL_LOG, DescribeBadPattern(path));
    if (!match.pattern.empty())
        SendBsdlFinderEvent(handler_, OM_EVT_BSDL_FOUND, DescribeFind(path, data, match.pattern));
}
