// Measures figures beside their limits, what the machine itself needs for the same bytes, with Google Benchmark, and
// prints them as one table.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace quillary {

/// One run of what is measured; answers the seconds that count.
using Measurement = std::function<double()>;

struct Figure {
    std::string name;
    Measurement ours;
    std::string limitName;  // empty: none
    Measurement limit;
    double aim = 0;  // at most so many times the limit; 0: none
};

using TimeSource = double (*)();  // in seconds
/// What the processor spent on this thread, in the system too: for work in memory, as other programs do not count.
double ProcessorSeconds();
/// For work that waits for a disk.
double WallSeconds();

template <typename Work>
double Seconds(const Work& work, TimeSource clock = ProcessorSeconds) {
    const double begun = clock();
    work();
    return clock() - begun;
}

/// Runs each figure and its limit by turns and prints the medians. `arguments` are Google Benchmark's. False when these
/// are wrong.
[[nodiscard]] bool RunFigures(const std::vector<Figure>& figures, std::vector<std::string> arguments);

/// A line of the table: what was measured and what stands beside it, each with its unit.
struct FigureLine {
    std::string name;
    std::string ours;
    std::string beside;      // empty: nothing
    std::string besideName;  // what that is
    double ratio = 0;        // 0: none
    std::string aim;         // empty: none
    bool met = true;
};

/// Prints the line, and adds it to the file that QUILLARY_FIGURES names, where ../bench collects its one table.
void PrintFigure(const FigureLine& line);

}  // namespace quillary
