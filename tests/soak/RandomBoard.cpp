#include "tests/soak/RandomBoard.h"

namespace {

struct Bus {
    unsigned chips;
    unsigned widthBits;
};

constexpr Bus kBuses[] = {{1, 8}, {1, 16}, {1, 16}, {1, 32}, {2, 8}, {2, 16}, {3, 8}, {4, 8}};

constexpr int32_t kFrequencies[] = {30000000, 30000000, 15000000, 6000000, 3000000, 1000000};

// Typical of what data sheets give as maximum times of a word, up to chips at the end of their
// life; the program gives up at some 5 ms.
constexpr uint32_t kWordTimes[] = {7, 16, 40, 60, 100, 200, 400, 800, 1500, 2500};
constexpr uint32_t kBufferTimes[] = {30, 60, 120, 240, 500, 700, 1200, 2500};

constexpr const char* kAmdBuffers[] = {"32", "32", "64", "16"};
constexpr const char* kIntelBuffers[] = {"32", "64", "64"};

// Whose tables have to be understood before a word can be written.
constexpr const char* kNamed[] = {"s29gl128n",    "s29gl064n-top", "am29lv160-top",
                                  "sst39vf1601c", "m29w128g",      "m29ew-x8",
                                  "w30",          "l18",           "m18"};

class Drawer {
  public:
    explicit Drawer(Dice& dice) : dice_(dice) {}

    SoakBoard Draw() {
        if (dice_.Percent(10))
            DrawNamed();
        else
            DrawInvented();
        DrawSeeds();
        DrawChain();
        board_.frequency = dice_.From(kFrequencies);
        board_.description += " TCK=" + std::to_string(board_.frequency);
        return std::move(board_);
    }

  private:
    void DrawNamed() {
        const char* name = dice_.From(kNamed);
        const vb::FlashParameters flash = vb::FlashByName(name);
        board_.builder.Flash(flash);
        board_.description += std::string(" model=") + name;
        board_.intel = flash.commandSet == vb::CommandSet::Intel;
        board_.bypass = flash.unlockBypass && !board_.intel && dice_.Percent(30);
        bus_ = {1, flash.widthBits};
        Set("least-percent", "33");
    }

    void DrawInvented() {
        board_.intel = dice_.Percent(30);
        bus_ = dice_.From(kBuses);
        board_.builder.Chips(bus_.chips);
        Set("set", board_.intel ? "intel" : "amd");
        Set("width", std::to_string(bus_.widthBits));
        Set("sectors", "16x4K");
        DrawMethod();
        DrawTimes();
        if (!board_.intel)
            DrawAmd();
        else
            DrawIntel();
    }

    void Set(const std::string& key, const std::string& value) {
        board_.builder.Set(key, value);
        board_.description += " " + key + "=" + value;
    }

    std::string Choose(std::initializer_list<const char*> choices) { return dice_.From(choices); }

    void DrawMethod() {
        board_.buffered = dice_.Percent(60);
        board_.bypass = !board_.intel && dice_.Percent(40);
        const bool hasBuffer = board_.buffered || dice_.Percent(30);
        const char* buffer = !hasBuffer     ? "0"
                             : board_.intel ? dice_.From(kIntelBuffers)
                                            : dice_.From(kAmdBuffers);
        Set("buffer", buffer);
        board_.description += " chips=" + std::to_string(bus_.chips) +
                              (board_.buffered ? "" : " unbuffered") +
                              (board_.bypass ? " bypass" : "");
    }

    void DrawTimes() {
        Set("word-us", std::to_string(dice_.From(kWordTimes)));
        Set("buffer-us", std::to_string(dice_.From(kBufferTimes)));
        Set("least-percent", Choose({"100", "33", "33", "10"}));
        Set("sector-us", Choose({"1000", "5000"}));
        Set("suspend-us", Choose({"1", "5", "20"}));
    }

    void DrawAmd() {
        Set("suspend", Choose({"none", "erase", "all", "all"}));
        Set("raised-bit-fails", Choose({"yes", "no"}));
        Set("abort-dq5", Choose({"yes", "no"}));
        Set("bypass-commands", Choose({"program", "all"}));
        if (bus_.widthBits > 8)
            Set("status-fill", Choose({"0", "0xFFFFFF00", "0x5A5A5A00"}));
    }

    void DrawIntel() {
        Set("locks", Choose({"none", "single", "together"}));
        Set("suspend", Choose({"none", "erase", "all", "all"}));
        Set("partitions", Choose({"1", "1", "2", "4", "8"}));
        Set("busy-read-modes", Choose({"yes", "no"}));
    }

    // Chips side by side do not end at the same time.
    void DrawSeeds() {
        for (unsigned chip = 0; chip < bus_.chips; ++chip)
            board_.builder.SetChip(chip, "seed", std::to_string(dice_.Between(1, 1000000)));
    }

    void DrawChain() {
        const unsigned before = dice_.Between(0, 3);
        const unsigned devices = dice_.Between(1, 3);
        const unsigned after = dice_.Between(0, 3);
        const unsigned padding = dice_.Percent(50) ? 0 : dice_.Between(1, 60);
        board_.builder.UnusedBefore(before).Devices(devices).UnusedAfter(after).Padding(padding);
        board_.builder.Cells(dice_.Percent(50) ? vb::PinStyle::Separate
                                               : vb::PinStyle::SharedControl);
        board_.description += " chain=" + std::to_string(before) + "+" + std::to_string(devices) +
                              "+" + std::to_string(after) + " padding=" + std::to_string(padding);
    }

    Dice& dice_;
    SoakBoard board_;
    Bus bus_{1, 16};
};

} // namespace

SoakBoard DrawBoard(Dice& dice) {
    return Drawer(dice).Draw();
}
