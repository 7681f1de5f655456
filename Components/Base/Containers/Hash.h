// Hash values for the hash containers: the kx::hashfunction family and the
// incremental kx::Hasher.
//
// All of them mix their input through four fixed tables of 256 32-bit
// constants, and their values are part of the library's contract: the same
// input gives the same 32-bit hash on every platform and in every release.
// Wide text hashes as 2 bytes per UTF-16 unit, low byte first, so it hashes
// alike whatever the width of wchar_t.
//
//     hashfunction("")          => 0
//     hashfunction("a") != hashfunction("b")
//
// Thread safety: the functions are reentrant; a Hasher is a plain value.
#pragma once

#include <Base/Utility/Api.h>

#include <cstdint>

namespace kx {

/// Terminated text, four characters at a time; null or "" gives 0.
BASE_API std::uint32_t hashfunction(const char* text);
/// `n` bytes; n <= 0 gives 0.
BASE_API std::uint32_t hashfunction(const unsigned char* bytes, int n);
/// The bytes of [first, last).
BASE_API std::uint32_t hashfunction(const char* first, const char* last);
/// `n` UTF-16 units as 2n bytes, low byte first.
BASE_API std::uint32_t hashfunction(const wchar_t* text, int n);
/// `n` 32-bit words; each word is mixed with the tables by its position.
BASE_API std::uint32_t hashfunction(const unsigned int* words, int n);

/// Hashes a stream of 64-bit words: add() buffers 16 at a time and mixes
/// each full buffer into the running value as bytes.
class BASE_API Hasher {
public:
    Hasher() = default;

    void add(std::uint64_t word) {
        buffer_[count_++] = word;
        if (count_ == kWords)
            flushBuffer();
    }
    /// Mixes the buffered words into the running value.
    void flushBuffer();
    /// The running value, after mixing what is still buffered.
    std::uint64_t getHash();

private:
    static constexpr int kWords = 16;

    int count_ = 0;
    std::uint64_t buffer_[kWords] = {};
    std::uint32_t hash_ = 0;
};

} // namespace kx
