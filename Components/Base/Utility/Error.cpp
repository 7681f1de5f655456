#include <Base/Utility/Error.h>

#include <Base/String/IString.h>

#include <memory>
#include <utility>

namespace kxUtil {
namespace {

// Replaces `msg` with the message of a format; none for a null or empty
// format. The unique_ptr frees a half-made message if formatting throws.
template <class Char>
void setMessage(kxString::IString*& msg, const Char* format, va_list args) {
    std::unique_ptr<kxString::IString> message;
    if (format && *format) {
        message = std::make_unique<kxString::IString>();
        message->vformat(format, args);
    }
    delete msg;
    msg = message.release();
}

} // namespace

Error::Error() : num_(0), msg_(nullptr) {}

Error::Error(const Error& other)
    : num_(other.num_), msg_(other.msg_ ? new kxString::IString(*other.msg_) : nullptr) {}

Error::Error(Error&& other) noexcept : Error() {
    swap(other);
}

Error::Error(int num, const kxString::IString& message)
    : num_(num), msg_(new kxString::IString(message)) {}

Error::Error(int num, const char* format, ...) : num_(num), msg_(nullptr) {
    va_list args;
    va_start(args, format);
    setMsg(format, args);
    va_end(args);
}

Error::Error(int num, const char* format, va_list args) : num_(num), msg_(nullptr) {
    setMsg(format, args);
}

Error::Error(int num, const wchar_t* format, ...) : num_(num), msg_(nullptr) {
    va_list args;
    va_start(args, format);
    setMsg(format, args);
    va_end(args);
}

Error::Error(int num, const wchar_t* format, va_list args) : num_(num), msg_(nullptr) {
    setMsg(format, args);
}

Error::~Error() {
    delete msg_;
}

Error& Error::operator=(const Error& other) {
    Error copy(other);
    swap(copy);
    return *this;
}

Error& Error::operator=(Error&& other) noexcept {
    swap(other);
    return *this;
}

void Error::swap(Error& other) noexcept {
    std::swap(num_, other.num_);
    std::swap(msg_, other.msg_);
}

bool Error::operator==(const Error& other) const {
    if (num_ != other.num_)
        return false;
    if (!msg_ || !other.msg_)
        return !msg_ && !other.msg_;
    return kxString::equal(*msg_, *other.msg_);
}

bool Error::operator!=(const Error& other) const {
    return !(*this == other);
}

Error::operator bool() const {
    return num_ != 0;
}

int Error::num() const {
    return num_;
}

const char* Error::message() const {
    return msg_ ? msg_->asMultibyte() : "";
}

void Error::setMsg(const char* format, va_list args) {
    setMessage(msg_, format, args);
}

void Error::setMsg(const wchar_t* format, va_list args) {
    setMessage(msg_, format, args);
}

} // namespace kxUtil
