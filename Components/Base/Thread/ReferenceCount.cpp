#include <Base/Thread/ReferenceCount.h>

namespace kxThread {

int atomicIncrement(int& value) {
    return std::atomic_ref<int>(value).fetch_add(1) + 1;
}

int atomicDecrement(int& value) {
    return std::atomic_ref<int>(value).fetch_sub(1) - 1;
}

ReferenceCount::ReferenceCount() : count_(0) {}

ReferenceCount::ReferenceCount(const ReferenceCount&) : count_(0) {}

ReferenceCount& ReferenceCount::operator=(const ReferenceCount&) {
    return *this;
}

ReferenceCount::~ReferenceCount() = default;

void ReferenceCount::ref() const {
    atomicIncrement(count_);
}

void ReferenceCount::unref() const {
    if (atomicDecrement(count_) == 0)
        delete this;
}

int ReferenceCount::refs() const {
    return std::atomic_ref<int>(count_).load();
}

} // namespace kxThread
