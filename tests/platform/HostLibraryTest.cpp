#include "platform/SharedLibrary.h"

#include <cstdlib>
#include <gtest/gtest.h>

TEST(HostLibrary, VendorsNamesFollowOneRule) {
    EXPECT_EQ(GetHostLibraryName("ftd2xx.dll"), "libftd2xx.so");
    EXPECT_EQ(GetHostLibraryName("usbblstr32.dll"), "libusbblstr32.so");
    EXPECT_EQ(GetHostLibraryName("JLinkARM.dll"), "libjlinkarm.so");
    EXPECT_EQ(GetHostLibraryName("dpcutil.dll"), "libdpcutil.so");
}

TEST(HostLibrary, UserMayNameTheFile) {
    EXPECT_EQ(GetLibraryVariable("JLinkARM.dll"), "VELFLASH_JLINKARM");
    EXPECT_EQ(GetLibraryOverride("JLinkARM.dll"), "");
    ASSERT_EQ(setenv("VELFLASH_NO-SUCH-VENDOR", "libm.so.6", 1), 0);
    EXPECT_EQ(GetLibraryOverride("no-such-vendor.dll"), "libm.so.6");
    const auto library = GetLibraryLoader().Load("no-such-vendor.dll");
    unsetenv("VELFLASH_NO-SUCH-VENDOR");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Resolve("cos"), nullptr);
}
