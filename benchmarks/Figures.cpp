#include "benchmarks/Figures.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
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

void PrintFigure(const FigureLine& line) {
    char ratio[16] = "";
    if (line.ratio > 0) std::snprintf(ratio, sizeof ratio, "%.2f", line.ratio);
    const char* verdict = line.aim.empty() ? "" : line.met ? "met" : "MISSED";
    std::printf("%-46s %11s %11s %6s  %-20s %s\n", line.name.c_str(), line.ours.c_str(), line.beside.c_str(), ratio,
                line.aim.c_str(), verdict);
    if (!line.besideName.empty()) std::printf("    beside: %s\n", line.besideName.c_str());
    if (const char* collected = std::getenv("QUILLARY_FIGURES")) {
        std::ofstream file(collected, std::ios::app);
        for (const std::string& column :
             {line.name, line.ours, line.beside, std::string(ratio), line.aim, std::string(verdict)}) {
            file << column << '\t';
        }
        file << line.besideName << '\n';
    }
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

    std::printf("\n");
    for (const Figure& figure : figures) {
        const double ours = collector.Median(figure.name);
        const double limit = figure.limit ? collector.Median(figure.name + ", limit") : 0;
        if (ours == 0) continue;
        FigureLine line;
        line.name = figure.name;
        line.ours = Milliseconds(ours);
        line.beside = Milliseconds(limit);
        if (limit > 0) {
            line.besideName = figure.limitName;
            line.ratio = ours / limit;
            char aim[16] = "";
            if (figure.aim > 0) std::snprintf(aim, sizeof aim, "at most %.1f", figure.aim);
            line.aim = aim;
            line.met = line.ratio <= figure.aim;
        }
        PrintFigure(line);
    }
    return true;
}

}  // namespace quillary
