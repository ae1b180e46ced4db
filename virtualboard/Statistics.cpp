// The board's figures as JSON. Written by hand: the few names and texts need no library.

#include "virtualboard/Board.h"

#include <string>

namespace vb {

namespace {

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += static_cast<unsigned char>(c) < ' ' ? ' ' : c;
    }
    return quoted + "\"";
}

std::string Figure(const char* name, uint64_t value) {
    return "  " + Quoted(name) + ": " + std::to_string(value) + ",\n";
}

std::string ViolationCounts(const Checker& checker) {
    std::string text;
    for (size_t i = 0; i < kViolationKinds; ++i) {
        const auto kind = static_cast<ViolationKind>(i);
        text += (i == 0 ? "" : ", ") + Quoted(ViolationName(kind)) + ": " +
                std::to_string(checker.Count(kind));
    }
    return "{" + text + "}";
}

std::string ViolationList(const Checker& checker) {
    std::string text;
    for (const Violation& violation : checker.List())
        text += std::string(text.empty() ? "" : ",") +
                "\n    {\"kind\": " + Quoted(ViolationName(violation.kind)) +
                ", \"scan\": " + std::to_string(violation.scan) +
                ", \"text\": " + Quoted(violation.text) + "}";
    return "[" + text + (text.empty() ? "]" : "\n  ]");
}

} // namespace

std::string Board::StatisticsJson() const {
    const BusCycles cycles = TotalBusCycles();
    return "{\n" + Figure("tck_cycles", clock_.Cycles()) + Figure("tck_hertz", clock_.Frequency()) +
           Figure("board_microseconds", clock_.Now() / kPicosecondsPerMicrosecond) +
           Figure("dr_scans", chain_.DataScans()) + Figure("ir_scans", chain_.InstructionScans()) +
           Figure("write_calls", traffic_.writeCalls) + Figure("read_calls", traffic_.readCalls) +
           Figure("bytes_written", traffic_.bytesWritten) +
           Figure("bytes_read", traffic_.bytesRead) +
           Figure("latency_waits", traffic_.latencyWaits) +
           Figure("bad_commands", traffic_.badCommands) + Figure("bus_reads", cycles.reads) +
           Figure("bus_writes", cycles.writes) + Figure("violations", checker_.Count()) +
           "  \"violations_by_kind\": " + ViolationCounts(checker_) + ",\n" +
           "  \"violation_list\": " + ViolationList(checker_) + "\n}\n";
}

void Board::ClearStatistics() {
    traffic_ = {};
    checker_.Clear();
    clock_.ClearCycles();
    chain_.ClearCounts();
    for (const auto& socket : sockets_)
        socket->ClearCycles();
}

} // namespace vb
