#include "app/RawParts.h"

#include "data/DataFiles.h"
#include "data/DataImage.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <vector>
#include <wx/filename.h>

namespace {

using Names = std::vector<std::wstring>;

std::wstring JoinLines(const Names& names) {
    std::wstring text;
    for (const std::wstring& name : names)
        text += (text.empty() ? L"" : L"\n") + name;
    return text;
}

// "a.bin" becomes "a.part1of2.00000.bin" and so on. All start addresses have the width of the last
// one.
Names MakePartNames(const std::wstring& path, const OmDataImage& image) {
    // The last dot of the whole path, so that one in a folder's name counts when the file has none.
    const size_t dot = std::min(path.rfind(L'.'), path.size());
    const auto count = static_cast<unsigned>(image.GetChunkCount());
    const auto digits = static_cast<int>(OmFormat(L"%X", image.GetLastChunk().address).size());
    Names names;
    for (const OmDataChunk& chunk : image.GetChunks())
        names.push_back(path.substr(0, dot) +
                        OmFormat(L".part%uof%u.%0*X", static_cast<unsigned>(names.size() + 1),
                                 count, digits, chunk.address) +
                        path.substr(dot));
    return names;
}

bool ConfirmSplit(const Names& names) {
    const std::wstring text =
        Translated("Unlike S-record and Intel HEX, raw binary file format stores only\n"
                   "one continuous uninterrupted piece of data.\n\n"
                   "Press OK to save each chunk of data as a separate binary file.\n\n"
                   "Files to save:\n") +
        JoinLines(names);
    return ShowMessage(text, {OmButtons::OkCancel, OmIcon::Question}) == OmAnswer::Ok;
}

bool ConfirmReplace(const Names& names) {
    Names existing;
    std::copy_if(names.begin(), names.end(), std::back_inserter(existing),
                 [](const std::wstring& name) { return wxFileName::FileExists(name); });
    if (existing.empty())
        return true;
    const std::wstring text =
        existing.size() == 1
            ? TranslatedFormat("%ls already exists.\nDo you want to replace the existing file?",
                               existing.front().c_str())
            : Translated("These files already exist:\n") + JoinLines(existing) +
                  Translated("\n\nDo you want to replace the existing files?");
    return ShowMessage(text, kLossQuestionBox) == OmAnswer::Yes;
}

// Goes on after a failure, so that as much as possible is saved; returns what failed.
Names WriteParts(const Names& names, const OmDataImage& image) {
    const OmBusyCursor busy;
    Names failed;
    for (unsigned part = 0; part < names.size(); ++part)
        if (!WriteRawChunk(ToLocal(names[part]), image, part))
            failed.push_back(names[part]);
    return failed;
}

bool ReportFailures(const Names& failed) {
    if (failed.empty())
        return true;
    const std::wstring text =
        failed.size() == 1 ? TranslatedFormat("Failed to save '%ls'.", failed.front().c_str())
                           : Translated("Failed to save:\n") + JoinLines(failed);
    ShowMessage(text, kErrorBox);
    return false;
}

} // namespace

bool SaveRawParts(const std::wstring& path, const OmDataImage& image) {
    if (image.IsEmpty())
        return true;
    if (image.GetChunkCount() == 1)
        return ReportFailures(WriteParts({path}, image));
    const Names names = MakePartNames(path, image);
    return ConfirmSplit(names) && ConfirmReplace(names) && ReportFailures(WriteParts(names, image));
}
