#include <Base/OS/Filename.h>
#include <Base/OS/URL.h>

#include "TempDir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

using kxOS::Filename;
using kxString::IString;

namespace {

std::string text(const IString& s) {
    return s.asUTF8();
}

std::string canonical(const char* in, wchar_t sep = L'\\') {
    IString out;
    Filename::canonicalize(IString(in), sep, out);
    return text(out);
}

std::vector<std::string> parts(const char* path) {
    Filename f{IString(path)};
    std::vector<std::string> result;
    for (const IString& part : f.components())
        result.push_back(text(part));
    return result;
}

} // namespace

TEST(Filename, CanonicalFormKeepsWindowsQuirks) {
    const std::pair<const char*, const char*> cases[] = {
        {R"(a//b\\c/)", R"(a\b\c)"},
        {R"(\\\srv\x)", R"(\\srv\x)"},
        {R"(C:\)", R"(C:\)"},
        {R"(C:\dir\)", R"(C:\dir)"},
        {R"(\)", R"(\)"},
        {R"(\\\)", R"(\)"}, // the first character always stays
        {R"(\\srv\)", R"(\\srv\)"},
        {R"(a\b\..\c)", R"(a\c)"},
        {R"(a\..\..\b)", R"(..\b)"},
        {R"(..\..\x)", R"(..\..\x)"},
        {R"(.\..\x)", R"(..\x)"},
        {R"(C:\..\x)", "x"},
        {R"(\..\x)", "x"},
        {R"(a\b\..)", R"(a\b\..)"},
        {R"(a\.\b)", R"(a\.\b)"},
        {"/tmp/x", R"(\tmp\x)"},
        {"", ""},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(canonical(in), out) << in;

    // With "/" the backslash is converted instead, and the patterns use "/".
    EXPECT_EQ(canonical(R"(a\\b/../c/)", L'/'), "a/c");
    EXPECT_EQ(canonical("//srv//x", L'/'), "//srv/x");
    // Any other separator converts "/" and looks for "//" and "/../".
    EXPECT_EQ(canonical("a/b|c", L'|'), "a|b|c");

    // The steps alone convert nothing.
    IString steps(L"a//b\\\\c|");
    Filename::removeDuplicateSeparators(steps, L'|');
    EXPECT_EQ(text(steps), R"(a/b\\c|)");
    Filename::removeTrailingSeparators(steps, L'|');
    EXPECT_EQ(text(steps), R"(a/b\\c)");
    steps = L"x/y/../z";
    Filename::removeSlashDotDotSlash(steps, L'\\');
    EXPECT_EQ(text(steps), "x/y/../z");
    Filename::removeSlashDotDotSlash(steps, L'/');
    EXPECT_EQ(text(steps), "x/z");
}

TEST(Filename, JoinDoesNotConvertSeparators) {
    EXPECT_EQ(text(Filename(IString("C:"), IString("x")).name()), "C:x");
    EXPECT_EQ(text(Filename(IString(""), IString("x")).name()), "x");
    EXPECT_EQ(text(Filename(IString("a"), IString("")).name()), "a");
    EXPECT_EQ(text(Filename(IString(""), IString("")).name()), "");
    EXPECT_EQ(text(Filename(IString("a/b"), IString("c")).name()), R"(a/b\c)");
    EXPECT_EQ(text(Filename(IString(R"(a\)"), IString(R"(\..\c\)")).name()), "c");
    EXPECT_EQ(text(Filename::join(IString("a"), IString("b"), IString("c"))), R"(a\b\c)");
    EXPECT_EQ(text(Filename::join(IString("a"), IString("b"), IString(""), IString("d"))),
              R"(a\b\d)");
    EXPECT_EQ(text(Filename(Filename(IString("/usr")), Filename(IString("lib/x"))).name()),
              R"(\usr\lib\x)");
}

TEST(Filename, SplitsDrivesNetworkNamesAndSuffixes) {
    using Parts = std::vector<std::string>;
    EXPECT_EQ(parts(R"(C:\dir\file.tar.gz)"),
              (Parts{"C:", R"(C:\dir)", "file.tar.gz", "file.tar", "gz"}));
    EXPECT_EQ(parts("C:f.txt"), (Parts{"C:", "C:", "f.txt", "f", "txt"}));
    EXPECT_EQ(parts("C:"), (Parts{"C:", "C:", "", "", ""}));
    EXPECT_EQ(parts(R"(C:\)"), (Parts{"C:", R"(C:\)", "", "", ""}));
    EXPECT_EQ(parts("x"), (Parts{"", "", "x", "x", ""}));
    EXPECT_EQ(parts(R"(\)"), (Parts{"", R"(\)", "", "", ""}));
    EXPECT_EQ(parts(R"(\f.c)"), (Parts{"", R"(\)", "f.c", "f", "c"}));
    EXPECT_EQ(parts(R"(\\srv\share)"), (Parts{R"(\\srv\share)", "", "", "", ""}));
    EXPECT_EQ(parts(R"(\\srv)"), (Parts{R"(\\srv)", "", "", "", ""}));
    EXPECT_EQ(parts(R"(\\srv\)"), (Parts{R"(\\srv\)", "", "", "", ""}));
    EXPECT_EQ(parts(R"(\\srv\share\f.txt)"),
              (Parts{R"(\\srv\share)", R"(\\srv\share)", "f.txt", "f", "txt"}));
    EXPECT_EQ(parts(R"(\\srv\share\d\f)"),
              (Parts{R"(\\srv\share)", R"(\\srv\share\d)", "f", "f", ""}));
    EXPECT_EQ(parts(".profile"), (Parts{"", "", ".profile", "", "profile"}));
    EXPECT_EQ(parts("name."), (Parts{"", "", "name.", "name", ""}));
    EXPECT_EQ(parts(R"(a\..)"), (Parts{"", "a", "..", ".", ""}));
    EXPECT_EQ(parts(R"(a\.)"), (Parts{"", "a", ".", "", ""}));

    // With "/" as separator the split uses "/", but a network name is only
    // ever told by backslashes, and such a path is never absolute.
    Filename slash(IString("/usr/lib/libc.so"), L'/');
    EXPECT_EQ(text(slash.dirname()), "/usr/lib");
    EXPECT_EQ(text(slash.baseTrunk()), "libc");
    EXPECT_FALSE(slash.isAbsolute());
}

TEST(Filename, AbsoluteAlwaysMeansBackslashes) {
    EXPECT_FALSE(Filename(IString(R"(\x)")).isAbsolute());
    EXPECT_TRUE(Filename(IString(R"(\\srv)")).isAbsolute());
    EXPECT_TRUE(Filename(IString(R"(C:\x)")).isAbsolute());
    EXPECT_FALSE(Filename(IString("C:x")).isAbsolute());
    EXPECT_FALSE(Filename(IString("C:/x"), L'/').isAbsolute());
}

TEST(Filename, PartsFollowAssignmentAndAreNotShared) {
    Filename a{IString(R"(C:\one\a.txt)")};
    EXPECT_EQ(text(a.basename()), "a.txt");
    Filename b = a;
    a = IString(R"(D:\two\b.doc)");
    EXPECT_EQ(text(a.basename()), "b.doc");
    EXPECT_EQ(text(a.prefix()), "D:");
    EXPECT_EQ(text(b.basename()), "a.txt");

    // Assigning text keeps the separator; assigning a Filename takes its.
    Filename slash(IString("x/y"), L'/');
    slash = IString(R"(p\q\)");
    EXPECT_EQ(text(slash.name()), "p/q");
    slash = b;
    EXPECT_EQ(slash.getSeparator(), L'\\');
    Filename moved = std::move(slash);
    EXPECT_EQ(text(moved.dirname()), R"(C:\one)");
}

TEST(Filename, ReservedDeviceNamesGoByTrunk) {
    for (const char* name : {"nul", "Com7.dat", "con.txt", R"(C:\x\Lpt3.log)", "AUX", "prn"})
        EXPECT_TRUE(kxOS::isWindowsReservedDeviceName(Filename(IString(name)))) << name;
    for (const char* name : {"COM10", "LPT0", "con.tar.gz", "CONSOLE", "COMX", ""})
        EXPECT_FALSE(kxOS::isWindowsReservedDeviceName(Filename(IString(name)))) << name;
}

TEST(Filename, CFunctionsCopyPartsAsNarrowText) {
    char out[Filename::maxLength() + 1];
    kxOS_FilenameJoin("C:\\a", "b/c.txt", out);
    EXPECT_STREQ(out, "C:\\a\\b/c.txt");
    kxOS_FilenameDirname("/usr/lib/x.so", out);
    EXPECT_STREQ(out, "\\usr\\lib");
    kxOS_FilenameBasename("/usr/lib/x.so", out);
    EXPECT_STREQ(out, "x.so");
    kxOS_FilenameBaseTrunk("/usr/lib/x.so", out);
    EXPECT_STREQ(out, "x");
    kxOS_FilenameBaseSuffix("/usr/lib/x.so", out);
    EXPECT_STREQ(out, "so");
    kxOS_FilenamePrefix("C:/x", out);
    EXPECT_STREQ(out, "C:");
    kxOS_FilenamePrefix(nullptr, out);
    EXPECT_STREQ(out, "");
}

TEST(Filename, WorkingDirectoryAndMakeDir) {
    TempDir dir;
    const std::filesystem::path saved = std::filesystem::current_path();
    Filename made{IString((dir / "made").c_str())};
    EXPECT_TRUE(made.makeDir());
    EXPECT_FALSE(made.makeDir());                                         // it exists now
    EXPECT_FALSE(Filename(IString((dir / "no/such").c_str())).makeDir()); // one level only
    EXPECT_EQ(kxOS_FilenameMakeDir((dir / "made2").c_str()), 1);

    EXPECT_TRUE(made.setCwd());
    Filename cwd{IString("x/y"), L'/'};
    cwd.getCwd();
    EXPECT_EQ(cwd.getSeparator(), L'\\');
    EXPECT_EQ(text(cwd.basename()), "made");
    EXPECT_EQ(cwd.name().compare(made.name()), 0);
    EXPECT_FALSE(Filename(IString((dir / "missing").c_str())).setCwd());
    std::filesystem::current_path(saved);
}

TEST(URL, SchemesDrivesAndLocalFiles) {
    struct Case {
        const char* text;
        const char* scheme;
        const char* path;
        bool local;
        bool absolute;
    };
    const Case cases[] = {
        {R"(C:\data\a.txt)", "file", R"(C:\data\a.txt)", true, true},
        {"relative/a.txt", "file", "relative/a.txt", true, false},
        {"/tmp/a.txt", "file", "/tmp/a.txt", true, true},
        {"file:///tmp/a.txt", "file", "/tmp/a.txt", true, true},
        {"FILE://localhost/tmp/a", "file", "/tmp/a", true, true},
        {"file:///C:/x", "file", "C:/x", true, true},
        {"file:rel", "file", "rel", true, false},
        {"file://host/share/a", "file", "//host/share/a", true, true},
        {"https://host/a.txt", "https", "//host/a.txt", false, true},
        {"svn+ssh://h/r", "svn+ssh", "//h/r", false, true},
        {"1abc:x", "file", "1abc:x", true, false},
        {"", "file", "", true, false},
    };
    for (const Case& c : cases) {
        const kxOS::URL url{IString(c.text)};
        EXPECT_EQ(text(url.scheme()), c.scheme) << c.text;
        EXPECT_EQ(text(url.path()), c.path) << c.text;
        EXPECT_EQ(url.isLocalFile(), c.local) << c.text;
        EXPECT_EQ(url.isAbsolutePath(), c.absolute) << c.text;
        EXPECT_EQ(isLocalFile(c.text), c.local ? 1 : 0) << c.text;
        EXPECT_EQ(isAbsolutePath(c.text), c.absolute ? 1 : 0) << c.text;
    }
    EXPECT_EQ(isLocalFile(nullptr), 0);
    EXPECT_EQ(isAbsolutePath(nullptr), 0);
}
