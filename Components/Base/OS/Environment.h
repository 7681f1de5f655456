// kxOS::GetEnv: the process's environment as settings.
//
// Names are looked up in their UTF-8 form. A variable with an empty value
// is set. Every form returns whether the variable is set; the value forms
// also fill `value`, with the fallback when it is not.
//
//     FLAG="  Yes "  GetEnv("FLAG", b, false) => true, b true
//     FLAG="y"       GetEnv("FLAG", b, false) => true, b false
//     COUNT="12x"    GetEnv("COUNT", n, 4)    => true, n 12
//
// Flags: the text, trimmed of spaces and lower-cased, is true exactly when
// it is "1", "t", "true", "yes" or "on".
#pragma once

#include <Base/String/IString.h>
#include <Base/Utility/Api.h>

namespace kxOS {

BASE_API bool GetEnv(const kxString::IString& name);
BASE_API bool GetEnvExists(const kxString::IString& name);
/// `value` receives the text, or "" when the variable is not set.
BASE_API bool GetEnv(const kxString::IString& name, kxString::IString& value);
/// `value` receives the leading decimal number of the text ("abc" gives 0,
/// and numbers beyond int's range its nearest end), or `fallback`.
BASE_API bool GetEnv(const kxString::IString& name, int& value, int fallback);
/// `value` receives the text as a flag, or `fallback`.
BASE_API bool GetEnv(const kxString::IString& name, bool& value, bool fallback);

} // namespace kxOS
