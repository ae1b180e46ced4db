// What cables ask of the vectors they are given.
#pragma once

#include "jtag/Cable.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>

// A scan needs at least one bit; throws OmException for an empty one.
void RequireBits(const OmBitVector& in);

// The length that all vectors of a batch have; throws OmException if they differ or are empty.
// `vectors` holds at least one.
size_t RequireEqualLengths(const OmScanList& vectors);

// OmJtagHAL::ScanVectors for cables that know no batch: one scan after the other, of which TDO is
// read only where it is wanted.
void ScanOneByOne(OmJtagHAL& hal, const OmScanList& vectors, OmCapturedList* captured);

// OmJtagHAL::ScanVectors for cables that send TMS and TDI of many scans in one call: the vectors
// before the first one to be captured go by themselves, as a call without TDO is the cheaper one,
// and then all others. `scan` is called with at most two lists of vectors, neither of them empty.
using OmBatchScan = std::function<void(std::span<const OmScanVector>)>;
void ScanHeadAndRest(const OmScanList& vectors, OmCapturedList* captured, const OmBatchScan& scan);

// Answers OmJtagHAL::GetVectorsPerTransfer for cables that send a TMS and a TDI bit for each TCK
// and gain nothing from batches with a status read.
void GetPairVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status);
