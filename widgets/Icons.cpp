#include "widgets/Icons.h"

#include "resources/EmbeddedImages.h"

#include <algorithm>
#include <iterator>
#include <wx/bitmap.h>
#include <wx/icon.h>

namespace {

// The size is part of an image's name: "read-16".
wxBitmap LoadImage(const char* name, int size) {
    const wxString wanted = wxString::Format("%s-%d", name, size);
    const auto* found =
        std::find_if(std::begin(kEmbeddedImages), std::end(kEmbeddedImages),
                     [&wanted](const OmEmbeddedImage& image) { return wanted == image.name; });
    wxCHECK_MSG(found != std::end(kEmbeddedImages), wxNullBitmap, "no image " + wanted);
    return wxBitmap::NewFromPNGData(found->data, found->size);
}

wxBitmapBundle LoadBothScales(const char* name, int size) {
    return wxBitmapBundle::FromBitmaps(LoadImage(name, size), LoadImage(name, 2 * size));
}

} // namespace

wxBitmapBundle GetToolIcon(const char* name) {
    return LoadBothScales(name, 16);
}

wxBitmapBundle GetPicture(const char* name) {
    return LoadBothScales(name, 32);
}

wxBitmapBundle GetAboutPicture() {
    return LoadBothScales("about", 360);
}

wxBitmapBundle GetWizardPicture() {
    return LoadBothScales("wizard", 130);
}

wxIconBundle GetAppIcon() {
    wxIconBundle bundle;
    for (const int size : {16, 32, 48, 64, 128}) {
        wxIcon icon;
        icon.CopyFromBitmap(LoadImage("appicon", size));
        bundle.AddIcon(icon);
    }
    return bundle;
}
