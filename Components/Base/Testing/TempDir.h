// Test helper: a fresh directory for one test, removed with all it holds.
#pragma once

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

class TempDir {
public:
    TempDir() {
        static std::atomic<int> serial{0};
        const auto stamp = std::chrono::steady_clock::now().time_since_epoch().count();
        path_ = std::filesystem::temp_directory_path() /
                ("libBase-test-" + std::to_string(stamp) + "-" + std::to_string(serial++));
        std::filesystem::create_directories(path_);
    }
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all,
                                     std::filesystem::perm_options::add, ignored);
        std::filesystem::remove_all(path_, ignored);
    }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// The path of `name` inside the directory, as text.
    std::string operator/(const std::string& name) const { return (path_ / name).string(); }

    /// Writes `content` to `name` and returns its path.
    std::string write(const std::string& name, const std::string& content) const {
        std::string file = *this / name;
        std::ofstream(file, std::ios::binary) << content;
        return file;
    }

private:
    std::filesystem::path path_;
};

/// The whole content of a file, or "<missing>".
inline std::string readAll(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return "<missing>";
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}
