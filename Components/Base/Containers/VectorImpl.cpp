#include <Base/Containers/VectorImpl.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace kx {
namespace {

// +8 below 32, then doubling: small arrays stay small, large ones amortise.
int grownCapacity(int capacity) {
    return capacity < 32 ? capacity + 8 : capacity * 2;
}

char* bytes(void* p) {
    return static_cast<char*>(p);
}

// Tails up to this many bytes of 8-byte elements shift by word copies:
// cheaper than a call for a few words, while memmove's wide stores win on
// anything longer.
constexpr std::ptrdiff_t kWordShiftLimit = 64;

// Moves [first, last) of 8-byte elements up by one, from the back, four
// words at a time: pointer arrays open their one-element gaps this way.
void shiftUpOneWord(char* first, char* last) {
    if (last - first > kWordShiftLimit) {
        std::memmove(first + 8, first, static_cast<std::size_t>(last - first));
        return;
    }
    std::uint64_t word = 0;
    const auto move = [&word](char* p) {
        std::memcpy(&word, p - 8, 8);
        std::memcpy(p, &word, 8);
    };
    char* p = last;
    for (; p - first >= 32; p -= 32) {
        move(p);
        move(p - 8);
        move(p - 16);
        move(p - 24);
    }
    for (; p != first; p -= 8)
        move(p);
}

} // namespace

VectorImpl::VectorImpl(const TypeUtil* typeUtil) {
    initialize(typeUtil);
}

VectorImpl::VectorImpl(int n, const void* value, const TypeUtil* typeUtil) {
    initialize(typeUtil);
    setSize(n, value);
}

VectorImpl::VectorImpl(int n, void (*ctor)(void*, int), const TypeUtil* typeUtil) {
    initialize(typeUtil);
    if (n >= 1)
        setCapacity(n);
    size_ = capacity_ = n > 0 ? n : 0;
    if (ctor && size_ > 0)
        ctor(data_, size_);
}

VectorImpl::VectorImpl(const VectorImpl& other) {
    initialize(other);
}

VectorImpl::~VectorImpl() {
    freeStorage();
}

void VectorImpl::initialize(const TypeUtil* typeUtil) {
    data_ = nullptr;
    size_ = 0;
    capacity_ = 0;
    typeUtil_ = typeUtil;
}

void VectorImpl::initialize(const VectorImpl& other) {
    initialize(other.typeUtil_);
    append(other);
}

void VectorImpl::freeStorage() {
    if (data_) {
        destructRange(data_, size_);
        std::free(data_);
    }
    data_ = nullptr;
    size_ = 0;
    capacity_ = 0;
}

void VectorImpl::setCapacity(int n) {
    if (n <= 0) {
        if (data_) {
            destructRange(data_, size_);
            std::free(data_);
        }
        data_ = nullptr;
        capacity_ = 0;
        return;
    }
    data_ =
        std::realloc(data_, static_cast<std::size_t>(n) * static_cast<std::size_t>(elementSize()));
    capacity_ = n;
}

void VectorImpl::growByOne() {
    setCapacity(grownCapacity(capacity_));
}

void VectorImpl::growByOneAndAssignPtr(const void* p) {
    growByOne();
    std::memcpy(at(size_ - 1), &p, sizeof p);
}

void* VectorImpl::append() {
    if (size_ == capacity_)
        growByOne();
    return at(size_++);
}

void* VectorImpl::appendAndReturnPtr() {
    return append();
}

void* VectorImpl::append(void (*ctor)(void*)) {
    void* slot = append();
    if (ctor)
        ctor(slot);
    return slot;
}

void* VectorImpl::append(const void* value) {
    return append(value, typeUtil_->copy);
}

void* VectorImpl::append(const void* value, void (*copy)(void*, const void*)) {
    void* slot = append();
    copy(slot, value);
    return slot;
}

void VectorImpl::appendAndAssignPtr(const void* p) {
    if (size_ == capacity_) {
        ++size_;
        growByOneAndAssignPtr(p);
        return;
    }
    std::memcpy(at(size_++), &p, sizeof p);
}

void VectorImpl::append(const VectorImpl& other) {
    const int n = other.size_;
    const int oldSize = size_;
    setCapacity(oldSize + n);
    // Read other's data only now: it moved if other is this array.
    if (n > 0)
        typeUtil_->copyRange(at(oldSize), other.data_, n);
    size_ = oldSize + n;
}

void VectorImpl::copy(const VectorImpl& other) {
    if (&other == this)
        return;
    clear();
    append(other);
}

void VectorImpl::assign(const void* first, const void* last) {
    assign(first, last, typeUtil_->distance, typeUtil_->copyRange);
}

void VectorImpl::assign(const void* first, const void* last,
                        std::int64_t (*distance)(const void*, const void*),
                        void (*copyRange)(void*, const void*, int)) {
    clear();
    const auto n = static_cast<int>(distance(last, first));
    reserve(n);
    if (n > 0)
        copyRange(data_, first, n);
    size_ = n > 0 ? n : 0;
}

void VectorImpl::clear() {
    destructRange(data_, size_);
    size_ = 0;
}

void VectorImpl::destruct(void* p) {
    if (typeUtil_->destruct)
        typeUtil_->destruct(p);
}

void VectorImpl::destructRange(void* p, int n) {
    if (typeUtil_->destructRange && n > 0)
        typeUtil_->destructRange(p, n);
}

void* VectorImpl::erase(void* pos) {
    char* const end = bytes(at(size_));
    --size_;
    destruct(pos);
    std::memmove(pos, bytes(pos) + elementSize(),
                 static_cast<std::size_t>(end - bytes(pos) - elementSize()));
    return pos;
}

void* VectorImpl::erase(void* first, void* last) {
    const auto n = static_cast<int>(typeUtil_->distance(last, first));
    if (n <= 0)
        return first;
    char* const end = bytes(at(size_));
    destructRange(first, n);
    std::memmove(first, last, static_cast<std::size_t>(end - bytes(last)));
    size_ -= n;
    return first;
}

void VectorImpl::eraseBack() {
    --size_;
    destruct(at(size_));
}

void* VectorImpl::insert(void* pos) {
    const std::ptrdiff_t offset = data_ ? bytes(pos) - bytes(data_) : 0;
    if (size_ == capacity_)
        growByOne();
    char* const gap = bytes(data_) + offset;
    char* const end = bytes(at(size_));
    if (elementSize() == 8)
        shiftUpOneWord(gap, end);
    else
        std::memmove(gap + elementSize(), gap, static_cast<std::size_t>(end - gap));
    ++size_;
    return gap;
}

void* VectorImpl::insertAndReturnPtr(void* pos) {
    return insert(pos);
}

void* VectorImpl::insert(void* pos, void (*ctor)(void*)) {
    void* slot = insert(pos);
    if (ctor)
        ctor(slot);
    return slot;
}

void* VectorImpl::insert(void* pos, const void* value) {
    return insert(pos, value, typeUtil_->copy);
}

void* VectorImpl::insert(void* pos, const void* value, void (*copy)(void*, const void*)) {
    void* slot = insert(pos);
    copy(slot, value);
    return slot;
}

void* VectorImpl::insertAndAssignPtr(void* pos, const void* p) {
    void* slot = insert(pos);
    std::memcpy(slot, &p, sizeof p);
    return slot;
}

void VectorImpl::insert(void* pos, int n, const void* value) {
    if (n <= 0)
        return;
    const std::ptrdiff_t offset = data_ ? bytes(pos) - bytes(data_) : 0;
    if (size_ + n > capacity_)
        setCapacity(size_ + n);
    char* const gap = bytes(data_) + offset;
    const std::size_t width = static_cast<std::size_t>(n) * static_cast<std::size_t>(elementSize());
    std::memmove(gap + width, gap, static_cast<std::size_t>(bytes(at(size_)) - gap));
    for (int i = 0; i < n; ++i)
        typeUtil_->copy(gap + std::int64_t{i} * elementSize(), value);
    size_ += n;
}

void VectorImpl::insert(void* pos, const void* first, const void* last) {
    insert(pos, first, last, typeUtil_->distance, typeUtil_->copyRange);
}

void VectorImpl::insert(void* pos, const void* first, const void* last,
                        std::int64_t (*distance)(const void*, const void*),
                        void (*copyRange)(void*, const void*, int)) {
    const auto n = static_cast<int>(distance(last, first));
    if (n <= 0)
        return;
    const std::ptrdiff_t offset = data_ ? bytes(pos) - bytes(data_) : 0;
    if (size_ + n > capacity_)
        setCapacity(size_ + n);
    char* const gap = bytes(data_) + offset;
    const std::ptrdiff_t width = static_cast<const char*>(last) - static_cast<const char*>(first);
    std::memmove(gap + width, gap, static_cast<std::size_t>(bytes(at(size_)) - gap));
    copyRange(gap, first, n);
    size_ += n;
}

void VectorImpl::reserve(int n) {
    if (n > capacity_)
        setCapacity(n);
}

void VectorImpl::setSize(int n, const void* value) {
    if (n < 0)
        n = 0;
    if (n > size_) {
        reserve(n);
        for (int i = size_; i < n; ++i)
            typeUtil_->copy(at(i), value);
    } else if (n < size_) {
        destructRange(at(n), size_ - n);
    }
    size_ = n;
}

void VectorImpl::setSize(int n, void (*ctor)(void*, int)) {
    if (n < 0)
        n = 0;
    if (n <= size_) {
        destructRange(at(n), size_ - n);
    } else {
        reserve(n);
        if (ctor)
            ctor(at(size_), n - size_);
    }
    size_ = n;
}

void VectorImpl::swap(VectorImpl& other) {
    std::swap(data_, other.data_);
    std::swap(size_, other.size_);
    std::swap(capacity_, other.capacity_);
}

} // namespace kx
