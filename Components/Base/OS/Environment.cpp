#include <Base/OS/Environment.h>

#include <climits>
#include <cstdlib>

namespace kxOS {
namespace {

const char* lookUp(const kxString::IString& name) {
    return std::getenv(name.asUTF8());
}

} // namespace

bool GetEnv(const kxString::IString& name) {
    return lookUp(name) != nullptr;
}

bool GetEnvExists(const kxString::IString& name) {
    return lookUp(name) != nullptr;
}

bool GetEnv(const kxString::IString& name, kxString::IString& value) {
    const char* text = lookUp(name);
    value = text ? kxString::IString(text) : kxString::IString();
    return text != nullptr;
}

bool GetEnv(const kxString::IString& name, int& value, int fallback) {
    const char* text = lookUp(name);
    if (!text) {
        value = fallback;
        return false;
    }
    // atoi's reading, with a defined result for numbers out of range.
    const long number = std::strtol(text, nullptr, 10);
    value = number > INT_MAX ? INT_MAX : number < INT_MIN ? INT_MIN : static_cast<int>(number);
    return true;
}

bool GetEnv(const kxString::IString& name, bool& value, bool fallback) {
    kxString::IString text;
    if (!GetEnv(name, text)) {
        value = fallback;
        return false;
    }
    text.stripSpaces().rstripSpaces();
    text.toLowerCase();
    value = false;
    for (const wchar_t* word : {L"1", L"t", L"true", L"yes", L"on"})
        value = value || text.compare(word) == 0;
    return true;
}

} // namespace kxOS
