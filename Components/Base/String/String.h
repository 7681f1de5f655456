// The abstract base of the library's string classes, and the narrow
// encodings that wide strings convert to.
//
// CString holds narrow text and IString wide text (UTF-16 code units). Both
// are plain values: copies copy the text. Positions and lengths are 32-bit
// unsigned, and "not found" or "failed" is npos = 0xFFFFFFFF.
//
// Thread safety: a string object is not safe for concurrent use; distinct
// objects are independent.
#pragma once

#include <Base/Utility/Api.h>

namespace kxString {

/// The narrow encoding of a conversion to or from wide text. Every value
/// other than utf8 selects the system code page: the C locale's multibyte
/// encoding.
enum class Encoding : int {
    systemCodePage = 0,
    utf8 = 1,
};

/// Operations that every string class offers through its table of virtual
/// functions. A null string and an empty string are the same thing.
class BASE_API String {
public:
    /// "Not found", "failed", and "to the end" for lengths.
    static constexpr unsigned int npos = 0xFFFFFFFFu;

    virtual ~String();

    /// length() == 0.
    virtual bool isEmpty() const;
    /// The same as isEmpty().
    virtual bool isNull() const;
    virtual unsigned int length() const = 0;
    /// Always 0.
    virtual unsigned int first() const;
    /// length() - 1, or 0 for an empty string.
    virtual unsigned int last() const;
    virtual unsigned int capacity() const = 0;
    /// Makes room for `n` characters and returns capacity().
    virtual unsigned int reserve(unsigned int n) = 0;
    /// 0xFFFFFFFE for both string classes.
    virtual unsigned int maxSize() const;
    /// Appends a string of the same class. A string of the other class is
    /// converted first, through the system code page.
    virtual String& append(const String& other) = 0;

protected:
    String() = default;
    String(const String&) = default;
    String& operator=(const String&) = default;

    /// pos < length().
    bool doBoundsCheck(unsigned int pos) const;
    /// False when pos >= length(), true when len is npos, else len <= length()
    /// (pos + len is not checked).
    bool doBoundsCheck(unsigned int pos, unsigned int len) const;
};

} // namespace kxString
