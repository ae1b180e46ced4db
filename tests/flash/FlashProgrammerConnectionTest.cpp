#include "flash/FlashProgrammer.h"

#include "tests/flash/ProgrammerFixture.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t kAdaptiveClockingWarning[] =
    L"Adaptive Clocking is enabled!\n\nUse Adaptive Clocking ONLY IF a target device in a JTAG "
    L"chain and a JTAG adapter support this feature! Otherwise, the software will hang up with no "
    L"error messages (!) upon attempt to shift data into a JTAG chain.\n\nIgnore this warning and "
    L"continue with adaptive clocking enabled?";

class Connection : public ProgrammerFixture {
  protected:
    Connection() : ProgrammerFixture(1, 2, 8) {}

    // The pod says what it is only when it is opened.
    void UseHighSpeedPod() {
        programmer.settings.cableType = OmCableType::Ftd2xx;
        programmer.settings.ftd2xxAdaptiveClocking = true;
        programmer.settings.ftd2xxIsHighSpeed = true;
    }

    std::vector<OmBitVector> chain;
    bool atmelBug = false;
};

} // namespace

TEST_F(Connection, OpenKeepsTheCableWhileTheSettingsLeadToTheSameConnection) {
    EXPECT_TRUE(programmer.OpenCable());
    const OmCable* first = programmer.cable.get();
    programmer.settings.jlinkUsbNumber = 3; // another cable's parameter
    EXPECT_TRUE(programmer.OpenCable());
    EXPECT_EQ(programmer.cable.get(), first);
    EXPECT_EQ(cablesMade, 1);
}

TEST_F(Connection, OpenReplacesTheCableWhenItsSettingsChange) {
    programmer.settings.cableType = OmCableType::Ftd2xx;
    EXPECT_TRUE(programmer.OpenCable());
    programmer.settings.ftd2xxFrequency = 1000;
    int openWhileMaking = -1;
    programmer.createCable = [&](OmConnectionSettings&) {
        openWhileMaking = target.cablesOpen;
        return target.MakeCable();
    };
    EXPECT_TRUE(programmer.OpenCable());
    EXPECT_EQ(openWhileMaking, 0) << "a pod can be opened only once";
    EXPECT_EQ(target.cablesOpen, 1);
    EXPECT_TRUE(programmer.applied.SameConnection(programmer.settings));
}

TEST_F(Connection, ReplacedCableKeepsTheInstructionTable) {
    EXPECT_TRUE(programmer.OpenCable());
    programmer.analyzer->devices.resize(3);
    programmer.settings.lptFrequency = 1000;
    EXPECT_TRUE(programmer.OpenCable());
    EXPECT_EQ(programmer.analyzer->devices.size(), 3u);
    EXPECT_EQ(programmer.analyzer->hal, programmer.cable->GetJtagHAL());
}

TEST_F(Connection, WhatTheCableLearnsOnOpeningIsAppliedToo) {
    programmer.createCable = [&](OmConnectionSettings& settings) {
        settings.ftd2xxIsHighSpeed = true;
        return target.MakeCable();
    };
    EXPECT_TRUE(programmer.OpenCable());
    EXPECT_TRUE(programmer.settings.ftd2xxIsHighSpeed);
    EXPECT_TRUE(programmer.applied.ftd2xxIsHighSpeed);
}

TEST_F(Connection, CableThatCannotBeOpenedIsToldEachTime) {
    programmer.createCable = [](OmConnectionSettings&) { return std::unique_ptr<OmCable>(); };
    for (int i = 0; i < 2; ++i) {
        ui.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
        EXPECT_FALSE(programmer.OpenCable());
        ASSERT_NE(programmer.analyzer, nullptr);
        EXPECT_EQ(programmer.analyzer->hal, nullptr);
    }
}

TEST_F(Connection, CableOpensOnceItIsPluggedIn) {
    programmer.createCable = [](OmConnectionSettings&) { return std::unique_ptr<OmCable>(); };
    ui.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    EXPECT_FALSE(programmer.ExamineChain(chain, atmelBug));
    UseTargetCable();
    EXPECT_TRUE(programmer.ExamineChain(chain, atmelBug));
}

TEST_F(Connection, CloseLeavesNothingBehind) {
    EXPECT_TRUE(programmer.OpenCable());
    programmer.CloseCable();
    EXPECT_EQ(programmer.cable, nullptr);
    EXPECT_EQ(programmer.analyzer, nullptr);
    EXPECT_EQ(target.cablesOpen, 0);
    programmer.CloseCable(); // and does no harm twice
}

TEST_F(Connection, AdaptiveClockingIsAskedAboutOnceWhenItIsAccepted) {
    UseHighSpeedPod();
    ui.Expect(kAdaptiveClockingWarning, kLossQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_TRUE(programmer.ConfirmAdaptiveClocking());
    EXPECT_TRUE(programmer.ConfirmAdaptiveClocking());
}

TEST_F(Connection, AdaptiveClockingIsAskedAboutAgainAfterANo) {
    UseHighSpeedPod();
    for (const OmAnswer answer : {OmAnswer::No, OmAnswer::Cancel}) {
        ui.Expect(kAdaptiveClockingWarning, kLossQuestionBox, answer, L"Warning");
        EXPECT_FALSE(programmer.ConfirmAdaptiveClocking());
    }
}

TEST_F(Connection, AdaptiveClockingIsNoMatterUnlessItIsInUse) {
    UseHighSpeedPod();
    programmer.settings.ftd2xxIsHighSpeed = false; // such a pod has no adaptive clocking
    EXPECT_TRUE(programmer.ConfirmAdaptiveClocking());
    UseHighSpeedPod();
    programmer.settings.ftd2xxAdaptiveClocking = false;
    EXPECT_TRUE(programmer.ConfirmAdaptiveClocking());
    UseHighSpeedPod();
    programmer.settings.cableType = OmCableType::JLinkUsb;
    EXPECT_TRUE(programmer.ConfirmAdaptiveClocking());
}

TEST_F(Connection, JtagResetNeedsNoSetup) {
    programmer.SetDesignSetup(OmDesignSetup());
    EXPECT_TRUE(programmer.JtagReset());
    EXPECT_EQ(target.resets, 1);
}

TEST_F(Connection, JtagResetStopsAtAnUnopenedCable) {
    programmer.createCable = [](OmConnectionSettings&) { return std::unique_ptr<OmCable>(); };
    ui.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    EXPECT_FALSE(programmer.JtagReset());
}

TEST_F(Connection, JtagResetStopsAtADeclinedAdaptiveClocking) {
    UseHighSpeedPod();
    ui.Expect(kAdaptiveClockingWarning, kLossQuestionBox, OmAnswer::No, L"Warning");
    EXPECT_FALSE(programmer.JtagReset());
    EXPECT_EQ(target.resets, 0);
}

TEST_F(Connection, ExamineAndCaptureOpenTheCableAndShowABusyCursor) {
    EXPECT_TRUE(programmer.ExamineChain(chain, atmelBug));
    EXPECT_EQ(chain.size(), 1u);
    EXPECT_FALSE(atmelBug);
    EXPECT_EQ(ui.busyCount, 1);
    programmer.CloseCable();
    OmBitVector bits;
    EXPECT_TRUE(programmer.CaptureChainIr(bits));
    EXPECT_EQ(bits, (OmBitVector{1, 0, 0, 0}));
    EXPECT_EQ(ui.busyCount, 2);
    EXPECT_EQ(cablesMade, 2);
}

TEST_F(Connection, ExamineOfADeadChainAnswersFalseWithoutABox) {
    target.tdoStuckAt = 1;
    EXPECT_FALSE(programmer.ExamineChain(chain, atmelBug));
    OmBitVector bits;
    EXPECT_FALSE(programmer.CaptureChainIr(bits));
}

TEST_F(Connection, BrokenConnectionIsToldAndClosed) {
    OmBitVector bits;
    const std::function<bool()> actions[] = {
        [&] { return programmer.JtagReset(); },
        [&] { return programmer.ExamineChain(chain, atmelBug); },
        [&] { return programmer.CaptureChainIr(bits); },
    };
    for (const std::function<bool()>& action : actions) {
        target.callsUntilFailure = 0;
        ui.Expect(L"The pod has gone.", kErrorBox);
        EXPECT_FALSE(action());
        EXPECT_EQ(programmer.cable, nullptr);
        EXPECT_EQ(programmer.analyzer, nullptr);
        EXPECT_EQ(target.cablesOpen, 0);
        target.callsUntilFailure = -1;
        EXPECT_TRUE(action()) << "the next action opens the connection anew";
    }
}
