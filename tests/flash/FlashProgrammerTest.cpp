#include "flash/FlashProgrammer.h"

#include "setup/SetupFile.h"
#include "tests/flash/ProgrammerFixture.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <wx/fileconf.h>
#include <wx/sstream.h>

namespace {

constexpr wchar_t kCheckTitle[] = L"Setup Integrity Check Error";

class Programmer : public ProgrammerFixture {
  protected:
    Programmer() : ProgrammerFixture(1, 2, 8) {}

    OmDesignSetup AmdSetup() const { return target.MakeSetup(kCmdSetAmd); }
};

} // namespace

TEST_F(Programmer, PrepareNeedsAChain) {
    ui.Expect(L"No JTAG chain defined.", kWarningBox);
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
    EXPECT_EQ(cablesMade, 0);
    EXPECT_FALSE(programmer.setupChecked);
}

TEST_F(Programmer, PrepareAsksAboutOddSetupsOnceOnly) {
    OmDesignSetup setup = AmdSetup();
    setup.addressPins[3].Device = -1;
    programmer.SetDesignSetup(setup);
    ui.Expect(L"One or more flash address pins have been skipped on the Signal pins list.\n\n"
              L"Ignore this warning and proceed anyway?",
              kWarningQuestionBox, OmAnswer::Yes, L"Setup Integrity Check Warning");
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    programmer.SetDesignSetup(setup);
    ui.Expect(L"One or more flash address pins have been skipped on the Signal pins list.\n\n"
              L"Ignore this warning and proceed anyway?",
              kWarningQuestionBox, OmAnswer::No, L"Setup Integrity Check Warning");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareStopsAtACableThatDoesNotOpen) {
    programmer.SetDesignSetup(AmdSetup());
    programmer.createCable = [](OmConnectionSettings&) { return std::unique_ptr<OmCable>(); };
    ui.Expect(L"Failed to initialize a JTAG connection", kErrorBox);
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareAsksAboutAdaptiveClockingOnHighSpeedPodsOnly) {
    programmer.SetDesignSetup(AmdSetup());
    programmer.settings.cableType = OmCableType::Ftd2xx;
    programmer.settings.ftd2xxAdaptiveClocking = true;
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareStopsAtAnotherChain) {
    programmer.SetDesignSetup(AmdSetup());
    target.devices.push_back({0x12345671, 4});
    ui.Expect(L"The detected JTAG chain does not conform to current setup:\n"
              L"number of detected devices is different from what is specified in the setup.",
              kWarningBox, OmAnswer::Ok, L"Error");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareStopsAtADeadChain) {
    programmer.SetDesignSetup(AmdSetup());
    target.tdoStuckAt = 1;
    ui.Expect(L"No JTAG chain detected.", kWarningBox, OmAnswer::Ok, L"Error");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareAsksAboutAForeignIdcodeOnce) {
    OmDesignSetup setup = AmdSetup();
    setup.devices[0].Idcode = OmBitVector(32, 1);
    setup.devices[0].bsdl->AddIdcode("00001011101000010000010001110111"); // 0BA10477h
    programmer.SetDesignSetup(setup);
    const std::wstring question =
        L"The BSDL file specified for the Dev1 (FAKE) device does not conform to this device's "
        L"detected IDCODE.\n\nIgnore this warning and proceed anyway?";
    ui.Expect(question, kWarningQuestionBox, OmAnswer::No, L"Warning");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
    ui.Expect(question, kWarningQuestionBox, OmAnswer::Yes, L"Warning");
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));

    setup.CmdSet = kCmdSetIntel; // not the chain
    programmer.SetDesignSetup(setup);
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));

    setup.irCapture = {1, 0, 0, 0}; // the chain
    programmer.SetDesignSetup(setup);
    EXPECT_TRUE(programmer.acceptedMismatches.empty());
}

TEST_F(Programmer, PrepareFindsTheIrLengthOfADeviceNobodyKnows) {
    OmDesignSetup setup = AmdSetup();
    setup.devices.emplace_back();
    programmer.SetDesignSetup(setup);
    target.devices.push_back({0x12345671, 6});
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    ASSERT_EQ(programmer.analyzer->devices.size(), 2u);
    EXPECT_EQ(programmer.analyzer->devices[1].irLength, 6u);
}

TEST_F(Programmer, PrepareStopsAtAnIrLengthThatNothingSettles) {
    OmDesignSetup setup = AmdSetup();
    setup.devices.emplace_back();
    programmer.SetDesignSetup(setup);
    target.devices[0].irLength = 5; // not what the data say
    target.devices.push_back({0x12345671, 6});
    ui.Expect(L"The IR (Instruction Register) length of Dev2 device is unknown.\nPlease, specify "
              L"either the BSDL file or the IR length for this or some other device(s).",
              kWarningBox, OmAnswer::Ok, L"Error");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareStopsAtAnotherIrLength) {
    programmer.SetDesignSetup(AmdSetup());
    target.devices[0].irLength = 5;
    ui.Expect(L"The detected JTAG chain does not conform to current setup:\n"
              L"the detected IR length and the IR length set by user (manually or by means of a "
              L"BSDL file) are different at least for one of the devices.",
              kWarningBox, OmAnswer::Ok, L"Error");
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareNamesEachDeviceWhoseDataCannotDriveIt) {
    OmDesignSetup setup = AmdSetup();
    setup.devices[0].bsdl->instructions.clear();
    programmer.SetDesignSetup(setup);
    ui.Expect(L"The BSDL file specified for Dev1 (FAKE) device contains errors: failed to read "
              L"EXTEST instruction code from the BSDL file.\n\n"
              L"The BSDL file specified for Dev1 (FAKE) device contains errors: failed to read "
              L"PRELOAD and SAMPLE instructions codes from the BSDL file.",
              kWarningBox, OmAnswer::Ok, kCheckTitle);
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));

    setup.devices[0].IRLen = 4;
    setup.devices[0].SetBsdl(nullptr, "");
    programmer.SetDesignSetup(setup);
    ui.Expect(L"BSDL file is required to be specified for Dev1 device.", kWarningBox, OmAnswer::Ok,
              kCheckTitle);
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareNamesAPinThatHasNoBoundaryCell) {
    OmDesignSetup setup = AmdSetup();
    setup.dataPins[5].PortName = "GHOST";
    programmer.SetDesignSetup(setup);
    ui.Expect(L"Dev1 (FAKE) GHOST(5) pin, connected to flash D5 pin, is not available for "
              L"boundary-scan.",
              kWarningBox, OmAnswer::Ok, kCheckTitle);
    EXPECT_FALSE(programmer.Prepare(kPrepareNone));
}

TEST_F(Programmer, PrepareFillsTheInstructionTableOncePerConnection) {
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    ASSERT_EQ(programmer.analyzer->devices.size(), 1u);
    EXPECT_EQ(programmer.analyzer->devices[0].irLength, 4u);
    programmer.analyzer->devices[0].second = 77; // a mark
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    EXPECT_EQ(programmer.analyzer->devices[0].second, 77);
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    EXPECT_EQ(programmer.analyzer->devices[0].second, -1);
}

TEST_F(Programmer, PrepareWithoutFlagsTouchesNoFlash) {
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_TRUE(programmer.Prepare(kPrepareNone));
    EXPECT_EQ(target.boundaryScans, 0);
    EXPECT_EQ(programmer.commandSet, OmCommandSet::Unknown);
    EXPECT_FALSE(programmer.sectorsValid);
}

TEST_F(Programmer, PrepareTakesCommandSetAndSectorsFromTheSetup) {
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_TRUE(programmer.Prepare(15));
    EXPECT_EQ(programmer.commandSet, OmCommandSet::AmdWord);
    EXPECT_TRUE(programmer.sectorsValid);
    EXPECT_EQ(programmer.sectors, programmer.setup.sectors);
}

TEST_F(Programmer, PrepareStopsAtAnUnidentifiedFlashOnlyIfToldTo) {
    programmer.SetDesignSetup(target.MakeSetup(kCmdSetAuto));
    ui.Expect(L"Failed to identify flash command set (or command set is unsupported).",
              kWarningBox);
    EXPECT_FALSE(programmer.Prepare(15));
    EXPECT_TRUE(programmer.Prepare(11));
    EXPECT_EQ(programmer.commandSet, OmCommandSet::Unknown);
}

TEST_F(Programmer, PrepareGoesOnWithoutSectors) {
    OmDesignSetup setup = AmdSetup();
    setup.sectors = OmFlashSectorLayout();
    programmer.SetDesignSetup(setup);
    ui.Expect(L"The detected flash is not CFI-compliant and does not provide sectors information. "
              L"For non-CFI devices, sectors configuration can be manually entered using Setup "
              L"dialog. Without this information it will not be possible to erase individual "
              L"sectors and to lock/unlock sectors. In addition, if a chip does not support the "
              L"'full chip erase' command the entire flash erase operation will also be disabled.",
              kWarningBox);
    EXPECT_TRUE(programmer.Prepare(15));
    EXPECT_TRUE(programmer.sectors.IsEmpty());
}

// The first two calls detect the chain and the next two capture its instruction registers; both say
// in a second box what their failure means.
TEST_F(Programmer, BrokenConnectionEndsPrepareWithABox) {
    programmer.SetDesignSetup(target.MakeSetup(kCmdSetAuto));
    for (int call = 0; call < 60; ++call) {
        SCOPED_TRACE(call);
        target.callsUntilFailure = call;
        ui.Expect(L"The pod has gone.", kErrorBox);
        if (call < 2)
            ui.Expect(L"No JTAG chain detected.", kWarningBox, OmAnswer::Ok, L"Error");
        else if (call < 4)
            ui.Expect(L"Failed to capture JTAG chain IR bits.", kWarningBox, OmAnswer::Ok,
                      L"Error");
        EXPECT_FALSE(programmer.Prepare(15));
        ExpectClosed();
    }
}

TEST_F(Programmer, NewSetupForgetsWhatWasFound) {
    Ready(OmCommandSet::AmdWord);
    programmer.waitScans = 12;
    programmer.bufferBytes = 32;
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_EQ(programmer.commandSet, OmCommandSet::Unknown);
    EXPECT_EQ(programmer.waitScans, 0);
    EXPECT_FALSE(programmer.sectorsValid);
    EXPECT_TRUE(programmer.sectors.IsEmpty());
    EXPECT_FALSE(programmer.setupChecked);
    EXPECT_TRUE(programmer.analyzer->devices.empty());
    EXPECT_EQ(programmer.bufferBytes, 32u);
}

TEST_F(Programmer, SetupGoesThroughAFile) {
    const TemporaryFolder folder;
    const std::string path = folder.Path("target.velflash");
    programmer.SetDesignSetup(AmdSetup());
    EXPECT_TRUE(programmer.SaveDesignSetup(path));
    programmer.SetDesignSetup(OmDesignSetup());
    EXPECT_TRUE(programmer.LoadDesignSetup(path));
    EXPECT_EQ(programmer.setup.WordSize, 2);
    EXPECT_EQ(programmer.setup.addressPins.size(), 8u);
    EXPECT_EQ(ui.busyCount, 2);
}

TEST_F(Programmer, SetupThatCannotBeReadChangesNothing) {
    const TemporaryFolder folder;
    programmer.SetDesignSetup(AmdSetup());
    programmer.waitScans = 5;
    EXPECT_FALSE(programmer.LoadDesignSetup(folder.Path("missing.velflash")));
    EXPECT_EQ(programmer.setup.GetDeviceCount(), 1u);
    EXPECT_EQ(programmer.waitScans, 5);
    EXPECT_FALSE(programmer.SaveDesignSetup(folder.Path("no/such/folder.velflash")));
}

TEST(ProgrammerInstance, IsOneAndHasTheStoredConnectionSettings) {
    wxStringInputStream store("ConnCableType=7\nConnJLinkUsbNum=2\n");
    wxFileConfig config(store, wxConvUTF8);
    wxConfigBase* previous = wxConfigBase::Set(&config);
    OmFlashProgrammer& instance = OmFlashProgrammer::GetInstance();
    EXPECT_EQ(instance.settings.cableType, OmCableType::JLinkUsb);
    EXPECT_EQ(instance.settings.jlinkUsbNumber, 2);
    config.Write("ConnJLinkUsbNum", 3L);
    EXPECT_EQ(&OmFlashProgrammer::GetInstance(), &instance);
    EXPECT_EQ(instance.settings.jlinkUsbNumber, 2) << "read on the first use alone";
    wxConfigBase::Set(previous);
    EXPECT_EQ(OmFlashProgrammer().settings.cableType, OmCableType::XilinxParallelCable3);
}

TEST(ProgrammerSize, CountsAllChipsAndAddressPins) {
    struct Case {
        int chips;
        int wordSize;
        size_t addressPins;
        uint32_t bytes;
    };

    const Case cases[] = {
        {1, 1, 0, 1},           {1, 2, 8, 512},         {2, 2, 20, 4194304},
        {4, 1, 24, 67108864},   {3, 1, 2, 12},          {1, 1, 31, 0x80000000},
        {1, 1, 32, 0xFFFFFFFF}, {4, 4, 40, 0xFFFFFFFF}, {-1, -1, 8, 0},
    };
    for (const Case& c : cases) {
        OmFlashProgrammer programmer;
        programmer.setup.ChipCount = c.chips;
        programmer.setup.WordSize = c.wordSize;
        programmer.setup.addressPins.resize(c.addressPins);
        EXPECT_EQ(programmer.GetFlashSizeBytes(), c.bytes)
            << c.chips << " " << c.wordSize << " " << c.addressPins;
    }
}

TEST_F(Programmer, IntelIsAskedForWhereTheFlashIsAnother) {
    const std::wstring text =
        L"It seems like the connected flash does not support neither Intel Standard (Basic) nor "
        L"Intel Extended (Scaleable) command set.\n\nIgnore this warning and proceed anyway?";
    for (const OmCommandSet set :
         {OmCommandSet::Unknown, OmCommandSet::AmdWord, OmCommandSet::AmdBuffered}) {
        programmer.commandSet = set;
        ui.Expect(text, kWarningQuestionBox, OmAnswer::No, L"Warning");
        EXPECT_FALSE(programmer.ConfirmIntelCommandSet());
        ui.Expect(text, kWarningQuestionBox, OmAnswer::Yes, L"Warning");
        EXPECT_TRUE(programmer.ConfirmIntelCommandSet());
    }
    for (const OmCommandSet set : {OmCommandSet::IntelStandard, OmCommandSet::IntelExtended}) {
        programmer.commandSet = set;
        EXPECT_TRUE(programmer.ConfirmIntelCommandSet());
    }
}
