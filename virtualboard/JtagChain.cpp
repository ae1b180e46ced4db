#include "virtualboard/JtagChain.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace vb {

namespace {

uint64_t LoadBits(const uint8_t* bytes, unsigned count) {
    uint64_t word = 0;
    std::memcpy(&word, bytes, (count + 7) / 8); // low byte first, as the packing says
    return word & LowMask(count);
}

void StoreBits(uint8_t* bytes, uint64_t word, unsigned count) {
    std::memcpy(bytes, &word, (count + 7) / 8);
}

} // namespace

JtagChain::JtagChain(BoardClock& clock) : clock_(clock) {}

ChainDevice& JtagChain::AddDevice(std::unique_ptr<ChainDevice> device) {
    devices_.push_back(std::move(device));
    changedCells_.emplace_back();
    return *devices_.back();
}

bool JtagChain::Tdo() const {
    if (tdoFault_ != TdoFault::None)
        return tdoFault_ == TdoFault::StuckHigh;
    // TDO is released outside the shift states; the pod's pull-up is what is seen then.
    if (!powered_ || !Shifting() || segments_.empty())
        return true;
    return segments_.back().path.Front();
}

bool JtagChain::Clock(bool tms, bool tdi) {
    const bool tdo = Tdo();
    clock_.Tick(1);
    if (trace_)
        trace_->push_back({state_, tms, tdi});
    if (!powered_)
        return tdo;
    if (Shifting()) {
        uint64_t ignored = 0;
        ShiftWord(tdi ? 1 : 0, ignored, 1);
    }
    Move(tms);
    return tdo;
}

void JtagChain::Move(bool tms) {
    const TapState next = NextTapState(state_, tms);
    if (next == state_)
        return;
    Leave();
    state_ = next;
    Enter();
}

// The capture stage loads at the rising edge that leaves the capture state.
void JtagChain::Leave() {
    if (state_ == TapState::CaptureDr)
        Capture(false);
    else if (state_ == TapState::CaptureIr)
        Capture(true);
}

void JtagChain::Enter() {
    if (state_ == TapState::UpdateDr)
        UpdateData();
    else if (state_ == TapState::UpdateIr)
        UpdateInstruction();
    else if (state_ == TapState::TestLogicReset)
        Reset();
}

void JtagChain::BuildSegments() {
    size_t count = 0;
    for (size_t i = 0; i < devices_.size(); ++i) {
        const bool blocked = devices_[i]->BlocksTdi();
        if (count == 0 || blocked) {
            if (segments_.size() == count)
                segments_.emplace_back();
            segments_[count].firstDevice = i;
            segments_[count].blocked = blocked;
            ++count;
        }
        segments_[count - 1].lastDevice = i;
    }
    segments_.resize(count);
}

void JtagChain::Capture(bool instruction) {
    if (!instruction && observer_)
        observer_->BeforeCapture();
    BuildSegments();
    for (Segment& segment : segments_) {
        size_t length = 0;
        for (size_t i = segment.firstDevice; i <= segment.lastDevice; ++i)
            length += instruction ? devices_[i]->InstructionLength() : devices_[i]->DataLength();
        segment.path.Clear(length);
        for (size_t i = segment.lastDevice + 1; i-- > segment.firstDevice;) {
            if (instruction)
                devices_[i]->CaptureInstruction(segment.path);
            else
                devices_[i]->CaptureData(segment.path);
        }
        segment.blocked = segment.blocked && !instruction;
    }
}

void JtagChain::UpdateData() {
    ++dataScans_;
    for (Segment& segment : segments_)
        for (size_t i = segment.lastDevice + 1; i-- > segment.firstDevice;)
            devices_[i]->UpdateData(segment.path, changedCells_[i]);
    if (observer_)
        observer_->AfterDataUpdate(changedCells_);
    for (std::vector<uint32_t>& cells : changedCells_)
        cells.clear();
}

void JtagChain::UpdateInstruction() {
    ++instructionScans_;
    for (Segment& segment : segments_)
        for (size_t i = segment.lastDevice + 1; i-- > segment.firstDevice;)
            devices_[i]->UpdateInstruction(segment.path);
    if (observer_)
        observer_->AfterInstructionChange();
}

void JtagChain::Reset() {
    for (const auto& device : devices_)
        device->EnterTestLogicReset();
    if (observer_)
        observer_->AfterInstructionChange();
}

void JtagChain::ShiftWord(uint64_t tdi, uint64_t& tdo, unsigned count) {
    uint64_t bits = tdi;
    for (Segment& segment : segments_) {
        segment.path.Append(segment.blocked ? ~uint64_t{0} : bits, count);
        bits = segment.path.Take(count);
    }
    tdo = bits;
}

void JtagChain::ShiftRun(const uint8_t* tdi, bool idleTdi, uint8_t* tdo, size_t bits) {
    for (size_t done = 0; done < bits; done += kWordBits) {
        const auto count = static_cast<unsigned>(std::min<size_t>(bits - done, kWordBits));
        uint64_t out = 0;
        const uint64_t idle = idleTdi ? ~uint64_t{0} : 0;
        ShiftWord(tdi ? LoadBits(tdi + done / 8, count) : idle, out, count);
        if (tdoFault_ != TdoFault::None)
            out = tdoFault_ == TdoFault::StuckHigh ? ~uint64_t{0} : 0;
        if (tdo)
            StoreBits(tdo + done / 8, out & LowMask(count), count);
    }
}

// A run in which the state does not change.
void JtagChain::TraceRun(const uint8_t* tdi, bool idleTdi, bool tms, size_t bits) {
    for (size_t i = 0; i < bits; ++i)
        trace_->push_back({state_, tms, tdi ? (tdi[i / 8] >> (i % 8) & 1) != 0 : idleTdi});
}

void JtagChain::Run(bool tms, const uint8_t* tdi, bool idleTdi, uint8_t* tdo, size_t bits) {
    const bool staysInShift = Shifting() && !tms && powered_;
    const bool rests = !powered_ || (!Shifting() && NextTapState(state_, tms) == state_);
    if (staysInShift || rests) {
        clock_.Tick(bits);
        if (trace_)
            TraceRun(tdi, idleTdi, tms, bits);
        if (staysInShift)
            ShiftRun(tdi, idleTdi, tdo, bits);
        else if (tdo) // nothing shifts: TDO shows one level
            std::memset(tdo, Tdo() ? 0xFF : 0, (bits + 7) / 8);
        return;
    }
    for (size_t i = 0; i < bits; ++i) {
        const bool level = tdi ? (tdi[i / 8] >> (i % 8)) & 1 : idleTdi;
        const bool sampled = Clock(tms, level);
        if (tdo)
            tdo[i / 8] = static_cast<uint8_t>((i % 8 ? tdo[i / 8] : 0) | (sampled << (i % 8)));
    }
}

} // namespace vb
