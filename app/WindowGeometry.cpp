#include "app/WindowGeometry.h"

#include <algorithm>
#include <wx/config.h>

namespace {

constexpr int kMinPosition = -10;
constexpr int kMinSize = 100;
// What must remain on the screen of a window that stands far right or far down.
constexpr int kMinVisibleWidth = 100;
constexpr int kMinVisibleHeight = 130;
// The X Window System counts pixels in 16 bits; a larger window would never be shown.
constexpr long kMaxPixels = 32767;

int ReadPixels(const char* key, int missing) {
    const long pixels = wxConfigBase::Get()->ReadLong(key, missing);
    return static_cast<int>(std::clamp(pixels, -kMaxPixels, kMaxPixels));
}

} // namespace

wxRect LoadWindowGeometry() {
    return {ReadPixels("/x", kDefaultGeometry.x), ReadPixels("/y", kDefaultGeometry.y),
            ReadPixels("/w", kDefaultGeometry.width), ReadPixels("/h", kDefaultGeometry.height)};
}

void StoreWindowGeometry(const wxRect& geometry, bool maximized) {
    const wxRect stored = maximized ? kDefaultGeometry : geometry;
    wxConfigBase& store = *wxConfigBase::Get();
    store.Write("/Maximized", maximized);
    store.Write("/x", stored.x);
    store.Write("/y", stored.y);
    store.Write("/w", stored.width);
    store.Write("/h", stored.height);
}

wxRect ValidateWindowGeometry(const wxRect& geometry, const wxSize& screen) {
    const bool reachable = geometry.x >= kMinPosition && geometry.y >= kMinPosition &&
                           geometry.x <= screen.x - kMinVisibleWidth &&
                           geometry.y <= screen.y - kMinVisibleHeight;
    const bool usable = geometry.width >= kMinSize && geometry.height >= kMinSize;
    return reachable && usable ? geometry : kDefaultGeometry;
}
