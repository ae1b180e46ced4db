#include "virtualboard/CurrentBoard.h"

#include "virtualboard/BoardFile.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

namespace vb {

namespace {

// Dies with the process, and writes its reports then.
struct Holder {
    std::unique_ptr<Board> board;
    bool looked = false;
    uint64_t generation = 1;

    ~Holder() { WriteReports(); }
};

Holder& TheHolder() {
    static Holder holder;
    return holder;
}

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

void WriteFile(const std::string& path, const char* data, size_t size) {
    std::ofstream file(path, std::ios::binary);
    file.write(data, static_cast<std::streamsize>(size));
    if (!file)
        std::fprintf(stderr, "virtual board: cannot write '%s'\n", path.c_str());
}

void AddEnvironmentFaults(Board& board) {
    std::istringstream faults(Environment("VIRTUALBOARD_FAULTS"));
    for (std::string fault; std::getline(faults, fault, ';');)
        AddBoardLine(board, "fault " + fault);
}

std::unique_ptr<Board> LoadFromEnvironment() {
    const std::string path = Environment("VIRTUALBOARD");
    if (path.empty())
        return nullptr;
    try {
        auto board = LoadBoard(path);
        AddEnvironmentFaults(*board);
        return board;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "virtual board: %s\n", error.what());
        return nullptr;
    }
}

} // namespace

Board* CurrentBoard() {
    Holder& holder = TheHolder();
    if (!holder.board && !holder.looked)
        holder.board = LoadFromEnvironment();
    holder.looked = true;
    return holder.board.get();
}

void InstallBoard(std::unique_ptr<Board> board) {
    Holder& holder = TheHolder();
    holder.board = std::move(board);
    holder.looked = true;
    ++holder.generation;
}

uint64_t BoardGeneration() {
    return TheHolder().generation;
}

void WriteReports() {
    Board* board = TheHolder().board.get();
    if (!board)
        return;
    board->SaveContents();
    const std::string statistics = Environment("VIRTUALBOARD_STATS");
    if (!statistics.empty()) {
        const std::string json = board->StatisticsJson();
        WriteFile(statistics, json.data(), json.size());
    }
    const std::string dump = Environment("VIRTUALBOARD_FLASH_DUMP");
    if (!dump.empty()) {
        const std::vector<uint8_t> bytes = board->FlashContents();
        WriteFile(dump, reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
}

} // namespace vb
