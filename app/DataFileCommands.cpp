// The commands that load and save the data file.
#include "app/CommandIds.h"
#include "app/HexViewCtrl.h"
#include "app/MainFrame.h"
#include "app/RawParts.h"
#include "app/ScopedFlag.h"
#include "data/DataFiles.h"
#include "data/DataFormats.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"
#include "widgets/FileChooser.h"

#include <wx/intl.h>

namespace {

// "*.hex;*.ihex"
wxString JoinPatterns(const OmDataFormat& format, const char* separator) {
    wxString patterns;
    for (const char* extension : format.extensions)
        patterns << (patterns.empty() ? "" : separator) << "*." << extension;
    return patterns;
}

wxString JoinAllPatterns(const char* separator) {
    wxString patterns;
    for (const OmDataFormat& format : GetDataFormats())
        patterns << (patterns.empty() ? "" : separator) << JoinPatterns(format, separator);
    return patterns;
}

wxString MakeLoadFilter() {
    return JoinAllPatterns(" ") + "|" + JoinAllPatterns(";") + "|" + _("All Files (*.*)|*.*");
}

// One entry a format, in the formats' order: the chosen entry sets the format, not the file's name.
wxString MakeSaveFilter() {
    wxString filter;
    for (const OmDataFormat& format : GetDataFormats()) {
        const wxString patterns = JoinPatterns(format, ";");
        filter << (filter.empty() ? "" : "|") << Translated(format.label) << " (" << patterns
               << ")|" << patterns;
    }
    return filter;
}

bool WriteWholeFile(const OmDataFormat& format, const std::wstring& path,
                    const OmDataImage& image) {
    {
        const OmBusyCursor busy;
        if (format.write(ToLocal(path), image))
            return true;
    }
    ShowMessage(TranslatedFormat("Failed to save '%ls'.", path.c_str()), kErrorBox);
    return false;
}

bool SaveData(const OmDataFormat& format, const std::wstring& path, const OmDataImage& image) {
    return format.holdsGaps ? WriteWholeFile(format, path, image) : SaveRawParts(path, image);
}

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
        GetFileChooser().ChooseToOpen(this, _("Load Data File"), MakeLoadFilter());
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
    const wxString path =
        GetFileChooser().ChooseToSave(this, _("Save Data File"), MakeSaveFilter(), filterIndex);
    const std::span<const OmDataFormat> formats = GetDataFormats();
    if (path.empty() || filterIndex < 0 || static_cast<size_t>(filterIndex) >= formats.size())
        return;
    if (SaveData(formats[static_cast<size_t>(filterIndex)], path.ToStdWstring(), dataImage_))
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
