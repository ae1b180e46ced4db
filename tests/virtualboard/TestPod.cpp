#include "tests/virtualboard/TestPod.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace vb_test {

namespace {

constexpr uint32_t kByDescription = 2;

// The scan as MPSSE bytes: whole bytes with 39h, up to seven bits with 3Bh, the last bit with 6Bh.
void AppendShift(std::vector<uint8_t>& program, const Bits& bits, bool read) {
    const size_t whole = (bits.size() - 1) / 8;
    const size_t rest = (bits.size() - 1) % 8;
    const auto byteAt = [&bits](size_t first, size_t count) {
        uint8_t byte = 0;
        for (size_t i = 0; i < count; ++i)
            byte = static_cast<uint8_t>(byte | bits[first + i] << i);
        return byte;
    };
    if (whole > 0) {
        program.push_back(read ? 0x39 : 0x19);
        program.push_back(static_cast<uint8_t>(whole - 1));
        program.push_back(static_cast<uint8_t>((whole - 1) >> 8));
        for (size_t i = 0; i < whole; ++i)
            program.push_back(byteAt(8 * i, 8));
    }
    if (rest > 0) {
        program.push_back(read ? 0x3B : 0x1B);
        program.push_back(static_cast<uint8_t>(rest - 1));
        program.push_back(byteAt(8 * whole, rest));
    }
    program.push_back(read ? 0x6B : 0x4B);
    program.push_back(0x00);
    program.push_back(bits.back() ? 0x81 : 0x01);
    program.insert(program.end(), {0x4B, 0x01, 0x01});
}

} // namespace

TestPod::TestPod() {
    EXPECT_EQ(FT_OpenEx("Velmora Demo Board A", kByDescription, &handle_), 0u);
    EXPECT_EQ(FT_SetBitMode(handle_, 0, 0), 0u);
    EXPECT_EQ(FT_SetBitMode(handle_, 0, 2), 0u);
    Send({0x85, 0x80, 0x0A, 0x0B, 0x82, 0x00, 0x00, 0x8A, 0x86, 0x00, 0x00});
}

TestPod::~TestPod() {
    FT_Close(handle_);
}

void TestPod::Send(const std::vector<uint8_t>& bytes) {
    uint32_t written = 0;
    ASSERT_EQ(FT_Write(handle_, bytes.data(), static_cast<uint32_t>(bytes.size()), &written), 0u);
    ASSERT_EQ(written, bytes.size());
}

std::vector<uint8_t> TestPod::Receive(size_t count) {
    std::vector<uint8_t> bytes(count);
    uint32_t received = 0;
    EXPECT_EQ(FT_Read(handle_, bytes.data(), static_cast<uint32_t>(count), &received), 0u);
    bytes.resize(received);
    return bytes;
}

std::vector<uint8_t> TestPod::Exchange(const std::vector<uint8_t>& bytes, size_t answerBytes) {
    Send(bytes);
    return Receive(answerBytes);
}

void TestPod::ResetTap() {
    Send({0x4B, 0x05, 0x9F});
}

Bits TestPod::Scan(const std::vector<uint8_t>& toShift, const Bits& bits) {
    std::vector<uint8_t> program = toShift;
    AppendShift(program, bits, true);
    program.push_back(0x87);
    const size_t whole = (bits.size() - 1) / 8;
    const size_t rest = (bits.size() - 1) % 8;
    const std::vector<uint8_t> answer = Exchange(program, whole + (rest ? 1 : 0) + 1);
    Bits result;
    for (size_t i = 0; i < whole * 8; ++i)
        result.push_back(answer.at(i / 8) >> (i % 8) & 1);
    for (size_t i = 0; i < rest; ++i)
        result.push_back(answer.at(whole) >> (8 - rest + i) & 1);
    result.push_back(answer.back() >> 7);
    return result;
}

Bits TestPod::ScanIr(const Bits& bits) {
    return Scan({0x4B, 0x03, 0x83}, bits);
}

Bits TestPod::ScanDr(const Bits& bits) {
    return Scan({0x4B, 0x02, 0x81}, bits);
}

std::string TestPod::ScanIr(const std::string& bits) {
    return ToText(ScanIr(ToBits(bits)));
}

std::string TestPod::ScanDr(const std::string& bits) {
    return ToText(ScanDr(ToBits(bits)));
}

void TestPod::ScanDrBlind(const std::vector<Bits>& scans) {
    std::vector<uint8_t> program;
    for (const Bits& bits : scans) {
        program.insert(program.end(), {0x4B, 0x02, 0x81});
        AppendShift(program, bits, false);
    }
    Send(program);
}

Bits ToBits(const std::string& text) {
    Bits bits;
    std::transform(text.rbegin(), text.rend(), std::back_inserter(bits),
                   [](char c) { return c == '1'; });
    return bits;
}

std::string ToText(const Bits& bits) {
    std::string text;
    std::transform(bits.rbegin(), bits.rend(), std::back_inserter(text),
                   [](bool bit) { return bit ? '1' : '0'; });
    return text;
}

uint64_t ToNumber(const Bits& bits, size_t first, size_t count) {
    uint64_t value = 0;
    for (size_t i = 0; i < count; ++i)
        value |= uint64_t{bits[first + i]} << i;
    return value;
}

} // namespace vb_test
