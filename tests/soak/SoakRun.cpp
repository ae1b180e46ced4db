#include "tests/soak/SoakRun.h"

#include "platform/Text.h"
#include "tests/road/BoardChecks.h"
#include "tests/road/RoadFixture.h"
#include "tests/road/SilentUser.h"
#include "tests/soak/RandomBoard.h"
#include "tests/soak/RandomImage.h"
#include "virtualboard/IntelFlash.h"

#include <algorithm>
#include <sstream>

namespace {

constexpr uint32_t kImageBytes = 6000;
constexpr uint32_t kMostImages = 2;

// What each chip should hold, byte by byte.
class ExpectedArray {
  public:
    explicit ExpectedArray(const Road& road)
        : chips_(road.built.chips, std::vector<uint8_t>(road.built.flash.SizeBytes(), 0xFF)),
          lane_(road.built.flash.WordBytes()) {}

    void Put(const OmDataImage& image) {
        for (const OmDataChunk& chunk : image.GetChunks())
            for (size_t i = 0; i < chunk.bytes.size(); ++i)
                At(chunk.address + i) &= chunk.bytes[i];
    }

    uint64_t Differences(vb::Board& board, std::string& first) const {
        uint64_t count = 0;
        for (size_t chip = 0; chip < chips_.size(); ++chip) {
            const std::vector<uint8_t>& bytes = board.Flash(chip).Model().Bytes();
            if (bytes == chips_[chip])
                continue;
            for (size_t i = 0; i < bytes.size(); ++i)
                if (bytes[i] != chips_[chip][i] && count++ == 0)
                    first = Describe(chip, i, bytes[i]);
        }
        return count;
    }

  private:
    uint8_t& At(size_t address) {
        const size_t lanes = address / lane_;
        return chips_[lanes % chips_.size()][lanes / chips_.size() * lane_ + address % lane_];
    }

    std::string Describe(size_t chip, size_t offset, unsigned found) const {
        std::ostringstream text;
        text << std::hex << "chip " << chip << " byte " << offset << "h is " << found
             << "h and should be " << unsigned{chips_[chip][offset]} << "h";
        return text.str();
    }

    std::vector<std::vector<uint8_t>> chips_;
    size_t lane_;
};

class Run {
  public:
    explicit Run(uint64_t seed) : dice_(seed), drawn_(DrawBoard(dice_)), road_(drawn_.builder) {
        result_.description = drawn_.description;
        road_.programmer.settings.ftd2xxFrequency = drawn_.frequency;
        road_.programmer.setup.UseBufferedProg = drawn_.buffered;
        road_.programmer.setup.UseUnlockBypass = drawn_.bypass;
    }

    SoakResult Go() {
        const bool erases = dice_.Percent(20);
        const uint32_t busBytes = road_.built.chips * road_.built.flash.WordBytes();
        LeaveState();
        Step(road_.PrepareToProgram(), "prepare");
        if (result_.failures.empty() && (erases || drawn_.intel))
            MakeReady(erases);
        ExpectedArray expected(road_);
        const uint32_t images = dice_.Between(1, kMostImages);
        for (uint32_t i = 0; i < images && result_.failures.empty(); ++i)
            Program(DrawImage(dice_, i * kImageBytes, kImageBytes, busBytes), expected);
        result_.scans = road_.board->DataScans();
        CheckIntel();
        const std::string violations = DescribeViolations(*road_.board);
        if (!violations.empty())
            Fail(violations);
        road_.board->Violations().Clear();
        return result_;
    }

  private:
    void Fail(const std::string& what) { result_.failures.push_back(what + Boxes()); }

    void Step(bool done, const char* name) {
        if (!done)
            Fail(std::string(name) + " fails on a healthy chip");
        else if (!user_.boxes.empty())
            Fail(std::string(name) + " has something to tell");
        user_.boxes.clear();
    }

    std::string Boxes() const {
        std::string text;
        for (const ShownMessage& box : user_.boxes)
            text += "\n    box: " + ToLocal(box.text);
        return text;
    }

    // An earlier host may have left the chips in any state that power alone would have ended.
    void LeaveState() {
        if (!dice_.Percent(15))
            return;
        const bool bypass = !drawn_.intel && road_.built.flash.unlockBypass && dice_.Percent(50);
        result_.description += bypass ? " left-in-bypass" : " left-in-autoselect";
        for (size_t chip = 0; chip < road_.board->FlashCount(); ++chip)
            LeaveState(road_.board->Flash(chip).Model(), bypass);
    }

    void LeaveState(vb::FlashModel& model, bool bypass) const {
        const unsigned shift = road_.built.flash.commandShift;
        if (!drawn_.intel) {
            model.Write(0x555u << shift, 0xAA);
            model.Write(0x2AAu << shift, 0x55);
        }
        model.Write(0x555u << shift, bypass ? 0x20 : 0x90);
    }

    void MakeReady(bool erases) {
        OmSectorRange sectors;
        const uint32_t sectorBytes = road_.built.flash.SectorBytes(0);
        for (uint32_t i = 0; i * sectorBytes * road_.built.chips < kMostImages * kImageBytes; ++i)
            sectors.insert(i * sectorBytes);
        if (drawn_.intel && road_.built.flash.lockScheme != vb::LockScheme::None)
            Step(road_.programmer.UnlockSectors(road_.progress, sectors), "unlock");
        if (!erases)
            return;
        for (size_t chip = 0; chip < road_.board->FlashCount(); ++chip)
            for (uint32_t offset : sectors)
                road_.board->Flash(chip).Model().Bytes()[offset] = 0;
        Step(road_.programmer.EraseSectors(road_.progress, sectors), "erase");
    }

    void Program(const SoakImage& image, ExpectedArray& expected) {
        result_.description += " image=" + image.kind;
        expected.Put(image.image);
        result_.words += image.image.GetByteCount();
        Step(road_.programmer.ProgramFlash(road_.progress, image.image), "program");
        const bool told = !result_.failures.empty();
        road_.time.SleepMilliseconds(100);
        for (size_t chip = 0; chip < road_.board->FlashCount(); ++chip)
            road_.board->Flash(chip).Model().Settle();
        std::string first;
        const uint64_t wrong = expected.Differences(*road_.board, first);
        if (wrong != 0 && !told)
            result_.lost += wrong;
        if (wrong != 0)
            Fail(std::to_string(wrong) + " bytes wrong after '" + (told ? "failed" : "programmed") +
                 "': " + first);
        CheckVerify(image.image, wrong != 0);
    }

    // Data that were taken for commands can do what no erase takes back.
    void CheckIntel() {
        for (size_t i = 0; drawn_.intel && i < road_.board->FlashCount(); ++i) {
            const auto& chip = dynamic_cast<vb::IntelFlash&>(road_.board->Flash(i).Model());
            if (chip.ProtectionWrites() + chip.ConfigurationWrites() != 0)
                Fail("the protection or configuration register has been written");
        }
    }

    // What the array holds outside the image is not its business.
    void CheckVerify(const OmDataImage& image, bool wrong) {
        const bool equal = road_.programmer.VerifyFlash(road_.united, image);
        user_.boxes.clear();
        if (equal && wrong)
            Fail("verify finds no difference");
        else if (!equal && !wrong)
            Fail("verify finds a difference that is none");
    }

    Dice dice_;
    SilentUser user_;
    SoakBoard drawn_;
    Road road_;
    SoakResult result_;
};

} // namespace

SoakResult RunSoak(uint64_t seed) {
    return Run(seed).Go();
}
