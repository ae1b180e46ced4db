#include "flash/StatusProgrammer.h"

#include "flash/Progress.h"
#include "flash/WordSource.h"
#include "platform/Text.h"
#include "platform/Translation.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <utility>

namespace {

// So many items that failed are left to a verify, which names the first. More mean that something
// is wrong with the board, the setup or the erase: the user decides, and again at ten times as
// many.
constexpr uint32_t kFewFailures = 3;
constexpr uint32_t kAskAgainFactor = 10;

// A command that was not taken costs next to nothing and can be sent again more often.
constexpr int kMaxNotTaken = 8;

// Looks at a measured item, a sixteenth of the time apart: they reach from two thirds of what the
// item before took to one and a half times of it.
constexpr int kLooks = 16;

// The longest stretch of blank items behind which a trial looks for one that tells something.
constexpr size_t kLookAhead = 1024;

int ItemsWithStatus(OmBoundaryScanBus& bus, const OmBulkCommands& commands, int wait) {
    OmBusCycleBatch sample(bus);
    commands.AppendItem(sample, OmProgramBlock(commands.wordsPerBlock), wait);
    commands.AppendItemEnd(sample);
    return bus.ItemsPerTransfer(static_cast<int>(sample.scans.size()), commands.ClosingScans(),
                                OmTransferKind::Status);
}

OmProgramTime TimeOfItem(const OmBoundaryScanBus& bus, const OmBulkCommands& commands) {
    return commands.wordsPerBlock > 1 ? bus.programTimes.buffer : bus.programTimes.word;
}

OmWaitTuner MakeTuner(const OmBoundaryScanBus& bus, const OmBulkCommands& commands, int known) {
    const OmProgramTime time = TimeOfItem(bus, commands);
    const int longest = std::max(bus.MaxWaitScans(), bus.WaitScansFor(time.maximum));
    return OmWaitTuner(longest, known, bus.WaitScansFor(time.typical));
}

} // namespace

OmStatusProgrammer::OmStatusProgrammer(OmBoundaryScanBus& bus, const OmBulkCommands& commands,
                                       OmProgressCallback& callback, int& wait)
    : bus_(bus), commands_(commands), callback_(callback), wait_(wait), batch_(bus),
      tuner_(MakeTuner(bus, commands, wait)), askAbove_(kFewFailures) {
    batch_.SelectForWriting();
    commands_.Enter(batch_);
}

OmFlashResult OmStatusProgrammer::Program(OmWordSource& source) {
    while (result_ == OmFlashResult::Done && Refill(source)) {
        Step();
        if (tuner_.IsProven())
            wait_ = tuner_.Wait();
        if (result_ == OmFlashResult::Done && !source.Report(callback_))
            result_ = OmFlashResult::Stopped;
    }
    if (state_ == State::Recovering)
        Recover(); // the end must not find a flash that is suspended or takes no commands
    return result_;
}

// False if nothing is left to program.
bool OmStatusProgrammer::Refill(OmWordSource& source) {
    if (state_ == State::Proven && pending_.empty()) {
        FitBatch();
        source.Draw(pending_, items_);
    }
    const auto wantsMore = [&] {
        return state_ == State::Trial && !isSuspect_ && pending_.size() < kLookAhead &&
               std::ranges::none_of(pending_, [this](const auto& item) { return IsTelling(item); });
    };
    while (!source.IsFinished() && (pending_.empty() || wantsMore()))
        source.Draw(pending_, 1);
    return !pending_.empty();
}

// A blank item is done in no time, and shows the same when it was ignored.
bool OmStatusProgrammer::IsTelling(const OmProgramBlock& item) const {
    const uint32_t blank = bus_.EveryLaneValue(0xFFFFFFFF);
    return std::ranges::any_of(
        item, [blank](const OmFlashWord& word) { return (word.value & blank) != blank; });
}

void OmStatusProgrammer::Step() {
    switch (state_) {
    case State::Trial:
        return TryOneItem();
    case State::Proven:
        return SendBatch();
    case State::Recovering:
        return Recover();
    case State::GivingUp:
        return GiveUp();
    }
}

void OmStatusProgrammer::TryOneItem() {
    ChooseItem();
    const Trial trial = RunAlone(pending_.front());
    if (trial.state == OmItemState::Done)
        Accept(trial);
    else if (trial.state == OmItemState::Forbidden)
        result_ = OmFlashResult::FlashError;
    else
        Reject(trial.state);
}

void OmStatusProgrammer::ChooseItem() {
    if (isSuspect_)
        return;
    const auto telling =
        std::ranges::find_if(pending_, [this](const auto& item) { return IsTelling(item); });
    if (telling != pending_.end())
        std::rotate(pending_.begin(), telling, telling + 1);
}

// What ends an item can clear the status. An item that is looked at several times has its end only
// when it is settled; one that is looked at once, and was not done, is sent again if its end could
// have cleared an error that nobody has seen.
OmStatusProgrammer::Trial OmStatusProgrammer::RunAlone(const OmProgramBlock& item) {
    const bool measures = tuner_.Measures();
    std::vector<int> waits{tuner_.Wait()};
    commands_.AppendItem(batch_, item, waits.front());
    if (measures)
        AppendLooks(waits);
    else
        AppendEnd();
    Run();
    Trial trial = FindDone(item, waits);
    if (trial.enough < 0 && trial.state != OmItemState::Forbidden) {
        trial.state = PollUntilSettled(item, trial.state);
        trial.isSure = measures || commands_.ClosingScans() == 0;
    }
    if (measures && trial.state == OmItemState::Done)
        AppendEnd();
    return trial;
}

void OmStatusProgrammer::AppendEnd() {
    commands_.AppendItemEnd(batch_);
    commands_.AppendClosing(batch_);
}

void OmStatusProgrammer::AppendLooks(std::vector<int>& waits) {
    constexpr int kScansOfALook = 2;
    while (waits.size() < kLooks && waits.back() < tuner_.Longest()) {
        const int pause = waits.back() / kLooks;
        batch_.AppendIdle(pause);
        batch_.AppendReadPulse();
        waits.push_back(waits.back() + pause + kScansOfALook);
    }
}

OmStatusProgrammer::Trial OmStatusProgrammer::FindDone(const OmProgramBlock& item,
                                                       const std::vector<int>& waits) const {
    Trial trial;
    for (size_t look = 0; look < waits.size(); ++look) {
        trial.state = JudgeCapture(item, look);
        if (trial.state == OmItemState::Forbidden)
            return trial;
        if (trial.state == OmItemState::Done) {
            trial.enough = waits[look];
            return trial;
        }
        trial.tooShort = waits[look];
    }
    return trial;
}

// Nothing but reads reaches the flash. A failure counts when it is seen twice: the bit that tells
// it can be read while the operation ends. Times are not measured here, for the host's pauses are
// in them.
OmItemState OmStatusProgrammer::PollUntilSettled(const OmProgramBlock& item, OmItemState state) {
    batch_.ReleaseData(); // the end of the item has driven it
    int pause = std::max(tuner_.Wait() / 4, 1);
    for (int waited = 0; waited < tuner_.Longest(); pause *= 2) {
        pause = std::min(pause, tuner_.Longest() - waited);
        batch_.AppendIdle(pause);
        batch_.AppendReadPulse();
        Run();
        waited += pause;
        const OmItemState before = std::exchange(state, JudgeCapture(item, 0));
        const bool isSettled = state != OmItemState::Busy && state == before;
        if (isSettled || state == OmItemState::Done || state == OmItemState::Forbidden)
            break;
    }
    return state;
}

void OmStatusProgrammer::Accept(const Trial& trial) {
    if (!trial.isSure && tuner_.Wait() >= tuner_.Longest())
        return Reject(OmItemState::Busy);
    Learn(trial);
    if (trial.isSure)
        DropFirst(1);
    state_ = tuner_.IsProven() ? State::Proven : State::Trial;
}

// A proven wait was too short for an item that failed among others, or that got done late.
void OmStatusProgrammer::Learn(const Trial& trial) {
    const bool isLate = trial.enough < 0;
    if (tuner_.IsProven()) {
        if (failedInBatch_ || isLate)
            tuner_.WasTooShort();
        failedInBatch_ = false;
    } else if (isLate) {
        tuner_.TookLonger(trial.tooShort);
    } else {
        tuner_.Took(trial.tooShort, trial.enough);
    }
}

void OmStatusProgrammer::Reject(OmItemState state) {
    notTaken_ = state == OmItemState::NotTaken ? notTaken_ + 1 : kMaxNotTaken;
    const bool isHopeless = hasRecovered_ && notTaken_ >= kMaxNotTaken;
    toRecover_ = pending_.front();
    state_ = isHopeless ? State::GivingUp : State::Recovering;
}

void OmStatusProgrammer::SendBatch() {
    FitBatch();
    const size_t items = BatchSize();
    SendItems(items);
    Settle(items);
}

void OmStatusProgrammer::FitBatch() {
    if (tuner_.Wait() == fittedWait_)
        return;
    fittedWait_ = tuner_.Wait();
    items_ = ItemsWithStatus(bus_, commands_, fittedWait_);
}

// An item that can do harm is the first of its batch: all before it are known to be done.
size_t OmStatusProgrammer::BatchSize() const {
    const size_t most = std::min(pending_.size(), static_cast<size_t>(items_));
    for (size_t item = 1; item < most; ++item)
        if (commands_.CanDoHarm(bus_, pending_[item]))
            return item;
    return most;
}

void OmStatusProgrammer::SendItems(size_t items) {
    for (size_t item = 0; item < items; ++item) {
        commands_.AppendItem(batch_, pending_[item], tuner_.Wait());
        commands_.AppendItemEnd(batch_);
    }
    commands_.AppendClosing(batch_);
    Run();
}

// What follows an item that is not done does not count: the flash can have ignored it, and show
// what was there before, or the status of another.
void OmStatusProgrammer::Settle(size_t sent) {
    size_t done = 0;
    OmItemState state = OmItemState::Done;
    while (done < sent && state == OmItemState::Done) {
        state = JudgeCapture(pending_[done], done);
        done += state == OmItemState::Done ? 1 : 0;
    }
    DropFirst(done);
    if (state == OmItemState::Forbidden)
        result_ = OmFlashResult::FlashError;
    if (done == sent || state == OmItemState::Forbidden)
        return;
    failedInBatch_ = true;
    toRecover_ = pending_.front();
    state_ = State::Recovering;
}

void OmStatusProgrammer::Recover() {
    batch_.AppendIdle(tuner_.Longest());
    commands_.Resume(batch_, toRecover_);
    batch_.AppendIdle(tuner_.Longest());
    commands_.Renew(batch_);
    batch_.Run();
    batch_.Clear();
    hasRecovered_ = true;
    isSuspect_ = true;
    state_ = State::Trial;
}

// The next item is sent alone too, after a recovery: where one has failed, more can.
void OmStatusProgrammer::GiveUp() {
    if (failedItems_++ == 0)
        firstFailed_ = pending_.front().front().address;
    failedWords_ += static_cast<uint32_t>(pending_.front().size());
    DropFirst(1);
    state_ = State::Recovering;
    if (failedItems_ > askAbove_ && !UserGoesOn())
        result_ = OmFlashResult::Stopped;
}

bool OmStatusProgrammer::UserGoesOn() {
    askAbove_ = failedItems_ * kAskAgainFactor;
    const std::wstring text = DescribeFailures(
        Translated("%u words could not be programmed so far, the first at offset %05Xh.\nThe flash "
                   "may be not erased, protected, defective or not connected as the setup "
                   "says.\n\nGo on programming the rest?")
            .c_str());
    return ShowMessage(text, kLossQuestionBox) == OmAnswer::Yes;
}

OmFlashResult OmStatusProgrammer::TellFailures(OmFlashResult result) {
    if (result != OmFlashResult::Done || failedItems_ <= kFewFailures)
        return result;
    callback_.OnFinish();
    ShowMessage(DescribeFailures(Translated("%u words could not be programmed, the first at "
                                            "offset %05Xh.")
                                     .c_str()),
                kErrorBox);
    return OmFlashResult::Told;
}

std::wstring OmStatusProgrammer::DescribeFailures(const wchar_t* format) const {
    return OmFormat(format, failedWords_, firstFailed_ * bus_.BusWordBytes());
}

void OmStatusProgrammer::Run() {
    batch_.RunForCapture(captured_);
    batch_.Clear();
}

OmItemState OmStatusProgrammer::JudgeCapture(const OmProgramBlock& item, size_t index) const {
    return commands_.Judge(bus_, item, bus_.DecodeDataWord(captured_[index]));
}

void OmStatusProgrammer::DropFirst(size_t items) {
    if (items == 0)
        return;
    pending_.erase(pending_.begin(), pending_.begin() + static_cast<ptrdiff_t>(items));
    isSuspect_ = failedInBatch_ = hasRecovered_ = false;
    notTaken_ = 0;
}
