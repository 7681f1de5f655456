// kx::HashTableImpl: the type-erased core of the hash containers.
//
// A chained hash table with prime bucket counts (7, 13, 29, ... up to
// 1610612741). Every node stores the full hash of its key, so growing never
// calls a hash function and lookups reject most non-matching nodes before
// comparing keys. The caller computes the hashes; nodes come from a
// kx::BlockAllocator, ten per block by default. Tables grow when the load
// passes max_load_factor() and never shrink.
//
// The non-resizing inserts need a sized table: call rehash() first. The
// lookups are safe on an unsized table. No operation reports errors. Not
// thread-safe.
#pragma once

#include <Base/Containers/BlockAllocator.h>
#include <Base/Containers/VectorImpl.h>
#include <Base/Utility/Api.h>

#include <bit>
#include <cstdint>
#include <iterator>

namespace kx {
namespace detail {

inline constexpr int kHashPrimes[] = {
    7,         13,        29,        53,        97,        193,      389,      769,
    1543,      3079,      6151,      12289,     24593,     49157,    98317,    196613,
    393241,    786433,    1572869,   3145739,   6291469,   12582917, 25165843, 50331653,
    100663319, 201326611, 402653189, 805306457, 1610612741};

/// hash modulo `count`, fast for the table's primes. Each prime has its own
/// bit width, so a switch on the width is a jump table, and a division by a
/// constant is a multiplication: many times faster than dividing by the
/// count held in a variable.
constexpr int bucketOf(std::uint64_t hash, int count) {
    switch (std::bit_width(static_cast<unsigned>(count))) {
    case 3:
        if (count == 7)
            return static_cast<int>(hash % 7u);
        break;
    case 4:
        if (count == 13)
            return static_cast<int>(hash % 13u);
        break;
    case 5:
        if (count == 29)
            return static_cast<int>(hash % 29u);
        break;
    case 6:
        if (count == 53)
            return static_cast<int>(hash % 53u);
        break;
    case 7:
        if (count == 97)
            return static_cast<int>(hash % 97u);
        break;
    case 8:
        if (count == 193)
            return static_cast<int>(hash % 193u);
        break;
    case 9:
        if (count == 389)
            return static_cast<int>(hash % 389u);
        break;
    case 10:
        if (count == 769)
            return static_cast<int>(hash % 769u);
        break;
    case 11:
        if (count == 1543)
            return static_cast<int>(hash % 1543u);
        break;
    case 12:
        if (count == 3079)
            return static_cast<int>(hash % 3079u);
        break;
    case 13:
        if (count == 6151)
            return static_cast<int>(hash % 6151u);
        break;
    case 14:
        if (count == 12289)
            return static_cast<int>(hash % 12289u);
        break;
    case 15:
        if (count == 24593)
            return static_cast<int>(hash % 24593u);
        break;
    case 16:
        if (count == 49157)
            return static_cast<int>(hash % 49157u);
        break;
    case 17:
        if (count == 98317)
            return static_cast<int>(hash % 98317u);
        break;
    case 18:
        if (count == 196613)
            return static_cast<int>(hash % 196613u);
        break;
    case 19:
        if (count == 393241)
            return static_cast<int>(hash % 393241u);
        break;
    case 20:
        if (count == 786433)
            return static_cast<int>(hash % 786433u);
        break;
    case 21:
        if (count == 1572869)
            return static_cast<int>(hash % 1572869u);
        break;
    case 22:
        if (count == 3145739)
            return static_cast<int>(hash % 3145739u);
        break;
    case 23:
        if (count == 6291469)
            return static_cast<int>(hash % 6291469u);
        break;
    case 24:
        if (count == 12582917)
            return static_cast<int>(hash % 12582917u);
        break;
    case 25:
        if (count == 25165843)
            return static_cast<int>(hash % 25165843u);
        break;
    case 26:
        if (count == 50331653)
            return static_cast<int>(hash % 50331653u);
        break;
    case 27:
        if (count == 100663319)
            return static_cast<int>(hash % 100663319u);
        break;
    case 28:
        if (count == 201326611)
            return static_cast<int>(hash % 201326611u);
        break;
    case 29:
        if (count == 402653189)
            return static_cast<int>(hash % 402653189u);
        break;
    case 30:
        if (count == 805306457)
            return static_cast<int>(hash % 805306457u);
        break;
    case 31:
        if (count == 1610612741)
            return static_cast<int>(hash % 1610612741u);
        break;
    default: break;
    }
    return static_cast<int>(hash % static_cast<std::uint64_t>(count));
}

} // namespace detail

class BASE_API HashTableImpl {
public:
    struct BASE_API HashNodeImpl {
        std::uint64_t hash;
        HashNodeImpl* next;

        /// The next node in iteration order, or null after the last.
        HashNodeImpl* nextItem(const HashTableImpl* table) const;
    };

    struct TypeUtil {
        int nodeSize;
        int hasValue; ///< 0 for sets
        int dataOffset;
        int keyOffset;
        int valueOffset;
        /// Whether the key stored in a node equals `key`.
        bool (*keyEqual)(const void* nodeKey, const void* key);
        void (*copyKey)(void* dst, const void* src);
        void (*copyValue)(void* dst, const void* src);
        void (*constructValue)(void* dst);  ///< null when there is nothing to do
        void (*destructKey)(void* key);     ///< null when trivial
        void (*destructValue)(void* value); ///< null when trivial
    };

    /// The array of chain heads.
    class BASE_API Buckets : public VectorImpl {
    public:
        Buckets();
        HashNodeImpl*& operator[](int i) { return static_cast<HashNodeImpl**>(data_)[i]; }
        HashNodeImpl* operator[](int i) const { return static_cast<HashNodeImpl**>(data_)[i]; }
        /// `n` null heads.
        void reset(int n);
    };

    explicit HashTableImpl(const TypeUtil* typeUtil);
    HashTableImpl(const HashTableImpl&) = delete;
    HashTableImpl& operator=(const HashTableImpl&) = delete;
    ~HashTableImpl();

    HashNodeImpl* allocateNode();
    void freeNode(HashNodeImpl* node);
    void* dataPtrOfNode(const HashNodeImpl* node) const { return at(node, typeUtil_->dataOffset); }
    void* keyPtrOfNode(const HashNodeImpl* node) const { return at(node, typeUtil_->keyOffset); }
    void* valuePtrOfNode(const HashNodeImpl* node) const {
        return at(node, typeUtil_->valueOffset);
    }

    int size() const { return count_; }
    int bucket_count() const { return buckets_.size(); }
    /// The bucket of `hash` in this table; the table must have buckets.
    int bucketNum(std::uint64_t hash) const { return bucketNum(hash, buckets_.size()); }
    /// hash modulo `bucketCount`.
    static int bucketNum(std::uint64_t hash, int bucketCount);
    int bucket_size(int bucket) const;
    int max_bucket_size() const;
    static int max_bucket_count();
    /// Nodes per bucket; 0 for a table without buckets.
    float load_factor() const;
    float max_load_factor() const { return maxLoadFactor_; }
    /// Stores `f` and grows the table to it. A factor that is not above 0
    /// is ignored.
    void max_load_factor(float f);

    /// Destroys every node; the buckets stay.
    void clear();
    /// Makes this table a copy of `other`.
    void copy(const HashTableImpl* other);

    int count(std::uint64_t hash, const void* key) const;
    HashNodeImpl* findNode(std::uint64_t hash, const void* key);
    const HashNodeImpl* findNode(std::uint64_t hash, const void* key) const;
    /// The node of `key`, inserted with a default value when absent.
    HashNodeImpl* get(std::uint64_t hash, const void* key);
    /// Inserts unless a node with an equal key exists (which is returned);
    /// `value` null leaves the new value unconstructed.
    HashNodeImpl* insert_unique_noresize(std::uint64_t hash, const void* key, const void* value);
    /// Inserts after the first equal key, or at the head of the chain.
    HashNodeImpl* insert_non_unique_noresize(std::uint64_t hash, const void* key,
                                             const void* value);
    /// Erases every node with `key`; returns how many went.
    int eraseKey(std::uint64_t hash, const void* key);
    void eraseNode(HashNodeImpl* node);

    HashNodeImpl* firstNode() const;
    /// Grows to the first prime bucket count that holds `n` nodes at the
    /// maximum load factor; never shrinks.
    void rehash(int n);
    void setNumElementsInBlock(int n) { allocator_.setNumElementsInBlock(n); }
    void swap(HashTableImpl& other);

protected:
    static void* at(const HashNodeImpl* node, int offset) {
        return reinterpret_cast<char*>(const_cast<HashNodeImpl*>(node)) + offset;
    }
    HashNodeImpl* newNode(std::uint64_t hash, const void* key, const void* value);
    void destroyNode(HashNodeImpl* node);

    Buckets buckets_;
    const TypeUtil* typeUtil_;
    int count_;
    float maxLoadFactor_;
    BlockAllocator allocator_;
};

} // namespace kx
