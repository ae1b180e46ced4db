// Every kind of pod drives the same board, and fails in the same manner.
#include "tests/road/Pods.h"
#include "tests/road/SilentUser.h"

#include <algorithm>

namespace {

class EveryPod : public ::testing::TestWithParam<PodKind> {
  protected:
    EveryPod() : bytes(Firmware(100, 13)) { image.SetBytes(0, bytes); }

    bool ProgramAll(Road& road) const {
        return road.PrepareToProgram() && road.programmer.EraseSectors(road.progress, {0}) &&
               road.programmer.ProgramFlash(road.progress, image) &&
               road.programmer.VerifyFlash(road.united, image);
    }

    std::vector<uint8_t> bytes;
    OmDataImage image;
};

// What the loss of the connection may say first: it depends on the pod and on the moment.
bool TellsOfTheLoss(const std::wstring& text) {
    const wchar_t* beginnings[] = {
        L"Failed to initialize a JTAG connection",
        L"JTAG connection error",
        L"Failed to write to parallel port.",
        L"Failed to read from parallel port.",
    };
    return std::any_of(std::begin(beginnings), std::end(beginnings),
                       [&text](const wchar_t* beginning) { return text.starts_with(beginning); });
}

} // namespace

TEST_P(EveryPod, ProgramsTheBoard) {
    const RecordingUserInterface user;
    PodRoad pod(GetParam());
    pod.road.FillFlash(0x00);
    EXPECT_TRUE(ProgramAll(pod.road));
    pod.road.ExpectContent(bytes);
    pod.road.ExpectNoViolation();
}

TEST_P(EveryPod, LossIsToldAndCostsNoData) {
    SilentUser user;
    bool good = false;
    // Growing steps: closely where the pod is opened and the chain is found, then now and then.
    for (uint64_t calls = 1; !good; calls += 1 + calls / 3) {
        SCOPED_TRACE(calls);
        PodRoad pod(GetParam());
        pod.BreakAfter(calls);
        user.boxes.clear();
        good = ProgramAll(pod.road);
        EXPECT_EQ(user.busy, 0);
        EXPECT_EQ(image.GetChunks().front().bytes, bytes);
        if (good)
            break;
        ASSERT_FALSE(user.boxes.empty());
        EXPECT_TRUE(TellsOfTheLoss(user.boxes.front().text)) << user.boxes.front();
        EXPECT_EQ(user.boxes.front().style, kErrorBox);
        EXPECT_EQ(pod.road.programmer.cable, nullptr);
    }
    EXPECT_TRUE(user.boxes.empty());
}

INSTANTIATE_TEST_SUITE_P(Pods, EveryPod, ::testing::ValuesIn(AllPods()),
                         [](const auto& pod) { return std::string(pod.param.name); });
