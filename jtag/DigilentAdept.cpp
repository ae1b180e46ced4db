#include "jtag/DigilentAdept.h"

#include "jtag/Log.h"
#include "platform/Text.h"

#include <algorithm>
#include <array>

namespace {

// More devices than anybody configures; a library that counts higher is not believed.
constexpr int kMaxDevices = 1024;

constexpr const char* kLibraryNames[] = {"dpcutil.dll"};
// The same words for a function that is missing and for a library that will not start.
constexpr OmLibraryRow kLibrary{
    .names = kLibraryNames,
    .loadedAlready = L"OK (already loaded)\n",
    .incomplete = L"** FAILED *** (not all required exported functions were resolved)\n"};

// Objects that use the library. What DpcInit begins and DpcTerm ends belongs to the process: a list
// of devices that is shown while a cable is open must not end the cable's session.
int users = 0;

} // namespace

OmDigilentAdept::OmDigilentAdept() {
    OmLog(L"Creating OmDigilentAdept\n");
}

OmDigilentAdept::~OmDigilentAdept() {
    OmLog(L"Destroying OmDigilentAdept\n");
    Close();
    if (library_.IsLoaded() && --users == 0)
        functions_.Term();
}

std::vector<OmEntryPoint> OmDigilentAdept::EntryPoints() {
    return {
        MakeEntryPoint("DpcInit", functions_.Init),
        MakeEntryPoint("DpcTerm", functions_.Term),
        // The vendor declares it for Windows alone.
        MakeOptionalEntryPoint("DvmgStartConfigureDevices", functions_.StartConfigureDevices),
        MakeEntryPoint("DvmgGetDevCount", functions_.GetDevCount),
        MakeEntryPoint("DvmgGetDevName", functions_.GetDevName),
        MakeEntryPoint("DpcOpenJtag", functions_.OpenJtag),
        MakeEntryPoint("DpcCloseJtag", functions_.CloseJtag),
        MakeEntryPoint("DpcEnableJtag", functions_.EnableJtag),
        MakeEntryPoint("DpcDisableJtag", functions_.DisableJtag),
        MakeEntryPoint("DpcPutTdiBits", functions_.PutTdiBits),
        MakeEntryPoint("DpcPutTmsTdiBits", functions_.PutTmsTdiBits),
    };
}

bool OmDigilentAdept::Load() {
    return library_.LoadAndLog(kLibrary, EntryPoints(), [this] { return BeginUse(); });
}

bool OmDigilentAdept::BeginUse() {
    ErrorCode error = 0;
    if (users == 0 && !functions_.Init(&error))
        return false;
    ++users;
    return true;
}

bool OmDigilentAdept::CanConfigureDevices() const {
    return functions_.StartConfigureDevices != nullptr;
}

int32_t OmDigilentAdept::ConfigureDevices(void* parent) {
    ErrorCode error = 0;
    functions_.StartConfigureDevices(parent, &error);
    return error;
}

int OmDigilentAdept::GetDeviceCount() {
    ErrorCode error = 0;
    const int count = functions_.GetDevCount(&error);
    OmLog(L"Found %d DigilentAdept device(s)\n", count);
    return std::clamp(count, 0, kMaxDevices);
}

bool OmDigilentAdept::GetDeviceName(int index, std::string& name) {
    std::array<char, 1024> buffer{}; // the library writes far less
    ErrorCode error = 0;
    if (!functions_.GetDevName(index, buffer.data(), &error))
        return false;
    buffer.back() = '\0';
    name = buffer.data();
    return true;
}

bool OmDigilentAdept::Initialize(const std::string& name) {
    OmLog(L"Initializing OmDigilentAdept ('%ls')\n", FromLocal(name).c_str());
    if (!Load())
        return false;
    Close();
    ErrorCode error = 0;
    std::string writable = name; // the library's parameter is not const
    if (!functions_.OpenJtag(&hif_, writable.data(), &error, nullptr)) {
        OmLog(L"*** FAILED *** (DpcOpenJtag() failed)\n");
        hif_ = 0;
        return false;
    }
    if (!functions_.EnableJtag(hif_, &error, nullptr)) {
        OmLog(L"*** FAILED *** (DpcEnableJtag() failed)\n");
        functions_.CloseJtag(hif_, &error);
        hif_ = 0;
        return false;
    }
    OmLog(L"Initializing succeeded\n");
    return true;
}

// An interface that will not close is gone for us all the same.
void OmDigilentAdept::Close() {
    if (hif_ == 0)
        return;
    ErrorCode error = 0;
    functions_.DisableJtag(hif_, &error, nullptr);
    functions_.CloseJtag(hif_, &error);
    hif_ = 0;
}
