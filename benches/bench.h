// The harness of the benches: medians of several runs, printed as rows
//   name | ours | alternative | ratio | bar
// Ours and its alternative are measured in the same run, taking turns, so that a busy machine slows
// both. A ratio above 1 means that ours is faster. Nothing here asserts.
//
//   bench::Compare("lookup, 100,000 records", {"ours", [&] { ... }}, {"plain", [&] { ... }},
//                  {.operations = 1000, .bar = "at least 1"});
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace demovex::bench {

struct Side {
    std::string name;
    std::function<void()> run;
};

struct Options {
    int runs = 7;                            // the median of so many
    double operations = 1;                   // per run; times are printed per operation
    std::string bar;                         // what is wanted, as text
    std::function<void()> before = nullptr;  // before each run, not timed
};

inline double Seconds(const std::function<void()>& run) {
    const auto start = std::chrono::steady_clock::now();
    run();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// "12.3 µs" and the like.
inline std::string Duration(double seconds) {
    char text[40];
    if (seconds >= 1) {
        std::snprintf(text, sizeof text, "%.2f s", seconds);
    } else if (seconds >= 1e-3) {
        std::snprintf(text, sizeof text, "%.2f ms", seconds * 1e3);
    } else if (seconds >= 1e-6) {
        std::snprintf(text, sizeof text, "%.2f \xC2\xB5s", seconds * 1e6);
    } else {
        std::snprintf(text, sizeof text, "%.1f ns", seconds * 1e9);
    }
    return text;
}

inline void PrintRow(const std::string& name, const std::string& ours,
                     const std::string& alternative, const std::string& ratio,
                     const std::string& bar) {
    std::printf("%s | %s | %s | %s | %s\n", name.c_str(), ours.c_str(), alternative.c_str(),
                ratio.c_str(), bar.c_str());
    std::fflush(stdout);
}

// Seconds per operation of one side alone; prints a row without alternative.
inline double Measure(const std::string& name, const std::function<void()>& run,
                      const Options& options = {}) {
    std::vector<double> times;
    for (int i = 0; i < options.runs; ++i) {
        if (options.before) options.before();
        times.push_back(Seconds(run) / options.operations);
    }
    const double median = Median(times);
    PrintRow(name, Duration(median), "", "", options.bar);
    return median;
}

// Both sides in turns; prints the row and returns alternative / ours.
inline double Compare(const std::string& name, const Side& ours, const Side& alternative,
                      const Options& options = {}) {
    std::vector<double> mine, theirs;
    for (int i = 0; i < options.runs; ++i) {
        if (options.before) options.before();
        mine.push_back(Seconds(ours.run) / options.operations);
        if (options.before) options.before();
        theirs.push_back(Seconds(alternative.run) / options.operations);
    }
    const double ratio = Median(theirs) / Median(mine);
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", ratio);
    PrintRow(name, Duration(Median(mine)), alternative.name + " " + Duration(Median(theirs)), text,
             options.bar);
    return ratio;
}

// For values the compiler must not throw away.
template <typename T>
void Keep(const T& value) {
    [[maybe_unused]] static volatile T sink;
    sink = value;
}

}  // namespace demovex::bench
