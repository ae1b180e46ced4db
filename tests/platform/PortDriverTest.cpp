#include "platform/PortDriver.h"

#include <gtest/gtest.h>

namespace {

class Nobody : public OmPortDriverOpener {
  public:
    std::unique_ptr<OmPortDriver> Open(const std::string&) override { return nullptr; }
};

} // namespace

TEST(PortDriver, InstallingAnOpenerReturnsTheOneBefore) {
    Nobody nobody;
    EXPECT_EQ(SetPortDriverOpener(&nobody), nullptr);
    EXPECT_EQ(&GetPortDriverOpener(), &nobody);
    EXPECT_EQ(SetPortDriverOpener(nullptr), &nobody);
    EXPECT_NE(&GetPortDriverOpener(), &nobody);
}

TEST(PortDriver, HostHasNoDriverOfAnotherName) {
    EXPECT_EQ(GetPortDriverOpener().Open("no-such-driver"), nullptr);
}
