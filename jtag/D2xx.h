// FTDI's D2XX interface as the FT2232 and the USB-Blaster use it: the loaded library, the choice of
// a device, and the transfers. Types and constants are those of the D2XX Programmer's Guide.
#pragma once

#include "jtag/VendorLibrary.h"
#include "platform/UsbBus.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

// FTDI declares its functions as WINAPI; on other hosts that means nothing.
#ifdef _WIN32
#define OM_D2XX_CALL __stdcall
#else
#define OM_D2XX_CALL
#endif

// D2XX device types.
inline constexpr uint32_t kD2xxTypeBm = 0;
inline constexpr uint32_t kD2xxTypeAm = 1;
inline constexpr uint32_t kD2xxType100Ax = 2;
inline constexpr uint32_t kD2xxTypeUnknown = 3;
inline constexpr uint32_t kD2xxType2232C = 4;
inline constexpr uint32_t kD2xxType232R = 5;

// One line of the library's list of devices.
struct OmD2xxDevice {
    uint32_t flags = 0; // bit 0: open
    uint32_t type = kD2xxTypeUnknown;
    uint32_t id = 0; // USB vendor in the upper half, product in the lower
    std::string serial;
    std::string description;
};

// The functions that the cables call; each cable requires all of its own list.
struct OmD2xxFunctions {
    using Handle = void*;
    using Status = uint32_t; // 0 is success

    Status(OM_D2XX_CALL* CreateDeviceInfoList)(uint32_t* count) = nullptr;
    Status(OM_D2XX_CALL* GetDeviceInfoDetail)(uint32_t index, uint32_t* flags, uint32_t* type,
                                              uint32_t* id, uint32_t* location, char* serial,
                                              char* description, Handle* handle) = nullptr;
    Status(OM_D2XX_CALL* GetDeviceInfo)(Handle, uint32_t* type, uint32_t* id, char* serial,
                                        char* description, void* reserved) = nullptr;
    Status(OM_D2XX_CALL* OpenEx)(void* text, uint32_t flags, Handle* handle) = nullptr;
    Status(OM_D2XX_CALL* Close)(Handle) = nullptr;
    Status(OM_D2XX_CALL* ResetDevice)(Handle) = nullptr;
    Status(OM_D2XX_CALL* SetUSBParameters)(Handle, uint32_t inSize, uint32_t outSize) = nullptr;
    Status(OM_D2XX_CALL* Purge)(Handle, uint32_t mask) = nullptr;
    Status(OM_D2XX_CALL* SetLatencyTimer)(Handle, uint8_t milliseconds) = nullptr;
    Status(OM_D2XX_CALL* SetBaudRate)(Handle, uint32_t rate) = nullptr;
    Status(OM_D2XX_CALL* SetBitMode)(Handle, uint8_t mask, uint8_t mode) = nullptr;
    Status(OM_D2XX_CALL* GetQueueStatus)(Handle, uint32_t* waiting) = nullptr;
    Status(OM_D2XX_CALL* Write)(Handle, void* bytes, uint32_t count, uint32_t* done) = nullptr;
    Status(OM_D2XX_CALL* Read)(Handle, void* bytes, uint32_t count, uint32_t* done) = nullptr;

    // Null where the library has none of them: the first exists outside Windows alone.
    Status(OM_D2XX_CALL* SetVIDPID)(uint32_t vendor, uint32_t product) = nullptr;
    Status(OM_D2XX_CALL* SetTimeouts)(Handle, uint32_t readMilliseconds,
                                      uint32_t writeMilliseconds) = nullptr;
};

class OmD2xx {
  public:
    // Whether a device that is not open may stand in for a stored one that is gone.
    using FallbackRule = bool (*)(const OmD2xxDevice&);

    // `identifiers` are those of the devices that bear others than FTDI's own: outside Windows the
    // library looks for them only when told to.
    explicit OmD2xx(std::span<const OmUsbId> identifiers) : identifiers_(identifiers) {}

    ~OmD2xx(); // closes the device, frees the library
    OmD2xx(const OmD2xx&) = delete;
    OmD2xx& operator=(const OmD2xx&) = delete;

    OmVendorLibrary& Library() { return library_; }

    // Rows for the exported names that a cable requires ("FT_Open..."), and for those that all use
    // where they are.
    std::vector<OmEntryPoint> EntryPoints(std::span<const char* const> names);

    // The devices with a readable detail and a description. `total` is the count that the library
    // gives, which may be higher. False if the library cannot list.
    bool ListDevices(std::vector<OmD2xxDevice>& devices, uint32_t& total);

    // Opens the device of that description, the serial number deciding between several, or without
    // one the first that `isFallback` accepts.
    bool Open(const std::string& description, const std::string& serial, FallbackRule isFallback);
    void Close(); // safe when nothing is open

    // All of these throw OmException on any failure, with the device left open. `ownMilliseconds`
    // is the time that the device needs for what is sent or asked for.
    void CheckConnection();
    void Write(std::span<const uint8_t> bytes, uint64_t ownMilliseconds = 0);
    // Waits for missing bytes 300 ms longer than the device needs.
    void FtdiRead(std::span<uint8_t> bytes, uint64_t ownMilliseconds = 0);

    // Ends the set-up of a device: lets it settle, reads what waits in its queue and throws that
    // away. If it does not come, logs that, closes the device and answers false.
    bool DiscardStale();

    OmD2xxFunctions functions;                // valid while the library is loaded
    OmD2xxFunctions::Handle handle = nullptr; // null when closed

  private:
    bool ListKnown(std::vector<OmD2xxDevice>& devices, uint32_t& total);
    void ListOthers(OmUsbId identifier, std::vector<OmD2xxDevice>& devices, uint32_t& total);
    bool IsOneOfOthers(const OmD2xxDevice& device) const;
    bool OpenBy(const OmD2xxDevice& device, const std::string& text, uint32_t flag);
    void AllowWriteTime(uint64_t milliseconds);
    void Drain();

    std::span<const OmUsbId> identifiers_;
    OmVendorLibrary library_;
    uint32_t writeTimeout_ = 0; // milliseconds
};
