#include "tests/cables/BoardPort.h"

#include <algorithm>
#include <vector>

namespace {

class Handle : public OmPortDriver {
  public:
    explicit Handle(std::shared_ptr<BoardPort::State> state) : state_(std::move(state)) {
        ++state_->openHandles;
    }

    ~Handle() override { --state_->openHandles; }

    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                 size_t& returned) override {
        returned = 0;
        std::vector<uint8_t> answer;
        if (state_->calls++ == state_->failAtCall || !state_->port.Control(code, in, answer))
            return false;
        returned = std::min(answer.size(), out.size());
        std::copy_n(answer.begin(), returned, out.begin());
        return true;
    }

  private:
    std::shared_ptr<BoardPort::State> state_;
};

} // namespace

BoardPort::BoardPort(vb::Board& board, const char* pod)
    : state_(std::make_shared<State>(board, pod)), previous_(SetPortDriverOpener(this)) {}

BoardPort::~BoardPort() {
    SetPortDriverOpener(previous_);
}

std::unique_ptr<OmPortDriver> BoardPort::Open(const std::string& name) {
    const bool fails = state_->opens++ == state_->failAtOpen;
    if (name != "ompio2" || state_->absent || fails)
        return nullptr;
    return std::make_unique<Handle>(state_);
}
