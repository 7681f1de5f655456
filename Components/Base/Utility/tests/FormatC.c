/* Compiled as C: the header must be valid C and its functions unmangled. */
#include <Base/Utility/Format.h>

int formatFromC(char* buffer, size_t size);

int formatFromC(char* buffer, size_t size) {
    return HN_snprintf(buffer, size, "%s-%d", "c", 42);
}
