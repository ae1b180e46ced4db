// What a command set adds to the loops that program a data image (flash/BulkProgramming.h): the
// scans of one item, what its status says, and how the flash is brought back after a failure.
#pragma once

#include "flash/BusCycleBatch.h"
#include "flash/ImageWordCursor.h"

#include <cstdint>

// What the status of an item says.
enum class OmItemState {
    Done,
    Busy,      // not done yet, or nobody knows
    NotTaken,  // the flash has given up the command before it began
    Failed,    // the flash could not program it
    Forbidden, // the flash refuses, and will refuse all that follows: programming ends
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

    // One item up to the one captured scan of its status, after `wait` idle scans.
    virtual void AppendItem(OmBusCycleBatch& batch, const OmProgramBlock& item, int wait) const = 0;

    // The scans that follow each item, and those that end a batch of items.
    virtual void AppendItemEnd(OmBusCycleBatch& batch) const;
    virtual void AppendClosing(OmBusCycleBatch& batch) const;
    virtual int ClosingScans() const = 0;

    // One item without a status read; what follows it ends its last write.
    virtual void AppendBlindItem(OmBusCycleBatch& batch, const OmProgramBlock& item,
                                 int wait) const = 0;

    // Looks at the status word of an item that was sent to a flash which took commands. (After one
    // that was not, a status tells nothing: an array that ignored the command can show the data.)
    virtual OmItemState Judge(const OmBoundaryScanBus& bus, const OmProgramBlock& item,
                              uint32_t status) const = 0;

    // True if the item can do harm when it reaches a flash that is busy and gets ready in the
    // middle of it, so that its data are taken for commands. Such an item is sent only when all
    // before it is known to be done.
    virtual bool CanDoHarm(const OmBoundaryScanBus& bus, const OmProgramBlock& item) const;

    // Recovery, of a flash in any state, `item` being the one that failed. The longest wait lies
    // ahead of each of the two. First: ends commands taken by half, and resumes an operation that
    // data have suspended. Then: makes the flash take items again.
    virtual void Resume(OmBusCycleBatch& batch, const OmProgramBlock& item) const = 0;
    virtual void Renew(OmBusCycleBatch& batch) const = 0;

    // After the last item has settled.
    virtual void Close(OmBusCycleBatch& batch) const = 0;

    unsigned wordsPerBlock; // 1: word by word
};

// The end of an item with status: the data bus released, `wait` idle scans, one captured read.
void AppendStatusRead(OmBusCycleBatch& batch, int wait);

// The end of an item without: `wait` scans, of which the first ends the write.
void AppendBlindWait(OmBusCycleBatch& batch, int wait);
