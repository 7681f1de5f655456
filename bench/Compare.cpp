#include "Compare.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace bench {
namespace {

struct Result {
    std::string implementation;
    double time = 0; // real time per iteration, in the run's unit
    const char* unit = "ns";
    double bytesPerSecond = 0; // 0 when the benchmark does not count bytes
};

class RecordingReporter : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred)
                continue;
            // The registered name, without the suffixes that options add.
            const std::string& name = run.run_name.function_name;
            const std::size_t slash = name.rfind('/');
            Result result{name.substr(slash + 1), run.GetAdjustedRealTime(),
                          benchmark::GetTimeUnitString(run.time_unit), 0};
            const auto bytes = run.counters.find("bytes_per_second");
            if (bytes != run.counters.end())
                result.bytesPerSecond = bytes->second;
            const std::string key = name.substr(0, slash);
            if (cases_.emplace(key, std::vector<Result>{}).second)
                order_.push_back(key);
            record(cases_[key], result);
        }
    }

    void printRatios() const {
        std::printf("\n%-40s %-12s %10s %14s\n", "case", "peer", "ratio", "libBase");
        for (const std::string& key : order_) {
            const std::vector<Result>& results = cases_.at(key);
            const Result* ours = nullptr;
            for (const Result& r : results) {
                if (r.implementation == kOurs)
                    ours = &r;
            }
            if (!ours)
                continue;
            char measure[32];
            if (ours->bytesPerSecond > 0)
                std::snprintf(measure, sizeof measure, "%.2f GB/s", ours->bytesPerSecond / 1e9);
            else
                std::snprintf(measure, sizeof measure, "%.1f %s", ours->time, ours->unit);
            if (results.size() == 1)
                std::printf("%-40s %-12s %10s %14s\n", key.c_str(), "-", "-", measure);
            for (const Result& r : results) {
                if (&r != ours)
                    std::printf("%-40s %-12s %9.2fx %14s\n", key.c_str(), r.implementation.c_str(),
                                ours->time / r.time, measure);
            }
        }
    }

private:
    // Repetitions keep the fastest run: the least disturbed by the machine.
    static void record(std::vector<Result>& results, const Result& result) {
        for (Result& r : results) {
            if (r.implementation == result.implementation) {
                if (result.time < r.time)
                    r = result;
                return;
            }
        }
        results.push_back(result);
    }

    std::map<std::string, std::vector<Result>> cases_;
    std::vector<std::string> order_;
};

} // namespace

int runAndCompare(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RecordingReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}

} // namespace bench
