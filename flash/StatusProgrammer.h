// The loop that programs items and reads their status. It never takes a status for more than it
// says: an item counts as done only if the flash was known to take commands when it was sent.
//
//             +--------- item done, wait not proven ---------+
//             v                                              |
//        +---------+   item done, wait proven          +-----------+
//   ---> |  Trial  | --------------------------------> |  Proven   |
//        +---------+                                   +-----------+
//          |  ^   ^                                          |
//          |  |   |     flash takes commands          +------+------+
//          |  |   +---------------------------------- | Recovering  | <- an item not done
//          |  |                                       +-------------+
//          |  |                                         ^         ^
//          |  +--- (the next item, or this one again)   |         |
//          |        item not done -----------------------         |
//          |        not done again, right after a recovery        |
//          +------------------------------------> GivingUp -------+
//                                                    | the user says no
//                                                    v
//                                                   end
//
// Trial: one item alone; nothing else is sent until it is settled, so that nothing sent can meet a
// busy flash. Proven: whole batches; of a batch, the items ahead of the first that is not done
// count, and no other. Recovering: the longest wait, then what ends commands taken by half and
// resumes what data have suspended, the longest wait again, and the way back to taking items.
// GivingUp: the item is counted; the proven wait stays what it is.
#pragma once

#include "flash/BulkCommands.h"
#include "flash/WaitTuner.h"

#include <cstdint>
#include <vector>

class OmWordSource;

class OmStatusProgrammer {
  public:
    // All must outlive the programmer. `wait` receives what has been proven; it stays where nothing
    // has.
    OmStatusProgrammer(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                       OmProgressCallback& callback, int& wait);

    // Until all items are done or given up, the user stops, or the flash forbids to program.
    OmFlashResult Program(OmWordSource& source);

    // Tells the user if too many items failed to leave them to a verify: then Told, else `result`.
    OmFlashResult TellFailures(OmFlashResult result);

    OmBusCycleBatch& GetBatch() { return batch_; }

  private:
    enum class State { Trial, Proven, Recovering, GivingUp };

    // How an item alone went.
    struct Trial {
        OmItemState state = OmItemState::Busy;
        int tooShort = -1;  // the wait of the last look at which it was not done
        int enough = -1;    // the wait of the look at which it was; -1 if it got done later
        bool isSure = true; // else the item is sent again
    };

    bool Refill(OmWordSource& source);
    bool IsTelling(const OmProgramBlock& item) const;
    void Step();

    // --- Trial
    void TryOneItem();
    void ChooseItem();
    Trial RunAlone(const OmProgramBlock& item);
    void AppendLooks(std::vector<int>& waits);
    Trial FindDone(const OmProgramBlock& item, const std::vector<int>& waits) const;
    OmItemState PollUntilSettled(const OmProgramBlock& item, OmItemState state);
    void AppendEnd();
    void Accept(const Trial& trial);
    void Learn(const Trial& trial);
    void Reject(OmItemState state);

    // --- Proven
    void SendBatch();
    void FitBatch();
    size_t BatchSize() const;
    void SendItems(size_t items);
    void Settle(size_t sent);

    void Recover();
    void GiveUp();
    bool UserGoesOn();

    void Run();
    OmItemState JudgeCapture(const OmProgramBlock& item, size_t index) const;
    void DropFirst(size_t items);
    std::wstring DescribeFailures(const wchar_t* format) const;

    OmBoundaryScanBus& bus_;
    const OmBulkCommands& commands_;
    OmProgressCallback& callback_;
    int& wait_;
    OmBusCycleBatch batch_; // lasts for the whole action: levels stand between transfers
    OmWaitTuner tuner_;
    State state_ = State::Trial;
    std::vector<OmProgramBlock> pending_; // drawn and not done
    OmProgramBlock toRecover_;            // the last that was not done
    OmCapturedList captured_;
    OmFlashResult result_ = OmFlashResult::Done;
    int items_ = 0; // of a batch
    int fittedWait_ = -1;

    // --- the item at the head of `pending_`, when it was not done
    bool isSuspect_ = false; // it is to be sent alone
    bool failedInBatch_ = false;
    bool hasRecovered_ = false; // nothing has been sent since a recovery
    int notTaken_ = 0;          // times in a row

    // --- given up
    uint32_t failedItems_ = 0;
    uint32_t failedWords_ = 0;
    uint32_t firstFailed_ = 0; // bus word
    uint32_t askAbove_;        // items
};
