// Hash containers over kx::HashTableImpl: kx::hash_map and kx::hash_set,
// and kx::hash, the hash they use unless told otherwise.
//
// They read like std::unordered_map and std::unordered_set, with int sizes.
// Each node keeps its key's full hash, so growing never hashes again and
// lookups compare keys only when the hashes match. Bucket counts are primes
// (7, 13, 29...); a table grows when its load passes max_load_factor()
// (1.0 by default) and never shrinks. Iteration order follows the buckets.
// Nodes stay where they are, so keys and values of any type are fine (unlike
// kx::vector elements), and a table may be moved by copying its bytes.
// Hash and key equality must be stateless. Not thread-safe.
#pragma once

#include <Base/Containers/Hash.h>
#include <Base/Containers/HashTableImpl.h>
#include <Base/Containers/Map.h>
#include <Base/Containers/Pair.h>
#include <Base/Containers/Relocatable.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace kxString {
class CString;
class IString;
BASE_API std::uint32_t hashfunction(const CString& text);
BASE_API std::uint32_t hashfunction(const IString& text);
} // namespace kxString

namespace kx {

/// The default hash of the hash containers. Integers, enumerations and
/// pointers are mixed with a multiplication (so that keys in a regular
/// pattern spread over the buckets); text hashes with kx::hashfunction.
template <class T, class = void>
struct hash;

template <class T>
struct hash<T,
            std::enable_if_t<std::is_integral_v<T> || std::is_enum_v<T> || std::is_pointer_v<T>>> {
    std::uint64_t operator()(T value) const noexcept {
        std::uint64_t x = 0;
        if constexpr (std::is_pointer_v<T>)
            x = reinterpret_cast<std::uintptr_t>(value);
        else
            x = static_cast<std::uint64_t>(value);
        x *= 0x9E3779B97F4A7C15ull; // 2^64 divided by the golden ratio
        return x ^ (x >> 32);
    }
};

template <>
struct hash<std::string_view> {
    std::uint64_t operator()(std::string_view text) const noexcept {
        return hashfunction(text.data(), text.data() + text.size());
    }
};

template <>
struct hash<std::string> : hash<std::string_view> {};

template <>
struct hash<kxString::CString> {
    std::uint64_t operator()(const kxString::CString& text) const noexcept {
        return kxString::hashfunction(text);
    }
};

template <>
struct hash<kxString::IString> {
    std::uint64_t operator()(const kxString::IString& text) const noexcept {
        return kxString::hashfunction(text);
    }
};

namespace detail {

// The shell shared by the hash containers. A node is the table's hash and
// link, then the element: a pair<const Key, Value> for maps, the Key for
// sets.
template <class Key, class Value, class Hash, class Equal>
class HashShell : protected HashTableImpl,
                  private NodeLayout<Key, Value, HashTableImpl::HashNodeImpl> {
    static_assert(std::is_empty_v<Hash> && std::is_empty_v<Equal>,
                  "the hash containers take a stateless hash and key equality");

    using Layout = NodeLayout<Key, Value, HashNodeImpl>;
    static constexpr bool kIsMap = Layout::kIsMap;
    using Element = typename Layout::Element;
    using Mapped = typename Layout::Mapped;
    static constexpr int kElementOffset = Layout::kElementOffset;
    static constexpr int kValueOffset = Layout::kValueOffset;
    using Layout::key;
    using Layout::keyOfElement;
    using Layout::valueOfElement;

    static Element& element(const HashNodeImpl* node) {
        return *std::launder(reinterpret_cast<Element*>(at(node, kElementOffset)));
    }

    template <class E>
    class basic_iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;
        using pointer = E*;
        using reference = E&;

        basic_iterator() = default;
        basic_iterator(const HashNodeImpl* node, const HashTableImpl* table)
            : node_(const_cast<HashNodeImpl*>(node)), table_(table) {}
        template <class F>
        requires std::is_const_v<E> &&
            (!std::is_const_v<F>)basic_iterator(const basic_iterator<F>& other)
            : node_(other.node_), table_(other.table_) {}

        E& operator*() const { return element(node_); }
        E* operator->() const { return &element(node_); }
        basic_iterator& operator++() {
            node_ = node_->nextItem(table_);
            return *this;
        }
        basic_iterator operator++(int) {
            basic_iterator old = *this;
            ++*this;
            return old;
        }
        friend bool operator==(const basic_iterator& a, const basic_iterator& b) {
            return a.node_ == b.node_;
        }

    private:
        friend class HashShell;
        template <class>
        friend class basic_iterator;
        HashNodeImpl* node_ = nullptr;
        const HashTableImpl* table_ = nullptr;
    };

public:
    using key_type = Key;
    using value_type = Element;
    using hasher = Hash;
    using key_equal = Equal;
    using size_type = int;
    using iterator = basic_iterator<std::conditional_t<kIsMap, Element, const Element>>;
    using const_iterator = basic_iterator<const Element>;

    HashShell() : HashTableImpl(&kTypeUtil) {}
    HashShell(std::initializer_list<Element> items) : HashShell() {
        insert(items.begin(), items.end());
    }
    template <std::input_iterator It>
    HashShell(It first, It last) : HashShell() {
        insert(first, last);
    }
    HashShell(const HashShell& other) : HashShell() { copy(&other); }
    HashShell(HashShell&& other) noexcept : HashShell() { swap(other); }
    ~HashShell() = default;

    HashShell& operator=(const HashShell& other) {
        copy(&other);
        return *this;
    }
    HashShell& operator=(HashShell&& other) noexcept {
        swap(other);
        return *this;
    }

    int size() const noexcept { return count_; }
    bool empty() const noexcept { return count_ == 0; }

    iterator begin() noexcept { return iterator(firstNode(), this); }
    iterator end() noexcept { return iterator(nullptr, this); }
    const_iterator begin() const noexcept { return const_iterator(firstNode(), this); }
    const_iterator end() const noexcept { return const_iterator(nullptr, this); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }

    /// Inserts unless the key is present; returns the element's position
    /// and whether it is new.
    pair<iterator, bool> insert(const Element& item) {
        const Key& k = keyOfElement(item);
        const std::uint64_t h = Hash()(k);
        if (HashNodeImpl* node = findOf(h, k))
            return {iterator(node, this), false};
        rehash(count_ + 1);
        return {iterator(insert_unique_noresize(h, &k, valueOfElement(item)), this), true};
    }
    template <std::input_iterator It>
    void insert(It first, It last) {
        for (; first != last; ++first)
            insert(*first);
    }
    void insert(std::initializer_list<Element> items) { insert(items.begin(), items.end()); }

    // Lookups walk the chain here, where hash and equality inline, instead
    // of calling into the core.
    iterator find(const Key& k) { return iterator(findOf(Hash()(k), k), this); }
    const_iterator find(const Key& k) const { return const_iterator(findOf(Hash()(k), k), this); }
    bool contains(const Key& k) const { return findOf(Hash()(k), k) != nullptr; }
    int count(const Key& k) const { return findOf(Hash()(k), k) ? 1 : 0; }

    /// Erases the element at `pos` and returns the one after it.
    iterator erase(const_iterator pos) {
        HashNodeImpl* next = pos.node_->nextItem(this);
        eraseNode(pos.node_);
        return iterator(next, this);
    }
    /// Erases the element with key `k`; returns 1, or 0 when absent.
    int erase(const Key& k) { return eraseKey(Hash()(k), &k); }
    void clear() noexcept { HashTableImpl::clear(); }

    /// Room for `n` elements without growing.
    void reserve(int n) { rehash(n); }
    void rehash(int n) { HashTableImpl::rehash(n); }
    int bucket_count() const { return HashTableImpl::bucket_count(); }
    float load_factor() const { return HashTableImpl::load_factor(); }
    float max_load_factor() const { return HashTableImpl::max_load_factor(); }
    void max_load_factor(float f) { HashTableImpl::max_load_factor(f); }
    /// Nodes per pool block; takes effect only before the first insert.
    void setNumElementsInBlock(int n) { HashTableImpl::setNumElementsInBlock(n); }
    void swap(HashShell& other) noexcept { HashTableImpl::swap(other); }

    /// The same elements, whatever their order.
    friend bool operator==(const HashShell& a, const HashShell& b) {
        if (a.size() != b.size())
            return false;
        for (const Element& item : a) {
            const auto found = b.find(keyOfElement(item));
            if (found == b.end() || !(*found == item))
                return false;
        }
        return true;
    }

protected:
    Mapped& valueAt(const Key& k) {
        const std::uint64_t h = Hash()(k);
        HashNodeImpl* node = findOf(h, k);
        if (!node)
            node = get(h, &k);
        return *static_cast<Mapped*>(at(node, kValueOffset));
    }

    HashNodeImpl* findOf(std::uint64_t h, const Key& k) const {
        if (count_ == 0)
            return nullptr;
        for (HashNodeImpl* node = buckets_[detail::bucketOf(h, buckets_.size())]; node;
             node = node->next) {
            if (node->hash == h && Equal()(key(at(node, kElementOffset)), k))
                return node;
        }
        return nullptr;
    }

private:
    static bool keyEqual(const void* a, const void* b) { return Equal()(key(a), key(b)); }

    static constexpr TypeUtil kTypeUtil = {
        Layout::kNodeSize,    kIsMap ? 1 : 0,         kElementOffset,
        kElementOffset,       kValueOffset,           &keyEqual,
        &Layout::copyKey,     Layout::kCopyValue,     Layout::kConstructValue,
        Layout::kDestructKey, Layout::kDestructValue,
    };
};

} // namespace detail

/// Unique keys with a value each; operator[] inserts a value-initialised
/// value.
template <class Key, class Value, class Hash = hash<Key>, class Equal = std::equal_to<Key>>
class hash_map : public detail::HashShell<Key, Value, Hash, Equal> {
    using Shell = detail::HashShell<Key, Value, Hash, Equal>;

public:
    using mapped_type = Value;
    using Shell::Shell;
    hash_map() = default;

    Value& operator[](const Key& k) { return this->valueAt(k); }
};

/// Unique keys.
template <class Key, class Hash = hash<Key>, class Equal = std::equal_to<Key>>
class hash_set : public detail::HashShell<Key, void, Hash, Equal> {
    using Shell = detail::HashShell<Key, void, Hash, Equal>;

public:
    using Shell::Shell;
    hash_set() = default;
};

template <class Key, class Value, class Hash, class Equal>
struct is_relocatable<hash_map<Key, Value, Hash, Equal>> : std::true_type {};
template <class Key, class Hash, class Equal>
struct is_relocatable<hash_set<Key, Hash, Equal>> : std::true_type {};

} // namespace kx
