#include <Base/String/String.h>

namespace kxString {

String::~String() = default;

bool String::isEmpty() const {
    return length() == 0;
}

bool String::isNull() const {
    return isEmpty();
}

unsigned int String::first() const {
    return 0;
}

unsigned int String::last() const {
    return isEmpty() ? 0 : length() - 1;
}

unsigned int String::maxSize() const {
    return 0xFFFFFFFEu;
}

bool String::doBoundsCheck(unsigned int pos) const {
    return pos < length();
}

bool String::doBoundsCheck(unsigned int pos, unsigned int len) const {
    if (pos >= length())
        return false;
    return len == npos || len <= length();
}

} // namespace kxString
