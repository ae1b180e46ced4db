// Cables by the names that are typed, and what the connection options mean to each.
#pragma once

#include "cli/Options.h"

#include <string>

// Null for an unknown name.
std::optional<OmCableType> FindCable(const std::string& name);

std::string GetCableName(OmCableType type);
bool HasParallelPort(OmCableType type);

// "ft2232, usb-blaster, ..."
std::string ListCableNames();

// What to tell of the TCK that a cable has come to, empty if it is the one that was asked for.
std::string DescribeFrequency(const OmConnectionChoice& choice, uint32_t applied);

// Changes `settings` as chosen. False with a text if an option means nothing to the cable or its
// value is out of range.
bool ApplyConnection(const OmConnectionChoice& choice, OmConnectionSettings& settings,
                     std::string& error);
