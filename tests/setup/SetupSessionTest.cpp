#include "setup/SetupSession.h"

#include "tests/setup/PinDevice.h"
#include "tests/support/RecordingUserInterface.h"

#include <gtest/gtest.h>

namespace {

std::unique_ptr<OmBsdlData> MakeOtherData() {
    auto data = std::make_unique<OmBsdlData>();
    data->entity = "other";
    data->AddAttribute("INSTRUCTION_LENGTH", "other", "entity", "6");
    data->AddPort("OTHER", "out", -1, -1);
    data->AddPinMapEntry("MAP", "OTHER", -1, "1");
    return data;
}

class SetupSessionTest : public testing::Test {
  protected:
    SetupSessionTest() : setup_(MakePinSetup()), session_(setup_) {
        session_.onPinsChanged = [this] { ++pinChanges_; };
        session_.onChainChanged = [this](const OmDroppedPins& dropped) {
            ++chainChanges_;
            dropped_ = dropped;
        };
    }

    void Connect(SignalPin& pin, const char* port, int bit = -1) {
        session_.BeginChange();
        pin = SignalPin{{0, port, bit}};
        session_.EndChange();
    }

    RecordingUserInterface boxes_;
    OmDesignSetup setup_;
    OmSetupSession session_;
    int pinChanges_ = 0;
    int chainChanges_ = 0;
    OmDroppedPins dropped_;
};

} // namespace

TEST_F(SetupSessionTest, StartTakesALoadedFileAsItIs) {
    setup_.ce = SignalPin{{3, "SEL", -1}};
    setup_.sectors.groups = {{8, 8192}};
    session_.Start();
    EXPECT_FALSE(setup_.ce.IsConnected());
    EXPECT_FALSE(session_.sectorsFromFlash);
    EXPECT_FALSE(session_.CanUndo());
}

TEST_F(SetupSessionTest, ChangeOfPinsIsCheckedAndTold) {
    Connect(setup_.ce, "SEL");
    EXPECT_FALSE(session_.conflicts.Any());
    Connect(setup_.oe, "SEL");
    EXPECT_TRUE(session_.conflicts.Any());
    EXPECT_EQ(pinChanges_, 2);
}

TEST_F(SetupSessionTest, UndoTakesBackStepByStep) {
    for (int bit = 0; bit < 12; ++bit)
        Connect(setup_.addressPins[0], "ADDR", bit);
    for (int bit = 10; bit >= 0; --bit) {
        ASSERT_TRUE(session_.Undo());
        EXPECT_EQ(setup_.addressPins[0].PortIndex, bit);
    }
    ASSERT_TRUE(session_.Undo());
    EXPECT_FALSE(setup_.addressPins[0].IsConnected());
    EXPECT_FALSE(session_.Undo());
    EXPECT_EQ(chainChanges_, 0);
}

TEST_F(SetupSessionTest, UndoChecksAnewWhatIsInConflict) {
    Connect(setup_.ce, "SEL");
    Connect(setup_.oe, "SEL");
    session_.Undo();
    EXPECT_FALSE(session_.conflicts.Any());
}

TEST_F(SetupSessionTest, UndoRestoresTheFlashArray) {
    session_.BeginChange();
    setup_.ChipCount = 2;
    setup_.CmdSet = kCmdSetAmd;
    setup_.UseBufferedProg = false;
    setup_.DontCheckStatus = true;
    setup_.UseUnlockBypass = true;
    setup_.sectors.groups = {{1, 1}};
    session_.sectorsFromFlash = true;
    session_.EndChange();
    ASSERT_TRUE(session_.Undo());
    EXPECT_EQ(setup_, MakePinSetup());
    EXPECT_FALSE(session_.sectorsFromFlash);
}

TEST_F(SetupSessionTest, OldStepsAreForgotten) {
    for (int change = 0; change < 1000; ++change)
        Connect(setup_.ce, "SEL");
    int undone = 0;
    while (session_.Undo())
        ++undone;
    EXPECT_EQ(undone, 50);
}

TEST_F(SetupSessionTest, NewBsdlThatNoPinRefersToAsksNothing) {
    EXPECT_TRUE(session_.AssignBsdl(0, MakeOtherData(), "/boards/other.bsd"));
    EXPECT_EQ(setup_.devices[0].bsdl->entity, "other");
    EXPECT_EQ(setup_.devices[0].BsdlFile, "/boards/other.bsd");
    EXPECT_EQ(setup_.devices[0].PinMapping, "MAP");
    EXPECT_EQ(chainChanges_, 1);
    EXPECT_EQ(dropped_, OmDroppedPins());
}

TEST_F(SetupSessionTest, NewBsdlForgetsTheEnteredIrLengthAndResolvesTheOthers) {
    setup_.devices.emplace_back();
    setup_.devices[0].IRLen = 9;
    setup_.irCapture = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0};
    session_.AssignBsdl(0, MakeOtherData(), "");
    EXPECT_EQ(setup_.devices[0].IRLen, -1);
    EXPECT_EQ(setup_.devices[1].GetIRLength(), 5); // 11 bits less 6
}

TEST_F(SetupSessionTest, NewBsdlThatCostsPinsAsks) {
    setup_.ce = SignalPin{{0, "SEL", -1}};
    boxes_.Expect(L"Selecting a new BSDL file for the device will reset the device pins settings "
                  L"on the 'Signal pins' tab.\nDo you wish to continue applying the new BSDL file?",
                  kLossQuestionBox, OmAnswer::No);
    const OmDesignSetup before = setup_;
    EXPECT_FALSE(session_.AssignBsdl(0, MakeOtherData(), "other.bsd"));
    EXPECT_EQ(setup_, before);
    EXPECT_EQ(chainChanges_, 0);
    EXPECT_FALSE(session_.CanUndo());

    boxes_.Expect(L"Selecting a new BSDL file for the device will reset the device pins settings "
                  L"on the 'Signal pins' tab.\nDo you wish to continue applying the new BSDL file?",
                  kLossQuestionBox, OmAnswer::Yes);
    EXPECT_TRUE(session_.AssignBsdl(0, nullptr, ""));
    EXPECT_FALSE(setup_.ce.IsConnected());
    EXPECT_EQ(dropped_, (OmDroppedPins{true, false}));

    ASSERT_TRUE(session_.Undo());
    EXPECT_EQ(setup_, before);
    EXPECT_EQ(chainChanges_, 2);
}

TEST_F(SetupSessionTest, NewChainThatCostsPinsAsks) {
    setup_.staticPins = {StaticPin{{0, "SEL", -1}, 0, L""}};
    const std::vector<OmBitVector> devices(2);
    const std::wstring question =
        L"Changing the JTAG chain configuration will reset settings on the 'Static pins' tab.\nDo "
        L"you wish to continue applying the new JTAG chain configuration?";
    boxes_.Expect(question, kLossQuestionBox, OmAnswer::No);
    EXPECT_FALSE(session_.ReplaceChain(devices, {}));
    EXPECT_EQ(setup_.devices.size(), 1u);
    boxes_.Expect(question, kLossQuestionBox, OmAnswer::Yes);
    EXPECT_TRUE(session_.ReplaceChain(devices, {}));
    EXPECT_EQ(setup_.devices.size(), 2u);
    EXPECT_TRUE(setup_.staticPins.empty());
    EXPECT_EQ(dropped_, (OmDroppedPins{false, true}));
}

TEST_F(SetupSessionTest, ChangeToWhatIsThereIsNone) {
    session_.ChoosePinMapping(0, "BGA");
    session_.EnterIrLength(0, -1);
    EXPECT_FALSE(session_.CanUndo());
    session_.ChoosePinMapping(0, "QFP");
    EXPECT_EQ(setup_.devices[0].PinMapping, "QFP");
    EXPECT_EQ(session_.pins.FormatPin({0, "SEL", -1}), L"100 / SEL");
}

TEST_F(SetupSessionTest, EnteredIrLengthResolvesTheOthers) {
    setup_.devices.assign(2, OmChainDevice());
    setup_.irCapture = {1, 0, 1, 0, 1, 0, 0}; // without the length more than one split fits
    session_.EnterIrLength(0, 3);
    EXPECT_EQ(setup_.devices[0].IRLen, 3);
    EXPECT_EQ(setup_.devices[1].GetIRLength(), 4);
}
