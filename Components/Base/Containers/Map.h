// Ordered containers over kx::RBTreeImpl: kx::map, kx::multimap, kx::set
// and kx::multiset, ordered by kx::less unless told otherwise.
//
// They read like their std counterparts (iterators, insert, find,
// lower_bound, erase...), with int sizes and the library's rules: a map's
// operator[] inserts a value-initialised value; the multi-key forms keep
// equal keys in insertion order. Nodes come from a block pool, ten per block
// by default (setNumElementsInBlock changes it before the first insert).
// The comparison must be stateless: the tree's descriptor builds it where
// it compares. A tree is not byte-relocatable (its root points at it).
// Not thread-safe.
#pragma once

#include <Base/Containers/Pair.h>
#include <Base/Containers/RBTreeImpl.h>

#include <algorithm>
#include <compare>
#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kx {

/// Orders with operator<. The void form compares mixed types.
template <class T = void>
struct less {
    constexpr bool operator()(const T& a, const T& b) const { return a < b; }
};

template <>
struct less<void> {
    using is_transparent = void;
    template <class A, class B>
    constexpr bool operator()(const A& a, const B& b) const {
        return a < b;
    }
};

namespace detail {

constexpr int roundUp(std::size_t n, std::size_t alignment) {
    return static_cast<int>((n + alignment - 1) / alignment * alignment);
}

// What the ordered and the hash containers share about their nodes: the
// core's link fields (`Link`), then the element, a pair<const Key, Value>
// for maps (Value not void) and the Key for sets; and the element
// operations that their descriptors hand to the type-erased cores.
template <class Key, class Value, class Link>
struct NodeLayout {
    static constexpr bool kIsMap = !std::is_void_v<Value>;
    using Element = std::conditional_t<kIsMap, pair<const Key, Value>, Key>;
    using Mapped = std::conditional_t<kIsMap, Value, char>;

    static constexpr int kElementOffset = roundUp(sizeof(Link), alignof(Element));
    static constexpr int kValueOffset =
        kIsMap ? kElementOffset + roundUp(sizeof(Key), alignof(Mapped)) : kElementOffset;
    static constexpr int kNodeSize =
        roundUp(kElementOffset + sizeof(Element), std::max(alignof(Link), alignof(Element)));

    static const Key& key(const void* p) { return *static_cast<const Key*>(p); }
    static const Key& keyOfElement(const Element& item) {
        if constexpr (kIsMap)
            return item.first;
        else
            return item;
    }
    static const void* valueOfElement(const Element& item) {
        if constexpr (kIsMap)
            return &item.second;
        else
            return nullptr;
    }

    static void copyKey(void* dst, const void* src) { ::new (dst) Key(key(src)); }
    static void copyValue(void* dst, const void* src) {
        ::new (dst) Mapped(*static_cast<const Mapped*>(src));
    }
    static void constructValue(void* dst) { ::new (dst) Mapped(); }
    static void destructKey(void* p) { std::destroy_at(static_cast<Key*>(p)); }
    static void destructValue(void* p) { std::destroy_at(static_cast<Mapped*>(p)); }

    // The descriptors' entries: null where there is nothing to do.
    static constexpr void (*kCopyValue)(void*, const void*) = kIsMap ? &copyValue : nullptr;
    static constexpr void (*kConstructValue)(void*) = kIsMap ? &constructValue : nullptr;
    static constexpr void (*kDestructKey)(void*) = std::is_trivially_destructible_v<Key>
                                                       ? nullptr
                                                       : &destructKey;
    static constexpr void (*kDestructValue)(void*) =
        kIsMap && !std::is_trivially_destructible_v<Mapped> ? &destructValue : nullptr;
};

// The shell shared by the four ordered containers. A node is the tree's
// link fields, then the element: a pair<const Key, Value> for maps (Value
// not void), the Key for sets.
template <class Key, class Value, class Compare, bool Unique>
class TreeShell : protected RBTreeImpl, private NodeLayout<Key, Value, RBTreeImpl::Node> {
    static_assert(std::is_empty_v<Compare> && std::is_default_constructible_v<Compare>,
                  "the ordered containers take a stateless comparison");

    using Layout = NodeLayout<Key, Value, Node>;
    static constexpr bool kIsMap = Layout::kIsMap;
    using Element = typename Layout::Element;
    using Mapped = typename Layout::Mapped;
    static constexpr int kElementOffset = Layout::kElementOffset;
    static constexpr int kValueOffset = Layout::kValueOffset;
    using Layout::key;
    using Layout::keyOfElement;
    using Layout::valueOfElement;

    static Element& element(const Node* node) {
        return *std::launder(reinterpret_cast<Element*>(at(node, kElementOffset)));
    }
    static const Key& keyOf(const Node* node) {
        return *std::launder(reinterpret_cast<const Key*>(at(node, kElementOffset)));
    }

    template <class E>
    class basic_iterator {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = Element;
        using difference_type = std::ptrdiff_t;
        using pointer = E*;
        using reference = E&;

        basic_iterator() = default;
        explicit basic_iterator(const Node* node) : node_(const_cast<Node*>(node)) {}
        /// A const iterator from a mutable one.
        template <class F>
        requires std::is_const_v<E> &&
            (!std::is_const_v<F>)basic_iterator(const basic_iterator<F>& other)
            : node_(other.node_) {}

        E& operator*() const { return element(node_); }
        E* operator->() const { return &element(node_); }
        basic_iterator& operator++() {
            node_ = node_->next();
            return *this;
        }
        basic_iterator operator++(int) {
            basic_iterator old = *this;
            node_ = node_->next();
            return old;
        }
        basic_iterator& operator--() {
            node_ = node_->prev();
            return *this;
        }
        basic_iterator operator--(int) {
            basic_iterator old = *this;
            node_ = node_->prev();
            return old;
        }
        friend bool operator==(const basic_iterator& a, const basic_iterator& b) {
            return a.node_ == b.node_;
        }

    private:
        friend class TreeShell;
        template <class>
        friend class basic_iterator;
        Node* node_ = nullptr;
    };

public:
    using key_type = Key;
    using value_type = Element;
    using key_compare = Compare;
    using size_type = int;
    using difference_type = std::ptrdiff_t;
    // A set's elements are its keys: they cannot change in place.
    using iterator = basic_iterator<std::conditional_t<kIsMap, Element, const Element>>;
    using const_iterator = basic_iterator<const Element>;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;
    /// What insert() returns: the element's position and whether it is new
    /// (always true for the multi-key forms).
    using insert_result = std::conditional_t<Unique, pair<iterator, bool>, iterator>;

    TreeShell() : RBTreeImpl(&kTypeUtil) {}
    TreeShell(std::initializer_list<Element> items) : TreeShell() {
        insert(items.begin(), items.end());
    }
    template <std::input_iterator It>
    TreeShell(It first, It last) : TreeShell() {
        insert(first, last);
    }
    TreeShell(const TreeShell& other) : RBTreeImpl(other) {}
    TreeShell(TreeShell&& other) noexcept : TreeShell() { swap(other); }
    ~TreeShell() = default;

    TreeShell& operator=(const TreeShell& other) {
        copy(other);
        return *this;
    }
    TreeShell& operator=(TreeShell&& other) noexcept {
        swap(other);
        return *this;
    }

    int size() const noexcept { return size_; }
    bool empty() const noexcept { return size_ == 0; }

    iterator begin() noexcept { return iterator(RBTreeImpl::begin()); }
    iterator end() noexcept { return iterator(RBTreeImpl::end()); }
    const_iterator begin() const noexcept { return const_iterator(RBTreeImpl::begin()); }
    const_iterator end() const noexcept { return const_iterator(RBTreeImpl::end()); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }

    insert_result insert(const Element& item) {
        const int before = size_;
        Node* node = Unique ? insertNodeUnique(&keyOfElement(item), valueOfElement(item))
                            : insertNodeNonUnique(&keyOfElement(item), valueOfElement(item));
        if constexpr (Unique)
            return {iterator(node), size_ > before};
        else
            return iterator(node);
    }
    /// Inserts near `hint`; for the multi-key forms, equal keys go after the
    /// ones present.
    iterator insert(const_iterator hint, const Element& item) {
        if constexpr (Unique)
            return iterator(
                insertNodeUnique(hint.node_, &keyOfElement(item), valueOfElement(item)));
        // The tree compares a map's value with its last key when the hint is
        // end(); the plain insert puts the element in the same place.
        else if (kIsMap && hint == end())
            return iterator(insertNodeNonUnique(&keyOfElement(item), valueOfElement(item)));
        else
            return iterator(
                insertNodeNonUnique(hint.node_, &keyOfElement(item), valueOfElement(item)));
    }
    template <std::input_iterator It>
    void insert(It first, It last) {
        for (; first != last; ++first)
            insert(end(), *first);
    }
    void insert(std::initializer_list<Element> items) { insert(items.begin(), items.end()); }

    // Lookups run the descriptor's own search loops here, where the
    // comparison inlines, instead of calling into the core.
    iterator find(const Key& k) { return iterator(findOf(this, k)); }
    const_iterator find(const Key& k) const { return const_iterator(findOf(this, k)); }
    bool contains(const Key& k) const { return findOf(this, k) != RBTreeImpl::end(); }
    int count(const Key& k) const {
        return sDistanceBetween(lowerBoundOf(this, &k), upperBoundOf(this, &k));
    }
    iterator lower_bound(const Key& k) { return iterator(lowerBoundOf(this, &k)); }
    const_iterator lower_bound(const Key& k) const {
        return const_iterator(lowerBoundOf(this, &k));
    }
    iterator upper_bound(const Key& k) { return iterator(upperBoundOf(this, &k)); }
    const_iterator upper_bound(const Key& k) const {
        return const_iterator(upperBoundOf(this, &k));
    }
    pair<iterator, iterator> equal_range(const Key& k) {
        return {iterator(lowerBoundOf(this, &k)), iterator(upperBoundOf(this, &k))};
    }
    pair<const_iterator, const_iterator> equal_range(const Key& k) const {
        return {const_iterator(lowerBoundOf(this, &k)), const_iterator(upperBoundOf(this, &k))};
    }

    /// Erases the element at `pos` and returns the one after it.
    iterator erase(const_iterator pos) {
        Node* next = pos.node_->next();
        eraseNode(pos.node_);
        return iterator(next);
    }
    iterator erase(const_iterator first, const_iterator last) {
        eraseNodesRange(first.node_, last.node_);
        return iterator(last.node_);
    }
    /// Erases every element with key `k`; returns how many went.
    int erase(const Key& k) {
        if constexpr (Unique) {
            Node* node = findOf(this, k);
            if (node == RBTreeImpl::end())
                return 0;
            eraseNode(node);
            return 1;
        } else {
            return eraseNodesMatching(&k);
        }
    }
    void clear() noexcept { RBTreeImpl::clear(); }
    void swap(TreeShell& other) noexcept { RBTreeImpl::swap(other); }
    /// Nodes per pool block; takes effect only before the first insert.
    void setNumElementsInBlock(int n) { RBTreeImpl::setNumElementsInBlock(n); }

    friend bool operator==(const TreeShell& a, const TreeShell& b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
    }
    friend auto operator<=>(const TreeShell& a, const TreeShell& b) {
        return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
    }

protected:
    /// A map's subscript: the value of `k`, inserted with a default value
    /// next to its lower bound when absent.
    Mapped& valueAt(const Key& k) {
        Node* node = lowerBoundOf(this, &k);
        if (node == RBTreeImpl::end() || Compare()(k, keyOf(node)))
            node = insertNodeUnique(node, &k);
        return *static_cast<Mapped*>(at(node, kValueOffset));
    }

private:
    static bool keyLess(const void* a, const void* b) { return Compare()(key(a), key(b)); }

    static void destroySubtree(RBTreeImpl* tree, Node* root) {
        // Right subtrees recursively, left spines in a loop: the recursion
        // is no deeper than the tree's height.
        while (root) {
            destroySubtree(tree, root->right);
            Node* left = root->left;
            if constexpr (!std::is_trivially_destructible_v<Key>)
                Layout::destructKey(at(root, kElementOffset));
            if constexpr (kIsMap && !std::is_trivially_destructible_v<Mapped>)
                Layout::destructValue(at(root, kValueOffset));
            tree->freeNode(root);
            root = left;
        }
    }
    static Node* lowerBoundOf(const RBTreeImpl* tree, const void* k) {
        const Node* bound = tree->end();
        for (const Node* node = tree->root(); node;) {
            if (!Compare()(keyOf(node), key(k))) {
                bound = node;
                node = node->left;
            } else {
                node = node->right;
            }
        }
        return const_cast<Node*>(bound);
    }
    static Node* upperBoundOf(const RBTreeImpl* tree, const void* k) {
        const Node* bound = tree->end();
        for (const Node* node = tree->root(); node;) {
            if (Compare()(key(k), keyOf(node))) {
                bound = node;
                node = node->left;
            } else {
                node = node->right;
            }
        }
        return const_cast<Node*>(bound);
    }
    static Node* findOf(const RBTreeImpl* tree, const Key& k) {
        Node* node = lowerBoundOf(tree, &k);
        if (node == tree->end() || Compare()(k, keyOf(node)))
            return const_cast<Node*>(tree->end());
        return node;
    }
    static bool findInsertPosition(const RBTreeImpl* tree, const void* k, Node** parent) {
        const Node* last = tree->end();
        bool left = true;
        for (const Node* node = tree->root(); node;) {
            last = node;
            left = Compare()(key(k), keyOf(node));
            node = left ? node->left : node->right;
        }
        *parent = const_cast<Node*>(last);
        return left;
    }

    static constexpr TypeUtil kTypeUtil = {
        Layout::kNodeSize,
        kElementOffset,
        kValueOffset,
        &keyLess,
        &Layout::copyKey,
        Layout::kCopyValue,
        Layout::kConstructValue,
        Layout::kDestructKey,
        Layout::kDestructValue,
        &destroySubtree,
        &lowerBoundOf,
        &upperBoundOf,
        &findInsertPosition,
    };
};

} // namespace detail

/// Unique keys with a value each. insert() of a present key keeps the old
/// value; operator[] inserts a value-initialised one.
template <class Key, class Value, class Compare = less<Key>>
class map : public detail::TreeShell<Key, Value, Compare, true> {
    using Shell = detail::TreeShell<Key, Value, Compare, true>;

public:
    using mapped_type = Value;
    using Shell::Shell;
    map() = default;

    Value& operator[](const Key& k) { return this->valueAt(k); }
};

/// Keys that may repeat, each with a value, in insertion order among equals.
template <class Key, class Value, class Compare = less<Key>>
class multimap : public detail::TreeShell<Key, Value, Compare, false> {
    using Shell = detail::TreeShell<Key, Value, Compare, false>;

public:
    using mapped_type = Value;
    using Shell::Shell;
    multimap() = default;
};

/// Unique keys.
template <class Key, class Compare = less<Key>>
class set : public detail::TreeShell<Key, void, Compare, true> {
    using Shell = detail::TreeShell<Key, void, Compare, true>;

public:
    using Shell::Shell;
    set() = default;
};

/// Keys that may repeat, in insertion order among equals.
template <class Key, class Compare = less<Key>>
class multiset : public detail::TreeShell<Key, void, Compare, false> {
    using Shell = detail::TreeShell<Key, void, Compare, false>;

public:
    using Shell::Shell;
    multiset() = default;
};

} // namespace kx
