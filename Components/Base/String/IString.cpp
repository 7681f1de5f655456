#include <Base/String/IString.h>

#include <Base/Containers/Hash.h>
#include <Base/String/Encoding.h>
#include <Base/String/StringOps.h>

#include <cstdlib>
#include <cwchar>
#include <string>
#include <utility>

namespace kxString {

using namespace kx::detail;

namespace {

// What the narrow cache knows about its last conversion.
enum ConversionState : unsigned char { unknown = 0, exact = 1, lossy = 2 };

wchar_t& pastTheEnd() {
    thread_local wchar_t scratch;
    scratch = 0;
    return scratch;
}

} // namespace

struct IString::Data {
    std::wstring text;
    bool dirty = true; // the narrow cache does not hold the text
    Encoding cachedEncoding = Encoding::systemCodePage;
    std::string cache;
    unsigned char conversionState = unknown;
};

IString::Data& IString::changing() {
    data_->dirty = true;
    return *data_;
}

IString::IString() : data_(new Data) {}

IString::IString(const IString& other) : data_(new Data) {
    data_->text = other.data_->text;
}

IString::IString(IString&& other) noexcept : IString() {
    swap(other);
}

IString::IString(wchar_t c) : IString(1, c) {}

IString::IString(unsigned int count, wchar_t c) : data_(new Data) {
    data_->text.assign(count, c);
}

IString::IString(const wchar_t* text) : data_(new Data) {
    data_->text.assign(text ? text : L"", lengthOf(text));
}

IString::IString(const wchar_t* text, int len) : data_(new Data) {
    data_->text.assign(text ? text : L"", len < 0 ? lengthOf(text)
                                          : text  ? static_cast<std::size_t>(len)
                                                  : 0);
}

IString::IString(const char* text, Encoding encoding, bool* ok) : data_(new Data) {
    convertFromMultibyte(text, encoding, ok);
}

IString::IString(const CString& text, Encoding encoding, bool* ok) : data_(new Data) {
    convertFromMultibyte(text.asChar(), encoding, ok);
}

IString::IString(char c, Encoding encoding, bool* ok) : IString(1, c, encoding, ok) {}

IString::IString(unsigned int count, char c, Encoding encoding, bool* ok) : data_(new Data) {
    convertFromMultibyte(std::string(count, c).c_str(), encoding, ok);
}

IString::~IString() {
    delete data_;
}

IString& IString::operator=(const IString& other) {
    if (this != &other)
        assign(other);
    return *this;
}

IString& IString::operator=(IString&& other) noexcept {
    swap(other);
    return *this;
}

IString& IString::operator=(const wchar_t* text) {
    return assign(text);
}

IString& IString::assign(const IString& other) {
    changing().text = other.data_->text;
    return *this;
}

IString& IString::assign(const wchar_t* text) {
    changing().text.assign(text ? text : L"", lengthOf(text));
    return *this;
}

IString& IString::assign(const char* text, Encoding encoding, bool* ok) {
    convertFromMultibyte(text, encoding, ok);
    return *this;
}

IString& IString::assign(const CString& text, Encoding encoding, bool* ok) {
    convertFromMultibyte(text.asChar(), encoding, ok);
    return *this;
}

// The text is measured first and converted into place only when the
// measure is not 0, so text that converts to nothing leaves the string as
// it was.
void IString::convertFromMultibyte(const char* text, Encoding encoding, bool* ok) {
    if (ok)
        *ok = false;
    const auto length = static_cast<unsigned int>(lengthOf(text));
    if (length == 0) {
        changing().text.clear();
        if (ok)
            *ok = true;
        return;
    }
    const bool utf8 = encoding == Encoding::utf8;
    const unsigned int measured = utf8 ? UTF8toWCS(text, length, nullptr, 0, false, ok)
                                       : MBStoWCS(text, length, nullptr, 0, ok);
    if (measured == 0)
        return;
    Data& d = changing();
    d.text.resize(measured + 1);
    const unsigned int produced =
        utf8 ? UTF8toWCS(text, length, d.text.data(), measured + 1, false, ok)
             : MBStoWCS(text, length, d.text.data(), measured + 1, ok);
    d.text.resize(produced);
    d.conversionState = unknown;
}

wchar_t& IString::at(unsigned int pos) {
    return pos < data_->text.size() ? changing().text[pos] : pastTheEnd();
}

const wchar_t& IString::at(unsigned int pos) const {
    return pos < data_->text.size() ? data_->text[pos] : pastTheEnd();
}

unsigned int IString::length() const {
    return static_cast<unsigned int>(data_->text.size());
}

unsigned int IString::capacity() const {
    return toPosition(data_->text.capacity());
}

unsigned int IString::reserve(unsigned int n) {
    data_->text.reserve(n);
    return capacity();
}

IString& IString::append(const String& other) {
    if (const auto* wide = dynamic_cast<const IString*>(&other))
        return append(*wide);
    return append(IString(static_cast<const CString&>(other)));
}

IString& IString::append(const IString& other) {
    changing().text.append(other.data_->text);
    return *this;
}

IString& IString::append(const wchar_t* text) {
    changing().text.append(text ? text : L"", lengthOf(text));
    return *this;
}

IString& IString::append(wchar_t c) {
    changing().text.push_back(c);
    return *this;
}

IString& IString::prepend(const IString& other) {
    return insert(0, other);
}

IString& IString::prepend(const wchar_t* text) {
    return insert(0, text);
}

IString& IString::prepend(wchar_t c) {
    return insert(0, c);
}

IString& IString::insert(unsigned int pos, const IString& other) {
    kx::detail::insert(changing().text, pos, other.data_->text.data(), other.data_->text.size());
    return *this;
}

IString& IString::insert(unsigned int pos, const wchar_t* text) {
    kx::detail::insert(changing().text, pos, text ? text : L"", lengthOf(text));
    return *this;
}

IString& IString::insert(unsigned int pos, wchar_t c) {
    kx::detail::insert(changing().text, pos, c);
    return *this;
}

IString& IString::erase(unsigned int pos, unsigned int len) {
    if (!isEmpty())
        kx::detail::erase(changing().text, pos, len);
    return *this;
}

IString& IString::remove(unsigned int pos, unsigned int len) {
    return erase(pos, len);
}

IString& IString::replace(unsigned int pos, unsigned int len, const IString& text) {
    kx::detail::replace(changing().text, pos, len, text.data_->text.data(),
                        text.data_->text.size());
    return *this;
}

IString& IString::replace(unsigned int pos, unsigned int len, const wchar_t* text) {
    kx::detail::replace(changing().text, pos, len, text ? text : L"", lengthOf(text));
    return *this;
}

IString& IString::replace(unsigned int pos, unsigned int len, wchar_t c) {
    kx::detail::replace(changing().text, pos, len, c);
    return *this;
}

IString& IString::replace(const IString& from, const IString& to) {
    // Copies, so that `from` or `to` may be this string itself.
    const std::wstring needle = from.data_->text;
    const std::wstring replacement = to.data_->text;
    unsigned int at = find(from);
    while (at != npos) {
        changing().text.replace(at, needle.size(), replacement);
        const auto next = at + static_cast<unsigned int>(replacement.size());
        // Compared as signed 32-bit numbers, as the loop always has.
        if (static_cast<int>(next) >= static_cast<int>(length()))
            break;
        at = kx::detail::find(data_->text, needle.data(), needle.size(), next);
    }
    return *this;
}

unsigned int IString::find(const IString& needle, unsigned int pos) const {
    return kx::detail::find(data_->text, needle.data_->text.data(), needle.data_->text.size(), pos);
}

unsigned int IString::find(const wchar_t* needle, unsigned int pos) const {
    return kx::detail::find(data_->text, needle, lengthOf(needle), pos);
}

unsigned int IString::find(wchar_t c, unsigned int pos) const {
    return kx::detail::find(data_->text, &c, 1, pos);
}

unsigned int IString::find(bool (*predicate)(wchar_t), unsigned int pos) const {
    return findIf(data_->text, predicate, pos);
}

unsigned int IString::rfind(const IString& needle, unsigned int pos) const {
    return kx::detail::rfind(data_->text, needle.data_->text.data(), needle.data_->text.size(),
                             pos);
}

unsigned int IString::rfind(const wchar_t* needle, unsigned int pos) const {
    return kx::detail::rfind(data_->text, needle, lengthOf(needle), pos);
}

unsigned int IString::rfind(wchar_t c, unsigned int pos) const {
    return kx::detail::rfind(data_->text, &c, 1, pos);
}

unsigned int IString::rfind(bool (*predicate)(wchar_t), unsigned int pos) const {
    return rfindIf(data_->text, predicate, pos);
}

unsigned int IString::findAny(const IString& set, unsigned int pos) const {
    if (isEmpty() || set.isEmpty())
        return npos;
    return toPosition(data_->text.find_first_of(set.data_->text, toIndex(pos)));
}

unsigned int IString::rfindAny(const IString& set, unsigned int pos) const {
    if (isEmpty() || set.isEmpty())
        return npos;
    return toPosition(data_->text.find_last_of(set.data_->text, toIndex(pos)));
}

IString& IString::strip(wchar_t c) {
    kx::detail::strip(changing().text, [c](wchar_t x) { return x == c; });
    return *this;
}

IString& IString::rstrip(wchar_t c) {
    kx::detail::rstrip(changing().text, [c](wchar_t x) { return x == c; });
    return *this;
}

IString& IString::stripSpaces() {
    kx::detail::strip(changing().text, [](wchar_t x) { return kxString::isSpace(x); });
    return *this;
}

IString& IString::rstripSpaces() {
    kx::detail::rstrip(changing().text, [](wchar_t x) { return kxString::isSpace(x); });
    return *this;
}

IString& IString::toLowerCase() {
    kx::detail::toLowerCase(changing().text);
    return *this;
}

IString& IString::toUpperCase() {
    kx::detail::toUpperCase(changing().text);
    return *this;
}

int IString::compare(const IString& other) const {
    return kx::detail::compare(data_->text, other.data_->text);
}

int IString::compare(const wchar_t* text) const {
    return kx::detail::compare(data_->text.data(), data_->text.size(), text ? text : L"",
                               lengthOf(text));
}

int IString::compareNoCase(const IString& other) const {
    IString a(*this);
    IString b(other);
    return a.toLowerCase().compare(b.toLowerCase());
}

int IString::collate(const IString& other) const {
    return kx::detail::collate(data_->text, other.data_->text);
}

int IString::collateNoCase(const IString& other) const {
    IString a(*this);
    IString b(other);
    return a.toLowerCase().collate(b.toLowerCase());
}

IString IString::substr(unsigned int pos, unsigned int len) const {
    IString result;
    substr(result, pos, len);
    return result;
}

void IString::substr(IString& out, unsigned int pos, unsigned int len) const {
    out.changing().text = kx::detail::substr(data_->text, pos, len);
}

unsigned int IString::formatText(unsigned int hint, const wchar_t* fmt, va_list args) {
    const unsigned int n = kx::detail::format(data_->text, hint, fmt, args);
    if (n != npos)
        data_->dirty = true;
    return n;
}

unsigned int IString::format(const wchar_t* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = formatText(256, fmt, args);
    va_end(args);
    return n;
}

unsigned int IString::format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = vformat(fmt, args);
    va_end(args);
    return n;
}

unsigned int IString::format(const IString* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = formatText(256, fmt ? fmt->asWChar() : nullptr, args);
    va_end(args);
    return n;
}

unsigned int IString::format(unsigned int hint, const wchar_t* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = formatText(hint, fmt, args);
    va_end(args);
    return n;
}

unsigned int IString::format(unsigned int hint, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const IString wideFormat(fmt, Encoding::systemCodePage);
    const unsigned int n = formatText(hint, fmt ? wideFormat.asWChar() : nullptr, args);
    va_end(args);
    return n;
}

unsigned int IString::format(unsigned int hint, const IString* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = formatText(hint, fmt ? fmt->asWChar() : nullptr, args);
    va_end(args);
    return n;
}

unsigned int IString::vformat(const wchar_t* fmt, va_list args) {
    return formatText(256, fmt, args);
}

unsigned int IString::vformat(const char* fmt, va_list args) {
    const IString wideFormat(fmt, Encoding::systemCodePage);
    return formatText(256, fmt ? wideFormat.asWChar() : nullptr, args);
}

const wchar_t* IString::asWChar() const {
    return data_->text.c_str();
}

const wchar_t* IString::asUnicode() const {
    return data_->text.c_str();
}

const char* IString::asChar() const {
    return asMultibyte();
}

// The narrow cache. A conversion without `ok` leaves its exactness unknown,
// so a later call that asks for it converts again.
const char* IString::asMultibyte(Encoding encoding, bool* ok) const {
    Data& d = *data_;
    if (ok != nullptr && d.conversionState == unknown)
        d.dirty = true;
    if (!d.dirty && d.cachedEncoding == encoding) {
        if (ok)
            *ok = d.conversionState == exact;
        return d.cache.c_str();
    }
    if (ok)
        *ok = false;
    d.conversionState = unknown;
    if (d.text.empty()) {
        d.cache.clear();
        d.conversionState = exact;
        if (ok)
            *ok = true;
    } else {
        const bool utf8 = encoding == Encoding::utf8;
        const wchar_t* text = d.text.c_str();
        const auto length = static_cast<unsigned int>(d.text.size());
        const unsigned int measured = utf8 ? WCStoUTF8(text, length, nullptr, 0, nullptr)
                                           : WCStoMBS(text, length, nullptr, 0, nullptr);
        if (measured == 0) {
            d.cache.clear();
            d.conversionState = lossy;
        } else {
            bool converted = false;
            bool* exactness = ok ? &converted : nullptr;
            d.cache.resize(measured + 1);
            const unsigned int produced =
                utf8 ? WCStoUTF8(text, length, d.cache.data(), measured + 1, exactness)
                     : WCStoMBS(text, length, d.cache.data(), measured + 1, exactness);
            d.cache.resize(produced);
            if (ok) {
                d.conversionState = converted ? exact : lossy;
                *ok = converted;
            }
        }
    }
    d.cachedEncoding = encoding;
    d.dirty = false;
    return d.cache.c_str();
}

const char* IString::asUTF8(bool* ok) const {
    return asMultibyte(Encoding::utf8, ok);
}

unsigned int IString::asWCharStoreSize() const {
    return (length() + 1) * static_cast<unsigned int>(sizeof(wchar_t));
}

unsigned int IString::asUnicodeStoreSize() const {
    return asWCharStoreSize();
}

unsigned int IString::asCharStoreSize() const {
    return asMultibyteStoreSize();
}

unsigned int IString::asMultibyteStoreSize(Encoding encoding, bool* ok) const {
    asMultibyte(encoding, ok);
    return static_cast<unsigned int>(data_->cache.size()) + 1;
}

unsigned int IString::asUTF8StoreSize(bool* ok) const {
    return asMultibyteStoreSize(Encoding::utf8, ok);
}

wchar_t* IString::copyAsWChar() const {
    const std::size_t size = (data_->text.size() + 1) * sizeof(wchar_t);
    auto* copy = static_cast<wchar_t*>(std::malloc(size));
    if (copy)
        std::wmemcpy(copy, data_->text.c_str(), data_->text.size() + 1);
    return copy;
}

char* IString::copyAsMultibyte(Encoding encoding, bool* ok) const {
    return CString(asMultibyte(encoding, ok)).copyAsChar();
}

bool IString::isAscii() const {
    return kx::detail::isAscii(data_->text);
}

void IString::swap(IString& other) noexcept {
    std::swap(data_, other.data_);
}

CString IString::convertToCString() const {
    return CString(asMultibyte());
}

IString::operator CString() const {
    return convertToCString();
}

bool equal(const IString& a, const IString& b) {
    return a.compare(b) == 0;
}

bool notEqual(const IString& a, const IString& b) {
    return a.compare(b) != 0;
}

bool less(const IString& a, const IString& b) {
    return a.compare(b) < 0;
}

bool lessEqual(const IString& a, const IString& b) {
    return a.compare(b) <= 0;
}

bool greater(const IString& a, const IString& b) {
    return a.compare(b) > 0;
}

bool greaterEqual(const IString& a, const IString& b) {
    return a.compare(b) >= 0;
}

void swap(IString& a, IString& b) noexcept {
    a.swap(b);
}

std::uint32_t hashfunction(const IString& text) {
    return kx::hashfunction(text.asWChar(), static_cast<int>(text.length()));
}

} // namespace kxString
