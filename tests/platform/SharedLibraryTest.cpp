#include "platform/SharedLibrary.h"

#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace {

int exportedThing = 0;

class OneFunctionLibrary : public OmSharedLibrary {
  public:
    void* Resolve(const char* name) override {
        return name == std::string("Present") ? &exportedThing : nullptr;
    }
};

} // namespace

TEST(SharedLibrary, AnAbsentOrUnknownLibraryCannotBeLoaded) {
    EXPECT_EQ(GetLibraryLoader().Load("no-such-vendor.dll"), nullptr);
}

TEST(SharedLibrary, UserMayNameTheFile) {
    EXPECT_EQ(GetLibraryVariable("JLinkARM.dll"), "VELFLASH_JLINKARM");
    EXPECT_EQ(GetLibraryOverride("JLinkARM.dll"), "");
    ASSERT_EQ(setenv("VELFLASH_NO-SUCH-VENDOR", "libm.so.6", 1), 0);
    EXPECT_EQ(GetLibraryOverride("no-such-vendor.dll"), "libm.so.6");
    const auto library = GetLibraryLoader().Load("no-such-vendor.dll");
    unsetenv("VELFLASH_NO-SUCH-VENDOR");
    ASSERT_NE(library, nullptr);
    EXPECT_NE(library->Resolve("cos"), nullptr);
}

TEST(SharedLibrary, OptionalEntryPointMayBeMissing) {
    OneFunctionLibrary library;
    void* present = nullptr;
    void* missing = &library;
    const OmEntryPoint table[] = {{"Present", &present}, {"Missing", &missing, false}};
    EXPECT_TRUE(ResolveEntryPoints(library, table));
    EXPECT_EQ(present, &exportedThing);
    EXPECT_EQ(missing, nullptr);
}

TEST(SharedLibrary, AllEntryPointsResolve) {
    OneFunctionLibrary library;
    void* present = nullptr;
    const OmEntryPoint table[] = {{"Present", &present}};
    EXPECT_TRUE(ResolveEntryPoints(library, table));
    EXPECT_EQ(present, &exportedThing);
}

TEST(SharedLibrary, OneMissingEntryPointLeavesNone) {
    OneFunctionLibrary library;
    void* present = nullptr;
    void* missing = nullptr;
    const OmEntryPoint table[] = {{"Present", &present}, {"Missing", &missing}};
    EXPECT_FALSE(ResolveEntryPoints(library, table));
    EXPECT_EQ(present, nullptr);
    EXPECT_EQ(missing, nullptr);
}
