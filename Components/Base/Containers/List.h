// kx::list<T>: a doubly linked list, a typed shell over kx::ListImpl.
//
// It reads like std::list, with int sizes. The list object is the end node
// of its own ring, so it must never be moved by copying its bytes: it is not
// byte-relocatable, and kx::vector<kx::list<T>> does not compile. Moving a
// list with std::move or swap() is fine.
//
// sort() is stable; unique() keeps the last element of each run of equal
// ones. Element copies must not throw. Not thread-safe.
#pragma once

#include <Base/Containers/ListImpl.h>

#include <compare>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

namespace kx {

template <class T>
class list : private ListImpl {
    // A node is the two links, then the element, aligned.
    static constexpr std::uint32_t kOffset =
        (sizeof(Node) + alignof(T) - 1) / alignof(T) * alignof(T);
    static_assert(alignof(T) <= alignof(std::max_align_t),
                  "kx::list nodes come from malloc and are aligned only to max_align_t");

    static T* element(const Node* node) {
        return std::launder(
            reinterpret_cast<T*>(reinterpret_cast<char*>(const_cast<Node*>(node)) + kOffset));
    }

    template <class Value, class NodePtr>
    class basic_iterator {
    public:
        using iterator_category = std::bidirectional_iterator_tag;
        using value_type = T;
        using difference_type = std::ptrdiff_t;
        using pointer = Value*;
        using reference = Value&;

        basic_iterator() = default;
        explicit basic_iterator(NodePtr node) : node_(node) {}
        /// A const iterator from a mutable one.
        template <class V, class N>
        requires std::is_const_v<Value> basic_iterator(const basic_iterator<V, N>& other)
            : node_(other.node_) {}

        Value& operator*() const { return *element(node_); }
        Value* operator->() const { return element(node_); }
        basic_iterator& operator++() {
            node_ = node_->next;
            return *this;
        }
        basic_iterator operator++(int) {
            basic_iterator old = *this;
            node_ = node_->next;
            return old;
        }
        basic_iterator& operator--() {
            node_ = node_->prev;
            return *this;
        }
        basic_iterator operator--(int) {
            basic_iterator old = *this;
            node_ = node_->prev;
            return old;
        }
        friend bool operator==(const basic_iterator& a, const basic_iterator& b) {
            return a.node_ == b.node_;
        }

    private:
        friend class list;
        template <class, class>
        friend class basic_iterator;
        NodePtr node_ = nullptr;
    };

public:
    using value_type = T;
    using size_type = int;
    using difference_type = std::ptrdiff_t;
    using reference = T&;
    using const_reference = const T&;
    using iterator = basic_iterator<T, Node*>;
    using const_iterator = basic_iterator<const T, const Node*>;
    using reverse_iterator = std::reverse_iterator<iterator>;
    using const_reverse_iterator = std::reverse_iterator<const_iterator>;

    list() : ListImpl(&kTypeUtil) {}
    list(int n, const T& value) : list() { insert(end(), n, value); }
    list(std::initializer_list<T> items) : list(items.begin(), items.end()) {}
    template <std::input_iterator It>
    list(It first, It last) : list() {
        for (; first != last; ++first)
            emplace_back(*first);
    }
    list(const list& other) : ListImpl(other) {}
    list(list&& other) noexcept : list() { swap(other); }
    ~list() = default;

    /// Copies into the existing nodes where there are some.
    list& operator=(const list& other) {
        copy(other);
        return *this;
    }
    list& operator=(list&& other) noexcept {
        swap(other);
        return *this;
    }

    int size() const noexcept { return ListImpl::size(); }
    bool empty() const noexcept { return ListImpl::empty(); }

    iterator begin() noexcept { return iterator(ListImpl::begin()); }
    iterator end() noexcept { return iterator(ListImpl::end()); }
    const_iterator begin() const noexcept { return const_iterator(ListImpl::begin()); }
    const_iterator end() const noexcept { return const_iterator(ListImpl::end()); }
    const_iterator cbegin() const noexcept { return begin(); }
    const_iterator cend() const noexcept { return end(); }
    reverse_iterator rbegin() noexcept { return reverse_iterator(end()); }
    reverse_iterator rend() noexcept { return reverse_iterator(begin()); }
    const_reverse_iterator rbegin() const noexcept { return const_reverse_iterator(end()); }
    const_reverse_iterator rend() const noexcept { return const_reverse_iterator(begin()); }

    /// The list must not be empty.
    T& front() { return *begin(); }
    const T& front() const { return *begin(); }
    T& back() { return *std::prev(end()); }
    const T& back() const { return *std::prev(end()); }

    template <class... Args>
    iterator emplace(const_iterator pos, Args&&... args) {
        Node* node = insertAndReturnNode(mutableNode(pos));
        ::new (static_cast<void*>(element(node))) T(std::forward<Args>(args)...);
        return iterator(node);
    }
    template <class... Args>
    T& emplace_back(Args&&... args) {
        return *emplace(end(), std::forward<Args>(args)...);
    }
    template <class... Args>
    T& emplace_front(Args&&... args) {
        return *emplace(begin(), std::forward<Args>(args)...);
    }
    void push_back(const T& value) { emplace_back(value); }
    void push_back(T&& value) { emplace_back(std::move(value)); }
    void push_front(const T& value) { emplace_front(value); }
    void push_front(T&& value) { emplace_front(std::move(value)); }
    /// The list must not be empty.
    void pop_front() { eraseFront(); }
    void pop_back() { eraseBack(); }

    iterator insert(const_iterator pos, const T& value) { return emplace(pos, value); }
    iterator insert(const_iterator pos, T&& value) { return emplace(pos, std::move(value)); }
    iterator insert(const_iterator pos, int n, const T& value) {
        iterator first(mutableNode(pos));
        for (int i = 0; i < n; ++i) {
            const iterator added = emplace(pos, value);
            if (i == 0)
                first = added;
        }
        return first;
    }
    /// The new nodes are made first and then spliced in, so the range may
    /// come from this list.
    template <std::input_iterator It>
    iterator insert(const_iterator pos, It first, It last) {
        list items(first, last);
        const iterator result = items.empty() ? iterator(mutableNode(pos)) : items.begin();
        splice(pos, items);
        return result;
    }

    iterator erase(const_iterator pos) { return iterator(ListImpl::erase(mutableNode(pos))); }
    iterator erase(const_iterator first, const_iterator last) {
        return iterator(ListImpl::erase(mutableNode(first), mutableNode(last)));
    }
    void clear() noexcept { ListImpl::clear(); }

    /// Erases every element equal to `value`.
    void remove(const T& value) {
        const T copy(value); // `value` may be one of the elements erased
        ListImpl::erase(&copy, &findEqual);
    }
    /// Erases every element for which `predicate` holds.
    template <class Predicate>
    void remove_if(Predicate predicate) {
        ListImpl::erase(&predicate, &findMatch<Predicate>);
    }
    /// Of each run of equal adjacent elements, keeps the last.
    void unique() { ListImpl::unique(&equalElements); }

    /// Stable sort with `less` (std::less by default).
    template <class Compare = std::less<>>
    void sort(Compare less = Compare()) {
        ListImpl::sort(&less, &mergeNodes<Compare>);
    }
    /// Merges the sorted `other` into this sorted list; `other` ends empty.
    template <class Compare = std::less<>>
    void merge(list& other, Compare less = Compare()) {
        if (&other != this)
            ListImpl::merge(other, &less, &mergeNodes<Compare>);
    }

    void splice(const_iterator pos, list& other) { ListImpl::splice(mutableNode(pos), other); }
    void splice(const_iterator pos, list& other, const_iterator node) {
        ListImpl::splice(mutableNode(pos), other, mutableNode(node));
    }
    void splice(const_iterator pos, list& other, const_iterator first, const_iterator last) {
        ListImpl::splice(mutableNode(pos), other, mutableNode(first), mutableNode(last));
    }
    void reverse() noexcept { ListImpl::reverse(); }
    void swap(list& other) noexcept { ListImpl::swap(other); }

    void resize(int n, const T& value = T()) {
        while (size() > n)
            pop_back();
        if (size() < n)
            insert(end(), n - size(), value);
    }
    template <std::input_iterator It>
    void assign(It first, It last) {
        const list items(first, last);
        copy(items);
    }
    void assign(int n, const T& value) {
        const list items(n, value);
        copy(items);
    }
    void assign(std::initializer_list<T> items) { assign(items.begin(), items.end()); }

    friend bool operator==(const list& a, const list& b) {
        return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin());
    }
    friend auto operator<=>(const list& a, const list& b) {
        return std::lexicographical_compare_three_way(a.begin(), a.end(), b.begin(), b.end());
    }
    friend void swap(list& a, list& b) noexcept { a.swap(b); }

private:
    static Node* mutableNode(const_iterator it) { return const_cast<Node*>(it.node_); }

    static void copyElement(void* dst, const void* src) {
        ::new (dst) T(*static_cast<const T*>(src));
    }
    static void destroyElement(void* p) { std::destroy_at(static_cast<T*>(p)); }

    static bool equalElements(const void* a, const void* b) {
        return *static_cast<const T*>(a) == *static_cast<const T*>(b);
    }
    static Node* findEqual(const Node* from, const Node* listEnd, const void* value) {
        while (from != listEnd && !(*element(from) == *static_cast<const T*>(value)))
            from = from->next;
        return const_cast<Node*>(from);
    }
    template <class Predicate>
    static Node* findMatch(const Node* from, const Node* listEnd, const void* predicate) {
        auto& match = *const_cast<Predicate*>(static_cast<const Predicate*>(predicate));
        while (from != listEnd && !match(*element(from)))
            from = from->next;
        return const_cast<Node*>(from);
    }
    // Moves each node of src before the first node of dst that it orders
    // strictly before, so equal elements of dst stay first: a stable merge.
    template <class Compare>
    static void mergeNodes(ListImpl& dst, ListImpl& src, const void* context) {
        const Compare& less = *static_cast<const Compare*>(context);
        Node* d = dst.begin();
        Node* s = src.begin();
        while (d != dst.end() && s != src.end()) {
            if (less(*element(s), *element(d))) {
                Node* next = s->next;
                dst.splice(d, src, s);
                s = next;
            } else {
                d = d->next;
            }
        }
        dst.splice(dst.end(), src);
    }

    static constexpr TypeUtil kTypeUtil = {
        kOffset + static_cast<std::uint32_t>(sizeof(T)),
        kOffset,
        &copyElement,
        std::is_trivially_destructible_v<T> ? nullptr : &destroyElement,
    };
};

} // namespace kx
