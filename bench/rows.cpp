// SPDX-License-Identifier: MIT
#include "rows.h"

#include <algorithm>
#include <map>
#include <vector>

namespace {

constexpr const char* LibrarySuffix = "/library";
constexpr const char* YardstickSuffix = "/yardstick";

struct Row {
    std::string Name;
    double dBar;
    double dYardstick; // a given time in nanoseconds, or 0 when it is measured
};

std::vector<Row> Rows;

// Keeps the processor time of an iteration in nanoseconds, one figure for each repetition.
class Collector final : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& Runs) override {
        for (const Run& cRun : Runs) {
            if (cRun.error_occurred) {
                std::fprintf(stderr, "%s: %s\n", cRun.benchmark_name().c_str(), cRun.error_message.c_str());
            } else if (cRun.run_type == Run::RT_Iteration) {
                Times[cRun.run_name.function_name].push_back(cRun.cpu_accumulated_time * 1e9 /
                                                             static_cast<double>(cRun.iterations));
            }
        }
    }

    // 0 for what was not measured.
    double Median(const std::string& Name) {
        std::vector<double>& cTimes = Times[Name];
        if (cTimes.empty()) {
            return 0;
        }
        const auto pMiddle = cTimes.begin() + static_cast<std::ptrdiff_t>(cTimes.size() / 2);
        std::nth_element(cTimes.begin(), pMiddle, cTimes.end());
        return *pMiddle;
    }

private:
    std::map<std::string, std::vector<double>> Times;
};

} // namespace

void AddRow(const std::string& Name, double dBar, const Measured& Library, const Measured& Yardstick) {
    Rows.push_back({Name, dBar, 0});
    benchmark::RegisterBenchmark((Name + LibrarySuffix).c_str(), Library);
    benchmark::RegisterBenchmark((Name + YardstickSuffix).c_str(), Yardstick);
}

void AddTimedRow(const std::string& Name, double dNanoseconds, const Measured& Library) {
    Rows.push_back({Name, 1.00, dNanoseconds});
    benchmark::RegisterBenchmark((Name + LibrarySuffix).c_str(), Library);
}

namespace {

std::string ThreePlaces(double dValue) {
    char achText[32];
    std::snprintf(achText, sizeof achText, "%.3f", dValue);
    return achText;
}

} // namespace

int RunRows(std::FILE* pReport) {
    Collector cCollector;
    benchmark::RunSpecifiedBenchmarks(&cCollector);
    int iKept = 1;
    std::fprintf(pReport, "| %-44s | library ns | yardstick ns |  ratio |   bar  |      |\n", "row");
    std::fprintf(pReport, "|%s|-----------:|-------------:|-------:|-------:|------|\n",
                 std::string(46, '-').c_str());
    for (const Row& cRow : Rows) {
        const double dLibrary = cCollector.Median(cRow.Name + LibrarySuffix);
        const double dYardstick =
            cRow.dYardstick > 0 ? cRow.dYardstick : cCollector.Median(cRow.Name + YardstickSuffix);
        if (dLibrary <= 0 || dYardstick <= 0) {
            continue; // left out by a filter
        }
        const double dRatio = dLibrary / dYardstick;
        const bool bBar = cRow.dBar != NoBar;
        iKept &= dRatio <= cRow.dBar;
        std::fprintf(pReport, "| %-44s | %10.2f | %12.2f | %6.3f | %6s | %-4s |\n", cRow.Name.c_str(),
                     dLibrary, dYardstick, dRatio, bBar ? ThreePlaces(cRow.dBar).c_str() : "",
                     !bBar                 ? ""
                     : dRatio <= cRow.dBar ? "ok"
                                           : "OVER");
    }
    return iKept;
}
