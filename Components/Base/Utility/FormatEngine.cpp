// The printf engine. It parses each conversion itself and writes integers,
// strings, characters and the common floating-point forms directly into the
// bounded output; rarer forms (%a, %p, the "#" and "'" flags on floating
// point, long double) are formatted by the C runtime one conversion at a
// time. Doing the work here, rather than handing the whole format to the
// runtime, is what gives one pass under the legacy truncation rule, the
// Windows size prefixes, UTF-16 arguments and a clear verdict on bad input.
#include <Base/Utility/FormatEngine.h>

#include <Base/Platform/Locale.h>
#include <Base/String/LocaleCodec.h>
#include <Base/String/Unicode.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <cwchar>
#include <iterator>
#include <memory>
#include <type_traits>

namespace kx::detail {
namespace {

namespace unicode = kx::unicode;

// A va_list inside a struct can be passed by reference on every ABI.
struct Arguments {
    std::va_list list;
};

// Characters past the capacity are counted but not stored.
template <class Char>
class Sink {
public:
    Sink(Char* buffer, std::size_t capacity) : buffer_(buffer), capacity_(capacity) {}

    void put(Char c) {
        if (count_ < capacity_)
            buffer_[count_] = c;
        ++count_;
    }

    void put(const Char* text, std::size_t n) {
        std::copy_n(text, std::min(n, room()), buffer_ + count_);
        count_ += n;
    }

    /// Engine-made ASCII text (digits, signs) into either width.
    template <class Text>
    void putText(const Text* text, std::size_t n) {
        if constexpr (std::is_same_v<Text, Char>) {
            put(text, n);
        } else {
            const std::size_t stored = std::min(n, room());
            for (std::size_t i = 0; i < stored; ++i)
                buffer_[count_ + i] = static_cast<Char>(static_cast<unsigned char>(text[i]));
            count_ += n;
        }
    }

    void fill(Char c, std::size_t n) {
        std::fill_n(buffer_ + count_, std::min(n, room()), c);
        count_ += n;
    }

    void terminate() {
        if (count_ < capacity_)
            buffer_[count_] = 0;
    }

    std::size_t count() const { return count_; }

private:
    // Characters that can still be stored: none once the output has passed
    // the capacity.
    std::size_t room() const { return count_ < capacity_ ? capacity_ - count_ : 0; }

    Char* buffer_;
    std::size_t capacity_;
    std::size_t count_ = 0;
};

enum class Size : unsigned char { none, hh, h, l, ll, L, j, z, t, pointer };

struct Spec {
    bool left = false;
    bool plus = false;
    bool space = false;
    bool alternate = false;
    bool zeroPad = false;
    bool grouping = false;
    std::size_t width = 0;
    int precision = -1; // none
    Size size = Size::none;
    char32_t conversion = 0;
};

// Widths and precisions stay within int, as the C runtime's do.
constexpr std::size_t kMaxNumber = INT_MAX;
// Floating-point text made by the runtime is buffered whole; this bounds it.
constexpr int kMaxRuntimePrecision = 65535;
// Digits of the largest long double with grouping separators, and a margin.
constexpr std::size_t kMaxRuntimeDigits = 8192;
// Precisions up to this take the std::to_chars path; the widest text is a
// fixed-point double: sign, 309 digits, point and the precision.
constexpr int kMaxDirectPrecision = 128;
constexpr std::size_t kFloatText = 512;

template <class Char>
constexpr bool isDigit(Char c) {
    return c >= '0' && c <= '9';
}

template <class Char>
constexpr char32_t valueOf(Char c) {
    return static_cast<char32_t>(static_cast<std::make_unsigned_t<Char>>(c));
}

// Reads a run of decimal digits. A number followed by "$" is a positional
// argument, which is not supported.
template <class Char>
bool readNumber(const Char*& p, std::size_t& value) {
    if (!isDigit(*p))
        return true;
    std::size_t n = 0;
    for (; isDigit(*p); ++p) {
        n = n * 10 + static_cast<std::size_t>(*p - '0');
        if (n > kMaxNumber)
            return false;
    }
    value = n;
    return *p != '$';
}

// Reads a size prefix, Windows' "I64", "I32" and "I" among them.
template <class Char>
Size readSize(const Char*& p) {
    const Char c = *p;
    if (c == 'I') {
        const bool i64 = p[1] == '6' && p[2] == '4';
        if (i64 || (p[1] == '3' && p[2] == '2')) {
            p += 3;
            return i64 ? Size::ll : Size::none;
        }
        ++p;
        return Size::pointer;
    }
    if ((c == 'h' || c == 'l') && p[1] == c) {
        p += 2;
        return c == 'h' ? Size::hh : Size::ll;
    }
    Size size = Size::none;
    switch (c) {
    case 'h': size = Size::h; break;
    case 'l':
    case 'w': size = Size::l; break;
    case 'q': size = Size::ll; break;
    case 'L': size = Size::L; break;
    case 'j': size = Size::j; break;
    case 'z': size = Size::z; break;
    case 't': size = Size::t; break;
    default: return Size::none;
    }
    ++p;
    return size;
}

// Parses the conversion that follows a "%", taking "*" widths and
// precisions from the arguments. Returns the character after the
// conversion, or null for a format that cannot be formatted.
template <class Char>
const Char* parseSpec(const Char* p, Spec& spec, Arguments& args) {
    for (;; ++p) {
        switch (*p) {
        case '-': spec.left = true; continue;
        case '+': spec.plus = true; continue;
        case ' ': spec.space = true; continue;
        case '#': spec.alternate = true; continue;
        case '0': spec.zeroPad = true; continue;
        case '\'': spec.grouping = true; continue;
        default: break;
        }
        break;
    }
    if (*p == '*') {
        const int width = va_arg(args.list, int);
        spec.left |= width < 0;
        spec.width = width < 0 ? 0u - static_cast<unsigned>(width) : static_cast<unsigned>(width);
        if (isDigit(*++p))
            return nullptr;
    } else if (!readNumber(p, spec.width)) {
        return nullptr;
    }
    if (*p == '.') {
        if (*++p == '*') {
            const int precision = va_arg(args.list, int);
            spec.precision = precision < 0 ? -1 : precision;
            if (isDigit(*++p))
                return nullptr;
        } else {
            std::size_t precision = 0;
            if (!readNumber(p, precision))
                return nullptr;
            spec.precision = static_cast<int>(precision);
        }
    }
    spec.size = readSize(p);
    if (*p == 0)
        return nullptr;
    spec.conversion = valueOf(*p);
    return p + 1;
}

long long readSigned(Arguments& args, Size size) {
    switch (size) {
    case Size::hh: return static_cast<signed char>(va_arg(args.list, int));
    case Size::h: return static_cast<short>(va_arg(args.list, int));
    case Size::l: return va_arg(args.list, long);
    case Size::ll:
    case Size::L: return va_arg(args.list, long long);
    case Size::j: return va_arg(args.list, std::intmax_t);
    case Size::z:
    case Size::t:
    case Size::pointer: return va_arg(args.list, std::ptrdiff_t);
    case Size::none: break;
    }
    return va_arg(args.list, int);
}

unsigned long long readUnsigned(Arguments& args, Size size) {
    switch (size) {
    case Size::hh: return static_cast<unsigned char>(va_arg(args.list, unsigned));
    case Size::h: return static_cast<unsigned short>(va_arg(args.list, unsigned));
    case Size::l: return va_arg(args.list, unsigned long);
    case Size::ll:
    case Size::L: return va_arg(args.list, unsigned long long);
    case Size::j: return va_arg(args.list, std::uintmax_t);
    case Size::z:
    case Size::t:
    case Size::pointer: return va_arg(args.list, std::size_t);
    case Size::none: break;
    }
    return va_arg(args.list, unsigned);
}

std::size_t padding(const Spec& spec, std::size_t length) {
    return spec.width > length ? spec.width - length : 0;
}

// Writes `body` (of `length` characters) padded with spaces to the width.
template <class Char, class Body>
void padded(Sink<Char>& out, const Spec& spec, std::size_t length, Body body) {
    const std::size_t pad = padding(spec, length);
    if (!spec.left)
        out.fill(' ', pad);
    body();
    if (spec.left)
        out.fill(' ', pad);
}

constexpr auto kDigitPairs = [] {
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i) {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

// Writes `value` backwards so that its last digit ends at `end`.
char* writeDigits(char* end, unsigned long long value, char32_t conversion) {
    char* p = end;
    if (conversion == 'o' || conversion == 'x' || conversion == 'X') {
        const char* digits = conversion == 'X' ? "0123456789ABCDEF" : "0123456789abcdef";
        const unsigned shift = conversion == 'o' ? 3 : 4;
        const unsigned mask = (1u << shift) - 1;
        do {
            *--p = digits[value & mask];
            value >>= shift;
        } while (value != 0);
        return p;
    }
    while (value >= 100) {
        p -= 2;
        std::memcpy(p, &kDigitPairs[2 * (value % 100)], 2);
        value /= 100;
    }
    if (value >= 10) {
        p -= 2;
        std::memcpy(p, &kDigitPairs[2 * value], 2);
    } else {
        *--p = static_cast<char>('0' + value);
    }
    return p;
}

template <class Char>
void putInteger(Sink<Char>& out, const Spec& spec, unsigned long long magnitude, char sign) {
    char buffer[24]; // 22 octal digits take the most room
    char* const end = buffer + sizeof buffer;
    const char* first = end;
    if (magnitude != 0 || spec.precision != 0)
        first = writeDigits(end, magnitude, spec.conversion);
    const auto digits = static_cast<std::size_t>(end - first);
    const auto precision = static_cast<std::size_t>(std::max(spec.precision, 0));
    std::size_t zeros = precision > digits ? precision - digits : 0;
    if (spec.conversion == 'o' && spec.alternate && zeros == 0 && (digits == 0 || *first != '0'))
        zeros = 1;
    const bool hex = spec.conversion == 'x' || spec.conversion == 'X';
    const char* prefix = spec.conversion == 'X' ? "0X" : "0x";
    const std::size_t prefixLength = spec.alternate && hex && magnitude != 0 ? 2 : 0;
    std::size_t length = (sign != 0) + prefixLength + zeros + digits;
    if (spec.zeroPad && !spec.left && spec.precision < 0) {
        const std::size_t extra = padding(spec, length);
        zeros += extra;
        length += extra;
    }
    padded(out, spec, length, [&] {
        if (sign != 0)
            out.put(sign);
        out.putText(prefix, prefixLength);
        out.fill('0', zeros);
        out.putText(first, digits);
    });
}

// Writes number text made elsewhere, padded to the width. With the "0" flag
// the zeros go after the sign and any "0x"; text that is not a number, such
// as "inf" or "(nil)", is padded with spaces, as the C runtime does.
template <class Char, class Text>
void putNumberText(Sink<Char>& out, const Spec& spec, const Text* text, std::size_t n) {
    std::size_t split = 0;
    bool zeros = spec.zeroPad && !spec.left && spec.width > n;
    if (zeros) {
        if (text[0] == '-' || text[0] == '+' || text[0] == ' ')
            ++split;
        if (n - split >= 2 && text[split] == '0' &&
            (text[split + 1] == 'x' || text[split + 1] == 'X'))
            split += 2;
        zeros = split < n && isDigit(text[split]);
    }
    if (!zeros) {
        padded(out, spec, n, [&] { out.putText(text, n); });
        return;
    }
    out.putText(text, split);
    out.fill('0', spec.width - n);
    out.putText(text + split, n - split);
}

// The conversion as the C runtime reads it, without width and padding flags
// (padding is done here): "%+.3Lf".
template <class Char>
void buildRuntimeSpec(Char* out, const Spec& spec, const char* size) {
    *out++ = '%';
    if (spec.plus)
        *out++ = '+';
    if (spec.space)
        *out++ = ' ';
    if (spec.alternate)
        *out++ = '#';
    if (spec.grouping)
        *out++ = '\'';
    if (spec.precision >= 0) {
        char digits[16];
        const auto result = std::to_chars(digits, digits + sizeof digits, spec.precision);
        *out++ = '.';
        out = std::copy(digits, result.ptr, out);
    }
    while (*size != 0)
        *out++ = *size++;
    *out++ = static_cast<Char>(spec.conversion);
    *out = 0;
}

constexpr std::size_t kRuntimeSpecLength = 32;

// Formats one conversion with the C runtime.
template <class T>
bool putWithRuntime(Sink<char>& out, const Spec& spec, const char* size, T value) {
    if (spec.precision > kMaxRuntimePrecision)
        return false;
    char format[kRuntimeSpecLength];
    buildRuntimeSpec(format, spec, size);
    char text[256];
    const int n = std::snprintf(text, sizeof text, format, value);
    if (n < 0)
        return false;
    if (static_cast<std::size_t>(n) < sizeof text) {
        putNumberText(out, spec, text, static_cast<std::size_t>(n));
        return true;
    }
    const auto whole = std::make_unique<char[]>(static_cast<std::size_t>(n) + 1);
    std::snprintf(whole.get(), static_cast<std::size_t>(n) + 1, format, value);
    putNumberText(out, spec, whole.get(), static_cast<std::size_t>(n));
    return true;
}

template <class T>
bool putWithRuntime(Sink<wchar_t>& out, const Spec& spec, const char* size, T value) {
    if (spec.precision > kMaxRuntimePrecision)
        return false;
    wchar_t format[kRuntimeSpecLength];
    buildRuntimeSpec(format, spec, size);
    wchar_t text[256];
    int n = std::swprintf(text, std::size(text), format, value);
    if (n >= 0) {
        putNumberText(out, spec, text, static_cast<std::size_t>(n));
        return true;
    }
    // swprintf gives -1 for too small a buffer, not the length it needs;
    // without a width the text has a known bound.
    const std::size_t capacity =
        kMaxRuntimeDigits + static_cast<std::size_t>(std::max(spec.precision, 0));
    const auto whole = std::make_unique<wchar_t[]>(capacity);
    n = std::swprintf(whole.get(), capacity, format, value);
    if (n < 0)
        return false;
    putNumberText(out, spec, whole.get(), static_cast<std::size_t>(n));
    return true;
}

bool isUpperCase(char32_t conversion) {
    return conversion == 'F' || conversion == 'E' || conversion == 'G' || conversion == 'A';
}

template <class Char>
bool putFloat(Sink<Char>& out, const Spec& spec, Arguments& args) {
    if (spec.size == Size::L)
        return putWithRuntime(out, spec, "L", va_arg(args.list, long double));
    const double value = va_arg(args.list, double);
    const char32_t c = spec.conversion;
    const char* point = platform::localeDecimalPoint();
    const bool simplePoint = point[0] != 0 && point[1] == 0 && valueOf(point[0]) < 0x80;
    if (c == 'a' || c == 'A' || spec.alternate || spec.grouping ||
        spec.precision > kMaxDirectPrecision || !simplePoint)
        return putWithRuntime(out, spec, "", value);

    // to_chars gives exactly the C runtime's digits for these forms.
    const std::chars_format format = c == 'f' || c == 'F'   ? std::chars_format::fixed
                                     : c == 'e' || c == 'E' ? std::chars_format::scientific
                                                            : std::chars_format::general;
    char text[kFloatText];
    char* const digits = text + 1; // room for a sign in front
    char* const end = std::to_chars(digits, text + sizeof text, value, format,
                                    spec.precision < 0 ? 6 : spec.precision)
                          .ptr;
    char* first = digits;
    if (*digits != '-' && (spec.plus || spec.space))
        *--first = spec.plus ? '+' : ' ';
    for (char* p = digits; p != end; ++p) {
        if (*p == '.')
            *p = point[0];
        else if (isUpperCase(c) && *p >= 'a' && *p <= 'z')
            *p = static_cast<char>(*p - 'a' + 'A');
    }
    putNumberText(out, spec, first, static_cast<std::size_t>(end - first));
    return true;
}

template <class Char>
std::size_t boundedLength(const Char* text, const Spec& spec) {
    if (spec.precision < 0)
        return std::char_traits<Char>::length(text);
    std::size_t n = 0;
    while (n < static_cast<std::size_t>(spec.precision) && text[n] != 0)
        ++n;
    return n;
}

template <class Char>
void putSameWidth(Sink<Char>& out, const Spec& spec, const Char* text) {
    const std::size_t n = boundedLength(text, spec);
    padded(out, spec, n, [&] { out.put(text, n); });
}

// Writes converted text padded to the width. `walk(emit)` calls
// emit(characters, count) piece by piece and returns false for text that
// cannot be converted; right-aligned text is walked twice, to measure first.
template <class Char, class Walk>
bool putConverted(Sink<Char>& out, const Spec& spec, Walk walk) {
    std::size_t length = 0;
    if (spec.width > 0 && !spec.left) {
        if (!walk([&](const Char*, std::size_t n) { length += n; }))
            return false;
        out.fill(' ', padding(spec, length));
        return walk([&](const Char* text, std::size_t n) { out.put(text, n); });
    }
    if (!walk([&](const Char* text, std::size_t n) {
            out.put(text, n);
            length += n;
        }))
        return false;
    out.fill(' ', padding(spec, length));
    return true;
}

// Encodes wide text in the locale, piece by piece, up to `limit` bytes
// without cutting a character.
template <class Emit>
bool encodeText(const wchar_t* text, std::size_t limit, Emit&& emit) {
    kx::detail::LocaleCodec codec;
    char bytes[MB_LEN_MAX];
    for (std::size_t total = 0; total < limit && *text != 0;) {
        const char32_t codePoint = unicode::readUtf16(text, nullptr);
        const std::ptrdiff_t n =
            unicode::isSurrogate(codePoint) ? -1 : codec.encode(bytes, codePoint);
        if (n < 0)
            return false;
        total += static_cast<std::size_t>(n);
        if (total > limit)
            break;
        emit(bytes, static_cast<std::size_t>(n));
    }
    return true;
}

// Decodes locale text into UTF-16 units, up to `limit` units without
// splitting a surrogate pair.
template <class Emit>
bool decodeText(const char* text, std::size_t limit, Emit&& emit) {
    kx::detail::LocaleCodec codec;
    wchar_t units[2];
    for (std::size_t total = 0; total < limit;) {
        char32_t codePoint = 0;
        const std::ptrdiff_t n = codec.decode(codePoint, text, MB_LEN_MAX);
        if (n == 0)
            break;
        if (n < 0)
            return false;
        const unsigned count = unicode::putUtf16(units, codePoint);
        total += count;
        if (total > limit)
            break;
        emit(units, count);
        text += n;
    }
    return true;
}

std::size_t limitOf(const Spec& spec) {
    return spec.precision < 0 ? SIZE_MAX : static_cast<std::size_t>(spec.precision);
}

template <class Char>
const Char* nullText() {
    if constexpr (std::is_same_v<Char, char>)
        return "(null)";
    else
        return L"(null)";
}

// "h" makes a string or character narrow, "l" (or Windows' "w") wide.
// Otherwise the letter's case decides by the output's width, as in the
// Windows runtime: in narrow text the capital letter takes the wide
// argument, in wide text the small one does.
template <class Char>
bool takesWide(const Spec& spec) {
    if (spec.size == Size::h || spec.size == Size::hh)
        return false;
    if (spec.size == Size::l)
        return true;
    const bool capital = spec.conversion == 'S' || spec.conversion == 'C';
    return std::is_same_v<Char, char> ? capital : !capital;
}

bool putString(Sink<char>& out, const Spec& spec, Arguments& args) {
    if (!takesWide<char>(spec)) {
        const char* text = va_arg(args.list, const char*);
        putSameWidth(out, spec, text ? text : nullText<char>());
        return true;
    }
    const wchar_t* text = va_arg(args.list, const wchar_t*);
    if (!text) {
        putSameWidth(out, spec, nullText<char>());
        return true;
    }
    return putConverted(out, spec,
                        [&](auto&& emit) { return encodeText(text, limitOf(spec), emit); });
}

bool putString(Sink<wchar_t>& out, const Spec& spec, Arguments& args) {
    if (takesWide<wchar_t>(spec)) {
        const wchar_t* text = va_arg(args.list, const wchar_t*);
        putSameWidth(out, spec, text ? text : nullText<wchar_t>());
        return true;
    }
    const char* text = va_arg(args.list, const char*);
    if (!text) {
        putSameWidth(out, spec, nullText<wchar_t>());
        return true;
    }
    return putConverted(out, spec,
                        [&](auto&& emit) { return decodeText(text, limitOf(spec), emit); });
}

bool putChar(Sink<char>& out, const Spec& spec, Arguments& args) {
    if (!takesWide<char>(spec)) {
        const char c = static_cast<char>(va_arg(args.list, int));
        padded(out, spec, 1, [&] { out.put(c); });
        return true;
    }
    // wint_t arrives promoted; read it as unsigned for any wint_t width.
    const wchar_t text[2] = {static_cast<wchar_t>(va_arg(args.list, unsigned)), 0};
    if (text[0] == 0) {
        padded(out, spec, 1, [&] { out.put('\0'); });
        return true;
    }
    return putConverted(out, spec, [&](auto&& emit) { return encodeText(text, SIZE_MAX, emit); });
}

bool putChar(Sink<wchar_t>& out, const Spec& spec, Arguments& args) {
    if (takesWide<wchar_t>(spec)) {
        const auto c = static_cast<wchar_t>(va_arg(args.list, unsigned));
        padded(out, spec, 1, [&] { out.put(c); });
        return true;
    }
    // One byte alone must form a character, as btowc requires.
    const char byte = static_cast<char>(va_arg(args.list, int));
    char32_t codePoint = 0;
    kx::detail::LocaleCodec codec;
    if (codec.decode(codePoint, &byte, 1) < 0)
        return false;
    const auto c = static_cast<wchar_t>(codePoint);
    padded(out, spec, 1, [&] { out.put(c); });
    return true;
}

template <class Char>
bool convert(Sink<Char>& out, const Spec& spec, Arguments& args, const Char* start,
             const Char* next) {
    switch (spec.conversion) {
    case 'd':
    case 'i': {
        const long long value = readSigned(args, spec.size);
        if (spec.grouping)
            return putWithRuntime(out, spec, "ll", value);
        const auto magnitude = value < 0 ? 0ull - static_cast<unsigned long long>(value)
                                         : static_cast<unsigned long long>(value);
        putInteger(out, spec, magnitude, value < 0 ? '-' : spec.plus ? '+' : spec.space ? ' ' : 0);
        return true;
    }
    case 'u':
    case 'o':
    case 'x':
    case 'X': {
        const unsigned long long value = readUnsigned(args, spec.size);
        if (spec.grouping)
            return putWithRuntime(out, spec, "ll", value);
        putInteger(out, spec, value, 0);
        return true;
    }
    case 'f':
    case 'F':
    case 'e':
    case 'E':
    case 'g':
    case 'G':
    case 'a':
    case 'A': return putFloat(out, spec, args);
    case 's':
    case 'S': return putString(out, spec, args);
    case 'c':
    case 'C': return putChar(out, spec, args);
    case 'p': return putWithRuntime(out, spec, "", va_arg(args.list, void*));
    case '%': out.put('%'); return true;
    case 'n': // would write through an argument: not supported
        return false;
    default: // unknown conversions are copied as they stand
        out.put(start, static_cast<std::size_t>(next - start));
        return true;
    }
}

// Literal runs between conversions are short; a plain scan beats a library
// call.
template <class Char>
std::size_t literalLength(const Char* p) {
    const Char* q = p;
    while (*q != 0 && *q != '%')
        ++q;
    return static_cast<std::size_t>(q - p);
}

template <class Char>
FormatResult run(Char* buffer, std::size_t size, const Char* format, std::va_list list) {
    Sink<Char> out(buffer, size);
    Arguments args;
    va_copy(args.list, list);
    bool ok = true;
    for (const Char* p = format;;) {
        const std::size_t literal = literalLength(p);
        out.put(p, literal);
        p += literal;
        if (*p == 0)
            break;
        if (p[1] == '%') {
            out.put('%');
            p += 2;
            continue;
        }
        Spec spec;
        const Char* next = parseSpec(p + 1, spec, args);
        if (!next || !convert(out, spec, args, p, next)) {
            ok = false;
            break;
        }
        p = next;
    }
    va_end(args.list);
    if (!ok) {
        if (size != 0)
            buffer[0] = 0;
        return {0, true};
    }
    out.terminate();
    return {out.count(), false};
}

} // namespace

FormatResult formatBounded(char* buffer, std::size_t size, const char* format, std::va_list args) {
    return run(buffer, size, format, args);
}

void swapStringConversions(wchar_t* format) {
    for (wchar_t* p = std::wcschr(format, L'%'); p;) {
        if (p[1] == L'%') {
            p = std::wcschr(p + 2, L'%');
            continue;
        }
        wchar_t* q = p + 1;
        if (*q == L'-')
            ++q;
        while (*q >= L'0' && *q <= L'9')
            ++q;
        if (*q == L'.')
            ++q;
        while (*q >= L'0' && *q <= L'9')
            ++q;
        switch (*q) {
        case L'S': *q = L's'; break;
        case L's': *q = L'S'; break;
        case L'C': *q = L'c'; break;
        case L'c': *q = L'C'; break;
        default: // not a string or character: search again from here
            p = std::wcschr(q, L'%');
            continue;
        }
        p = std::wcschr(q + 1, L'%');
    }
}

FormatResult formatBounded(wchar_t* buffer, std::size_t size, const wchar_t* format,
                           std::va_list args) {
    // Most formats are short: rewrite them on the stack.
    constexpr std::size_t kStackFormat = 256;
    const std::size_t length = std::wcslen(format) + 1;
    wchar_t stack[kStackFormat];
    std::unique_ptr<wchar_t[]> heap;
    wchar_t* copy = stack;
    if (length > kStackFormat) {
        heap = std::make_unique_for_overwrite<wchar_t[]>(length);
        copy = heap.get();
    }
    std::wmemcpy(copy, format, length);
    swapStringConversions(copy);
    return run(buffer, size, static_cast<const wchar_t*>(copy), args);
}

} // namespace kx::detail
