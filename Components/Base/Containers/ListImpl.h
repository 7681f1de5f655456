// kx::ListImpl: the type-erased core of kx::list<T>.
//
// A circular doubly linked list whose sentinel is the list object itself:
// its first two fields are the links of the end node, so an empty list
// points at itself, begin() is the first node and end() is the list. A list
// object therefore cannot be moved by copying its bytes; swap() re-points
// the nodes. Nodes come from malloc and free; the typed shell describes
// their size and where the element sits in them (TypeUtil).
//
// sort() is a stable bottom-up merge sort with 32 bins of power-of-two
// sizes; the comparison lives in the merge function the shell passes.
// unique() keeps the last element of every run of equal ones.
//
// No operation reports errors; emptiness for eraseFront/eraseBack and
// positions inside the list are the caller's to keep. Not thread-safe.
#pragma once

#include <Base/Utility/Api.h>

#include <cstdint>

namespace kx {

class BASE_API ListImpl {
public:
    struct TypeUtil {
        std::uint32_t nodeSize;      ///< bytes of a node, links included
        std::uint32_t elementOffset; ///< where the element begins in a node
        void (*copy)(void* dst, const void* src);
        void (*destruct)(void* element); ///< null when trivial
    };

    struct Node {
        Node* next;
        Node* prev;
    };

    /// Finds the first match in [from, listEnd), or listEnd.
    using FindFrom = Node* (*)(const Node* from, const Node* listEnd, const void* value);
    /// Moves every node of `src` into `dst` in order, equal elements of
    /// `dst` staying before those of `src`.
    using Merge = void (*)(ListImpl& dst, ListImpl& src, const void* context);

    explicit ListImpl(const TypeUtil* typeUtil);
    ListImpl(const ListImpl& other);
    ListImpl& operator=(const ListImpl&) = delete;
    ~ListImpl();

    void initialize(const TypeUtil* typeUtil);
    void initialize(const ListImpl& other);
    void initialize_inline(const TypeUtil* typeUtil);

    Node* begin() { return head_.next; }
    const Node* begin() const { return head_.next; }
    Node* end() { return &head_; }
    const Node* end() const { return &head_; }
    bool empty() const { return size_ == 0; }
    int size() const { return size_; }
    int& size() { return size_; }
    /// The size field, for shells that relink nodes themselves.
    int& getReferenceToSize() { return size_; }

    /// A new node before `pos`, its element unconstructed.
    Node* insertAndReturnNode(Node* pos);
    /// New nodes whose elements `ctor` constructs (when not null).
    Node* append(void (*ctor)(void*));
    Node* prepend(void (*ctor)(void*));
    Node* insert(Node* pos, void (*ctor)(void*));
    /// New nodes holding copies of `value`.
    Node* append(const void* value);
    Node* prepend(const void* value);
    Node* insert(Node* pos, const void* value);
    Node* append(const void* value, void (*copy)(void*, const void*));
    Node* prepend(const void* value, void (*copy)(void*, const void*));
    Node* insert(Node* pos, const void* value, void (*copy)(void*, const void*));
    /// For lists of pointers: new nodes holding `p` itself.
    Node* appendAndAssignPtr(const void* p);
    Node* prependAndAssignPtr(const void* p);
    Node* insertAndAssignPtr(Node* pos, const void* p);
    /// New nodes; returns their unconstructed elements.
    void* appendAndReturnPtr();
    void* prependAndReturnPtr();

    /// Copies of `other`'s elements at the back or the front.
    void append(const ListImpl& other);
    void prepend(const ListImpl& other);
    /// Copies of the elements of [first, last) before `pos`, in order.
    void insert(Node* pos, const Node* first, const Node* last);
    /// The same from an array: elements at first, first + stride... until last.
    void insert(Node* pos, const void* first, const void* last, int stride,
                void (*copy)(void*, const void*));
    /// Replaces the elements with copies of the source, reusing the nodes.
    void assign(const Node* first, const Node* last);
    void assign(const void* first, const void* last, int stride, void (*copy)(void*, const void*));
    void copy(const ListImpl& other);
    void clear();

    /// Unlinks, destroys and frees `node`; returns its successor.
    Node* erase(Node* node);
    Node* erase_inline(Node* node);
    /// Erases [first, last); returns last.
    Node* erase(Node* first, Node* last);
    /// Erases every element that `find` matches with `value`.
    void erase(const void* value, FindFrom find);
    void eraseFront();
    void eraseBack();
    /// Unlinks `node` without destroying or freeing it; returns its successor.
    Node* unlink(Node* node);
    Node* find(const void* value, Node* (*find)(const ListImpl& list, const void* value)) const;

    void merge(ListImpl& other, const void* context, Merge merge);
    void sort(const void* context, Merge merge);

    /// Moves all of `other` before `pos` in constant time.
    void splice(Node* pos, ListImpl& other);
    /// Moves `node` of `other` before `pos`.
    void splice(Node* pos, ListImpl& other, Node* node);
    /// Moves [first, last) of `other` before `pos`; counts the nodes moved.
    void splice(Node* pos, ListImpl& other, Node* first, Node* last);
    /// Relink before `pos` without touching any size.
    static void sTransferNode(Node* pos, Node* node);
    static void sTransferNodes(Node* pos, Node* first, Node* last);

    void reverse();
    /// Exchanges the elements; each list keeps its own TypeUtil.
    void swap(ListImpl& other);
    /// Erases the earlier of each adjacent pair that `equal` finds equal.
    void unique(bool (*equal)(const void* a, const void* b));

protected:
    void initializeListState();
    Node* allocateNode();
    void freeNode(Node* node);
    void* elementPtrOfNode(const Node* node) const {
        return reinterpret_cast<char*>(const_cast<Node*>(node)) + typeUtil_->elementOffset;
    }
    void destructNode(Node* node);
    Node* append();
    Node* prepend();
    void append(Node* node);
    void prepend(Node* node);
    void insert(Node* pos, Node* node);
    Node* insert(Node* pos);
    void freeStorage();

    Node head_; // first and last: the end node
    int size_;
    const TypeUtil* typeUtil_;

private:
    ListImpl();
    static Node* linkBefore(Node* pos, Node* node);
};

} // namespace kx
