#include "flash/ChainConformity.h"

#include "bsdl/IdcodePattern.h"
#include "jtag/IdcodeLayout.h"
#include "platform/Translation.h"
#include "setup/DesignSetup.h"

#include <algorithm>

namespace {

constexpr int kMinIrLength = 2; // IEEE 1149.1, clause 7.1.1

// -1 if every length is known.
int FindUnknownIrLength(const OmDesignSetup& setup) {
    for (unsigned i = 0; i < setup.GetDeviceCount(); ++i)
        if (setup.GetDevice(i).GetIRLength() < kMinIrLength)
            return static_cast<int>(i);
    return -1;
}

std::wstring DescribeMismatch(const OmDesignSetup& setup, int device, bool versionOnly) {
    const std::wstring name = FormatDeviceName(setup.devices, device);
    const wchar_t* text = name.c_str();
    if (versionOnly)
        return TranslatedFormat("The detected IDCODE of the %ls device and the IDCODE from the "
                                "specified BSDL file have different version fields.\n\n",
                                text);
    return TranslatedFormat("The BSDL file specified for the %ls device does not conform to this "
                            "device's detected IDCODE.\n\n",
                            text);
}

// True if the list held it already.
bool EnterMismatch(OmAcceptedMismatches& accepted, const OmAcceptedMismatch& mismatch) {
    if (std::find(accepted.begin(), accepted.end(), mismatch) != accepted.end())
        return true;
    accepted.push_back(mismatch);
    return false;
}

} // namespace

bool IrLengthsMatch(std::span<const OmChainDevice> devices, const OmBitVector& captured) {
    if (devices.empty() || captured.empty())
        return false;
    size_t position = 0;
    for (auto device = devices.rbegin(); device != devices.rend(); ++device) {
        const int length = device->GetIRLength();
        if (length < kMinIrLength || position + 1 >= captured.size())
            return false;
        if (captured[position] != 1 || captured[position + 1] != 0)
            return false;
        position += static_cast<size_t>(length);
    }
    return position == captured.size();
}

bool IdcodeMatches(const OmBitVector& detected, const OmBsdlData& bsdl, bool& versionOnly) {
    versionOnly = false;
    if (detected.empty())
        return true;
    if (detected.size() == 1)
        return bsdl.GetIdcodes().empty();
    if (detected.size() != kIdcodeBits)
        return false;
    const OmIdcodeMatch match = MatchIdcode(detected, bsdl.GetIdcodes());
    versionOnly = !match.whole && !match.pattern.empty();
    return match.whole;
}

bool CheckDeviceCount(const OmDesignSetup& setup, const OmDetectedChain& chain,
                      std::wstring& errors) {
    const size_t expected = setup.devices.size();
    const size_t found = chain.idcodes.size();
    if (chain.atmelBug ? found <= expected : found == expected)
        return true;
    errors =
        Translated("The detected JTAG chain does not conform to current setup:\n"
                   "number of detected devices is different from what is specified in the setup.");
    return false;
}

bool CheckIrLengths(OmDesignSetup& setup, const OmBitVector& captured, std::wstring& errors) {
    if (FindUnknownIrLength(setup) >= 0)
        setup.ResolveIRLengths(captured); // what stays unknown is found next
    const int unknown = FindUnknownIrLength(setup);
    if (unknown >= 0) {
        errors =
            TranslatedFormat("The IR (Instruction Register) length of %ls device is "
                             "unknown.\nPlease, specify either "
                             "the BSDL file or the IR length for this or some other device(s).",
                             FormatDeviceName(setup.devices, unknown).c_str());
        return false;
    }
    if (IrLengthsMatch(setup.devices, captured))
        return true;
    errors = Translated(
        "The detected JTAG chain does not conform to current setup:\n"
        "the detected IR length and the IR length set by user (manually or by means of a BSDL "
        "file) are different at least for one of the devices.");
    return false;
}

std::wstring CheckIdcodes(const OmDesignSetup& setup, const OmDetectedChain& chain,
                          OmAcceptedMismatches* accepted) {
    std::wstring warnings;
    bool allAccepted = accepted != nullptr;
    const size_t compared = std::min(setup.devices.size(), chain.idcodes.size());
    for (size_t back = 1; back <= compared; ++back) {
        const size_t index = setup.devices.size() - back;
        const OmChainDevice& device = setup.devices[index];
        const OmBitVector& detected = chain.idcodes[chain.idcodes.size() - back];
        if (device.Idcode.empty()) // entered by hand: nobody knows what lies from here on to TDI
            break;
        bool versionOnly = false;
        if (!device.bsdl || IdcodeMatches(detected, *device.bsdl, versionOnly))
            continue;
        warnings.insert(0, DescribeMismatch(setup, static_cast<int>(index), versionOnly));
        if (accepted && !EnterMismatch(*accepted, {detected, device.bsdl->GetIdcodes()}))
            allAccepted = false;
    }
    return allAccepted ? std::wstring() : warnings;
}
