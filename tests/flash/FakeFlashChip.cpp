#include "tests/flash/FakeFlashChip.h"

#include <algorithm>

namespace {

constexpr uint32_t kReady = 0x80;           // DQ7 of erased data, SR7
constexpr uint32_t kAmdTimeExceeded = 0x20; // DQ5
constexpr uint8_t kIntelEraseError = 0x20;
constexpr uint8_t kIntelLocked = 0x02;

} // namespace

bool FakeFlashChip::Saw(uint8_t command) const {
    return std::any_of(writes.begin(), writes.end(),
                       [command](const BusWrite& w) { return (w.data & 0xFF) == command; });
}

void FakeFlashChip::Write(uint32_t address, uint32_t data) {
    address &= addressMask;
    data &= mask;
    writes.push_back({address, data});
    if (family == FakeFlashFamily::Amd)
        WriteAmd(address, data);
    else
        WriteIntel(address, data);
}

uint32_t FakeFlashChip::Read(uint32_t address) {
    address &= addressMask;
    if (statusMode_)
        return status_;
    const auto cell = cells.find(address);
    return cell == cells.end() ? mask : cell->second;
}

void FakeFlashChip::Program(uint32_t address, uint32_t data) {
    const auto cell = cells.try_emplace(address, mask).first;
    cell->second &= data;
}

void FakeFlashChip::EraseSector(uint32_t address) {
    const uint32_t sector = SectorOf(address);
    erased.push_back(sector);
    cells.erase(cells.lower_bound(sector), cells.lower_bound(sector + sectorWords));
}

void FakeFlashChip::EraseAll() {
    erased.push_back(0);
    cells.clear();
}

// Count, words, confirmation of a buffered program. True while it takes the cycle.
bool FakeFlashChip::TakeBufferWrite(uint32_t address, uint32_t data, uint8_t confirm) {
    if (bufferState_ == 1) {
        bufferLeft_ = data + 1;
        bufferState_ = 2;
    } else if (bufferState_ == 2) {
        buffer_.push_back({address, data});
        bufferState_ = --bufferLeft_ == 0 ? 3 : 2;
    } else if (bufferState_ == 3) {
        if ((data & 0xFF) == confirm)
            for (const BusWrite& word : buffer_)
                Program(word.address, word.data);
        bufferState_ = 0;
        buffer_.clear();
    } else {
        return false;
    }
    return true;
}

void FakeFlashChip::WriteAmd(uint32_t address, uint32_t data) {
    const auto code = static_cast<uint8_t>(data);
    if (TakeBufferWrite(address, data, 0x29))
        return;
    if (command_ == 0xA0) {
        command_ = 0;
        Program(address, data);
        return;
    }
    if (code == 0x30 && command_ == 0x80) {
        const uint32_t sector = SectorOf(address);
        statusMode_ = failing.count(sector) != 0 || neverReady.count(sector) != 0;
        status_ = failing.count(sector) != 0 ? kAmdTimeExceeded : 0;
        if (!statusMode_)
            EraseSector(address);
    } else if (code == 0x10 && command_ == 0x80) {
        statusMode_ = !failing.empty() || !neverReady.empty();
        status_ = failing.empty() ? 0 : kAmdTimeExceeded;
        if (!statusMode_)
            EraseAll();
    } else if (code == 0xF0) {
        statusMode_ = false;
        command_ = 0;
    } else if (code == 0x25) {
        bufferState_ = 1;
    } else if (code == 0x80 || code == 0xA0) {
        command_ = code;
    }
}

void FakeFlashChip::SetIntelStatus(uint32_t sector, uint8_t errorBits) {
    statusMode_ = true;
    status_ = neverReady.count(sector) ? 0 : kReady;
    if (failing.count(sector))
        status_ |= errorBits;
    if (locked.count(sector))
        status_ |= kIntelLocked;
}

void FakeFlashChip::WriteIntel(uint32_t address, uint32_t data) {
    const auto code = static_cast<uint8_t>(data);
    const uint32_t sector = SectorOf(address);
    if (bufferState_ == 3)
        SetIntelStatus(sector, 0x10);
    if (TakeBufferWrite(address, data, 0xD0))
        return;
    const uint8_t first = command_;
    command_ = 0;
    if (first == 0x40) {
        SetIntelStatus(sector, 0x10);
        if (!locked.count(sector))
            Program(address, data);
    } else if (first == 0x20 && code == 0xD0) {
        SetIntelStatus(sector, kIntelEraseError);
        if (status_ == kReady)
            EraseSector(address);
    } else if (first == 0x60) {
        SetIntelStatus(sector, code == 0xD0 ? 0x20 : 0x10);
        lockChanges.push_back(sector);
    } else if (code == 0xFF) {
        statusMode_ = false;
    } else if (code == 0xE8) {
        bufferState_ = 1;
    } else if (code == 0x40 || code == 0x20 || code == 0x60) {
        command_ = code;
    }
}
