// The loops that program a data image: many operations laid into one list of scans, with a tuned
// number of idle scans as the wait. What a command set adds is an OmBulkCommands.
#pragma once

#include "flash/BusCycleBatch.h"
#include "flash/ImageWordCursor.h"

#include <cstdint>
#include <vector>

class OmProgressCallback;

// What the captures of one batch say.
struct OmBulkVerdict {
    std::vector<bool> done;    // by item
    bool writeAborted = false; // the flash waits for an abort reset
    bool blockLocked = false;  // programming ends
};

// One way of programming: a command set, by words or by blocks.
class OmBulkCommands {
  public:
    explicit OmBulkCommands(unsigned words) : wordsPerBlock(words) {}

    virtual ~OmBulkCommands() = default;

    // Ahead of everything.
    virtual void Open(OmBoundaryScanBus& bus) const;

    // Into the batch that lasts for the whole action, before its first item.
    virtual void Enter(OmBusCycleBatch& batch) const;

    // One item that ends in the one captured scan of its status, after `wait` idle scans.
    virtual void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const = 0;

    // The scans that end a batch of such items.
    virtual void AppendClosing(OmBusCycleBatch& batch) const;
    virtual int ClosingScans() const = 0;

    // One item without a status read; what follows it ends its last write.
    virtual void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                                 int wait) const = 0;

    // Looks at the status word of one item: true if it is programmed. `verdict` holds what the
    // items ahead of it in the batch have said.
    virtual bool Judge(const OmBoundaryScanBus& bus, const OmProgramBlock& item, uint32_t status,
                       OmBulkVerdict& verdict) const = 0;

    // True if what is sent while the flash is busy can do harm: then a wait that is not proven is
    // tried on one item alone.
    virtual bool TriesWaitOnOneItem() const { return false; }

    // After a pass in which not every item was done: makes the flash take commands again.
    // `longestWait` is that of the tuner, in scans.
    virtual void Recover(OmBusCycleBatch& batch, const OmBulkVerdict& verdict,
                         int longestWait) const;

    // After items that failed at the longest wait have been dropped: makes the flash take those
    // that follow.
    virtual void AfterDrop(OmBusCycleBatch& batch) const;

    // After the last item has settled.
    virtual void Close(OmBusCycleBatch& batch) const = 0;

    unsigned wordsPerBlock; // 1: word by word
};

// The end of an item with status: the data bus released, `wait` idle scans, one captured read.
void AppendStatusRead(OmBusCycleBatch& batch, int wait);

// Lets a running operation end, so that the next command is not ignored.
void WaitForFlash(OmBusCycleBatch& batch, int longestWait);

// The end of an item without: `wait` scans, of which the first ends the write.
void AppendBlindWait(OmBusCycleBatch& batch, int wait);

// Programs every word that `image` touches and tunes `wait`, the idle scans ahead of a status read,
// as it goes. `count` counts the words drawn from the image. An item that fails at the longest wait
// is dropped without a word: a verify finds the hole. Done, Stopped, or FlashError for a locked
// block.
OmFlashResult ProgramWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                                OmProgressCallback& callback, const OmDataImage& image, int& wait,
                                uint32_t& count);

// The same with nothing read back. Done or Stopped.
OmFlashResult ProgramBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                           OmProgressCallback& callback, const OmDataImage& image, int wait,
                           uint32_t& count);
