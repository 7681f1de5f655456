// kxOS::URL: the scheme and path of a resource name, as far as the library
// needs them: whether a name is a local file and whether it is absolute.
//
// A scheme is a letter followed by letters, digits, "+", "-" or ".", then
// ":". A text without one is a file name, and so is a one-letter "scheme",
// which is a drive ("C:\x"). Schemes compare without case.
//
//     "C:\data\a.txt"         => scheme "file", path "C:\data\a.txt"
//     "file:///tmp/a.txt"     => scheme "file", path "/tmp/a.txt"
//     "https://host/a.txt"    => scheme "https": not local, absolute
#pragma once

#include <Base/String/IString.h>
#include <Base/Utility/Api.h>

namespace kxOS {

class BASE_API URL {
public:
    explicit URL(const kxString::IString& text);

    /// The scheme in lower case; "file" when the text has none.
    const kxString::IString& scheme() const { return scheme_; }
    /// The text after the scheme and, for "file" names, after an empty or
    /// "localhost" authority.
    const kxString::IString& path() const { return path_; }

    /// The scheme is "file".
    bool isLocalFile() const;
    /// True for every other scheme; a file name is absolute when it starts
    /// with a separator ("/" or "\") or a drive and a separator ("C:\").
    bool isAbsolutePath() const;

private:
    kxString::IString scheme_;
    kxString::IString path_;
};

} // namespace kxOS

BASE_BEGIN_C

/// kxOS::URL(text).isAbsolutePath(); a null text is not.
BASE_API int isAbsolutePath(const char* text);
/// kxOS::URL(text).isLocalFile(); a null text is not.
BASE_API int isLocalFile(const char* text);

BASE_END_C
