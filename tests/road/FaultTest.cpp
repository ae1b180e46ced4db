// A connection that breaks: every call of the vendor's library made to fail in turn, and the pod
// pulled out at every moment. The user is told, the cable is closed, the data stay, and the next
// action works.
#include "tests/road/RoadFixture.h"
#include "tests/road/SilentUser.h"
#include "virtualboard/UsbHost.h"

namespace {

const ShownMessage kNoCable{L"Failed to initialize a JTAG connection", kProductName, kErrorBox};
const ShownMessage kBroken{L"JTAG connection error", kProductName, kErrorBox};
const ShownMessage kNoChain{L"No JTAG chain detected.", L"Error", kWarningBox};
const ShownMessage kNoIr{L"Failed to capture JTAG chain IR bits.", L"Error", kWarningBox};

using Boxes = std::vector<ShownMessage>;

// What a connection that breaks may say, by the moment at which it breaks.
bool IsExpected(const Boxes& boxes) {
    return boxes == Boxes{kNoCable} || boxes == Boxes{kBroken} ||
           boxes == Boxes{kBroken, kNoChain} || boxes == Boxes{kBroken, kNoIr};
}

vb::BoardBuilder SmallBoard() {
    vb::BoardBuilder builder;
    builder.Devices(1)
        .Set("sectors", "4x4K")
        .Set("sector-us", "20")
        .Set("window-us", "5")
        .Set("buffer", "0");
    return builder;
}

class Fault : public ::testing::Test {
  protected:
    Fault() : bytes(Firmware(64, 9)) { image.SetBytes(0, bytes); }

    vb::PodFaults& Faults() { return road.board->Pods().faults; }

    static uint64_t CallsOf(const std::string& function) {
        return vb::CurrentUsbHost()->Calls(function);
    }

    // Everything that the Program command does.
    bool ProgramAll() {
        return road.PrepareToProgram() &&
               road.programmer.EraseSectors(road.progress, road.SectorsOf(image)) &&
               road.programmer.ProgramFlash(road.progress, image) &&
               road.programmer.VerifyFlash(road.united, image);
    }

    void ExpectFailureHandled(const std::string& what) {
        EXPECT_TRUE(IsExpected(user.boxes)) << what << ": " << user.boxes.size() << " boxes, first "
                                            << (user.boxes.empty() ? kNoCable : user.boxes.front());
        EXPECT_EQ(user.busy, 0) << what;
        EXPECT_EQ(road.programmer.cable, nullptr) << what;
        EXPECT_EQ(image.GetChunks().front().bytes, bytes) << what;
    }

    void ExpectNextActionWorks(const std::string& what) {
        user.boxes.clear();
        EXPECT_TRUE(ProgramAll()) << what;
        EXPECT_TRUE(user.boxes.empty()) << what << ": " << user.boxes.front();
        road.ExpectContent(bytes);
        road.programmer.CloseCable();
    }

    SilentUser user;
    Road road{SmallBoard()};
    std::vector<uint8_t> bytes;
    OmDataImage image;
};

} // namespace

TEST_F(Fault, EachCallThatFailsOnceIsSurvived) {
    enum class Effect { Ends, Harmless, Either };

    struct Function {
        const char* name;
        Effect effect;
    };

    const Function functions[] = {
        {"FT_CreateDeviceInfoList", Effect::Either}, // one list a maker: another may have the pod
        {"FT_GetDeviceInfoDetail", Effect::Ends},
        {"FT_OpenEx", Effect::Ends},
        {"FT_GetDeviceInfo", Effect::Harmless},
        {"FT_ResetDevice", Effect::Harmless},
        {"FT_SetUSBParameters", Effect::Harmless},
        {"FT_Purge", Effect::Harmless},
        {"FT_SetLatencyTimer", Effect::Harmless},
        {"FT_SetBitMode", Effect::Either},     // a pod without MPSSE answers nothing later
        {"FT_GetQueueStatus", Effect::Either}, // of no matter while the pod is set up
        {"FT_Write", Effect::Ends},
        {"FT_Read", Effect::Ends},
    };
    // A connection that breaks in mid-cycle leaves the pins as they are, and the next one begins by
    // finding its chain, which gives them back to the core.
    road.board->Violations().Tolerate([](const vb::Violation& violation) {
        return violation.kind == vb::ViolationKind::CoreReleased;
    });
    for (const Function& function : functions) {
        for (uint64_t call = 1;; ++call) {
            const uint64_t before = CallsOf(function.name);
            Faults().failingCalls = {{function.name, before + call}};
            user.boxes.clear();
            const std::string what = std::string(function.name) + " call " + std::to_string(call);
            const bool good = ProgramAll();
            if (CallsOf(function.name) < before + call)
                break; // the action has no such call
            if (function.effect != Effect::Either) {
                EXPECT_EQ(good, function.effect == Effect::Harmless) << what;
            }
            if (!good)
                ExpectFailureHandled(what);
            road.programmer.CloseCable();
            ExpectNextActionWorks(what);
            if (HasFailure())
                return; // one failure tells enough
        }
    }
}

TEST_F(Fault, PodPulledOutAtAnyMomentIsSurvived) {
    for (uint64_t calls = 1;; ++calls) {
        Faults().unplugAfterCalls = calls;
        user.boxes.clear();
        if (ProgramAll())
            break;
        const std::string what = "pulled out after " + std::to_string(calls) + " calls";
        ExpectFailureHandled(what);
        user.boxes.clear();
        EXPECT_FALSE(ProgramAll());
        EXPECT_EQ(user.boxes, Boxes{kNoCable}) << what;
        road.Replug();
        ExpectNextActionWorks(what);
        road.Replug();
        if (HasFailure())
            return;
    }
}

TEST_F(Fault, ReadThatNeverCompletesIsGivenUp) {
    ASSERT_TRUE(road.PrepareToProgram());
    Faults().readsNeverComplete = true;
    const uint64_t started = GetClock().Milliseconds();
    EXPECT_FALSE(road.programmer.ProgramFlash(road.progress, image));
    EXPECT_LT(GetClock().Milliseconds() - started, 1000u);
    ExpectFailureHandled("read that never completes");
    Faults().readsNeverComplete = false;
    ExpectNextActionWorks("read that never completes");
}

TEST_F(Fault, AnswersInPiecesAreNoFault) {
    Faults().shortReadBytes = 4096;
    EXPECT_TRUE(ProgramAll());
    EXPECT_TRUE(user.boxes.empty());
}

TEST_F(Fault, DeadTdoIsNoticedByTheFirstWordRead) {
    struct Case {
        vb::TdoFault tdo;
        bool disableValue; // of the control cells: the other level seems to drive
    };

    for (const Case& c :
         {Case{vb::TdoFault::StuckLow, true}, Case{vb::TdoFault::StuckHigh, false}}) {
        Road other(SmallBoard().DisableValue(c.disableValue));
        ASSERT_TRUE(other.PrepareToProgram());
        other.board->Chain().SetTdoFault(c.tdo);
        OmDataImage readInto;
        user.boxes.clear();
        EXPECT_FALSE(other.programmer.ReadFlash(other.progress, 0, 16, readInto));
        EXPECT_EQ(user.boxes, (Boxes{{L"ERROR: invalid bit sequence received from the JTAG chain. "
                                      L"Check power and JTAG adapter connections.",
                                      kProductName, kErrorBox}}));
        EXPECT_EQ(other.programmer.cable, nullptr);
        EXPECT_TRUE(readInto.IsEmpty());
    }
}

TEST_F(Fault, BoardWithoutPowerHasNoChain) {
    road.board->Chain().SetPower(false);
    EXPECT_FALSE(road.PrepareToProgram());
    EXPECT_EQ(user.boxes, Boxes{kNoChain});
    road.board->Chain().SetPower(true);
    user.boxes.clear();
    EXPECT_TRUE(ProgramAll());
}

TEST_F(Fault, PodInOtherHandsIsSaidAtOnce) {
    road.board->Pods().entries.front().open = true; // another program holds it
    EXPECT_FALSE(road.PrepareToProgram());
    EXPECT_EQ(user.boxes, Boxes{kNoCable});
}
