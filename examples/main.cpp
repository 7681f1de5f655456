// Formats numbers with the bounded printf family, takes a UTF-8 argument
// through wide text and back, printing the UTF-16 code units, reports a
// failure with an error value, splits a path, copies a file under a
// temporary name, and sends messages and debug traces through the report
// channel after finding the installation directory.
#include <Base/Base.h>

#include <cinttypes>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <vector>

int main(int argc, char** argv) {
    std::setlocale(LC_ALL, "C.UTF-8");

    char line[64];
    HN_snprintf(line, sizeof line, "%" PRId64 " items, %.3f ms", int64_t{1} << 40, 2.5);
    std::printf("%s\n", line);
    std::printf("%s and %s\n", int64ToAscii(INT64_MIN, 0), uint64ToAscii(UINT64_MAX, 1));
    // Too long for the buffer: the text is cut and the result says so.
    const int result = HN_snprintf(line, 8, "%s", "truncated text");
    std::printf("cut: %d \"%.*s\"\n", result, 8, line);

    const char* text = argc > 1 ? argv[1] : "h\xC3\xA9llo \xF0\x9F\x98\x80";
    const unsigned length = static_cast<unsigned>(std::strlen(text));
    bool ok = false;
    const unsigned units = kxString::UTF8toWCS(text, length, nullptr, 0, false, &ok);
    std::vector<wchar_t> wide(units);
    kxString::UTF8toWCS(text, length, wide.data(), units, false, &ok);
    std::printf("%u UTF-16 units (%s):", units, ok ? "valid UTF-8" : "repaired");
    for (wchar_t unit : wide)
        std::printf(" %04X", static_cast<unsigned>(unit));

    const unsigned bytes = kxString::WCStoUTF8(wide.data(), units, nullptr, 0, nullptr);
    std::vector<char> back(bytes + 1);
    kxString::WCStoUTF8(wide.data(), units, back.data(), bytes, nullptr);
    std::printf("\nback to UTF-8: %s\n", back.data());

    kxString::IString wideText(text, kxString::Encoding::utf8);
    kxString::IString summary;
    summary.format(L"%S has %u units", wideText.asWChar(), wideText.length());
    std::printf("%s\n", summary.asUTF8());
    const kxUtil::Error error(2, "Cannot open %s", "part.model");
    std::printf("error %d: %s\n", error.num(), error.message());

    const kxOS::Filename path(kxString::IString("/models/wing//v2/../v3/rib.tar.gz"));
    std::printf("%s: directory %s, trunk %s, suffix %s\n", path.name().asUTF8(),
                path.dirname().asUTF8(), path.baseTrunk().asUTF8(), path.baseSuffix().asUTF8());
    const kxOS::Filename copy = kxOS::createTmpFilename(kxString::IString("bak"));
    const kxUtil::Error copied =
        kxOS::fileCopy(kxOS::Filename(kxString::IString(argv[0])), copy, false);
    std::printf("copy to a temporary name: %s\n", copied ? copied.message() : "done");
    const bool cleaned = !copied && !kxOS::fileDelete(copy);

    // Messages go to standard output, errors to standard error; the debug
    // channel opens only with HERON_DEBUG in the environment.
    rptInitialize(stdout, stderr, stdout, stdout);
    APP_setProgramName(kxOS::Filename(kxString::IString(argv[0])).name().asMultibyte());
    rptStatus("%s installed in %s\n", APP_getProgramName(), APP_getPath(true));
    rptUser("plug-ins in %s\n", APP_getPluginsPath());
    rptDebugCodeSet(4000);
    rptDebug(4000, "debug code %d (%s) is on\n", 4000, rptDebugCodeGetTable().find(4000)->second);
    rptStatus("%d debug code(s) set; HERON_DEBUG %s\n", rptDebugCodeGet().size(),
              rptDebugCodeIsSet(0) ? "present" : "absent");

    return (std::strcmp(back.data(), text) == 0 || !ok) && cleaned ? 0 : 1;
}
