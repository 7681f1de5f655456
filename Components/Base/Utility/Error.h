// kxUtil::Error: the result value of operations that can fail.
//
// An error is a number, whose meaning belongs to the subsystem that made it
// (0 always means success), and an optional message. It is returned by
// value, or beside a result in a kx::pair; the library reports expected
// failures this way instead of throwing.
//
//     Error()                           => false, num() 0, message() ""
//     Error(2, "%d files", 3)           => true, message() "3 files"
//     Error(5, "") and Error(5, IString()) differ: no message against an
//                                          empty one
//
// Thread safety: a plain value; distinct objects may be used on distinct
// threads.
#pragma once

#include <Base/Containers/Relocatable.h>
#include <Base/Utility/Api.h>

#include <cstdarg>
#include <type_traits>

namespace kxString {
class IString;
}

namespace kxUtil {

class BASE_API Error {
public:
    /// Number 0 and no message: success, at no allocation.
    Error();
    Error(const Error& other);
    /// Takes the number and message of `other`, which becomes success.
    Error(Error&& other) noexcept;
    /// Stores a copy of `message`, even an empty one.
    Error(int num, const kxString::IString& message);
    /// The message is `format` formatted with the arguments (the text is
    /// always a format: "%" in ready-made text is taken as a conversion). A
    /// null or empty format stores no message.
    Error(int num, const char* format, ...) BASE_PRINTF_FORMAT(3, 4);
    Error(int num, const char* format, va_list args) BASE_PRINTF_FORMAT(3, 0);
    Error(int num, const wchar_t* format, ...);
    Error(int num, const wchar_t* format, va_list args);
    virtual ~Error();

    /// Copy and swap: the old message is freed.
    Error& operator=(const Error& other);
    Error& operator=(Error&& other) noexcept;
    /// Exchanges numbers and messages; allocates nothing.
    void swap(Error& other) noexcept;

    /// Equal numbers, and either no message on both sides or equal texts.
    bool operator==(const Error& other) const;
    bool operator!=(const Error& other) const;

    /// True for an error: a number other than 0. The message plays no part.
    explicit operator bool() const;
    int num() const;
    /// The message in the system code page, valid while this error lives
    /// unchanged; "" when there is none.
    const char* message() const;

protected:
    /// Replaces the message with `format` formatted with `args`, or removes
    /// it when the format is null or empty.
    void setMsg(const char* format, va_list args);
    void setMsg(const wchar_t* format, va_list args);

private:
    int num_;
    kxString::IString* msg_;
};

} // namespace kxUtil

/// An Error is a number and a pointer to its message: it may move as bytes.
template <>
struct kx::is_relocatable<kxUtil::Error> : std::true_type {};
