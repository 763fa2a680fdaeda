#include "benchmarks/Figures.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <map>

namespace quillary {

namespace {

double SecondsOf(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

// Google Benchmark's own list, and the times of every repetition besides.
class Collector : public benchmark::ConsoleReporter {
  public:
    Collector() : ConsoleReporter(OO_None) {}
    void ReportRuns(const std::vector<Run>& runs) override {
        std::vector<Run> shown;
        for (const Run& run : runs) {
            if (run.run_type == Run::RT_Iteration) {
                m_milliseconds[run.run_name.function_name].push_back(run.GetAdjustedRealTime());
            } else if (run.aggregate_name == "median" || run.aggregate_name == "cv") {
                shown.push_back(run);
            }
        }
        ConsoleReporter::ReportRuns(shown);
    }
    // 0 for a benchmark that did not run.
    [[nodiscard]] double Median(const std::string& name) {
        std::vector<double>& times = m_milliseconds[name];
        if (times.empty()) return 0;
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        return *middle;
    }

  private:
    std::map<std::string, std::vector<double>> m_milliseconds;
};

void Register(const std::string& name, const Measurement& measurement) {
    benchmark::RegisterBenchmark(name.c_str(),
                                 [&measurement](benchmark::State& state) {
                                     for ([[maybe_unused]] auto turn : state) state.SetIterationTime(measurement());
                                 })
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

std::string Milliseconds(double milliseconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f ms", milliseconds);
    return milliseconds > 0 ? text : "";
}

}  // namespace

double ProcessorSeconds() { return SecondsOf(CLOCK_THREAD_CPUTIME_ID); }

double WallSeconds() { return SecondsOf(CLOCK_MONOTONIC); }

void PrintFigure(const std::string& name, const std::string& ours, const std::string& limit, double ratio,
                 const std::string& aim, bool met) {
    char ratioText[16] = "";
    if (ratio > 0) std::snprintf(ratioText, sizeof ratioText, "%.2f", ratio);
    std::printf("%-34s %11s %11s %6s  %-20s %s\n", name.c_str(), ours.c_str(), limit.c_str(), ratioText, aim.c_str(),
                aim.empty() ? ""
                : met       ? "met"
                            : "MISSED");
}

bool RunFigures(const std::vector<Figure>& figures, std::vector<std::string> arguments) {
    // Later arguments win. By turns, so that a busy moment of the machine hits both sides alike.
    arguments.insert(arguments.begin() + 1, {"--benchmark_repetitions=11", "--benchmark_min_time=0.05",
                                             "--benchmark_enable_random_interleaving=true"});
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data())) return false;
    for (const Figure& figure : figures) {
        Register(figure.name, figure.ours);
        if (figure.limit) Register(figure.name + ", limit", figure.limit);
    }
    Collector collector;
    benchmark::RunSpecifiedBenchmarks(&collector);

    std::printf("\n%-34s %11s %11s %6s  %s\n", "figure", "ours", "limit", "ratio", "aim");
    for (const Figure& figure : figures) {
        const double ours = collector.Median(figure.name);
        const double limit = figure.limit ? collector.Median(figure.name + ", limit") : 0;
        if (ours == 0) continue;
        char aim[16] = "";
        if (figure.aim > 0 && limit > 0) std::snprintf(aim, sizeof aim, "at most %.1f", figure.aim);
        const double ratio = limit > 0 ? ours / limit : 0;
        PrintFigure(figure.name, Milliseconds(ours), Milliseconds(limit), ratio, aim, ratio <= figure.aim);
        if (limit > 0) std::printf("    limit: %s\n", figure.limitName.c_str());
    }
    return true;
}

}  // namespace quillary
