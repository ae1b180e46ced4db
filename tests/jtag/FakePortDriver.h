// A port driver in memory: three base addresses, the registers behind them, and faults on demand.
#pragma once

#include "platform/PortDriver.h"

#include <array>
#include <cstdio>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class FakePortDriver : public OmPortDriverOpener {
  public:
    struct State {
        std::array<uint16_t, 3> addresses{0x378, 0, 0};
        std::map<uint16_t, uint8_t> registers;
        std::string traffic;             // "378=1F " for a write, "379? " for a read
        std::deque<uint8_t> answers;     // what reads give, before the registers do
        std::vector<std::string> opened; // names, in order
        bool absent = false;
        int openHandles = 0;
        int calls = 0;
        int failAtCall = -1;        // counted from 0 over all control calls
        size_t enumerationSize = 6; // what the enumeration says it gave
        size_t readSize = 1;
        std::wstring refusalReason;
    };

    FakePortDriver() : state(std::make_shared<State>()), previous_(SetPortDriverOpener(this)) {}

    ~FakePortDriver() override { SetPortDriverOpener(previous_); }

    FakePortDriver(const FakePortDriver&) = delete;
    FakePortDriver& operator=(const FakePortDriver&) = delete;

    std::unique_ptr<OmPortDriver> Open(const std::string& name) override {
        state->opened.push_back(name);
        return state->absent ? nullptr : std::make_unique<Handle>(state);
    }

    State* operator->() { return state.get(); }

    std::shared_ptr<State> state; // outlives the fake: some handles stay open to the end

  private:
    class Handle : public OmPortDriver {
      public:
        explicit Handle(std::shared_ptr<State> owner) : state_(std::move(owner)) {
            ++state_->openHandles;
        }

        ~Handle() override { --state_->openHandles; }

        Handle(const Handle&) = delete;
        Handle& operator=(const Handle&) = delete;

        bool Control(uint32_t code, std::span<const uint8_t> in, std::span<uint8_t> out,
                     size_t& returned) override {
            returned = 0;
            if (state_->calls++ == state_->failAtCall)
                return false;
            if (code == 0x9C40200C && in.empty() && out.size() == 6)
                return Enumerate(out, returned);
            if (code == 0x9C402004 && in.size() == 2 && out.size() == 1)
                return Read(AddressOf(in), out[0], returned);
            if (code == 0x9C402008 && in.size() == 3 && out.empty())
                return Write(AddressOf(in), in[2]);
            return false;
        }

        std::wstring RefusalReason() const override { return state_->refusalReason; }

      private:
        void Note(const char* format, unsigned address, unsigned value) {
            char text[16];
            std::snprintf(text, sizeof text, format, address, value);
            state_->traffic += text;
        }

        static uint16_t AddressOf(std::span<const uint8_t> record) {
            return static_cast<uint16_t>(record[0] + record[1] * 256);
        }

        bool Enumerate(std::span<uint8_t> out, size_t& returned) const {
            for (size_t i = 0; i < 3; ++i) {
                out[2 * i] = static_cast<uint8_t>(state_->addresses[i] % 256);
                out[2 * i + 1] = static_cast<uint8_t>(state_->addresses[i] / 256);
            }
            returned = state_->enumerationSize;
            return true;
        }

        bool Read(uint16_t address, uint8_t& value, size_t& returned) {
            Note("%X? ", address, 0);
            value = state_->registers[address];
            if (!state_->answers.empty()) {
                value = state_->answers.front();
                state_->answers.pop_front();
            }
            returned = state_->readSize;
            return true;
        }

        bool Write(uint16_t address, uint8_t value) {
            Note("%X=%02X ", address, value);
            state_->registers[address] = value;
            return true;
        }

        std::shared_ptr<State> state_;
    };

    OmPortDriverOpener* previous_;
};
