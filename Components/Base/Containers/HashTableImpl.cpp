#include <Base/Containers/HashTableImpl.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <utility>

namespace kx {
namespace {

using HashNode = HashTableImpl::HashNodeImpl;

constexpr int kNodesPerBlock = 10;

using detail::kHashPrimes;
constexpr int kPrimeCount = static_cast<int>(std::size(kHashPrimes));
static_assert(kPrimeCount == 29);

// The bucket array holds node pointers.
void copyPointer(void* dst, const void* src) {
    std::memcpy(dst, src, sizeof(void*));
}
void copyPointers(void* dst, const void* src, int n) {
    std::memcpy(dst, src, static_cast<std::size_t>(n) * sizeof(void*));
}
std::int64_t pointerDistance(const void* last, const void* first) {
    return static_cast<void* const*>(last) - static_cast<void* const*>(first);
}
constexpr VectorImpl::TypeUtil kBucketType = {&copyPointer, &copyPointers,    nullptr,
                                              nullptr,      &pointerDistance, sizeof(void*)};

int primeAtLeast(std::int64_t needed) {
    for (int prime : kHashPrimes) {
        if (prime >= needed)
            return prime;
    }
    return kHashPrimes[kPrimeCount - 1];
}

} // namespace

HashTableImpl::Buckets::Buckets() : VectorImpl(&kBucketType) {}

void HashTableImpl::Buckets::reset(int n) {
    const HashNode* none = nullptr;
    clear();
    setSize(n, &none);
}

HashTableImpl::HashTableImpl(const TypeUtil* typeUtil)
    : typeUtil_(typeUtil), count_(0), maxLoadFactor_(1.0f),
      allocator_(static_cast<std::uint64_t>(typeUtil->nodeSize), kNodesPerBlock) {}

HashTableImpl::~HashTableImpl() {
    // Nodes with nothing to destroy go back with the allocator's blocks.
    if (typeUtil_->destructKey || typeUtil_->destructValue)
        clear();
}

HashNode* HashTableImpl::allocateNode() {
    return static_cast<HashNode*>(allocator_.alloc());
}

void HashTableImpl::freeNode(HashNode* node) {
    allocator_.free(node);
}

int HashTableImpl::bucketNum(std::uint64_t hash, int bucketCount) {
    return detail::bucketOf(hash, bucketCount);
}

int HashTableImpl::bucket_size(int bucket) const {
    int n = 0;
    for (const HashNode* node = buckets_[bucket]; node; node = node->next)
        ++n;
    return n;
}

int HashTableImpl::max_bucket_size() const {
    int longest = 0;
    for (int b = 0; b < buckets_.size(); ++b)
        longest = std::max(longest, bucket_size(b));
    return longest;
}

int HashTableImpl::max_bucket_count() {
    return kHashPrimes[kPrimeCount - 1];
}

float HashTableImpl::load_factor() const {
    if (buckets_.size() == 0)
        return 0.0f;
    return static_cast<float>(count_) / static_cast<float>(buckets_.size());
}

void HashTableImpl::max_load_factor(float f) {
    if (!(f > 0.0f))
        return;
    maxLoadFactor_ = f;
    rehash(count_);
}

HashNode* HashTableImpl::newNode(std::uint64_t hash, const void* key, const void* value) {
    HashNode* node = allocateNode();
    node->hash = hash;
    typeUtil_->copyKey(keyPtrOfNode(node), key);
    if (value && typeUtil_->hasValue)
        typeUtil_->copyValue(valuePtrOfNode(node), value);
    ++count_;
    return node;
}

void HashTableImpl::destroyNode(HashNode* node) {
    if (typeUtil_->destructKey)
        typeUtil_->destructKey(keyPtrOfNode(node));
    if (typeUtil_->hasValue && typeUtil_->destructValue)
        typeUtil_->destructValue(valuePtrOfNode(node));
    freeNode(node);
}

void HashTableImpl::clear() {
    if (count_ >= 1) {
        for (int b = 0; b < buckets_.size(); ++b) {
            for (HashNode* node = buckets_[b]; node;) {
                HashNode* next = node->next;
                destroyNode(node);
                node = next;
            }
            buckets_[b] = nullptr;
        }
    }
    count_ = 0;
}

void HashTableImpl::copy(const HashTableImpl* other) {
    if (other == this)
        return;
    clear();
    maxLoadFactor_ = other->maxLoadFactor_;
    rehash(other->count_);
    const bool hasValue = other->typeUtil_->hasValue != 0;
    for (const HashNode* node = other->firstNode(); node; node = node->nextItem(other))
        insert_non_unique_noresize(node->hash, other->keyPtrOfNode(node),
                                   hasValue ? other->valuePtrOfNode(node) : nullptr);
}

const HashNode* HashTableImpl::findNode(std::uint64_t hash, const void* key) const {
    if (count_ == 0)
        return nullptr;
    for (const HashNode* node = buckets_[bucketNum(hash)]; node; node = node->next) {
        if (node->hash == hash && typeUtil_->keyEqual(keyPtrOfNode(node), key))
            return node;
    }
    return nullptr;
}

HashNode* HashTableImpl::findNode(std::uint64_t hash, const void* key) {
    return const_cast<HashNode*>(std::as_const(*this).findNode(hash, key));
}

int HashTableImpl::count(std::uint64_t hash, const void* key) const {
    if (count_ == 0)
        return 0;
    int n = 0;
    for (const HashNode* node = buckets_[bucketNum(hash)]; node; node = node->next)
        n += node->hash == hash && typeUtil_->keyEqual(keyPtrOfNode(node), key);
    return n;
}

HashNode* HashTableImpl::get(std::uint64_t hash, const void* key) {
    if (HashNode* node = findNode(hash, key))
        return node;
    rehash(count_ + 1);
    HashNode* node = newNode(hash, key, nullptr);
    if (typeUtil_->hasValue && typeUtil_->constructValue)
        typeUtil_->constructValue(valuePtrOfNode(node));
    HashNode*& head = buckets_[bucketNum(hash)];
    node->next = head;
    head = node;
    return node;
}

HashNode* HashTableImpl::insert_unique_noresize(std::uint64_t hash, const void* key,
                                                const void* value) {
    HashNode*& head = buckets_[bucketNum(hash)];
    for (HashNode* node = head; node; node = node->next) {
        if (typeUtil_->keyEqual(keyPtrOfNode(node), key))
            return node;
    }
    HashNode* node = newNode(hash, key, value);
    node->next = head;
    head = node;
    return node;
}

HashNode* HashTableImpl::insert_non_unique_noresize(std::uint64_t hash, const void* key,
                                                    const void* value) {
    HashNode*& head = buckets_[bucketNum(hash)];
    for (HashNode* equal = head; equal; equal = equal->next) {
        if (typeUtil_->keyEqual(keyPtrOfNode(equal), key)) {
            HashNode* node = newNode(hash, key, value);
            node->next = equal->next;
            equal->next = node;
            return node;
        }
    }
    HashNode* node = newNode(hash, key, value);
    node->next = head;
    head = node;
    return node;
}

int HashTableImpl::eraseKey(std::uint64_t hash, const void* key) {
    if (count_ == 0)
        return 0;
    int erased = 0;
    for (HashNode** link = &buckets_[bucketNum(hash)]; *link;) {
        HashNode* node = *link;
        if (node->hash == hash && typeUtil_->keyEqual(keyPtrOfNode(node), key)) {
            *link = node->next;
            destroyNode(node);
            --count_;
            ++erased;
        } else {
            link = &node->next;
        }
    }
    return erased;
}

void HashTableImpl::eraseNode(HashNode* node) {
    if (buckets_.size() == 0)
        return;
    for (HashNode** link = &buckets_[bucketNum(node->hash)]; *link; link = &(*link)->next) {
        if (*link == node) {
            *link = node->next;
            destroyNode(node);
            --count_;
            return;
        }
    }
}

HashNode* HashTableImpl::firstNode() const {
    for (int b = 0; b < buckets_.size(); ++b) {
        if (buckets_[b])
            return buckets_[b];
    }
    return nullptr;
}

HashNode* HashNode::nextItem(const HashTableImpl* table) const {
    if (next)
        return next;
    for (int b = table->bucketNum(hash) + 1; b < table->buckets_.size(); ++b) {
        if (table->buckets_[b])
            return table->buckets_[b];
    }
    return nullptr;
}

void HashTableImpl::rehash(int n) {
    const float wanted = static_cast<float>(n) / maxLoadFactor_;
    const auto needed = wanted >= static_cast<float>(INT_MAX) ? std::int64_t{INT_MAX}
                                                              : static_cast<std::int64_t>(wanted);
    const int current = buckets_.size();
    if (needed <= current)
        return;
    const int fresh = primeAtLeast(needed);
    if (fresh <= current)
        return;
    // Nodes move by their stored hash, each to the head of its new bucket.
    Buckets grown;
    grown.reset(fresh);
    for (int b = 0; b < current; ++b) {
        for (HashNode* node = buckets_[b]; node;) {
            HashNode* next = node->next;
            HashNode*& head = grown[bucketNum(node->hash, fresh)];
            node->next = head;
            head = node;
            node = next;
        }
    }
    buckets_.swap(grown);
}

void HashTableImpl::swap(HashTableImpl& other) {
    buckets_.swap(other.buckets_);
    std::swap(typeUtil_, other.typeUtil_);
    std::swap(count_, other.count_);
    std::swap(maxLoadFactor_, other.maxLoadFactor_);
    allocator_.swap(other.allocator_);
}

} // namespace kx
