#include "flash/BulkProgramming.h"

#include "data/DataImage.h"
#include "flash/Progress.h"
#include "flash/WaitTuner.h"

#include <algorithm>

namespace {

// The walk through the image, and what the user sees of it. Counts words as they are drawn, so it
// runs ahead of the work by one batch at most.
class WordSource {
  public:
    WordSource(const OmBoundaryScanBus& bus, const OmDataImage& image, unsigned wordsPerBlock,
               uint32_t& count)
        : cursor_(image, bus.BusWordBytes(), 0), // a word's missing bytes are wanted as zeros
          total_(ImageWordCount(image, bus.BusWordBytes())), wordsPerBlock_(wordsPerBlock),
          count_(count) {
        count_ = 0;
    }

    bool IsFinished() const { return cursor_.finished; }

    void Draw(std::vector<OmProgramBlock>& blocks, int maxBlocks) {
        count_ += CollectBlocks(cursor_, blocks, static_cast<unsigned>(maxBlocks), wordsPerBlock_);
    }

    // Words cut by the ends of chunks count whole when drawn: the figure could pass 100.
    bool Report(OmProgressCallback& callback) const {
        const uint64_t percent = uint64_t{count_} * 100 / total_;
        return callback.OnProgress(static_cast<int>(std::min<uint64_t>(percent, 100)), nullptr);
    }

  private:
    OmImageWordCursor cursor_;
    uint32_t total_;
    unsigned wordsPerBlock_;
    uint32_t& count_;
};

// An item as long as one can be, to count its scans.
OmProgramBlock FullItem(const OmBulkCommands& commands) {
    return OmProgramBlock(commands.wordsPerBlock);
}

int ItemsWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands, int wait) {
    OmBusCycleBatch sample(bus);
    commands.AppendItem(sample, FullItem(commands), wait);
    return bus.ItemsPerTransfer(static_cast<int>(sample.scans.size()), commands.ClosingScans(),
                                OmTransferKind::Status);
}

int ItemsBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands, int wait) {
    constexpr int kClosingRise = 1;
    OmBusCycleBatch sample(bus);
    commands.AppendBlindItem(sample, FullItem(commands), wait);
    return bus.ItemsPerTransfer(static_cast<int>(sample.scans.size()), kClosingRise,
                                OmTransferKind::Blind);
}

// Programs items until all have passed, the user stops, or there is no use in going on.
class StatusProgrammer {
  public:
    StatusProgrammer(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                     OmProgressCallback& callback, int& wait)
        : bus_(bus), commands_(commands), callback_(callback), wait_(wait), batch_(bus) {
        batch_.SelectForWriting();
        tuner_.maximum = bus.MaxWaitScans();
        wait_ = std::min(wait_, tuner_.maximum);
        commands_.Enter(batch_);
    }

    OmFlashResult Program(WordSource& source) {
        while (!source.IsFinished() && result_ == OmFlashResult::Done) {
            FitBatch();
            pending_.clear();
            source.Draw(pending_, IsTrial() ? 1 : items_);
            ProgramPending(source);
        }
        return result_;
    }

    OmBusCycleBatch& GetBatch() { return batch_; }

  private:
    void FitBatch() {
        if (items_ != 0 && wait_ == fittedWait_)
            return;
        fittedWait_ = wait_;
        items_ = ItemsWithStatus(bus_, commands_, wait_);
    }

    // At the longest wait there is nothing left to be found out.
    bool IsTrial() const {
        return commands_.TriesWaitOnOneItem() && wait_ != tuner_.good && wait_ < tuner_.maximum;
    }

    void ProgramPending(const WordSource& source) {
        while (!pending_.empty()) {
            const OmBulkVerdict verdict = RunPass();
            if (verdict.blockLocked) {
                result_ = OmFlashResult::FlashError;
                return;
            }
            const bool allDone = DropDone(verdict);
            if (!allDone)
                commands_.Recover(batch_, verdict, tuner_.maximum);
            wait_ = NextWaitScans(tuner_, allDone, wait_);
            if (!source.Report(callback_)) {
                result_ = OmFlashResult::Stopped;
                return;
            }
            if (!pending_.empty() && tuner_.failed >= tuner_.maximum) {
                commands_.AfterDrop(batch_);
                return; // what is pending fails at any wait: dropped, and a verify tells
            }
        }
    }

    // Sends what is pending, or the first item of it, and judges each item sent.
    OmBulkVerdict RunPass() {
        const size_t items = IsTrial() ? 1 : pending_.size();
        for (size_t i = 0; i < items; ++i)
            commands_.AppendItem(batch_, pending_[i], wait_);
        commands_.AppendClosing(batch_);
        batch_.RunForCapture(captured_);
        batch_.Clear();
        OmBulkVerdict verdict;
        for (size_t i = 0; i < items; ++i)
            verdict.done.push_back(
                commands_.Judge(bus_, pending_[i], bus_.DecodeDataWord(captured_[i]), verdict));
        return verdict;
    }

    // True if every item sent was done.
    bool DropDone(const OmBulkVerdict& verdict) {
        const auto isDone = [&](size_t item) {
            return item < verdict.done.size() && verdict.done[item];
        };
        size_t kept = 0;
        for (size_t i = 0; i < pending_.size(); ++i)
            if (!isDone(i))
                std::swap(pending_[kept++], pending_[i]);
        pending_.resize(kept);
        return std::find(verdict.done.begin(), verdict.done.end(), false) == verdict.done.end();
    }

    OmBoundaryScanBus& bus_;
    const OmBulkCommands& commands_;
    OmProgressCallback& callback_;
    int& wait_;
    OmBusCycleBatch batch_; // lasts for the whole action: levels stand between transfers
    OmWaitTuner tuner_;
    int items_ = 0;
    int fittedWait_ = 0; // the wait that `items_` was worked out for
    std::vector<OmProgramBlock> pending_;
    OmCapturedList captured_;
    OmFlashResult result_ = OmFlashResult::Done;
};

void Finish(OmBoundaryScanBus& bus, const OmBulkCommands& commands, OmBusCycleBatch& batch) {
    bus.FlushAndSettle(batch);
    commands.Close(batch);
    bus.DriveBusIdle();
}

// Draws and appends up to `items` items and sends them.
void RunBlindBatch(const OmBulkCommands& commands, OmBusCycleBatch& batch, WordSource& source,
                   int items, int wait) {
    std::vector<OmProgramBlock> drawn;
    source.Draw(drawn, items);
    for (const OmProgramBlock& item : drawn)
        commands.AppendBlindItem(batch, item, wait);
    batch.AppendRise(); // ends the last write
    batch.Run();
    batch.Clear();
}

} // namespace

void OmBulkCommands::Open(OmBoundaryScanBus&) const {}

void OmBulkCommands::Enter(OmBusCycleBatch&) const {}

void OmBulkCommands::AppendClosing(OmBusCycleBatch&) const {}

void OmBulkCommands::Recover(OmBusCycleBatch&, const OmBulkVerdict&, int) const {}

void OmBulkCommands::AfterDrop(OmBusCycleBatch&) const {}

void AppendStatusRead(OmBusCycleBatch& batch, int wait) {
    batch.AppendRelease();
    batch.AppendIdle(wait);
    batch.AppendReadPulse();
}

void WaitForFlash(OmBusCycleBatch& batch, int longestWait) {
    batch.AppendIdle(longestWait);
    batch.Run();
    batch.Clear();
}

void AppendBlindWait(OmBusCycleBatch& batch, int wait) {
    if (wait <= 0)
        return; // the next item's first scan ends the write
    batch.AppendRise();
    batch.AppendIdle(wait - 1);
}

OmFlashResult ProgramWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                                OmProgressCallback& callback, const OmDataImage& image, int& wait,
                                uint32_t& count) {
    WordSource source(bus, image, commands.wordsPerBlock, count);
    if (source.IsFinished())
        return OmFlashResult::Done;
    commands.Open(bus);
    StatusProgrammer programmer(bus, commands, callback, wait);
    const OmFlashResult result = programmer.Program(source);
    Finish(bus, commands, programmer.GetBatch());
    return result;
}

OmFlashResult ProgramBlind(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                           OmProgressCallback& callback, const OmDataImage& image, int wait,
                           uint32_t& count) {
    WordSource source(bus, image, commands.wordsPerBlock, count);
    if (source.IsFinished())
        return OmFlashResult::Done;
    commands.Open(bus);
    const int items = ItemsBlind(bus, commands, wait);
    OmBusCycleBatch batch(bus);
    batch.SelectForWriting();
    commands.Enter(batch);
    OmFlashResult result = OmFlashResult::Done;
    while (!source.IsFinished() && result == OmFlashResult::Done) {
        RunBlindBatch(commands, batch, source, items, wait);
        if (!source.Report(callback))
            result = OmFlashResult::Stopped;
    }
    Finish(bus, commands, batch);
    return result;
}
