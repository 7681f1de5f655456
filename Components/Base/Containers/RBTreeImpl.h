// kx::RBTreeImpl: the type-erased core of kx::map, kx::set and their
// multi-key forms.
//
// A red-black tree with a header node: the header's left is the leftmost
// node (begin()), its right the rightmost, its parent the root, and the
// header itself is end(). Nodes come from a kx::BlockAllocator, ten per
// block by default. The typed shell describes its nodes and supplies the
// key comparison together with the search loops (lower and upper bound, the
// descent to an insert position, the destruction of a subtree), so that the
// comparison is inlined per key type while balancing stays shared here.
//
// Equal keys of the non-unique inserts go after the ones already present,
// so iteration keeps their insertion order. No operation reports errors.
// Not thread-safe.
#pragma once

#include <Base/Containers/BlockAllocator.h>
#include <Base/Utility/Api.h>

namespace kx {

class BASE_API RBTreeImpl {
public:
    struct BASE_API Node {
        Node* left;
        Node* right;
        Node* parent;
        int color; ///< kRed or kBlack

        Node() = default;
        Node(const Node&) = default;
        Node(Node&&) = default;
        /// Copy and move assignment take exactly these four header fields.
        Node& operator=(const Node&) = default;
        Node& operator=(Node&&) = default;

        /// The in-order successor; the rightmost node's is the header.
        Node* next();
        const Node* next() const;
        /// The in-order predecessor; the header's is the rightmost node.
        Node* prev();
        const Node* prev() const;
        /// Exchanges two trees' headers; an empty tree's header points at
        /// itself again.
        void swapHeaders(Node& other);
    };

    static constexpr int kBlack = 0;
    static constexpr int kRed = 1;

    struct Range {
        Node* first;
        Node* second;
    };

    struct TypeUtil {
        int nodeSize;
        int keyOffset;
        int valueOffset;
        /// Whether key a orders before key b.
        bool (*keyLess)(const void* a, const void* b);
        void (*copyKey)(void* dst, const void* src);
        /// Null when the nodes hold no value.
        void (*copyValue)(void* dst, const void* src);
        /// Default-constructs a value; null when there is nothing to do.
        void (*constructValue)(void* dst);
        void (*destructKey)(void* key);     ///< null when trivial
        void (*destructValue)(void* value); ///< null when trivial
        /// Destroys every node of the subtree under and including `root`.
        void (*destroySubtree)(RBTreeImpl* tree, Node* root);
        /// The first node whose key is not before `key`, or end().
        Node* (*lowerBound)(const RBTreeImpl* tree, const void* key);
        /// The first node whose key is after `key`, or end().
        Node* (*upperBound)(const RBTreeImpl* tree, const void* key);
        /// Descends from the root to where `key` would go: stores the last
        /// node reached in `parent` (the header for an empty tree) and
        /// returns whether the last step went left.
        bool (*findInsertPosition)(const RBTreeImpl* tree, const void* key, Node** parent);
    };

    explicit RBTreeImpl(const TypeUtil* typeUtil);
    RBTreeImpl(const RBTreeImpl& other);
    RBTreeImpl& operator=(const RBTreeImpl&) = delete;
    ~RBTreeImpl();

    void initialize(const TypeUtil* typeUtil);
    void initialize(const RBTreeImpl& other);
    void initializeTreeState();

    Node* begin() { return header_.left; }
    const Node* begin() const { return header_.left; }
    Node* end() { return &header_; }
    const Node* end() const { return &header_; }
    Node* root() const { return header_.parent; }
    int size() const { return size_; }

    Node* allocateNode();
    void freeNode(Node* node);
    void* keyPtrOfNode(const Node* node) const { return at(node, typeUtil_->keyOffset); }
    void* valuePtrOfNode(const Node* node) const { return at(node, typeUtil_->valueOffset); }
    bool keyCompare(const void* a, const void* b) const { return typeUtil_->keyLess(a, b); }

    /// Destroys every node; the tree is empty and keeps its allocator.
    void clear();
    /// Makes this tree a copy of `other` (nothing happens on self).
    void copy(const RBTreeImpl& other);
    void destructAllNodes();

    /// The node with `key`, or end().
    Node* findNode(const void* key) const;
    int count(const void* key) const;
    Node* lowerBound(const void* key) const;
    Node* upperBound(const void* key) const;
    Range equalRange(const void* key) const;
    /// The value stored under `key`, inserted with a default value when
    /// absent (a map's subscript).
    void* getValuePtr(const void* key);

    /// Inserts `key` (with a copy of `value`, or a default value) unless an
    /// equal key is present; returns the node holding the key.
    Node* insertNodeUnique(const void* key);
    Node* insertNodeUnique(const void* key, const void* value);
    /// The same, starting from the neighbourhood of `hint`.
    Node* insertNodeUnique(Node* hint, const void* key);
    Node* insertNodeUnique(Node* hint, const void* key, const void* value);
    /// Inserts after any equal keys; returns the new node.
    Node* insertNodeNonUnique(const void* key);
    Node* insertNodeNonUnique(const void* key, const void* value);
    /// With the end() hint the comparison with the rightmost key takes the
    /// value where the key belongs (kept as the library has always done;
    /// with a null value the key is used).
    Node* insertNodeNonUnique(Node* hint, const void* key);
    Node* insertNodeNonUnique(Node* hint, const void* key, const void* value);
    /// Makes a node for `key` and `value` (null: a default value) and links
    /// it under `parent`: on the left when `parent` is the header, `x` is
    /// not null or the key orders before parent's, unless `rightOf` is not
    /// null. Rebalances and returns the node.
    Node* insertNode(Node* x, Node* parent, const void* key, const void* value, Node* rightOf);

    void eraseNode(Node* node);
    /// Erases every node with `key` and returns how many went.
    int eraseNodesMatching(const void* key);
    void eraseNodesRange(Node* first, Node* last);

    void rebalance(Node* node);
    void rotateLeft(Node* node);
    void rotateRight(Node* node);

    /// next() steps from `first` to `last`.
    static int sDistanceBetween(const Node* first, const Node* last);
    static Node* sFindLeftMost(const Node* node);
    static Node* sFindRightMost(const Node* node);

    void setNumElementsInBlock(int n) { allocator_.setNumElementsInBlock(n); }
    /// Exchanges the trees, descriptors and allocators.
    void swap(RBTreeImpl& other);

protected:
    static void* at(const Node* node, int offset) {
        return reinterpret_cast<char*>(const_cast<Node*>(node)) + offset;
    }

    Node header_;
    int size_;
    const TypeUtil* typeUtil_;
    BlockAllocator allocator_;

private:
    /// Unlinks `z`, restoring the red-black rules and the header.
    void unlinkAndRebalance(Node* z);
};

} // namespace kx
