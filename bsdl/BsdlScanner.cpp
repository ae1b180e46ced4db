#include "bsdl/BsdlScanner.h"

#include "bsdl/BsdlRules.lex.h"
#include "bsdl/BsdlScannerRules.h"
#include "platform/Translation.h"

#include <cstdio>
#include <cstdlib>
#include <forward_list>
#include <limits>
#include <memory>
#include <new>
#include <sys/stat.h>
#include <utility>

namespace {

constexpr int kFileBufferSize = 16384;
// Several times the largest that vendors publish. A token of gigabytes would end the program, and
// the tokens of a file take many times its size.
constexpr int64_t kMaxFileSize = int64_t{32} * 1024 * 1024;

constexpr const char* kOutOfMemory = ForTranslation("memory allocation error");

struct FileCloser {
    void operator()(std::FILE* file) const {
        std::fclose(file); // was only read: nothing can be lost
    }
};

using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

// One entry of the stack of inputs.
struct OmScannerFrame {
    YY_BUFFER_STATE buffer = nullptr; // freed by whoever drops the frame
    FileHandle file;                  // null for a string
    int32_t line = 1;
    std::string fileName; // a string has that of the frame below
    std::unique_ptr<OmScannerFrame> next;
};

struct ScannerState {
    std::unique_ptr<OmScannerFrame> top;
    std::forward_list<std::string> pool;
    const std::string* tokenText = nullptr;
    int modeToken = 0;
    std::function<void(const char*)> errorFunction;
};

ScannerState state;

void ReportError(const std::string& message) {
    if (state.errorFunction)
        state.errorFunction(message.c_str());
}

// Null if memory is exhausted.
std::unique_ptr<OmScannerFrame> MakeFrame(const std::string& fileName, int32_t line) {
    try {
        auto frame = std::make_unique<OmScannerFrame>();
        frame->fileName = fileName;
        frame->line = line;
        return frame;
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void PushFrame(std::unique_ptr<OmScannerFrame> frame) {
    frame->next = std::move(state.top);
    state.top = std::move(frame);
}

std::unique_ptr<OmScannerFrame> TakeTopFrame() {
    std::unique_ptr<OmScannerFrame> taken = std::move(state.top);
    state.top = std::move(taken->next);
    return taken;
}

// Some hosts open a folder like a file, and only reading it fails, which would be fatal; opening a
// pipe waits for a writer, which may never come.
FileHandle OpenForReading(const char* path) {
    struct stat status = {};
    if (stat(path, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > kMaxFileSize)
        return nullptr;
    return FileHandle(std::fopen(path, "r"));
}

} // namespace

void SetScannerErrorFunction(std::function<void(const char*)> function) {
    state.errorFunction = std::move(function);
}

int OpenScannerFile(const char* path) {
    FileHandle file = OpenForReading(path);
    if (!file) {
        ReportError(ToLocal(Translated("failed to open file '")) + path + "'");
        return -1;
    }
    if (state.top)
        return -2;
    std::unique_ptr<OmScannerFrame> frame = MakeFrame(path, 1);
    if (!frame) {
        ReportError(ToLocal(Translated(kOutOfMemory)));
        return -3;
    }
    frame->buffer = bsdlscan_create_buffer(file.get(), kFileBufferSize);
    frame->file = std::move(file);
    bsdlscan_switch_to_buffer(frame->buffer);
    PushFrame(std::move(frame));
    return 0;
}

int PushScannerString(std::string_view text, int32_t line) {
    std::unique_ptr<OmScannerFrame> frame =
        MakeFrame(state.top ? state.top->fileName : std::string(), line);
    if (!frame) {
        ReportError(ToLocal(Translated(kOutOfMemory)));
        return -1;
    }
    // The generated scanner counts in int and adds two bytes of its own.
    const bool fits = text.size() < std::numeric_limits<int>::max() - 2;
    if (fits)
        frame->buffer = bsdlscan_scan_bytes(text.data(), static_cast<int>(text.size()));
    if (!frame->buffer) {
        ReportError(ToLocal(Translated("INTERNAL PARSER ERROR")));
        return -2;
    }
    PushFrame(std::move(frame));
    return 0;
}

void PopScannerInput() {
    const std::unique_ptr<OmScannerFrame> done = TakeTopFrame();
    bsdlscan_switch_to_buffer(state.top->buffer);
    bsdlscan_delete_buffer(done->buffer);
}

bool ResumeInputBelow() {
    if (!state.top || !state.top->next)
        return false;
    PopScannerInput();
    return true;
}

void CloseScanner() {
    while (state.top)
        bsdlscan_delete_buffer(TakeTopFrame()->buffer);
    bsdlscanlex_destroy();
    state.pool.clear();
    state.tokenText = nullptr;
    state.modeToken = 0;
}

void SetModeToken(int token) {
    state.modeToken = token;
}

int NextToken() {
    state.tokenText = nullptr;
    if (state.modeToken != 0)
        return std::exchange(state.modeToken, 0);
    return bsdlscanlex();
}

const std::string* TokenText() {
    return state.tokenText;
}

const std::string* MakePoolText(std::string text) {
    try {
        state.pool.push_front(std::move(text));
    } catch (const std::bad_alloc&) {
        ReportError(ToLocal(Translated(kOutOfMemory)));
        std::exit(1);
    }
    return &state.pool.front();
}

int KeepText(int token) {
    state.tokenText = MakePoolText({bsdlscantext, static_cast<size_t>(bsdlscanleng)});
    return token;
}

void CountLine() {
    ++state.top->line;
}

int32_t CurrentLine() {
    return state.top ? state.top->line : 0;
}

const char* CurrentFileName() {
    return state.top ? state.top->fileName.c_str() : nullptr;
}
