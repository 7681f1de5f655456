/* Export markers of libBase.
 *
 * The library is built with hidden symbols; BASE_API marks the classes and
 * functions that form its interface. C functions are declared inside
 * BASE_BEGIN_C / BASE_END_C so that they keep unmangled names. This header is
 * valid C and C++.
 */
#ifndef BASE_UTILITY_API_H
#define BASE_UTILITY_API_H

#if defined(_WIN32)
#    if defined(BASE_BUILDING)
#        define BASE_API __declspec(dllexport)
#    else
#        define BASE_API __declspec(dllimport)
#    endif
#else
#    define BASE_API __attribute__((visibility("default")))
#endif

/* Lets the compiler check the arguments of a printf-style function whose
 * format is parameter fmt and whose variable arguments start at first. */
#if defined(__GNUC__)
#    define BASE_PRINTF_FORMAT(fmt, first) __attribute__((format(printf, fmt, first)))
#else
#    define BASE_PRINTF_FORMAT(fmt, first)
#endif

#if defined(__cplusplus)
#    define BASE_BEGIN_C extern "C" {
#    define BASE_END_C }
#else
#    define BASE_BEGIN_C
#    define BASE_END_C
#endif

#endif
