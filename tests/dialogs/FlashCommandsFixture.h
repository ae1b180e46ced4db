// The main window over a board behind a fake cable: two 8-bit chips on a 16-bit bus with 256 words,
// so 512 bytes in 16 sectors of 32 bytes each.
#pragma once

#include "app/CommandIds.h"
#include "data/DataFiles.h"
#include "flash/FlashProgrammer.h"
#include "tests/dialogs/DialogActions.h"
#include "tests/flash/FakeTarget.h"
#include "tests/support/VirtualClock.h"
#include "tests/windows/MainWindow.h"

class FlashCommandsTest : public MainWindowTest {
  protected:
    FlashCommandsTest() {
        programmer_.CloseCable();
        programmer_.createCable = [this](OmConnectionSettings&) {
            ++cablesMade_;
            return target_.MakeCable();
        };
    }

    ~FlashCommandsTest() override {
        programmer_.CloseCable();
        programmer_.createCable = CreateCable;
        programmer_.SetDesignSetup(OmDesignSetup());
    }

    // A setup that describes the board; without sectors, the board does not tell them either.
    void UseSetup(int commandSet, bool withSectors = true) {
        for (FakeFlashChip& chip : target_.chips)
            chip.family =
                commandSet == kCmdSetIntel ? FakeFlashFamily::Intel : FakeFlashFamily::Amd;
        OmDesignSetup setup = target_.MakeSetup(commandSet);
        if (!withSectors)
            setup.sectors = OmFlashSectorLayout();
        programmer_.SetDesignSetup(setup);
    }

    // Loads a data file.
    void LoadData(const OmDataImage& image) {
        const wxString path = folder_.Path("data.srec");
        ASSERT_TRUE(WriteSRecordFile(path.ToStdString(), image));
        ASSERT_TRUE(frame_->LoadDataFile(path));
    }

    // The same, from `address` up.
    void LoadData(uint32_t address, const std::vector<uint8_t>& bytes) {
        OmDataImage image;
        image.SetBytes(address, bytes);
        LoadData(image);
    }

    void ExpectMissingSectorsBox() {
        user_.Expect(
            L"The detected flash is not CFI-compliant and does not provide sectors information. "
            L"For non-CFI devices, sectors configuration can be manually entered using Setup "
            L"dialog. Without this information it will not be possible to erase individual sectors "
            L"and to lock/unlock sectors. In addition, if a chip does not support the 'full chip "
            L"erase' command the entire flash erase operation will also be disabled.",
            kWarningBox);
    }

    // Puts bytes into the flash from image address 0, behind the program's back.
    void FillFlash(const std::vector<uint8_t>& bytes) {
        for (size_t i = 0; i < bytes.size(); ++i)
            target_.chips[i % 2].cells[static_cast<uint32_t>(i / 2)] = bytes[i];
    }

    // Bytes of the flash from image address `from`.
    std::vector<uint8_t> FlashBytes(size_t from, size_t count) const {
        const std::vector<uint8_t> content = target_.Content(from + count);
        return {content.begin() + static_cast<ptrdiff_t>(from), content.end()};
    }

    // Numbers of the sectors that were erased, in order.
    std::vector<uint32_t> ErasedSectors() const {
        std::vector<uint32_t> sectors;
        for (const uint32_t word : target_.chips[0].erased)
            sectors.push_back(word / target_.chips[0].sectorWords);
        return sectors;
    }

    VirtualClock clock_;
    FakeTarget target_{2, 1, 8};
    OmFlashProgrammer& programmer_ = OmFlashProgrammer::GetInstance();
    int cablesMade_ = 0;
};

using Bytes = std::vector<uint8_t>;
using Sectors = std::vector<uint32_t>;

inline constexpr wchar_t kEraseDisabledText[] =
    L"Erase operation is disabled because:\n1) Sectors configuration is unknown and so erasure of "
    L"individual sectors is not possible\n2) This chip does not support the 'full chip erase' "
    L"command.\n\nTo enable erase operation, please enter the sectors configuration using Setup "
    L"dialog.";
