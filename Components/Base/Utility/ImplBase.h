// kx::ImplBase: the base of private implementation records.
//
// A handle class holds one pointer to a record that derives from ImplBase,
// so that the handle can delete the record without knowing its type.
#pragma once

#include <Base/Utility/Api.h>

namespace kx {

class BASE_API ImplBase {
public:
    virtual ~ImplBase();

protected:
    ImplBase() = default;
    ImplBase(const ImplBase&) = default;
    ImplBase& operator=(const ImplBase&) = default;
};

} // namespace kx
