// Paths and whole-file copies: kxOS::Filename's canonical form and split
// against std::filesystem's lexical normalisation and parts, and
// kxOS::fileCopy against std::filesystem::copy_file and the cp program.
#include "Compare.h"

#include <Base/OS/FileOperations.h>
#include <Base/OS/Filename.h>

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;
using kxString::IString;

constexpr int kPaths = 100000;

// Paths as an application meets them: mostly clean absolute names, some
// with doubled separators, "." and ".." steps, or trailing separators.
std::vector<std::string> typicalPaths() {
    const char* const dirs[] = {"home",     "user",  "projects", "model", "v3",
                                "textures", "cache", "shared",   "build", "assets"};
    const char* const names[] = {"part_12.wire", "scene.tar.gz", "README",  "body.iges",
                                 "light.cfg",    "a.b.c.d",      ".profile"};
    std::mt19937 random(7);
    std::vector<std::string> paths;
    paths.reserve(kPaths);
    for (int i = 0; i < kPaths; ++i) {
        std::string path;
        const int depth = 2 + static_cast<int>(random() % 6);
        for (int d = 0; d < depth; ++d) {
            path += '/';
            path += dirs[random() % 10];
            switch (random() % 16) {
            case 0: path += '/'; break;
            case 1: path += "/.."; break;
            case 2: path += "/."; break;
            default: break;
            }
        }
        path += '/';
        path += names[random() % 7];
        if (random() % 16 == 0)
            path += '/';
        paths.push_back(path);
    }
    return paths;
}

void registerPaths() {
    static const std::vector<std::string> narrow = typicalPaths();
    static const std::vector<IString> wide = [] {
        std::vector<IString> texts;
        texts.reserve(narrow.size());
        for (const std::string& text : narrow)
            texts.emplace_back(text.c_str());
        return texts;
    }();
    benchmark::RegisterBenchmark("Filename split 10^5 paths/libBase", [](benchmark::State& state) {
        for (auto _ : state) {
            for (const IString& text : wide) {
                const kxOS::Filename path(text);
                benchmark::DoNotOptimize(path.dirname().length());
                benchmark::DoNotOptimize(path.baseTrunk().length());
                benchmark::DoNotOptimize(path.baseSuffix().length());
            }
        }
    })->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Filename split 10^5 paths/std::filesystem", [](benchmark::State&
                                                                                     state) {
        for (auto _ : state) {
            for (const std::string& text : narrow) {
                const fs::path path = fs::path(text).lexically_normal();
                benchmark::DoNotOptimize(path.parent_path().native().size());
                benchmark::DoNotOptimize(path.stem().native().size());
                benchmark::DoNotOptimize(path.extension().native().size());
            }
        }
    })->Unit(benchmark::kMillisecond);
}

// A 256 MiB file of random bytes, made once, removed at exit.
class CopyFixture {
public:
    CopyFixture() {
        dir_ =
            fs::temp_directory_path() / ("libBase-bench-" + std::to_string(std::random_device()()));
        fs::create_directories(dir_);
        std::vector<char> block(1 << 20);
        std::mt19937_64 random(1);
        std::ofstream out(source(), std::ios::binary);
        for (int i = 0; i < 256; ++i) {
            for (char& c : block)
                c = static_cast<char>(random());
            out.write(block.data(), static_cast<std::streamsize>(block.size()));
        }
    }
    ~CopyFixture() {
        std::error_code ignored;
        fs::remove_all(dir_, ignored);
    }
    CopyFixture(const CopyFixture&) = delete;
    CopyFixture& operator=(const CopyFixture&) = delete;

    std::string source() const { return (dir_ / "source").string(); }
    std::string target() const { return (dir_ / "target").string(); }

private:
    fs::path dir_;
};

// Made on first use, so that a run of the other cases does not pay for it.
const CopyFixture& copyFixture() {
    static const CopyFixture fixture;
    return fixture;
}

template <class Copy>
void registerCopy(const char* name, Copy copy) {
    benchmark::RegisterBenchmark(name,
                                 [copy](benchmark::State& state) {
                                     const CopyFixture& fixture = copyFixture();
                                     for (auto _ : state) {
                                         if (!copy(fixture.source(), fixture.target()))
                                             state.SkipWithError("copy failed");
                                         state.PauseTiming();
                                         fs::remove(fixture.target());
                                         state.ResumeTiming();
                                     }
                                     state.SetBytesProcessed(state.iterations() *
                                                             (std::int64_t{256} << 20));
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime();
}

void registerCopies() {
    registerCopy("fileCopy 256 MiB/libBase", [](const std::string& from, const std::string& to) {
        return !kxOS::fileCopy(from.c_str(), to.c_str(), false);
    });
    registerCopy(
        "fileCopy 256 MiB/std::filesystem",
        [](const std::string& from, const std::string& to) { return fs::copy_file(from, to); });
    registerCopy("fileCopy 256 MiB/cp", [](const std::string& from, const std::string& to) {
        const std::string command = "cp '" + from + "' '" + to + "'";
        return std::system(command.c_str()) == 0;
    });
}

} // namespace

int main(int argc, char** argv) {
    registerPaths();
    registerCopies();
    return bench::runAndCompare(argc, argv);
}
