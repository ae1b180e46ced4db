// The commands that load and save the data file.
#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "app/RawParts.h"
#include "app/ScopedFlag.h"
#include "data/DataFiles.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "widgets/FileChooser.h"

#include <wx/intl.h>

namespace {

constexpr char kLoadFilter[] =
    wxTRANSLATE("*.srec *.mot *.S19 *.hex *.bin *.raw *.dat|"
                "*.srec;*.mot;*.S19;*.hex;*.bin;*.raw;*.dat|All Files (*.*)|*.*");
constexpr char kSaveFilter[] =
    wxTRANSLATE("S-record (*.srec;*.mot;*.S19)|*.srec;*.mot;*.S19|"
                "Intel HEX (*.hex)|*.hex|Raw binary (*.bin;*.raw;*.dat)|*.bin;*.raw;*.dat");

bool WriteWholeFile(bool (*write)(const std::string&, const OmDataImage&), const std::wstring& path,
                    const OmDataImage& image) {
    {
        const OmBusyCursor busy;
        if (write(ToLocal(path), image))
            return true;
    }
    ShowMessage(TranslatedFormat("Failed to save '%ls'.", path.c_str()), kErrorBox);
    return false;
}

bool SaveAsSRecord(const std::wstring& path, const OmDataImage& image) {
    return WriteWholeFile(WriteSRecordFile, path, image);
}

bool SaveAsIntelHex(const std::wstring& path, const OmDataImage& image) {
    return WriteWholeFile(WriteIntelHexFile, path, image);
}

// In the order of the save filter: the chosen filter sets the format, not the file's name.
constexpr bool (*kSavers[])(const std::wstring&,
                            const OmDataImage&) = {SaveAsSRecord, SaveAsIntelHex, SaveRawParts};

} // namespace

// Only data that was read from the flash and never saved would be lost.
bool OmMainFrame::PromptSaveData() {
    if (dataImage_.IsEmpty() || !dataPath_.empty())
        return true;
    const wxString question = _("Do you want to save current data view contents?");
    const OmAnswer answer = ShowMessage(question.ToStdWstring(), kSaveQuestionBox);
    if (answer == OmAnswer::Yes)
        SaveDataUnderNewName();
    return answer == OmAnswer::No || (answer == OmAnswer::Yes && !dataPath_.empty());
}

void OmMainFrame::OnLoadData(wxCommandEvent&) {
    if (!PromptSaveData())
        return;
    const wxString path =
        GetFileChooser().ChooseToOpen(this, _("Load Data File"), wxGetTranslation(kLoadFilter));
    if (!path.empty())
        LoadDataFile(path);
}

bool OmMainFrame::LoadDataFile(const wxString& path) {
    const ScopedFlag guard(commandRunning_); // at the start of the program no command runs
    OmDataImage image;
    std::string error;
    bool loaded = false;
    {
        const OmBusyCursor busy;
        loaded = ReadDataFile(ToLocal(path.ToStdWstring()), image, error);
    }
    if (!loaded) {
        const wxString text = wxString::Format(_("Failed to load data file '%s'.\n"), path);
        ShowMessage(text.ToStdWstring() + Translated(error.c_str()), kErrorBox);
        return false;
    }
    ShowLoadedData(std::move(image), path);
    return true;
}

void OmMainFrame::ShowLoadedData(OmDataImage image, const wxString& path) {
    const OmBusyCursor busy;
    hexView_->SetDataImage(nullptr); // it points into the chunks that go away
    dataImage_ = std::move(image);
    hexView_->SetDataImage(&dataImage_);
    TakeDataPath(path);
}

OmDataImage& OmMainFrame::BeginFlashData() {
    hexView_->SetDataImage(nullptr);
    dataImage_.ClearImage();
    TakeDataPath(wxString());
    return dataImage_;
}

void OmMainFrame::ShowFlashData() {
    hexView_->SetDataImage(&dataImage_);
    UpdateDataCaption();
}

void OmMainFrame::TakeDataPath(const wxString& path) {
    if (!dataPath_.empty())
        recentDataFiles_.AddFileToHistory(dataPath_);
    dataPath_ = path;
    UpdateDataCaption();
}

void OmMainFrame::OnSaveDataAs(wxCommandEvent&) {
    SaveDataUnderNewName();
}

void OmMainFrame::SaveDataUnderNewName() {
    int filterIndex = 0;
    const wxString path = GetFileChooser().ChooseToSave(this, _("Save Data File"),
                                                        wxGetTranslation(kSaveFilter), filterIndex);
    if (path.empty() || filterIndex < 0 || filterIndex >= static_cast<int>(std::size(kSavers)))
        return;
    if (kSavers[filterIndex](path.ToStdWstring(), dataImage_))
        TakeDataPath(path);
}

void OmMainFrame::OnRecentData(wxCommandEvent& event) {
    const auto index = static_cast<size_t>(event.GetId() - kIdFirstRecentData);
    if (index >= recentDataFiles_.GetCount())
        return;
    const wxString path = recentDataFiles_.GetHistoryFile(index);
    if (!path.empty() && PromptSaveData())
        LoadDataFile(path);
}
