// Segger J-Link, over USB or through a J-Link TCP/IP server, by the vendor's library: a TMS and a
// TDI bit array go in, a TDO bit array comes back.
#pragma once

#include "jtag/Cable.h"
#include "jtag/TapPaths.h"
#include "jtag/VendorLibrary.h"

#include <cstdint>
#include <span>
#include <string>

class OmJLink : public OmCable, public OmJtagHAL {
  public:
    static constexpr int kOverIp = -1; // in place of a USB number

    OmJLink();
    ~OmJLink() override;
    OmJLink(const OmJLink&) = delete;
    OmJLink& operator=(const OmJLink&) = delete;

    // Loads the vendor's library.
    bool Load();

    // Connects to the J-Link of that USB number, or for kOverIp to the server at `host` and `port`,
    // and sets the wanted TCK in Hz. False, with the reason in the log, on failure.
    bool Initialize(int usbNumber, const std::string& host, int port, uint32_t frequency);

    const char* GetDriverName() override { return ""; }

    OmJtagHAL* GetJtagHAL() override { return this; }

    void ResetTap() override;
    void ScanVectors(const OmScanList& vectors, OmCapturedList* captured) override;
    void ScanDR(const OmBitVector& in, OmBitVector* out, int from, int to) override;
    void ScanIR(const OmBitVector& in, OmBitVector* out, int from, int to) override;

    uint32_t GetFrequency() override { return frequency_; }

    void GetVectorsPerTransfer(uint32_t bits, float* reading, float* blind, float* status) override;

  private:
    struct Arrays;

    using Handler = void (*)(const char* text);
    using Result = uint8_t; // the vendor's results are as wide as a char

    struct Functions {
        const char* (*Open)() = nullptr;
        void (*Close)() = nullptr;
        Result (*SelectUSB)(int number) = nullptr;
        Result (*SelectIP)(const char* host, int port) = nullptr;
        void (*SetWarnOutHandler)(Handler) = nullptr;
        void (*SetErrorOutHandler)(Handler) = nullptr;
        Result (*HasError)() = nullptr;
        void (*ClrError)() = nullptr;
        void (*SetSpeed)(uint32_t kilohertz) = nullptr;
        void (*StoreGetRaw)(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms,
                            uint32_t bits) = nullptr;
        void (*StoreRaw)(const uint8_t* tdi, const uint8_t* tms, uint32_t bits) = nullptr;
        void (*SyncBits)() = nullptr; // not in every version
    };

    bool Select(int usbNumber, const std::string& host, int port);
    void Close();
    void ClearPendingError();
    void Exchange(const uint8_t* tdi, uint8_t* tdo, const uint8_t* tms, size_t bits);
    void Sync();
    void Send(const uint8_t* tdi, const uint8_t* tms, size_t bits);
    void Scan(Arrays& arrays, OmScanRegister which, const OmBitVector& in, OmBitVector& out,
              int from, int to);
    void ScanBatch(std::span<const OmScanVector> vectors, OmCapturedList* captured);

    OmVendorLibrary library_;
    Functions functions_;
    bool isOpen_ = false;
    uint32_t frequency_ = 0; // Hz, as requested
};
