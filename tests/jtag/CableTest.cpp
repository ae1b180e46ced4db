#include "jtag/Cable.h"

#include <gtest/gtest.h>

namespace {

class PlainCable : public OmCable, public OmJtagHAL {
  public:
    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override {}

    void ScanVectors(const OmScanList&, OmCapturedList*) override {}

    void ScanDR(const OmBitVector&, OmBitVector*, int, int) override {}

    void ScanIR(const OmBitVector&, OmBitVector*, int, int) override {}

    uint32_t GetFrequency() override { return 0; }
};

} // namespace

TEST(Cable, WithoutBatchingEveryVectorsPerTransferFigureIsMinusOne) {
    PlainCable cable;
    float reading = 1;
    float blind = 2;
    float status = 3;
    cable.GetVectorsPerTransfer(100, &reading, &blind, &status);
    EXPECT_EQ(reading, -1.0F);
    EXPECT_EQ(blind, -1.0F);
    EXPECT_EQ(status, -1.0F);
}

TEST(Cable, VectorsPerTransferTakesNullForAnyFigure) {
    PlainCable cable;
    cable.GetVectorsPerTransfer(100, nullptr, nullptr, nullptr);
    float blind = 2;
    cable.GetVectorsPerTransfer(100, nullptr, &blind, nullptr);
    EXPECT_EQ(blind, -1.0F);
}

TEST(Cable, BothQueriesAnswerTrue) {
    PlainCable cable;
    EXPECT_TRUE(cable.IsSupported());
    EXPECT_TRUE(cable.IsAvailable());
}
