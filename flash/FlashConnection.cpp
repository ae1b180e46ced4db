#include "flash/FlashConnection.h"

#include "flash/Progress.h"
#include "jtag/ConnectionObstacles.h"
#include "jtag/Exception.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

namespace {

constexpr const char* kAdaptiveClockingWarning = ForTranslation(
    "Adaptive Clocking is enabled!\n\nUse Adaptive Clocking ONLY IF a target device in a JTAG "
    "chain and a JTAG adapter support this feature! Otherwise, the software will hang up with no "
    "error messages (!) upon attempt to shift data into a JTAG chain.\n\nIgnore this warning and "
    "continue with adaptive clocking enabled?");

} // namespace

OmFlashConnection::OmFlashConnection() = default;

OmFlashConnection::~OmFlashConnection() = default;

void OmFlashConnection::OnOtherConnection() {}

bool OmFlashConnection::OpenCable() {
    if (!cable || !settings.SameConnection(applied))
        ReplaceCable();
    if (analyzer)
        analyzer->SetCable(cable.get());
    else
        analyzer = std::make_unique<OmChainAnalyzer>(cable.get());
    return cable != nullptr;
}

// The old cable goes first: most pods can be opened only once.
void OmFlashConnection::ReplaceCable() {
    if (analyzer)
        analyzer->SetCable(nullptr);
    cable.reset();
    cable = createCable(settings);
    if (!settings.SameConnection(applied))
        OnOtherConnection();
    applied = settings;
    if (!cable)
        GetUserInterface().ShowFailure(Translated("Failed to initialize a JTAG connection"),
                                       DescribeObstacles(settings));
}

void OmFlashConnection::CloseCable() {
    analyzer.reset();
    cable.reset();
}

bool OmFlashConnection::ConfirmAdaptiveClocking() {
    if (adaptiveWarningAnswered || !settings.ftd2xxAdaptiveClocking ||
        settings.cableType != OmCableType::Ftd2xx || !settings.ftd2xxIsHighSpeed)
        return true;
    const OmAnswer answer = GetUserInterface().ShowMessage(Translated(kAdaptiveClockingWarning),
                                                           Translated("Warning"), kLossQuestionBox);
    adaptiveWarningAnswered = answer == OmAnswer::Yes;
    return adaptiveWarningAnswered;
}

bool OmFlashConnection::JtagReset() {
    return Guarded(nullptr, [this] {
        if (!OpenCable() || !ConfirmAdaptiveClocking())
            return false;
        analyzer->ResetTap();
        return true;
    });
}

// An analyzer that a failed OpenCable left behind has no HAL to scan through.
bool OmFlashConnection::OpenForAnalysis() {
    return (analyzer && analyzer->hal) || OpenCable();
}

bool OmFlashConnection::ExamineChain(std::vector<OmBitVector>& chain, bool& atmelBug) {
    chain.clear();
    atmelBug = false;
    return Guarded(nullptr, [&] {
        if (!OpenForAnalysis())
            return false;
        const OmBusyCursor busy;
        return analyzer->AnalyzeChain(chain, atmelBug);
    });
}

bool OmFlashConnection::CaptureChainIr(OmBitVector& bits) {
    bits.clear();
    return Guarded(nullptr, [&] {
        if (!OpenForAnalysis())
            return false;
        const OmBusyCursor busy;
        return analyzer->CaptureChainIr(bits);
    });
}

bool OmFlashConnection::Guarded(OmProgressCallback* callback, const std::function<bool()>& action) {
    try {
        return action();
    } catch (const OmException& exception) {
        if (callback)
            callback->OnFinish();
        ShowMessage(exception.GetText(), kErrorBox);
        CloseCable();
        return false;
    }
}
