#include "platform/Host.h"
#include "platform/PortDriver.h"

#include <windows.h>

namespace {

class HostPortDriver : public OmPortDriver {
  public:
    explicit HostPortDriver(HANDLE handle) : handle_(handle) {}

    ~HostPortDriver() override { CloseHandle(handle_); }

    HostPortDriver(const HostPortDriver&) = delete;
    HostPortDriver& operator=(const HostPortDriver&) = delete;

    bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                 size_t& returned) override {
        DWORD count = 0;
        const BOOL done = DeviceIoControl(handle_, code, const_cast<uint8_t*>(in.data()),
                                          static_cast<DWORD>(in.size()), out.data(),
                                          static_cast<DWORD>(out.size()), &count, nullptr);
        returned = count;
        return done != FALSE;
    }

  private:
    HANDLE handle_; // owned
};

class HostOpener : public OmPortDriverOpener {
  public:
    std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
        const HANDLE handle = CreateFileA(("\\\\.\\" + name).c_str(), GENERIC_READ, 0, nullptr,
                                          OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        return handle == INVALID_HANDLE_VALUE ? nullptr : std::make_unique<HostPortDriver>(handle);
    }
};

} // namespace

OmPortDriverOpener& GetHostPortDriverOpener() {
    static HostOpener opener;
    return opener;
}
