// HN_vsnprintf against the C runtime's vsnprintf, the floor it is measured
// by. Both are called through a variadic wrapper, as callers use them.
#include "Compare.h"

#include <Base/Utility/Format.h>

#include <benchmark/benchmark.h>

#include <cstdarg>
#include <cstdio>
#include <string>

namespace {

int runtimeSnprintf(char* buffer, std::size_t size, const char* format, ...) {
    va_list args;
    va_start(args, format);
    const int n = std::vsnprintf(buffer, size, format, args);
    va_end(args);
    return n;
}

const std::string kLong(300, 'x');

template <class Format>
void registerCase(const std::string& name, Format format) {
    for (std::size_t size : {64, 256}) {
        const std::string key = "HN_vsnprintf/" + name + "/" + std::to_string(size);
        benchmark::RegisterBenchmark(
            (key + "/" + bench::kOurs).c_str(), [=](benchmark::State& state) {
                char buffer[256];
                for (auto _ : state) {
                    benchmark::DoNotOptimize(format(HN_snprintf, buffer, size));
                    benchmark::ClobberMemory();
                }
            });
        benchmark::RegisterBenchmark((key + "/vsnprintf").c_str(), [=](benchmark::State& state) {
            char buffer[256];
            for (auto _ : state) {
                benchmark::DoNotOptimize(format(runtimeSnprintf, buffer, size));
                benchmark::ClobberMemory();
            }
        });
    }
}

} // namespace

int main(int argc, char** argv) {
    registerCase("integer",
                 [](auto print, char* b, std::size_t n) { return print(b, n, "%d", 1234567); });
    registerCase("two strings", [](auto print, char* b, std::size_t n) {
        return print(b, n, "Cannot open %s: %s\n", "/home/user/models/part.model", "No such file");
    });
    registerCase("mixed doubles", [](auto print, char* b, std::size_t n) {
        return print(b, n, "Point %d at (%.3f, %.3f, %.3f), deviation %g mm\n", 42, 1.25, -0.5,
                     1234.5678, 0.000123);
    });
    registerCase("truncating", [](auto print, char* b, std::size_t n) {
        return print(b, n, "%s: %s (%d)\n", "Long message", kLong.c_str(), 7);
    });
    return bench::runAndCompare(argc, argv);
}
