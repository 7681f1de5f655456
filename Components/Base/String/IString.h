// kxString::IString: a wide string value, UTF-16 code units in wchar_t.
//
// Beside the wide text, each string keeps a narrow copy in one encoding,
// made on demand by asMultibyte() and asUTF8() and kept until the text
// changes or another encoding is asked for; so asking twice converts once.
// The same rules as CString hold for positions, searches, comparison and
// formatting (see <Base/String/CString.h>).
//
// Thread safety: one object is not safe for concurrent use, and even the
// const narrow views write the cache; distinct objects are independent.
#pragma once

#include <Base/String/CString.h>
#include <Base/String/String.h>

#include <compare>
#include <cstdarg>
#include <cstdint>
#include <type_traits>

namespace kxString {

class BASE_API IString final : public String {
public:
    IString();
    IString(const IString& other);
    /// Takes the text of `other`, which is left empty.
    IString(IString&& other) noexcept;
    explicit IString(wchar_t c);
    IString(unsigned int count, wchar_t c);
    /// A null text gives an empty string.
    IString(const wchar_t* text);
    /// The first `len` units of `text`; a negative `len` takes the text up to
    /// its terminator.
    IString(const wchar_t* text, int len);
    /// Narrow text converted from `encoding` (a UTF-8 byte-order mark is
    /// dropped); `ok` receives whether the conversion was exact. Text whose
    /// conversion yields nothing (a lone byte-order mark) stores nothing.
    IString(const char* text, Encoding encoding = Encoding::systemCodePage, bool* ok = nullptr);
    explicit IString(const CString& text, Encoding encoding = Encoding::systemCodePage,
                     bool* ok = nullptr);
    explicit IString(char c, Encoding encoding = Encoding::systemCodePage, bool* ok = nullptr);
    IString(unsigned int count, char c, Encoding encoding = Encoding::systemCodePage,
            bool* ok = nullptr);
    ~IString() override;

    IString& operator=(const IString& other);
    IString& operator=(IString&& other) noexcept;
    IString& operator=(const wchar_t* text);
    IString& assign(const IString& other);
    IString& assign(const wchar_t* text);
    /// Converts narrow text as the constructor does. When the conversion
    /// yields nothing the string keeps its old text.
    IString& assign(const char* text, Encoding encoding = Encoding::systemCodePage,
                    bool* ok = nullptr);
    IString& assign(const CString& text, Encoding encoding = Encoding::systemCodePage,
                    bool* ok = nullptr);

    /// The unit at `pos`; past the end it reads 0 and a write through the
    /// reference is discarded.
    wchar_t& at(unsigned int pos);
    const wchar_t& at(unsigned int pos) const;
    wchar_t& operator[](unsigned int pos) { return at(pos); }
    const wchar_t& operator[](unsigned int pos) const { return at(pos); }

    // The virtual operations of String.
    unsigned int length() const override;
    unsigned int capacity() const override;
    unsigned int reserve(unsigned int n) override;
    IString& append(const String& other) override;

    IString& append(const IString& other);
    IString& append(const wchar_t* text);
    IString& append(wchar_t c);
    IString& prepend(const IString& other);
    IString& prepend(const wchar_t* text);
    IString& prepend(wchar_t c);
    IString& insert(unsigned int pos, const IString& other);
    IString& insert(unsigned int pos, const wchar_t* text);
    IString& insert(unsigned int pos, wchar_t c);

    IString& erase(unsigned int pos = 0, unsigned int len = npos);
    IString& remove(unsigned int pos, unsigned int len = npos);
    IString& replace(unsigned int pos, unsigned int len, const IString& text);
    IString& replace(unsigned int pos, unsigned int len, const wchar_t* text);
    IString& replace(unsigned int pos, unsigned int len, wchar_t c);
    /// Replaces every occurrence of `from` by `to`, left to right; replaced
    /// text is not searched again: "aaa" with "a" => "aa" gives "aaaaaa".
    IString& replace(const IString& from, const IString& to);

    unsigned int find(const IString& needle, unsigned int pos = 0) const;
    unsigned int find(const wchar_t* needle, unsigned int pos = 0) const;
    unsigned int find(wchar_t c, unsigned int pos = 0) const;
    unsigned int find(bool (*predicate)(wchar_t), unsigned int pos = 0) const;
    unsigned int rfind(const IString& needle, unsigned int pos = npos) const;
    unsigned int rfind(const wchar_t* needle, unsigned int pos = npos) const;
    unsigned int rfind(wchar_t c, unsigned int pos = npos) const;
    unsigned int rfind(bool (*predicate)(wchar_t), unsigned int pos = npos) const;
    /// The first index at or after `pos` whose unit occurs in `set`; npos
    /// when this string or `set` is empty.
    unsigned int findAny(const IString& set, unsigned int pos = 0) const;
    /// The last index at or before `pos` whose unit occurs in `set`.
    unsigned int rfindAny(const IString& set, unsigned int pos = npos) const;

    IString& strip(wchar_t c);
    IString& rstrip(wchar_t c);
    IString& stripSpaces();
    IString& rstripSpaces();

    IString& toLowerCase();
    IString& toUpperCase();

    /// -1, 0 or 1 from the first differing 16-bit unit, else the lengths.
    int compare(const IString& other) const;
    int compare(const wchar_t* text) const;
    int compareNoCase(const IString& other) const;
    /// -1, 0 or 1 by the C locale's collation (wcscoll).
    int collate(const IString& other) const;
    int collateNoCase(const IString& other) const;

    IString substr(unsigned int pos, unsigned int len = npos) const;
    /// Stores the substring in `out`.
    void substr(IString& out, unsigned int pos, unsigned int len = npos) const;

    /// As CString::format, with the wide formatter: %s and %c take narrow
    /// arguments, %S, %ls, %C and %lc wide ones. A narrow format is first
    /// converted from the system code page.
    unsigned int format(const wchar_t* fmt, ...);
    unsigned int format(const char* fmt, ...) BASE_PRINTF_FORMAT(2, 3);
    unsigned int format(const IString* fmt, ...);
    unsigned int format(unsigned int hint, const wchar_t* fmt, ...);
    unsigned int format(unsigned int hint, const char* fmt, ...) BASE_PRINTF_FORMAT(3, 4);
    unsigned int format(unsigned int hint, const IString* fmt, ...);
    unsigned int vformat(const wchar_t* fmt, va_list args);
    unsigned int vformat(const char* fmt, va_list args) BASE_PRINTF_FORMAT(2, 0);

    /// The terminated wide text, valid until the string changes.
    const wchar_t* asWChar() const;
    /// The same: wide text is UTF-16.
    const wchar_t* asUnicode() const;
    /// The text in the system code page: asMultibyte().
    const char* asChar() const;
    /// The text converted to `encoding`, from the cache when it holds that
    /// encoding and the text has not changed; valid until the string changes
    /// or is converted to another encoding. `ok` receives whether the
    /// conversion was exact (characters that do not map become "?").
    const char* asMultibyte(Encoding encoding = Encoding::systemCodePage, bool* ok = nullptr) const;
    /// asMultibyte(Encoding::utf8, ok).
    const char* asUTF8(bool* ok = nullptr) const;

    /// Bytes that each view takes with its terminator.
    unsigned int asWCharStoreSize() const;
    unsigned int asUnicodeStoreSize() const;
    unsigned int asCharStoreSize() const;
    unsigned int asMultibyteStoreSize(Encoding encoding = Encoding::systemCodePage,
                                      bool* ok = nullptr) const;
    unsigned int asUTF8StoreSize(bool* ok = nullptr) const;

    /// Terminated copies on the C heap; the caller frees them with free().
    wchar_t* copyAsWChar() const;
    char* copyAsMultibyte(Encoding encoding = Encoding::systemCodePage, bool* ok = nullptr) const;

    /// Every unit is ASCII (true for an empty string).
    bool isAscii() const;
    void swap(IString& other) noexcept;
    /// A CString of the text in the system code page.
    CString convertToCString() const;
    /// convertToCString(); explicit, so that comparing an IString with a
    /// literal is not ambiguous.
    explicit operator CString() const;

private:
    struct Data;

    void convertFromMultibyte(const char* text, Encoding encoding, bool* ok);
    unsigned int formatText(unsigned int hint, const wchar_t* fmt, va_list args);
    Data& changing();

    Data* data_;
};

BASE_API bool equal(const IString& a, const IString& b);
BASE_API bool notEqual(const IString& a, const IString& b);
BASE_API bool less(const IString& a, const IString& b);
BASE_API bool lessEqual(const IString& a, const IString& b);
BASE_API bool greater(const IString& a, const IString& b);
BASE_API bool greaterEqual(const IString& a, const IString& b);
BASE_API void swap(IString& a, IString& b) noexcept;
/// kx::hashfunction over the text's UTF-16 units, two bytes each, for its
/// whole length.
BASE_API std::uint32_t hashfunction(const IString& text);

inline bool operator==(const IString& a, const IString& b) {
    return equal(a, b);
}
inline std::strong_ordering operator<=>(const IString& a, const IString& b) {
    return a.compare(b) <=> 0;
}

} // namespace kxString

/// An IString holds only a pointer to its record: it may move as bytes.
template <>
struct kx::is_relocatable<kxString::IString> : std::true_type {};
