// A progress display that keeps every report and can ask to stop at one of them.
#pragma once

#include "flash/Progress.h"

#include <ostream>
#include <string>
#include <vector>

struct ProgressReport {
    int percent = 0;
    std::wstring message; // empty for a null message

    bool operator==(const ProgressReport&) const = default;
};

inline std::ostream& operator<<(std::ostream& stream, const ProgressReport& report) {
    return stream << report.percent << " \""
                  << std::string(report.message.begin(), report.message.end()) << '"';
}

class RecordingProgress : public OmProgressCallback {
  public:
    bool OnProgress(int percent, const wchar_t* message) override {
        reports.push_back({percent, message ? message : L""});
        return reports.size() < stopAtReport;
    }

    void OnFinish() override { ++finished; }

    // Reports that brought a text.
    std::vector<ProgressReport> WithText() const {
        std::vector<ProgressReport> texts;
        for (const ProgressReport& report : reports)
            if (!report.message.empty())
                texts.push_back(report);
        return texts;
    }

    std::vector<ProgressReport> reports;
    int finished = 0;
    size_t stopAtReport = SIZE_MAX; // counted from 1: this one and all later ones ask to stop
};
