// kxString::CString: a narrow (8-bit) string value.
//
// The text lives in a heap buffer that every constructor allocates, also for
// an empty string. Positions and lengths are 32-bit; npos (0xFFFFFFFF) means
// "not found" or "failed", and as a length "to the end".
//
// Rules that differ from std::string:
// - an empty needle is never found: CString("abc").find("") => npos;
// - positions past the end never throw: element access reads '\0' there
//   (and a write through it is discarded), insert and replace clamp the
//   position to the end, erase and substr do nothing or give "";
// - compare() returns -1, 0 or 1 from the raw bytes, without the locale;
// - format() fails on an empty result: format("%s", "") => npos, and the
//   string keeps its text.
//
// Thread safety: one object is not safe for concurrent use; distinct
// objects are independent.
#pragma once

#include <Base/Containers/Relocatable.h>
#include <Base/String/String.h>

#include <compare>
#include <cstdarg>
#include <cstdint>
#include <string>
#include <type_traits>

namespace kxString {

class IString;

class BASE_API CString final : public String {
public:
    CString();
    CString(const CString& other);
    /// Takes the text of `other`, which is left empty.
    CString(CString&& other) noexcept;
    explicit CString(char c);
    CString(unsigned int count, char c);
    /// A null text gives an empty string.
    CString(const char* text);
    /// The first `len` characters of `text`; a negative `len` takes the text
    /// up to its terminator.
    CString(const char* text, int len);
    ~CString() override;

    CString& operator=(const CString& other);
    CString& operator=(CString&& other) noexcept;
    CString& operator=(const char* text);
    CString& assign(const CString& other);
    CString& assign(const char* text);

    /// The character at `pos`, unchecked by the caller; past the end it reads
    /// '\0' and a write through the reference is discarded.
    char& at(unsigned int pos);
    const char& at(unsigned int pos) const;
    char& operator[](unsigned int pos) { return at(pos); }
    const char& operator[](unsigned int pos) const { return at(pos); }

    // The virtual operations of String. length() and the appends of short
    // text are inline: they are the string's hottest operations.
    unsigned int length() const override { return static_cast<unsigned int>(text_->size()); }
    unsigned int capacity() const override;
    unsigned int reserve(unsigned int n) override;
    CString& append(const String& other) override;

    CString& append(const CString& other) {
        text_->append(*other.text_);
        return *this;
    }
    /// A null text appends nothing.
    CString& append(const char* text) {
        if (text)
            text_->append(text);
        return *this;
    }
    CString& append(char c) {
        text_->push_back(c);
        return *this;
    }
    CString& prepend(const CString& other);
    CString& prepend(const char* text);
    CString& prepend(char c);
    CString& insert(unsigned int pos, const CString& other);
    CString& insert(unsigned int pos, const char* text);
    CString& insert(unsigned int pos, char c);

    /// Erases as std::string does; nothing happens to an empty string.
    CString& erase(unsigned int pos = 0, unsigned int len = npos);
    /// erase(pos, len).
    CString& remove(unsigned int pos, unsigned int len = npos);
    CString& replace(unsigned int pos, unsigned int len, const CString& text);
    CString& replace(unsigned int pos, unsigned int len, const char* text);
    CString& replace(unsigned int pos, unsigned int len, char c);

    /// Index of the first match at or after `pos`, or npos; an empty needle
    /// or an empty string gives npos.
    unsigned int find(const CString& needle, unsigned int pos = 0) const;
    unsigned int find(const char* needle, unsigned int pos = 0) const;
    unsigned int find(char c, unsigned int pos = 0) const;
    /// The first index at or after `pos` whose character satisfies
    /// `predicate`.
    unsigned int find(bool (*predicate)(char), unsigned int pos = 0) const;
    /// Index of the last match that starts at or before `pos`, or npos.
    unsigned int rfind(const CString& needle, unsigned int pos = npos) const;
    unsigned int rfind(const char* needle, unsigned int pos = npos) const;
    unsigned int rfind(char c, unsigned int pos = npos) const;
    /// The first index at or before `pos` (npos: from the last character)
    /// whose character satisfies `predicate`.
    unsigned int rfind(bool (*predicate)(char), unsigned int pos = npos) const;

    /// Removes the leading characters equal to `c`.
    CString& strip(char c);
    /// Removes the trailing characters equal to `c`.
    CString& rstrip(char c);
    /// Removes leading white space (kxString::isSpace): "  a b  " => "a b  ".
    CString& stripSpaces();
    /// Removes trailing white space.
    CString& rstripSpaces();

    CString& toLowerCase();
    CString& toUpperCase();

    /// -1, 0 or 1 from the first differing byte, else from the lengths:
    /// "ab" against "abc" => -1.
    int compare(const CString& other) const;
    /// A null text compares as an empty one.
    int compare(const char* text) const;
    /// compare() of lower-cased copies.
    int compareNoCase(const CString& other) const;
    /// -1, 0 or 1 by the C locale's collation (strcoll).
    int collate(const CString& other) const;
    int collateNoCase(const CString& other) const;

    /// A new string of `len` characters from `pos`; "" past the end.
    CString substr(unsigned int pos, unsigned int len = npos) const;

    /// Replaces the text with the formatted text and returns its length, or
    /// returns npos and keeps the text when the result is empty, the format
    /// is bad or an argument cannot be converted (see <Base/Utility/Format.h>
    /// for the conversions). The `hint` forms start from a buffer of `hint`
    /// characters instead of 256.
    unsigned int format(const char* fmt, ...) BASE_PRINTF_FORMAT(2, 3);
    /// The format is the text of `fmt`; a null `fmt` fails.
    unsigned int format(const CString* fmt, ...);
    unsigned int format(unsigned int hint, const char* fmt, ...) BASE_PRINTF_FORMAT(3, 4);
    unsigned int format(unsigned int hint, const CString* fmt, ...);
    unsigned int vformat(const char* fmt, va_list args) BASE_PRINTF_FORMAT(2, 0);

    /// The terminated text, valid until the string changes.
    const char* asChar() const { return text_->c_str(); }
    /// The same as asChar(): the text is taken as the system code page's.
    const char* asMultibyte() const;
    /// Bytes that asChar() takes with its terminator.
    unsigned int asCharStoreSize() const;
    unsigned int asMultibyteStoreSize() const;

    /// A terminated copy on the C heap; the caller frees it with free().
    char* copyAsChar() const;
    char* copyAsMultibyte() const;

    /// Every byte is ASCII (true for an empty string).
    bool isAscii() const;
    void swap(CString& other) noexcept;

private:
    friend class IString;

    std::string* text_;
};

BASE_API bool equal(const CString& a, const CString& b);
BASE_API bool equal(const CString& a, const char* b);
BASE_API bool notEqual(const CString& a, const CString& b);
BASE_API bool less(const CString& a, const CString& b);
BASE_API bool lessEqual(const CString& a, const CString& b);
BASE_API bool greater(const CString& a, const CString& b);
BASE_API bool greaterEqual(const CString& a, const CString& b);
BASE_API void swap(CString& a, CString& b) noexcept;
/// kx::hashfunction over the text's bytes, for its whole length.
BASE_API std::uint32_t hashfunction(const CString& text);

inline bool operator==(const CString& a, const CString& b) {
    return equal(a, b);
}
inline bool operator==(const CString& a, const char* b) {
    return equal(a, b);
}
inline std::strong_ordering operator<=>(const CString& a, const CString& b) {
    return a.compare(b) <=> 0;
}

} // namespace kxString

/// A CString holds only a pointer to its buffer: it may move as bytes.
template <>
struct kx::is_relocatable<kxString::CString> : std::true_type {};

BASE_BEGIN_C

/// A new CString with a copy of `text` (null gives an empty string), for
/// callers that hold C pointers only; free it with CString_delete.
BASE_API kxString::CString* CString_create(const char* text);
/// Deletes a CString made by CString_create; null is ignored.
BASE_API void CString_delete(kxString::CString* string);

BASE_END_C
