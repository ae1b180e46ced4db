#include "tests/soak/RandomImage.h"

#include <algorithm>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

void Random(Dice& dice, Bytes& bytes) {
    for (uint8_t& byte : bytes)
        byte = dice.Byte();
}

// Every so many bus words one that is blank: the last of each write buffer, often.
void BlankEnds(Dice& dice, Bytes& bytes, uint32_t busBytes) {
    Random(dice, bytes);
    const uint32_t period = busBytes << dice.Between(1, 6);
    for (size_t i = 0; i < bytes.size(); ++i)
        if (i % period >= period - busBytes)
            bytes[i] = 0xFF;
}

void BlankTail(Dice& dice, Bytes& bytes) {
    Random(dice, bytes);
    const auto kept = static_cast<std::ptrdiff_t>(bytes.size() * dice.Between(5, 95) / 100);
    std::fill(bytes.begin() + kept, bytes.end(), uint8_t{0xFF});
}

// The low byte of every so many bus words is B0h, on each lane of `lane` bytes.
void Suspends(Dice& dice, Bytes& bytes, uint32_t busBytes) {
    Random(dice, bytes);
    const uint32_t period = busBytes * dice.Between(1, 5);
    const uint32_t lane = std::min(busBytes, 1u << dice.Between(0, 2));
    for (size_t i = 0; i < bytes.size(); i += period)
        for (size_t k = i; k < std::min(i + busBytes, bytes.size()); k += lane)
            bytes[k] = 0xB0;
}

template <typename Table>
void FromBytes(Dice& dice, Bytes& bytes, uint32_t busBytes, const Table& table) {
    const bool wide = dice.Percent(50); // the same on all lanes, above it zeros
    Bytes word(busBytes);
    for (size_t i = 0; i < bytes.size(); ++i) {
        if (i % busBytes == 0) {
            std::fill(word.begin(), word.end(), uint8_t{0});
            word[0] = dice.From(table);
        }
        bytes[i] = wide ? word[i % busBytes] : dice.From(table);
    }
}

constexpr uint8_t kStatus[] = {0x00, 0x40, 0x80, 0xC0};
constexpr uint8_t kMoreStatus[] = {0x00, 0x40, 0x80, 0xC0, 0x20, 0x60, 0xA0, 0xE0,
                                   0x08, 0x88, 0x02, 0x82, 0x90, 0xB0, 0xFF};
constexpr uint8_t kCommands[] = {0x10, 0x20, 0x25, 0x29, 0x30, 0x40, 0x50, 0x55,
                                 0x60, 0x70, 0x80, 0x90, 0x98, 0xA0, 0xAA, 0xB0,
                                 0xC0, 0xD0, 0xE8, 0xF0, 0xFF, 0x00, 0x01, 0x2F};

// Runs of code, strings, tables of addresses, zeros and blanks, as firmware has them.
void Firmware(Dice& dice, Bytes& bytes) {
    static constexpr uint32_t kCode[] = {0xE59F0010, 0xE1A0F00E, 0xE3A00000, 0xE92D4010, 0xE8BD8010,
                                         0x4770BF00, 0xB5104604, 0x00000013, 0x00008067, 0x7C0802A6,
                                         0x4E800020, 0x90010004, 0x60000000, 0x38600000};
    static constexpr char kText[] = "Error: flash %s not ready at 0x%08lx\n";
    size_t i = 0;
    const auto put = [&](uint32_t value, unsigned count) {
        for (; count > 0 && i < bytes.size(); --count, value >>= 8)
            bytes[i++] = static_cast<uint8_t>(value);
    };
    while (i < bytes.size()) {
        const uint32_t kind = dice.Between(0, 5);
        const uint32_t base = dice.Between(0, 255) << 16;
        for (uint32_t run = dice.Between(1, 40); run > 0; --run) {
            switch (kind) {
            case 0:
                put(0, 4);
                break;
            case 1:
                put(0xFFFFFFFF, 4);
                break;
            case 2:
                put(static_cast<uint8_t>(kText[run % (sizeof(kText) - 1)]), 1);
                break;
            case 3:
                put(0x08000000 + base + run * 4, 4);
                break;
            default:
                put(dice.From(kCode) ^ (dice.Percent(40) ? dice.Between(0, 0xFFF) : 0), 4);
            }
        }
    }
}

const char* Fill(Dice& dice, Bytes& bytes, uint32_t busBytes) {
    switch (dice.Between(0, 7)) {
    case 0:
        Random(dice, bytes);
        return "random";
    case 1:
        BlankEnds(dice, bytes, busBytes);
        return "blank-ends";
    case 2:
        BlankTail(dice, bytes);
        return "blank-tail";
    case 3:
        Suspends(dice, bytes, busBytes);
        return "B0h";
    case 4:
        FromBytes(dice, bytes, busBytes, kStatus);
        return "status";
    case 5:
        FromBytes(dice, bytes, busBytes, kMoreStatus);
        return "more-status";
    case 6:
        FromBytes(dice, bytes, busBytes, kCommands);
        return "commands";
    default:
        Firmware(dice, bytes);
        return "firmware";
    }
}

} // namespace

SoakImage DrawImage(Dice& dice, uint32_t start, uint32_t size, uint32_t busBytes) {
    SoakImage drawn;
    const uint32_t end = (start + size) / busBytes;
    uint32_t word = (start + busBytes - 1) / busBytes;
    word += dice.Percent(50) ? 0 : dice.Between(0, size / busBytes / 4);
    for (uint32_t pieces = dice.Between(1, 3); pieces > 0 && word < end; --pieces) {
        const uint32_t words = std::min(dice.Between(1, 5) * dice.Between(1, 100), end - word);
        Bytes bytes(size_t{words} * busBytes);
        drawn.kind += (drawn.kind.empty() ? "" : "+") + std::string(Fill(dice, bytes, busBytes));
        drawn.image.SetBytes(word * busBytes, bytes);
        word += words + dice.Between(1, 1000);
    }
    return drawn;
}
