#include <Base/Utility/SystemError.h>

#include <Base/Platform/SystemError.h>
#include <Base/Utility/Format.h>

namespace kxUtil {

kxString::IString systemErrorText(int code) {
    const std::string text = kx::platform::errorDescription(code);
    if (!text.empty())
        return kxString::IString(text.c_str(), kxString::Encoding::systemCodePage);
    wchar_t buffer[63];
    HN_swprintf(buffer, 63, L"An unknown WIN32 error occurred: %d", code);
    return kxString::IString(buffer);
}

kxString::IString lastSystemErrorText() {
    return systemErrorText(kx::platform::lastError());
}

kxString::IString lastSocketErrorText() {
    return systemErrorText(kx::platform::lastSocketError());
}

} // namespace kxUtil
