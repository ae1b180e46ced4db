#include "app/App.h"

#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "app/Translations.h"
#include "app/WindowGeometry.h"
#include "bsdl/Idcode.h"
#include "flash/FlashProgrammer.h"
#include "platform/Clock.h"
#include "platform/Paths.h"
#include "platform/SettingsStore.h"
#include "platform/Text.h"

#include <vector>
#include <wx/image.h>
#include <wx/imagpng.h>
#include <wx/intl.h>
#include <wx/settings.h>
#include <wx/sysopt.h>
#include <wx/uilocale.h>
#include <wx/utils.h>
#include <wx/weakref.h>

namespace {

constexpr int kModernCommonControls = 600;
constexpr uint64_t kPaintMilliseconds = 5000; // an iconised window never paints

// Hosts without a common controls library have nothing that could be too old.
int GetCommonControlsVersion() {
#ifdef __WXMSW__
    return wxApp::GetComCtl32Version();
#else
    return kModernCommonControls;
#endif
}

// Some window managers place a new window where they like; the user's own place is asked for once
// more when the window stands.
void KeepPosition(wxFrame* frame, const wxPoint& position) {
    frame->Bind(wxEVT_ACTIVATE, [frame, position, asked = false](wxActivateEvent& event) mutable {
        event.Skip();
        if (asked || !event.GetActive())
            return;
        asked = true;
        if (frame->GetPosition() != position)
            frame->Move(position);
    });
}

// The window stands before a load, which may take a while, and before the box of a failure, which
// it would otherwise cover: GTK shows a window some events later. False if the user has closed it.
bool LetPaint(const wxWeakRef<OmMainFrame>& frame) {
    const uint64_t start = GetClock().Milliseconds();
    wxTheApp->Yield(true);
    while (frame && !frame->GetHexView().HasPainted() &&
           GetClock().Milliseconds() - start < kPaintMilliseconds) {
        GetClock().SleepMilliseconds(1);
        wxTheApp->Yield(true);
    }
    return frame && !frame->IsBeingDeleted();
}

} // namespace

int ChooseBitmapRemapping(int commonControlsVersion, int displayDepth) {
    return commonControlsVersion < kModernCommonControls || displayDepth < 32 ? 0 : 2;
}

OmApp::~OmApp() = default;

bool OmApp::OnInit() {
    SetProcessOptions();
    ReadCommandLine();
    SetManufacturerTablePath(ToLocal(GetProgramDirectory()) + "/mfrid.dat");
    OmMainFrame* frame = OpenMainWindow();
    LoadNamedFiles(*frame);
    return true;
}

// The cable goes first: a vendor's library may tear its own state down once the process exits, and
// would then be called to close the device.
int OmApp::OnExit() {
    OmFlashProgrammer::GetInstance().CloseCable();
    CloseSettingsStore();
    SetUserInterface(nullptr);
    return wxApp::OnExit();
}

// The names come before the settings store, which is made from them.
void OmApp::SetProcessOptions() {
    wxUILocale::UseDefault();
    LoadTranslations();
    SetVendorName(kVendorName);
    SetAppName(kProductName);
    OpenSettingsStore(OmStoreAccess::ReadAndWrite);
    wxSystemOptions::SetOption("msw.notebook.themed-background", 0);
    wxSystemOptions::SetOption("msw.remap",
                               ChooseBitmapRemapping(GetCommonControlsVersion(), wxDisplayDepth()));
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG))
        wxImage::AddHandler(new wxPNGHandler);
    SetUserInterface(&userInterface_);
    helpController_ = CreateHelpViewer();
}

void OmApp::ReadCommandLine() {
    std::vector<std::wstring> arguments;
    for (int index = 1; index < argc; ++index)
        arguments.push_back(argv[index].ToStdWstring());
    commandLine_ = ParseCommandLine(arguments);
    if (commandLine_.helpWanted)
        ShowMessage(_("Usage: velflash [<setup_file> [<data_file>] ]").ToStdWstring(),
                    kInformationBox);
}

OmMainFrame* OmApp::OpenMainWindow() {
    const wxSize screen(wxSystemSettings::GetMetric(wxSYS_SCREEN_X),
                        wxSystemSettings::GetMetric(wxSYS_SCREEN_Y));
    const wxRect geometry = ValidateWindowGeometry(LoadWindowGeometry(), screen);
    auto* frame =
        new OmMainFrame(kProductName, geometry.GetPosition(), geometry.GetSize(), *helpController_);
    if (geometry.GetPosition() != kDefaultGeometry.GetPosition())
        KeepPosition(frame, geometry.GetPosition());
    frame->Show(true);
    SetTopWindow(frame);
    return frame;
}

void OmApp::LoadNamedFiles(OmMainFrame& window) {
    const wxWeakRef<OmMainFrame> frame(&window);
    if (!commandLine_.setupFile.empty() && LetPaint(frame))
        frame->LoadSetupFile(commandLine_.setupFile);
    if (!commandLine_.dataFile.empty() && LetPaint(frame))
        frame->LoadDataFile(commandLine_.dataFile);
}
