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

#include <cstdint>

namespace kx {

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
