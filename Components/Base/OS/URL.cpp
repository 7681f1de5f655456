#include <Base/OS/URL.h>

namespace kxOS {
namespace {

bool isLetter(wchar_t c) {
    return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z');
}

bool isSchemeChar(wchar_t c) {
    return isLetter(c) || (c >= L'0' && c <= L'9') || c == L'+' || c == L'-' || c == L'.';
}

bool isSeparator(wchar_t c) {
    return c == L'/' || c == L'\\';
}

} // namespace

URL::URL(const kxString::IString& text) : scheme_(L"file"), path_(text) {
    unsigned int colon = 0;
    while (colon < text.length() && isSchemeChar(text[colon]) && isLetter(text[0]))
        ++colon;
    // One letter before the colon is a drive, not a scheme.
    if (colon < 2 || colon >= text.length() || text[colon] != L':')
        return;
    scheme_ = text.substr(0, colon);
    scheme_.toLowerCase();
    path_ = text.substr(colon + 1);
    if (!isLocalFile())
        return;
    // "file://authority/path": only the local machine's names are files here.
    if (path_.find(L"//") == 0) {
        const unsigned int end = path_.find(L'/', 2);
        const kxString::IString authority =
            path_.substr(2, end == kxString::IString::npos ? end : end - 2);
        if (authority.isEmpty() || authority.compareNoCase(kxString::IString(L"localhost")) == 0)
            path_ = end == kxString::IString::npos ? kxString::IString() : path_.substr(end);
    }
    // "/C:/x" names the drive path "C:/x".
    if (path_.length() >= 3 && isSeparator(path_[0]) && isLetter(path_[1]) && path_[2] == L':')
        path_.erase(0, 1);
}

bool URL::isLocalFile() const {
    return scheme_.compare(L"file") == 0;
}

bool URL::isAbsolutePath() const {
    if (!isLocalFile())
        return true;
    if (path_.length() >= 1 && isSeparator(path_[0]))
        return true;
    return path_.length() >= 3 && isLetter(path_[0]) && path_[1] == L':' && isSeparator(path_[2]);
}

} // namespace kxOS

int isAbsolutePath(const char* text) {
    return text && kxOS::URL(kxString::IString(text)).isAbsolutePath() ? 1 : 0;
}

int isLocalFile(const char* text) {
    return text && kxOS::URL(kxString::IString(text)).isLocalFile() ? 1 : 0;
}
