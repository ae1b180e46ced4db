// The D2XX library of the virtual board with a stop-watch on its transfers, which tells the board's
// own work from the program's.
#pragma once

#include "jtag/D2xx.h"
#include "platform/SharedLibrary.h"

#include <cstdint>
#include <cstring>
#include <ctime>
#include <memory>

// Processor time of this thread in seconds: unlike the wall's it leaves out what other programs of
// a busy machine take.
inline double ThreadSeconds() {
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

namespace timed_d2xx {

using Transfer = uint32_t(OM_D2XX_CALL*)(void* handle, void* bytes, uint32_t count, uint32_t* done);

inline Transfer boardWrite = nullptr;
inline Transfer boardRead = nullptr;
inline double boardSeconds = 0; // spent in the board so far

inline uint32_t Time(Transfer transfer, void* handle, void* bytes, uint32_t count, uint32_t* done) {
    const double start = ThreadSeconds();
    const uint32_t status = transfer(handle, bytes, count, done);
    boardSeconds += ThreadSeconds() - start;
    return status;
}

inline uint32_t OM_D2XX_CALL Write(void* handle, void* bytes, uint32_t count, uint32_t* done) {
    return Time(boardWrite, handle, bytes, count, done);
}

inline uint32_t OM_D2XX_CALL Read(void* handle, void* bytes, uint32_t count, uint32_t* done) {
    return Time(boardRead, handle, bytes, count, done);
}

class Library : public OmSharedLibrary {
  public:
    explicit Library(std::unique_ptr<OmSharedLibrary> board) : board_(std::move(board)) {}

    void* Resolve(const char* name) override {
        void* function = board_->Resolve(name);
        if (std::strcmp(name, "FT_Write") == 0) {
            boardWrite = reinterpret_cast<Transfer>(function);
            return reinterpret_cast<void*>(Write);
        }
        if (std::strcmp(name, "FT_Read") == 0) {
            boardRead = reinterpret_cast<Transfer>(function);
            return reinterpret_cast<void*>(Read);
        }
        return function;
    }

  private:
    std::unique_ptr<OmSharedLibrary> board_;
};

// Stands before the host's loader while it lives.
class Loader : public OmLibraryLoader {
  public:
    Loader() : host_(GetLibraryLoader()) { SetLibraryLoader(this); }

    ~Loader() override { SetLibraryLoader(nullptr); }

    Loader(const Loader&) = delete;
    Loader& operator=(const Loader&) = delete;

    std::unique_ptr<OmSharedLibrary> Load(const char* windowsName) override {
        auto board = host_.Load(windowsName);
        return board ? std::make_unique<Library>(std::move(board)) : nullptr;
    }

  private:
    OmLibraryLoader& host_;
};

} // namespace timed_d2xx
