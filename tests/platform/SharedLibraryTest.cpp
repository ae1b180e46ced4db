#include "platform/SharedLibrary.h"

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
