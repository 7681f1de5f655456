#include <Base/String/CString.h>

#include <Base/Containers/Hash.h>
#include <Base/String/IString.h>
#include <Base/String/StringOps.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace kxString {

using namespace kx::detail;

namespace {

// Where element access past the end points: reads give '\0' and writes are
// discarded, because the next access clears it again.
char& pastTheEnd() {
    thread_local char scratch;
    scratch = 0;
    return scratch;
}

char* heapCopy(const std::string& text) {
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (copy)
        std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}

} // namespace

CString::CString() : text_(new std::string) {}

CString::CString(const CString& other) : text_(new std::string(*other.text_)) {}

CString::CString(CString&& other) noexcept : CString() {
    swap(other);
}

CString::CString(char c) : text_(new std::string(1, c)) {}

CString::CString(unsigned int count, char c) : text_(new std::string(count, c)) {}

CString::CString(const char* text) : text_(new std::string(text, lengthOf(text))) {}

CString::CString(const char* text, int len)
    : text_(new std::string(text, len < 0 ? lengthOf(text)
                                  : text  ? static_cast<std::size_t>(len)
                                          : 0)) {}

CString::~CString() {
    delete text_;
}

CString& CString::operator=(const CString& other) {
    if (this != &other)
        assign(other);
    return *this;
}

CString& CString::operator=(CString&& other) noexcept {
    swap(other);
    return *this;
}

CString& CString::operator=(const char* text) {
    return assign(text);
}

CString& CString::assign(const CString& other) {
    *text_ = *other.text_;
    return *this;
}

CString& CString::assign(const char* text) {
    text_->assign(text ? text : "", lengthOf(text));
    return *this;
}

char& CString::at(unsigned int pos) {
    return pos < text_->size() ? (*text_)[pos] : pastTheEnd();
}

const char& CString::at(unsigned int pos) const {
    return pos < text_->size() ? (*text_)[pos] : pastTheEnd();
}

unsigned int CString::capacity() const {
    return toPosition(text_->capacity());
}

unsigned int CString::reserve(unsigned int n) {
    text_->reserve(n);
    return capacity();
}

CString& CString::append(const String& other) {
    if (const auto* narrow = dynamic_cast<const CString*>(&other))
        return append(*narrow);
    return append(static_cast<const IString&>(other).asMultibyte());
}

CString& CString::prepend(const CString& other) {
    return insert(0, other);
}

CString& CString::prepend(const char* text) {
    return insert(0, text);
}

CString& CString::prepend(char c) {
    return insert(0, c);
}

CString& CString::insert(unsigned int pos, const CString& other) {
    kx::detail::insert(*text_, pos, other.text_->data(), other.text_->size());
    return *this;
}

CString& CString::insert(unsigned int pos, const char* text) {
    kx::detail::insert(*text_, pos, text ? text : "", lengthOf(text));
    return *this;
}

CString& CString::insert(unsigned int pos, char c) {
    kx::detail::insert(*text_, pos, c);
    return *this;
}

CString& CString::erase(unsigned int pos, unsigned int len) {
    if (!isEmpty())
        kx::detail::erase(*text_, pos, len);
    return *this;
}

CString& CString::remove(unsigned int pos, unsigned int len) {
    return erase(pos, len);
}

CString& CString::replace(unsigned int pos, unsigned int len, const CString& text) {
    kx::detail::replace(*text_, pos, len, text.text_->data(), text.text_->size());
    return *this;
}

CString& CString::replace(unsigned int pos, unsigned int len, const char* text) {
    kx::detail::replace(*text_, pos, len, text ? text : "", lengthOf(text));
    return *this;
}

CString& CString::replace(unsigned int pos, unsigned int len, char c) {
    kx::detail::replace(*text_, pos, len, c);
    return *this;
}

unsigned int CString::find(const CString& needle, unsigned int pos) const {
    return kx::detail::find(*text_, needle.text_->data(), needle.text_->size(), pos);
}

unsigned int CString::find(const char* needle, unsigned int pos) const {
    return kx::detail::find(*text_, needle, lengthOf(needle), pos);
}

unsigned int CString::find(char c, unsigned int pos) const {
    return kx::detail::find(*text_, &c, 1, pos);
}

unsigned int CString::find(bool (*predicate)(char), unsigned int pos) const {
    return findIf(*text_, predicate, pos);
}

unsigned int CString::rfind(const CString& needle, unsigned int pos) const {
    return kx::detail::rfind(*text_, needle.text_->data(), needle.text_->size(), pos);
}

unsigned int CString::rfind(const char* needle, unsigned int pos) const {
    return kx::detail::rfind(*text_, needle, lengthOf(needle), pos);
}

unsigned int CString::rfind(char c, unsigned int pos) const {
    return kx::detail::rfind(*text_, &c, 1, pos);
}

unsigned int CString::rfind(bool (*predicate)(char), unsigned int pos) const {
    return rfindIf(*text_, predicate, pos);
}

CString& CString::strip(char c) {
    kx::detail::strip(*text_, [c](char x) { return x == c; });
    return *this;
}

CString& CString::rstrip(char c) {
    kx::detail::rstrip(*text_, [c](char x) { return x == c; });
    return *this;
}

CString& CString::stripSpaces() {
    kx::detail::strip(*text_, [](char x) { return kxString::isSpace(x); });
    return *this;
}

CString& CString::rstripSpaces() {
    kx::detail::rstrip(*text_, [](char x) { return kxString::isSpace(x); });
    return *this;
}

CString& CString::toLowerCase() {
    kx::detail::toLowerCase(*text_);
    return *this;
}

CString& CString::toUpperCase() {
    kx::detail::toUpperCase(*text_);
    return *this;
}

int CString::compare(const CString& other) const {
    return kx::detail::compare(*text_, *other.text_);
}

int CString::compare(const char* text) const {
    return kx::detail::compare(text_->data(), text_->size(), text ? text : "", lengthOf(text));
}

int CString::compareNoCase(const CString& other) const {
    CString a(*this);
    CString b(other);
    return a.toLowerCase().compare(b.toLowerCase());
}

int CString::collate(const CString& other) const {
    return kx::detail::collate(*text_, *other.text_);
}

int CString::collateNoCase(const CString& other) const {
    CString a(*this);
    CString b(other);
    return a.toLowerCase().collate(b.toLowerCase());
}

CString CString::substr(unsigned int pos, unsigned int len) const {
    CString result;
    *result.text_ = kx::detail::substr(*text_, pos, len);
    return result;
}

unsigned int CString::format(const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = kx::detail::format(*text_, 256, fmt, args);
    va_end(args);
    return n;
}

unsigned int CString::format(const CString* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = kx::detail::format(*text_, 256, fmt ? fmt->asChar() : nullptr, args);
    va_end(args);
    return n;
}

unsigned int CString::format(unsigned int hint, const char* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = kx::detail::format(*text_, hint, fmt, args);
    va_end(args);
    return n;
}

unsigned int CString::format(unsigned int hint, const CString* fmt, ...) {
    va_list args;
    va_start(args, fmt);
    const unsigned int n = kx::detail::format(*text_, hint, fmt ? fmt->asChar() : nullptr, args);
    va_end(args);
    return n;
}

unsigned int CString::vformat(const char* fmt, va_list args) {
    return kx::detail::format(*text_, 256, fmt, args);
}

const char* CString::asMultibyte() const {
    return text_->c_str();
}

unsigned int CString::asCharStoreSize() const {
    return length() + 1;
}

unsigned int CString::asMultibyteStoreSize() const {
    return length() + 1;
}

char* CString::copyAsChar() const {
    return heapCopy(*text_);
}

char* CString::copyAsMultibyte() const {
    return heapCopy(*text_);
}

bool CString::isAscii() const {
    return kx::detail::isAscii(*text_);
}

void CString::swap(CString& other) noexcept {
    std::swap(text_, other.text_);
}

bool equal(const CString& a, const CString& b) {
    return a.compare(b) == 0;
}

bool equal(const CString& a, const char* b) {
    return a.compare(b) == 0;
}

bool notEqual(const CString& a, const CString& b) {
    return a.compare(b) != 0;
}

bool less(const CString& a, const CString& b) {
    return a.compare(b) < 0;
}

bool lessEqual(const CString& a, const CString& b) {
    return a.compare(b) <= 0;
}

bool greater(const CString& a, const CString& b) {
    return a.compare(b) > 0;
}

bool greaterEqual(const CString& a, const CString& b) {
    return a.compare(b) >= 0;
}

void swap(CString& a, CString& b) noexcept {
    a.swap(b);
}

std::uint32_t hashfunction(const CString& text) {
    const char* p = text.asChar();
    return kx::hashfunction(p, p + text.length());
}

} // namespace kxString

kxString::CString* CString_create(const char* text) {
    return new kxString::CString(text);
}

void CString_delete(kxString::CString* string) {
    delete string;
}
