// CString and IString against std::string and std::wstring: appending short
// pieces, searching, comparing and formatting a typical message; and the
// cost of IString's narrow views, first and cached.
#include "Compare.h"

#include <Base/String/CString.h>
#include <Base/String/IString.h>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cwchar>
#include <memory>
#include <string>

namespace {

using kxString::CString;
using kxString::IString;

template <class Body>
void add(const std::string& name, Body body) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        for (auto _ : state) {
            body();
            benchmark::ClobberMemory();
        }
    });
}

const char* const kPieces[] = {"alpha", "beta", "gamma", "delta", "eps", "zeta", "eta", "theta"};
const wchar_t* const kWidePieces[] = {L"alpha", L"beta", L"gamma", L"delta",
                                      L"eps",   L"zeta", L"eta",   L"theta"};

std::string haystack() {
    std::string text;
    for (int i = 0; text.size() < 1000; ++i)
        text += kPieces[i % 8];
    return text + "needle";
}

void registerNarrow() {
    add("append 16 pieces/libBase", [] {
        CString s;
        for (int i = 0; i < 16; ++i)
            s.append(kPieces[i % 8]);
        benchmark::DoNotOptimize(s.length());
    });
    add("append 16 pieces/std::string", [] {
        std::string s;
        for (int i = 0; i < 16; ++i)
            s.append(kPieces[i % 8]);
        benchmark::DoNotOptimize(s.size());
    });

    const std::string text = haystack();
    const CString ours(text.c_str());
    add("find in 1 KiB/libBase", [=] { benchmark::DoNotOptimize(ours.find("needle")); });
    add("find in 1 KiB/std::string", [=] { benchmark::DoNotOptimize(text.find("needle")); });

    const std::string a(64, 'x');
    const std::string b = a.substr(0, 63) + "y";
    const CString ca(a.c_str());
    const CString cb(b.c_str());
    add("compare 64/libBase", [=] { benchmark::DoNotOptimize(ca.compare(cb)); });
    add("compare 64/std::string", [=] { benchmark::DoNotOptimize(a.compare(b)); });

    add("format message/libBase", [] {
        CString s;
        benchmark::DoNotOptimize(
            s.format("Point %d at (%.3f, %.3f) in %s\n", 42, 1.25, -7.5, "body"));
    });
    add("format message/std::string", [] {
        // Measure, then format into the string: the usual standard idiom.
        std::string s;
        const char* format = "Point %d at (%.3f, %.3f) in %s\n";
        const int n = std::snprintf(nullptr, 0, format, 42, 1.25, -7.5, "body");
        s.resize(static_cast<std::size_t>(n));
        std::snprintf(s.data(), s.size() + 1, format, 42, 1.25, -7.5, "body");
        benchmark::DoNotOptimize(s.data());
    });
}

void registerWide() {
    add("wide append 16 pieces/libBase", [] {
        IString s;
        for (int i = 0; i < 16; ++i)
            s.append(kWidePieces[i % 8]);
        benchmark::DoNotOptimize(s.length());
    });
    add("wide append 16 pieces/std::wstring", [] {
        std::wstring s;
        for (int i = 0; i < 16; ++i)
            s.append(kWidePieces[i % 8]);
        benchmark::DoNotOptimize(s.size());
    });

    const std::string narrow = haystack();
    const std::wstring text(narrow.begin(), narrow.end());
    const IString ours(text.c_str());
    add("wide find in 1 KiB/libBase", [=] { benchmark::DoNotOptimize(ours.find(L"needle")); });
    add("wide find in 1 KiB/std::wstring", [=] { benchmark::DoNotOptimize(text.find(L"needle")); });

    const std::wstring a(64, L'x');
    const std::wstring b = a.substr(0, 63) + L"y";
    const IString ia(a.c_str());
    const IString ib(b.c_str());
    add("wide compare 64/libBase", [=] { benchmark::DoNotOptimize(ia.compare(ib)); });
    add("wide compare 64/std::wstring", [=] { benchmark::DoNotOptimize(a.compare(b)); });

    add("wide format message/libBase", [] {
        IString s;
        benchmark::DoNotOptimize(
            s.format(L"Point %d at (%.3f, %.3f) in %s\n", 42, 1.25, -7.5, "body"));
    });
    add("wide format message/std::wstring", [] {
        // swprintf cannot measure: format into a buffer, then copy.
        wchar_t buffer[256];
        const int n =
            std::swprintf(buffer, 256, L"Point %d at (%.3f, %.3f) in %s\n", 42, 1.25, -7.5, "body");
        std::wstring s(buffer, static_cast<std::size_t>(n));
        benchmark::DoNotOptimize(s.data());
    });

    const auto sample =
        std::make_shared<IString>(L"Surface patch \u00e9dition 42 \u2014 \xD83D\xDE00 done");
    add("asUTF8 first call/libBase", [=] {
        (*sample)[0] = L'S'; // a change: the next view converts again
        benchmark::DoNotOptimize(sample->asUTF8());
    });
    add("asUTF8 cached/libBase", [=] { benchmark::DoNotOptimize(sample->asUTF8()); });
}

} // namespace

int main(int argc, char** argv) {
    registerNarrow();
    registerWide();
    return bench::runAndCompare(argc, argv);
}
