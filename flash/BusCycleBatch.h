// Flash bus cycles as a list of full-chain DR scans. Every scan ends in one Update-DR, at which all
// pins change at once; so a write cycle is two scans, and its end, the rising edge of WE, is the
// first scan of the next cycle. Input cells sample at Capture-DR, before the update of the same
// scan: data of an address set by one scan come back with the next.
//
// A long operation keeps one batch: `pins` and `image` carry over from run to run, and only what
// changes is written anew.
#pragma once

#include "flash/BoundaryScanBus.h"
#include "jtag/Cable.h"

#include <cstdint>

class OmBusCycleBatch {
  public:
    // Starts from the bus's default image with the static pins applied. CE, OE and WE are the
    // user's to set before the first scan.
    explicit OmBusCycleBatch(OmBoundaryScanBus& bus);

    // --- wanted levels, shown by the next scan
    void SetAddress(uint32_t busWord);
    void SetData(uint32_t value);
    void ReleaseData();
    void SetCE(uint8_t level);
    void SetOE(uint8_t level);
    void SetWE(uint8_t level);

    // --- scans
    // The only way a scan comes into being; `wanted` asks for what it captures.
    void AppendScan(bool wanted);

    // `count` scans that change nothing: the wait for the flash, timed by TCK.
    void AppendIdle(int count);

    // A write cycle but for its end: WE high with the address, then WE low with the data.
    void AppendWrite(uint32_t busWord, uint32_t value);

    // The second half of a write cycle, at the address that stands.
    void AppendWriteData(uint32_t value);

    // WE high, nothing else: the end of a write cycle.
    void AppendRise(bool wanted = false);

    void AppendRelease(); // releases the data bus, in a scan of its own

    // OE low, then high again with the scan that brings back the data.
    void AppendReadPulse();

    // Selects the chips for writing: CE low, OE high, data released, shown by the next scan.
    void SelectForWriting();

    // --- running; the scans stay in the list until Clear
    void Run();
    void RunForCapture(OmCapturedList& captured); // one vector for each captured scan
    void RunToCompletion(); // captures are thrown away: returns when the cable is done
    void Clear();           // empties `scans`; `pins` and `image` stay

    OmBoundaryScanBus* bus; // not owned
    OmScanList scans;
    OmBusPinState pins;
    OmBitVector image;    // as of the last scan appended
    bool capture = false; // of the scan last appended
    unsigned dirty = 0;   // what `pins` says and `image` does not show yet

  private:
    size_t captures_ = 0;            // scans in the list that are captured
    std::vector<OmBitVector> spare_; // memory of cleared scans
};

// A command byte in every lane of the widest bus.
constexpr uint32_t OnAllLanes(uint8_t command) {
    return 0x01010101u * command;
}
