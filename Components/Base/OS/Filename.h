// kxOS::Filename: the library's value type for a file-system path.
//
// A path is kept in a canonical form for its separator ("\" unless told
// otherwise): one separator character throughout, no doubled separators
// (but a leading "\\" of a network name stays), no trailing separator (but
// "\", "C:\" and "\\server\" keep theirs), and no "\..\" steps. The rules
// are Windows rules on every platform; the operating-system layer turns
// "\" into "/" when it calls POSIX, so "/tmp/x" works as a Linux user
// expects and is held as "\tmp\x".
//
//     "a//b\\c/"     => "a\b\c"
//     "a\b\..\c"     => "a\c"       "C:\..\x" => "x"    "..\..\x" stays
//     Filename("C:", "x") => "C:x"   Filename("a/b", "c") => "a/b\c"
//
// The parts (prefix, directory, base name, trunk, suffix) are split on the
// first query and kept until the path changes; copies never share them.
// Only getCwd, setCwd and makeDir touch the operating system.
//
// Thread safety: not safe for concurrent use, not even for the const part
// queries, which build the cache; distinct objects are independent.
#pragma once

#include <Base/Containers/Vector.h>
#include <Base/String/CString.h>
#include <Base/String/IString.h>
#include <Base/Utility/Api.h>

#include <memory>
#include <type_traits>

namespace kxOS {

class BASE_API Filename {
public:
    /// The library's separator: "\".
    static wchar_t separator() { return L'\\'; }
    /// The separator between entries of a search-path list: ";".
    static wchar_t pathSeparator() { return L';'; }
    /// The longest path the class promises to handle.
    static int maxLength() { return 260; }

    Filename();
    Filename(const kxString::IString& path);
    Filename(const kxString::IString& path, wchar_t sep);
    /// 8-bit text, converted from the system code page.
    Filename(const kxString::CString& path, char sep = '\\');
    Filename(const char* path, char sep = '\\');
    /// The join of `a` and `b` (see join()).
    Filename(const kxString::IString& a, const kxString::IString& b);
    Filename(const Filename& a, const Filename& b);
    /// A copy of the path; the parts are split again when asked for.
    Filename(const Filename& other);
    Filename(Filename&& other) noexcept;
    virtual ~Filename();

    Filename& operator=(const Filename& other);
    Filename& operator=(Filename&& other) noexcept;
    /// The canonical form of `path` for this object's separator.
    Filename& operator=(const kxString::IString& path);

    /// The canonical path.
    const kxString::IString& name() const { return path_; }
    wchar_t getSeparator() const { return separator_; }

    /// "C:" or "\\server\share", or empty.
    const kxString::IString& prefix() const;
    /// The directory, prefix included: "C:\dir\f.txt" => "C:\dir".
    const kxString::IString& dirname() const;
    /// The last component.
    const kxString::IString& basename() const;
    /// The base name before its last ".": "a.b.c" => "a.b".
    const kxString::IString& baseTrunk() const;
    /// The base name after its last ".", without it: "a.b.c" => "c".
    const kxString::IString& baseSuffix() const;
    /// The five parts in this order: prefix, dirname, basename, baseTrunk,
    /// baseSuffix.
    kx::vector<kxString::IString> components();

    /// Starts with "\\" or is "X:\...". Always tested with the backslash: a
    /// path with "/" as its separator is never absolute.
    bool isAbsolute() const;

    /// The join of two to four paths, with "\".
    static kxString::IString join(const kxString::IString& a, const kxString::IString& b);
    static kxString::IString join(const kxString::IString& a, const kxString::IString& b,
                                  const kxString::IString& c);
    static kxString::IString join(const kxString::IString& a, const kxString::IString& b,
                                  const kxString::IString& c, const kxString::IString& d);

    /// The canonical form of `in` for `sep`, in four steps: the other
    /// separator ("/" or "\") becomes `sep`, then the three steps below.
    static void canonicalize(const kxString::IString& in, wchar_t sep, kxString::IString& out);
    /// Runs of separators shrink to one, except at the very start, where
    /// they shrink to two.
    static void removeDuplicateSeparators(kxString::IString& s, wchar_t sep);
    /// Drops trailing separators, except from "X:\", "\\server\" and "\".
    static void removeTrailingSeparators(kxString::IString& s, wchar_t sep);
    /// Resolves "\..\" steps: "a\b\..\c" => "a\c", "C:\..\x" => "x",
    /// ".\..\x" => "..\x"; "..\..\x" stays.
    static void removeSlashDotDotSlash(kxString::IString& s, wchar_t sep);

    /// Sets this path to the process's current directory.
    void getCwd();
    /// Makes this path the process's current directory; true on success.
    bool setCwd();
    /// Creates this directory (one level); true on success.
    bool makeDir() const;

protected:
    /// Discards the parts and takes the canonical form of `path`.
    void assign(const kxString::IString& path);
    /// Discards the parts and takes the join of `a` and `b`.
    void assign(const kxString::IString& a, const kxString::IString& b);
    void deleteImpl();

private:
    struct Parts;
    const Parts& parts() const;

    wchar_t separator_;
    kxString::IString path_;
    mutable std::unique_ptr<Parts> parts_;
};

/// True when the base trunk names a reserved Windows device: CON, PRN, AUX,
/// NUL, COM1 to COM9, LPT1 to LPT9, in any case ("con.txt" too).
BASE_API bool isWindowsReservedDeviceName(const Filename& path);

} // namespace kxOS

/// A path holds a string and a pointer to its parts: it may move as bytes.
template <>
struct kx::is_relocatable<kxOS::Filename> : std::true_type {};

BASE_BEGIN_C

/// The C functions build Filename(IString(path)) from 8-bit text and copy
/// the requested part, as 8-bit text with its terminator, into `out`, which
/// must hold at least Filename::maxLength() + 1 bytes.
BASE_API void kxOS_FilenameJoin(const char* a, const char* b, char* out);
BASE_API void kxOS_FilenameDirname(const char* path, char* out);
BASE_API void kxOS_FilenameBasename(const char* path, char* out);
BASE_API void kxOS_FilenameBaseTrunk(const char* path, char* out);
BASE_API void kxOS_FilenameBaseSuffix(const char* path, char* out);
BASE_API void kxOS_FilenamePrefix(const char* path, char* out);
/// Non-zero when the directory was made.
BASE_API int kxOS_FilenameMakeDir(const char* path);

BASE_END_C
