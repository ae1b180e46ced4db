// The chain of a setup as the user sees it: one piece of HTML a device, with links that lead to
// what can be changed. No windows here.
#pragma once

#include "setup/DesignSetup.h"

#include <optional>
#include <string>

// `index` counts the devices from 0.
std::wstring FormatChainItem(const OmChainDevice& device, int index);

enum class OmChainAction { Bsdl, PinMap, IrLength };

struct OmChainLink {
    OmChainAction action;
    int device; // from 0; may be beyond the chain
};

// What the `href` of a link stands for; nothing for any other text.
std::optional<OmChainLink> ParseChainLink(const std::wstring& href);

// Which of the actions a device allows.
bool CanChoosePinMap(const OmChainDevice& device);
bool CanEnterIrLength(const OmChainDevice& device);
