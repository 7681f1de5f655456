// Benchmark helper: runs the registered benchmarks, then prints, for each
// case, libBase's time as a ratio of each peer's time measured in the same
// run. Benchmarks are named "<case>/<implementation>", and libBase's own
// implementation is called "libBase":
//
//     UTF8toWCS/cjk/64KiB/libBase    UTF8toWCS/cjk/64KiB/ICU
//
// A ratio below 1 means libBase is faster. A case without a peer shows
// libBase's time alone. With --benchmark_repetitions=N
// each implementation is represented by its fastest repetition.
#pragma once

namespace bench {

inline constexpr const char* kOurs = "libBase";

/// Runs the benchmarks selected on the command line and prints the ratios.
int runAndCompare(int argc, char** argv);

} // namespace bench
