#include "app/WindowGeometry.h"

#include <wx/config.h>

namespace {

constexpr int kMinPosition = -10;
constexpr int kMinSize = 100;
// What must remain on the screen of a window that stands far right or far down.
constexpr int kMinVisibleWidth = 100;
constexpr int kMinVisibleHeight = 130;

} // namespace

wxRect LoadWindowGeometry() {
    const wxConfigBase& store = *wxConfigBase::Get();
    return {static_cast<int>(store.ReadLong("/x", kDefaultGeometry.x)),
            static_cast<int>(store.ReadLong("/y", kDefaultGeometry.y)),
            static_cast<int>(store.ReadLong("/w", kDefaultGeometry.width)),
            static_cast<int>(store.ReadLong("/h", kDefaultGeometry.height))};
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
