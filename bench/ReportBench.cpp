// The report channel: a formatted error handed to a callback that discards
// it, against fprintf of the same message to a discarding stream; and the
// cost of channels whose gate is closed, which must not expand the format.
#include "Compare.h"

#include <Base/Utility/Report.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>

namespace {

void discard(const char* text) {
    benchmark::DoNotOptimize(text);
}

// Runs `body` with `errorCallback` installed for the error channel.
template <class Body>
void add(const char* name, Body body, rptCallback errorCallback = discard) {
    benchmark::RegisterBenchmark(name, [=](benchmark::State& state) {
        rptSetErrorCB(errorCallback);
        for (auto _ : state)
            body();
        rptSetErrorCB(discard);
    });
}

void registerAll(std::FILE* devNull) {
    add("rptError message/libBase",
        [] { rptError("Cannot open %s: error %d after %.2f s\n", "wing_rib_12.model", 13, 2.75); });
    add("rptError message/fprintf", [devNull] {
        std::fprintf(devNull, "Cannot open %s: error %d after %.2f s\n", "wing_rib_12.model", 13,
                     2.75);
    });
    // The closed gates stand alone: nothing to compare them with.
    add(
        "closed rptError without callback/libBase",
        [] { rptError("Cannot open %s: error %d after %.2f s\n", "wing_rib_12.model", 13, 2.75); },
        nullptr);
    add("closed rptStatus without callback/libBase",
        [] { rptStatus("Loaded %d of %d parts\n", 3, 40); });
    add("closed rptDebug without HERON_DEBUG/libBase",
        [] { rptDebug(4000, "redraw took %.1f ms\n", 16.5); });
}

} // namespace

int main(int argc, char** argv) {
    // The debug gate is closed by the environment, read on first use.
    unsetenv("HERON_DEBUG");
    rptSetDebugCB(discard);
    rptDebugCodeSet(4000);
    std::FILE* devNull = std::fopen("/dev/null", "w");
    if (!devNull)
        return 1;
    registerAll(devNull);
    const int result = bench::runAndCompare(argc, argv);
    std::fclose(devNull);
    return result;
}
