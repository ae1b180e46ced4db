// Jobs over two 8-bit chips on a 16-bit bus with 256 words: 512 bytes in 16 sectors of 32 bytes.
#pragma once

#include "tests/flash/ProgrammerFixture.h"

#include <string>

// Keeps what was announced, one entry a step, among the texts of the reports.
class StepProgress : public OmProgressCallback {
  public:
    bool OnProgress(int percent, const wchar_t* message) override {
        if (message)
            steps.push_back(
                std::string(message, message + std::char_traits<wchar_t>::length(message)));
        percents.push_back(percent);
        return true;
    }

    void OnFinish() override {}

    void Begin(uint64_t bytes) override { steps.push_back(std::to_string(bytes) + " bytes"); }

    void BeginSteps(uint64_t pieces) override {
        steps.push_back(std::to_string(pieces) + " pieces");
    }

    std::vector<std::string> steps;
    std::vector<int> percents;
};

using Steps = std::vector<std::string>;
using Bytes = std::vector<uint8_t>;

class JobsTest : public ProgrammerFixture {
  protected:
    JobsTest() : ProgrammerFixture(2, 1, 8) {}

    void UseSetup(int commandSet, bool withSectors = true) {
        for (FakeFlashChip& chip : target.chips)
            chip.family =
                commandSet == kCmdSetIntel ? FakeFlashFamily::Intel : FakeFlashFamily::Amd;
        OmDesignSetup setup = target.MakeSetup(commandSet);
        if (!withSectors)
            setup.sectors = OmFlashSectorLayout();
        programmer.SetDesignSetup(setup);
    }

    void ExpectMissingSectorsBox() {
        ui.Expect(
            L"The detected flash is not CFI-compliant and does not provide sectors information. "
            L"For non-CFI devices, sectors configuration can be manually entered using Setup "
            L"dialog. Without this information it will not be possible to erase individual sectors "
            L"and to lock/unlock sectors. In addition, if a chip does not support the 'full chip "
            L"erase' command the entire flash erase operation will also be disabled.",
            kWarningBox);
    }

    // Fills the flash from image address 0, behind the program's back.
    void FillFlash(const Bytes& bytes) {
        for (size_t i = 0; i < bytes.size(); ++i)
            target.chips[i % 2].cells[static_cast<uint32_t>(i / 2)] = bytes[i];
    }

    StepProgress steps;
};

inline constexpr wchar_t kEraseImpossible[] =
    L"Erase operation is disabled because:\n1) Sectors configuration is unknown and so erasure of "
    L"individual sectors is not possible\n2) This chip does not support the 'full chip erase' "
    L"command.\n\nTo enable erase operation, please enter the sectors configuration using Setup "
    L"dialog.";
