// Digilent JTAG-USB adapters through the vendor's library, which shifts arrays of TMS and TDI pairs
// and gives back packed TDO bits.
#pragma once

#include "jtag/Cable.h"
#include "jtag/TmsTdiPairs.h"
#include "jtag/VendorLibrary.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

class OmDigilentAdept : public OmCable, public OmJtagHAL {
  public:
    OmDigilentAdept();
    ~OmDigilentAdept() override;
    OmDigilentAdept(const OmDigilentAdept&) = delete;
    OmDigilentAdept& operator=(const OmDigilentAdept&) = delete;

    // Loads the vendor's library and starts its use. Needed before the four operations after it
    // only.
    bool Load();

    // Whether the library has a window for configuring devices.
    bool CanConfigureDevices() const;
    // Opens that window over `parent`, a native window handle. Returns the vendor's error code, 0
    // for success.
    int32_t ConfigureDevices(void* parent);
    // How many devices are configured there; 0 on failure.
    int GetDeviceCount();
    // False if there is no device of that index.
    bool GetDeviceName(int index, std::string& name);

    // Opens the device configured under `name`. False, with the reason in the log, on failure.
    bool Initialize(const std::string& name);

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override;
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    // `out` may be null: then TDO is not read.
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return 1400000; } // fixed by the hardware

    void GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) override;

  private:
    // Handles and booleans as wide as any of the vendor's may be: it writes a handle through a
    // pointer, and only the low byte of a boolean result is looked at.
    using Handle = uintptr_t;
    using Result = uint8_t;
    using ErrorCode = int32_t;

    struct Functions {
        Result (*Init)(ErrorCode*) = nullptr;
        void (*Term)() = nullptr;
        void (*StartConfigureDevices)(void* parent, ErrorCode*) = nullptr;
        int (*GetDevCount)(ErrorCode*) = nullptr;
        Result (*GetDevName)(int index, char* name, ErrorCode*) = nullptr;
        Result (*OpenJtag)(Handle*, char* name, ErrorCode*, void*) = nullptr;
        Result (*CloseJtag)(Handle, ErrorCode*) = nullptr;
        Result (*EnableJtag)(Handle, ErrorCode*, void*) = nullptr;
        Result (*DisableJtag)(Handle, ErrorCode*, uint32_t* transaction) = nullptr;
        Result (*PutTdiBits)(Handle, int bits, uint8_t* tdi, int tms, int getTdo, uint8_t* tdo,
                             ErrorCode*, void*) = nullptr;
        Result (*PutTmsTdiBits)(Handle, int pairs, uint8_t* bytes, int getTdo, uint8_t* tdo,
                                ErrorCode*, void*) = nullptr;
    };

    std::vector<OmEntryPoint> EntryPoints();
    bool BeginUse();
    void Close();
    void PutPairs(const OmTmsTdiPairs& pairs, std::vector<uint8_t>* tdo);
    void ScanBatch(std::span<const OmScanVector> vectors, OmCapturedList* captured);

    OmVendorLibrary library_;
    Functions functions_;
    Handle hif_ = 0; // the open JTAG interface, 0 when closed
};
