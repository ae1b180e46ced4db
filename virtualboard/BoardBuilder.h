// Makes small boards for tests: given the flash and the taste of the boundary cells, it lays out
// the devices and tells everything a matching setup needs.
//
//   const vb::BuiltBoard built = vb::BoardBuilder().Flash("amd16-64m").Chips(2).Build();
//   built.WriteTo(folder);          // the BSDL files, and board.txt for VIRTUALBOARD
//   built.Install();                // or: the board of this process, at once
#pragma once

#include "virtualboard/Board.h"
#include "virtualboard/BsdlWriter.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace vb {

// A flash signal ("CE", "OE", "WE", "A7", "D0") on a device pin. Chips share address and control
// lines; data lines are numbered over all chips, low chip first.
struct Connection {
    std::string signal;
    size_t device = 0; // in the chain, 0 is nearest TDI
    std::string port;
    int portIndex = -1; // -1 for a scalar port
    bool inverted = false;
};

// A pin that the setup has to hold, such as the flash's RESET.
struct StaticConnection {
    std::string signal;
    size_t device = 0;
    std::string port;
    int portIndex = -1;
    bool level = true;
};

struct BuiltDevice {
    std::string name; // "U1" and so on
    std::string entity;
    std::string fileName;
    std::string bsdl;
    unsigned instructionLength = 0;
    uint32_t idcode = 0; // 0 for none
    bool used = false;   // carries flash signals
};

struct BuiltBoard {
    std::vector<BuiltDevice> chain; // in the order of the chain, the device nearest TDI first
    std::vector<Connection> connections;
    std::vector<StaticConnection> statics;
    FlashParameters flash;
    unsigned chips = 1;
    std::string boardText;

    std::unique_ptr<Board> MakeBoard() const;
    // Makes it the board of this process; the reference holds until another one is installed.
    Board& Install() const;
    // Writes the BSDL files and the board file "board.txt" into an existing folder.
    void WriteTo(const std::string& folder) const;
    // Length of the DR path with the used devices in EXTEST and the others in BYPASS.
    size_t ExtestBits() const;
};

class BoardBuilder {
  public:
    BoardBuilder();

    BoardBuilder& Flash(const std::string& model);
    BoardBuilder& Flash(const FlashParameters& parameters);
    // One property of the flash, as in a board file: Set("cfi", "none").
    BoardBuilder& Set(const std::string& key, const std::string& value);
    BoardBuilder& Chips(unsigned count);
    // The same for one chip of several, counted from 0: chips need not be equal.
    BoardBuilder& SetChip(unsigned chip, const std::string& key, const std::string& value);
    // The flash's pins are spread over so many devices.
    BoardBuilder& Devices(unsigned count);
    BoardBuilder& Cells(PinStyle style);
    BoardBuilder& DisableValue(bool value);
    BoardBuilder& Padding(unsigned cellsPerDevice);
    // Devices with no flash signal, nearer TDI and nearer TDO than the others.
    BoardBuilder& UnusedBefore(unsigned count);
    BoardBuilder& UnusedAfter(unsigned count);
    BoardBuilder& InvertedChipEnable();
    // CE is tied low on the board and on no device pin.
    BoardBuilder& TiedChipEnable();
    BoardBuilder& StaticReset();
    BoardBuilder& Idcode(size_t device, uint32_t idcode);
    // A further line for the board file: a pod, a fault, a pull.
    BoardBuilder& Line(const std::string& line);

    BuiltBoard Build() const;

  private:
    class Layout;

    FlashParameters flash_;
    unsigned chips_ = 1;
    unsigned devices_ = 2;
    PinStyle style_ = PinStyle::SharedControl;
    bool disableValue_ = true;
    unsigned padding_ = 0;
    unsigned before_ = 0;
    unsigned after_ = 0;
    bool invertedChipEnable_ = false;
    bool tiedChipEnable_ = false;
    bool staticReset_ = false;
    std::vector<std::pair<size_t, uint32_t>> idcodes_;
    std::map<unsigned, std::string> chipKeys_; // further keys for the board file
    std::vector<std::string> lines_;
};

} // namespace vb
