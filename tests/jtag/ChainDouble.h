// A chain of registers in place of a cable.
#pragma once

#include "jtag/Cable.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// A chain as its two ends see it: what TDO gives for a run of bits at TDI after a TAP reset.
class ChainDouble : public OmCable, public OmJtagHAL {
  public:
    using Answer = std::function<OmBitVector(const OmBitVector&)>;

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override { ++resets; }

    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override {
        batches.push_back(vectors);
        if (captured)
            *captured = {{1}};
    }

    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override {
        EXPECT_EQ(from, 1);
        EXPECT_EQ(to, 1);
        drScans.push_back(in);
        *out = dr(in);
    }

    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override {
        EXPECT_EQ(from, 1);
        EXPECT_EQ(to, 1);
        irScans.push_back(in);
        *out = ir(in);
    }

    uint32_t GetFrequency() override { return 1400000; }

    Answer dr;
    Answer ir;
    int resets = 0;
    std::vector<OmBitVector> drScans;
    std::vector<OmBitVector> irScans;
    std::vector<OmScanList> batches;
};

// Registers with this content, the first to come out at the right as in a number.
inline ChainDouble::Answer Registers(const std::string& content) {
    return [content](const OmBitVector& in) {
        OmBitVector out = BitsFromText(content);
        AppendBits(out, in);
        out.resize(in.size());
        return out;
    };
}

// Registers whose far end does not see TDI: what follows them is all of one level.
inline ChainDouble::Answer Masked(const std::string& content, uint8_t level) {
    return [content, level](const OmBitVector& in) {
        OmBitVector out = BitsFromText(content);
        out.resize(in.size(), level);
        return out;
    };
}

inline ChainDouble::Answer Stuck(uint8_t level) {
    return Masked("", level);
}

inline std::vector<size_t> Sizes(const std::vector<OmBitVector>& scans) {
    std::vector<size_t> sizes;
    for (const OmBitVector& scan : scans)
        sizes.push_back(scan.size());
    return sizes;
}
