#include <Base/OS/Filename.h>

#include <Base/Platform/FileSystem.h>
#include <Base/String/CharacterClass.h>

#include <cstring>
#include <string>

namespace kxOS {
namespace {

using kxString::IString;
using Text = std::wstring;
using View = std::wstring_view;

constexpr wchar_t kBackslash = L'\\';
constexpr wchar_t kSlash = L'/';

View viewOf(const IString& s) {
    return View(s.asWChar(), s.length());
}

IString stringOf(View text) {
    return text.empty() ? IString() : IString(text.data(), static_cast<int>(text.size()));
}

// The working copy of a path being made canonical: one per thread, so that
// making a path costs one allocation, the result's.
Text& scratch(View from) {
    thread_local Text text;
    text.assign(from);
    return text;
}

// The character that the duplicate and "..\" patterns are built of: the
// backslash for "\", the slash for any other separator.
wchar_t patternChar(wchar_t sep) {
    return sep == kBackslash ? kBackslash : kSlash;
}

// A run of pattern characters shrinks to one, except one that starts the
// text, which shrinks to two: a network name's "\\" survives. With
// `convert`, the other separator ("/" or "\") first becomes `sep`, in the
// same pass.
void collapseDuplicates(Text& s, wchar_t sep, bool convert = false) {
    const wchar_t c = patternChar(sep);
    const wchar_t other = !convert ? sep : sep == kSlash ? kBackslash : kSlash;
    std::size_t kept = 0;
    for (wchar_t unit : s) {
        if (unit == other)
            unit = sep;
        if (unit == c && kept >= 2 && s[kept - 1] == c)
            continue;
        s[kept++] = unit;
    }
    s.resize(kept);
}

void dropTrailingSeparators(Text& s, wchar_t sep) {
    const std::size_t n = s.size();
    if (n == 3 && s[1] == L':' && s[2] == sep)
        return; // "C:\"
    if (n > 2 && s[0] == sep && s[1] == sep && s.find(sep, 2) == s.rfind(sep))
        return; // "\\server\"
    std::size_t end = n;
    while (end > 1 && s[end - 1] == sep)
        --end;
    s.resize(end);
}

void resolveDotDotSteps(Text& s, wchar_t sep) {
    const wchar_t c = patternChar(sep);
    const wchar_t pattern[] = {c, L'.', L'.', c};
    const View step(pattern, 4);
    for (std::size_t p = s.find(step); p != Text::npos; p = s.find(step)) {
        const View head = View(s).substr(0, p);
        const std::size_t tail = p + step.size();
        const std::size_t last = head.rfind(sep);
        if (last != View::npos) {
            s.erase(last + 1, tail - (last + 1)); // the directory before the step goes
        } else if (head == L"..") {
            return; // "..\..\x" stays as it is
        } else if (head == L".") {
            s.replace(0, tail, {L'.', L'.', sep});
        } else {
            s.erase(0, tail); // also for "" and "C:": the root and the drive are lost
        }
    }
}

IString canonical(const IString& in, wchar_t sep) {
    Text& s = scratch(viewOf(in));
    collapseDuplicates(s, sep, true);
    dropTrailingSeparators(s, sep);
    resolveDotDotSteps(s, sep);
    return stringOf(s);
}

// Joining never converts separators: only the last three steps run.
IString joined(const IString& a, const IString& b) {
    Text& s = scratch(viewOf(a));
    if (a.isEmpty())
        s.assign(viewOf(b));
    else if (!b.isEmpty() && !(a.length() == 2 && a[1] == L':'))
        s.append(1, kBackslash).append(viewOf(b));
    else
        s.append(viewOf(b)); // "C:" and "dir" give the drive-relative "C:dir"
    collapseDuplicates(s, kBackslash);
    dropTrailingSeparators(s, kBackslash);
    resolveDotDotSteps(s, kBackslash);
    return stringOf(s);
}

} // namespace

struct Filename::Parts {
    IString prefix;
    IString dirname;
    IString basename;
    IString baseTrunk;
    IString baseSuffix;
    wchar_t separator;
};

Filename::Filename() : separator_(kBackslash) {}

Filename::Filename(const IString& path) : Filename(path, kBackslash) {}

Filename::Filename(const IString& path, wchar_t sep)
    : separator_(sep), path_(canonical(path, sep)) {}

Filename::Filename(const kxString::CString& path, char sep)
    : Filename(IString(path), static_cast<wchar_t>(static_cast<unsigned char>(sep))) {}

Filename::Filename(const char* path, char sep)
    : Filename(IString(path), static_cast<wchar_t>(static_cast<unsigned char>(sep))) {}

Filename::Filename(const IString& a, const IString& b)
    : separator_(kBackslash), path_(joined(a, b)) {}

Filename::Filename(const Filename& a, const Filename& b) : Filename(a.name(), b.name()) {}

Filename::Filename(const Filename& other) : separator_(other.separator_), path_(other.path_) {}

Filename::Filename(Filename&& other) noexcept
    : separator_(other.separator_), path_(std::move(other.path_)) {
    other.deleteImpl();
}

Filename::~Filename() = default;

Filename& Filename::operator=(const Filename& other) {
    if (this != &other) {
        deleteImpl();
        separator_ = other.separator_;
        path_ = other.path_;
    }
    return *this;
}

Filename& Filename::operator=(Filename&& other) noexcept {
    deleteImpl();
    other.deleteImpl();
    separator_ = other.separator_;
    path_.swap(other.path_);
    return *this;
}

Filename& Filename::operator=(const IString& path) {
    assign(path);
    return *this;
}

void Filename::assign(const IString& path) {
    deleteImpl();
    path_ = canonical(path, separator_);
}

void Filename::assign(const IString& a, const IString& b) {
    deleteImpl();
    path_ = joined(a, b);
}

void Filename::deleteImpl() {
    parts_.reset();
}

const Filename::Parts& Filename::parts() const {
    if (parts_)
        return *parts_;
    parts_ = std::make_unique<Parts>();
    Parts& p = *parts_;
    p.separator = separator_;
    const View full(path_.asWChar(), path_.length());
    if (full.empty())
        return p;

    // Every part is a piece of the path: the directory, prefix included,
    // is always the path's beginning.
    const wchar_t sep = separator_;
    const std::size_t last = full.size() - 1;
    std::size_t prefixEnd = 0; // the prefix is full[0, prefixEnd)
    std::size_t restBegin = 0; // the remainder is full[restBegin, end)
    bool unc = false;
    if (full.size() >= 2 && full[1] == L':') {
        prefixEnd = restBegin = 2;
    } else if (full.size() >= 2 && full[0] == kBackslash && full[1] == kBackslash) {
        // A network name is always told by its backslashes.
        const std::size_t server = full.find(kBackslash, 2);
        const std::size_t share =
            server == View::npos || server == last ? View::npos : full.find(kBackslash, server + 1);
        if (share == View::npos) {
            // A bare "\\server" or "\\server\share" is all prefix: it has no
            // directory, not even itself.
            p.prefix = path_;
            return p;
        }
        prefixEnd = share;
        restBegin = share == last ? full.size() : share + 1;
        unc = restBegin < full.size();
    }

    const View rest = full.substr(restBegin);
    std::size_t dirLength = 0;
    View base;
    if (rest.size() == 1 && rest[0] == sep) {
        dirLength = 1;
    } else {
        const std::size_t k = rest.rfind(sep);
        if (k == View::npos) {
            base = rest;
        } else {
            dirLength = k == 0 ? 1 : k;
            base = rest.substr(k + 1);
        }
    }
    // A network remainder's directory follows the prefix's separator.
    const std::size_t dirEnd = unc && dirLength > 0 ? restBegin + dirLength : prefixEnd + dirLength;

    View trunk;
    View suffix;
    if (!base.empty() && base != L".") {
        const std::size_t d = base.rfind(L'.');
        trunk = base.substr(0, d);
        if (d != View::npos)
            suffix = base.substr(d + 1);
    }
    p.prefix = stringOf(full.substr(0, prefixEnd));
    p.dirname = stringOf(full.substr(0, dirEnd));
    p.basename = stringOf(base);
    p.baseTrunk = stringOf(trunk);
    p.baseSuffix = stringOf(suffix);
    return p;
}

const IString& Filename::prefix() const {
    return parts().prefix;
}

const IString& Filename::dirname() const {
    return parts().dirname;
}

const IString& Filename::basename() const {
    return parts().basename;
}

const IString& Filename::baseTrunk() const {
    return parts().baseTrunk;
}

const IString& Filename::baseSuffix() const {
    return parts().baseSuffix;
}

kx::vector<IString> Filename::components() {
    const Parts& p = parts();
    return {p.prefix, p.dirname, p.basename, p.baseTrunk, p.baseSuffix};
}

bool Filename::isAbsolute() const {
    const unsigned int n = path_.length();
    if (n >= 2 && path_[0] == kBackslash && path_[1] == kBackslash)
        return true;
    return n >= 3 && path_[1] == L':' && path_[2] == kBackslash;
}

IString Filename::join(const IString& a, const IString& b) {
    return Filename(a, b).name();
}

IString Filename::join(const IString& a, const IString& b, const IString& c) {
    return Filename(join(a, b), c).name();
}

IString Filename::join(const IString& a, const IString& b, const IString& c, const IString& d) {
    return Filename(join(a, b), join(c, d)).name();
}

void Filename::canonicalize(const IString& in, wchar_t sep, IString& out) {
    out = canonical(in, sep);
}

void Filename::removeDuplicateSeparators(IString& s, wchar_t sep) {
    Text& text = scratch(viewOf(s));
    collapseDuplicates(text, sep);
    s = stringOf(text);
}

void Filename::removeTrailingSeparators(IString& s, wchar_t sep) {
    Text& text = scratch(viewOf(s));
    dropTrailingSeparators(text, sep);
    s = stringOf(text);
}

void Filename::removeSlashDotDotSlash(IString& s, wchar_t sep) {
    Text& text = scratch(viewOf(s));
    resolveDotDotSteps(text, sep);
    s = stringOf(text);
}

void Filename::getCwd() {
    separator_ = kBackslash;
    assign(kx::platform::currentDirectory());
}

bool Filename::setCwd() {
    return kx::platform::changeDirectory(path_) == 0;
}

bool Filename::makeDir() const {
    return kx::platform::makeDirectory(path_) == 0;
}

bool isWindowsReservedDeviceName(const Filename& path) {
    IString trunk = path.baseTrunk();
    trunk.toUpperCase();
    for (const wchar_t* name : {L"CON", L"PRN", L"AUX", L"NUL"}) {
        if (trunk.compare(name) == 0)
            return true;
    }
    if (trunk.length() != 4)
        return false;
    const bool port = trunk.find(L"COM") == 0 || trunk.find(L"LPT") == 0;
    return port && trunk[3] >= L'1' && trunk[3] <= L'9';
}

} // namespace kxOS

namespace {

void copyOut(const kxString::IString& text, char* out) {
    if (out)
        std::strcpy(out, text.asMultibyte());
}

kxOS::Filename filenameOf(const char* path) {
    return kxOS::Filename(kxString::IString(path));
}

} // namespace

void kxOS_FilenameJoin(const char* a, const char* b, char* out) {
    copyOut(kxOS::Filename::join(kxString::IString(a), kxString::IString(b)), out);
}

void kxOS_FilenameDirname(const char* path, char* out) {
    copyOut(filenameOf(path).dirname(), out);
}

void kxOS_FilenameBasename(const char* path, char* out) {
    copyOut(filenameOf(path).basename(), out);
}

void kxOS_FilenameBaseTrunk(const char* path, char* out) {
    copyOut(filenameOf(path).baseTrunk(), out);
}

void kxOS_FilenameBaseSuffix(const char* path, char* out) {
    copyOut(filenameOf(path).baseSuffix(), out);
}

void kxOS_FilenamePrefix(const char* path, char* out) {
    copyOut(filenameOf(path).prefix(), out);
}

int kxOS_FilenameMakeDir(const char* path) {
    return filenameOf(path).makeDir() ? 1 : 0;
}
