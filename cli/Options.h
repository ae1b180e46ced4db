// What the user asked for on the command line.
#pragma once

#include "cli/Numbers.h"
#include "data/DataFormats.h"
#include "jtag/ConnectionSettings.h"

#include <cstdint>
#include <optional>
#include <string>

enum class OmEraseChoice { Automatic, Needed, Chip, None, Sectors };

// Everything that is set replaces what the settings store has.
struct OmConnectionChoice {
    std::optional<OmCableType> cable;
    std::optional<int32_t> frequency; // Hz
    std::optional<std::string> serial;
    std::optional<std::string> description;
    std::optional<int32_t> lptPort;    // 0 for LPT1
    std::optional<std::string> server; // host name and port of a J-Link on the network
    std::optional<bool> adaptiveClocking;

    bool operator==(const OmConnectionChoice&) const = default;
};

struct OmCliOptions {
    OmConnectionChoice connection;
    bool yes = false;
    bool log = false;
    bool quiet = false;

    std::string setupFile;
    std::string dataFile; // empty: none
    std::string outputFile;
    std::string bsdlFile;
    const OmDataFormat* format = nullptr; // of the output
    std::optional<uint32_t> from;         // image address
    std::optional<uint32_t> size;         // bytes
    std::optional<uint32_t> offset;       // where the data is to begin instead of its own address
    OmEraseChoice erase = OmEraseChoice::Automatic;
    std::vector<OmSectorRun> sectors;
    bool allSectors = false;
    bool verify = true;
};
