#include "app/WindowGeometry.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <wx/fileconf.h>

namespace {

const wxSize kScreen(1280, 1024);
const wxRect kDefault(-1, -1, 670, 680);

class StoreTest : public testing::Test {
  protected:
    StoreTest() {
        previous_ = wxConfigBase::Set(new wxFileConfig("test", "test", folder_.Path("settings"),
                                                       wxString(), wxCONFIG_USE_LOCAL_FILE));
    }

    ~StoreTest() override { delete wxConfigBase::Set(previous_); }

    TemporaryFolder folder_;
    wxConfigBase* previous_;
};

using WindowGeometryStore = StoreTest;

} // namespace

TEST(WindowGeometry, OutOfReachOrTooSmallGivesTheDefaultAsAWhole) {
    const struct {
        const char* what;
        wxRect stored;
        bool kept;
    } cases[] = {
        {"ordinary", {30, 40, 800, 600}, true},
        {"default", {-1, -1, 670, 680}, true},
        {"x at the limit", {-10, 0, 800, 600}, true},
        {"x below", {-11, 0, 800, 600}, false},
        {"y at the limit", {0, -10, 800, 600}, true},
        {"y below", {0, -11, 800, 600}, false},
        {"x far right", {1180, 0, 800, 600}, true},
        {"x too far right", {1181, 0, 800, 600}, false},
        {"y far down", {0, 894, 800, 600}, true},
        {"y too far down", {0, 895, 800, 600}, false},
        {"smallest", {0, 0, 100, 100}, true},
        {"too narrow", {50, 50, 99, 600}, false},
        {"too low", {50, 50, 800, 99}, false},
        {"larger than the screen", {0, 0, 5000, 5000}, true},
    };

    for (const auto& test : cases)
        EXPECT_EQ(ValidateWindowGeometry(test.stored, kScreen), test.kept ? test.stored : kDefault)
            << test.what;
}

TEST_F(WindowGeometryStore, EmptyStoreGivesTheDefault) {
    EXPECT_EQ(LoadWindowGeometry(), kDefault);
}

TEST_F(WindowGeometryStore, ComesBackWhereItWasClosed) {
    StoreWindowGeometry({30, 40, 800, 600}, false);
    EXPECT_EQ(LoadWindowGeometry(), wxRect(30, 40, 800, 600));
    EXPECT_FALSE(wxConfigBase::Get()->ReadBool("/Maximized", true));
}

TEST_F(WindowGeometryStore, MaximizedComesBackAtTheDefault) {
    StoreWindowGeometry({0, 0, 1280, 1024}, true);
    EXPECT_EQ(LoadWindowGeometry(), kDefault);
    EXPECT_TRUE(wxConfigBase::Get()->ReadBool("/Maximized", false));
}

TEST_F(WindowGeometryStore, LivesAtTheRootOfTheStore) {
    wxConfigBase::Get()->SetPath("/Elsewhere");
    StoreWindowGeometry({30, 40, 800, 600}, false);
    EXPECT_EQ(LoadWindowGeometry(), wxRect(30, 40, 800, 600));
    EXPECT_TRUE(wxConfigBase::Get()->HasEntry("/w"));
}
