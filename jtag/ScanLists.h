// What cables ask of the vectors they are given.
#pragma once

#include "jtag/Cable.h"

#include <cstddef>
#include <cstdint>

// A scan needs at least one bit; throws OmException for an empty one.
void RequireBits(const OmBitVector& in);

// The length that all vectors of a batch have; throws OmException if they differ or are empty.
// `vectors` holds at least one.
size_t RequireEqualLengths(const OmScanList& vectors);

// How many vectors stand before the first one to be captured. Cables that can write without reading
// send these by themselves.
size_t CountBlindHead(const OmScanList& vectors);

// Answers OmJtagHAL::GetVectorsPerTransfer for cables that send a TMS and a TDI bit for each TCK
// and gain nothing from batches with a status read.
void GetPairVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status);
