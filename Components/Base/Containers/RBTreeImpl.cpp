#include <Base/Containers/RBTreeImpl.h>

#include <utility>

namespace kx {
namespace {

using Node = RBTreeImpl::Node;

constexpr int kNodesPerBlock = 10;

bool isRed(const Node* node) {
    return node && node->color == RBTreeImpl::kRed;
}

// The header is the one red node whose parent's parent is itself (or whose
// parent is null: an empty tree).
bool isHeader(const Node* node) {
    return node->color == RBTreeImpl::kRed && (!node->parent || node->parent->parent == node);
}

} // namespace

Node* Node::next() {
    return const_cast<Node*>(std::as_const(*this).next());
}

const Node* Node::next() const {
    const Node* x = this;
    if (x->right)
        return RBTreeImpl::sFindLeftMost(x->right);
    const Node* y = x->parent;
    while (x == y->right) {
        x = y;
        y = y->parent;
    }
    // Climbing from the rightmost node ends at the header, whose right child
    // is that node again: then the header is the successor.
    return x->right != y ? y : x;
}

Node* Node::prev() {
    return const_cast<Node*>(std::as_const(*this).prev());
}

const Node* Node::prev() const {
    if (isHeader(this))
        return right;
    if (left)
        return RBTreeImpl::sFindRightMost(left);
    const Node* x = this;
    const Node* y = x->parent;
    while (x == y->left) {
        x = y;
        y = y->parent;
    }
    return y;
}

void Node::swapHeaders(Node& other) {
    std::swap(left, other.left);
    std::swap(right, other.right);
    std::swap(parent, other.parent);
    for (Node* header : {this, &other}) {
        if (!header->parent)
            header->left = header->right = header;
    }
}

RBTreeImpl::RBTreeImpl(const TypeUtil* typeUtil)
    : allocator_(static_cast<std::uint64_t>(typeUtil->nodeSize), kNodesPerBlock) {
    initialize(typeUtil);
}

RBTreeImpl::RBTreeImpl(const RBTreeImpl& other)
    : allocator_(static_cast<std::uint64_t>(other.typeUtil_->nodeSize), kNodesPerBlock) {
    initialize(other);
}

RBTreeImpl::~RBTreeImpl() {
    // Nodes with nothing to destroy go back with the allocator's blocks.
    if (typeUtil_->destructKey || typeUtil_->destructValue)
        destructAllNodes();
}

void RBTreeImpl::initialize(const TypeUtil* typeUtil) {
    typeUtil_ = typeUtil;
    initializeTreeState();
}

void RBTreeImpl::initialize(const RBTreeImpl& other) {
    initialize(other.typeUtil_);
    copy(other);
}

void RBTreeImpl::initializeTreeState() {
    header_.left = header_.right = &header_;
    header_.parent = nullptr;
    header_.color = kRed;
    size_ = 0;
}

Node* RBTreeImpl::allocateNode() {
    return static_cast<Node*>(allocator_.alloc());
}

void RBTreeImpl::freeNode(Node* node) {
    allocator_.free(node);
}

void RBTreeImpl::destructAllNodes() {
    if (size_ >= 1)
        typeUtil_->destroySubtree(this, root());
}

void RBTreeImpl::clear() {
    destructAllNodes();
    initializeTreeState();
}

void RBTreeImpl::copy(const RBTreeImpl& other) {
    if (&other == this)
        return;
    if (size_ != 0)
        clear();
    const bool hasValue = other.typeUtil_->copyValue != nullptr;
    for (const Node* node = other.begin(); node != other.end(); node = node->next())
        insertNodeNonUnique(other.keyPtrOfNode(node),
                            hasValue ? other.valuePtrOfNode(node) : nullptr);
}

Node* RBTreeImpl::lowerBound(const void* key) const {
    return typeUtil_->lowerBound(this, key);
}

Node* RBTreeImpl::upperBound(const void* key) const {
    return typeUtil_->upperBound(this, key);
}

RBTreeImpl::Range RBTreeImpl::equalRange(const void* key) const {
    return {lowerBound(key), upperBound(key)};
}

Node* RBTreeImpl::findNode(const void* key) const {
    Node* node = lowerBound(key);
    if (node == end() || keyCompare(key, keyPtrOfNode(node)))
        return const_cast<Node*>(end());
    return node;
}

int RBTreeImpl::count(const void* key) const {
    const Range range = equalRange(key);
    return sDistanceBetween(range.first, range.second);
}

void* RBTreeImpl::getValuePtr(const void* key) {
    Node* node = lowerBound(key);
    if (node == end() || keyCompare(key, keyPtrOfNode(node)))
        node = insertNodeUnique(node, key);
    return valuePtrOfNode(node);
}

Node* RBTreeImpl::insertNode(Node* x, Node* parent, const void* key, const void* value,
                             Node* rightOf) {
    Node* node = allocateNode();
    typeUtil_->copyKey(keyPtrOfNode(node), key);
    if (value) {
        if (typeUtil_->copyValue)
            typeUtil_->copyValue(valuePtrOfNode(node), value);
    } else if (typeUtil_->constructValue) {
        typeUtil_->constructValue(valuePtrOfNode(node));
    }
    const bool left = !rightOf && (parent == end() || x || keyCompare(key, keyPtrOfNode(parent)));
    if (left) {
        parent->left = node;
        if (parent == end()) {
            header_.parent = node;
            header_.right = node;
        } else if (parent == header_.left) {
            header_.left = node;
        }
    } else {
        parent->right = node;
        if (parent == header_.right)
            header_.right = node;
    }
    node->parent = parent;
    node->left = nullptr;
    node->right = nullptr;
    rebalance(node);
    ++size_;
    return node;
}

Node* RBTreeImpl::insertNodeUnique(const void* key) {
    return insertNodeUnique(key, nullptr);
}

Node* RBTreeImpl::insertNodeUnique(const void* key, const void* value) {
    Node* parent = nullptr;
    const bool left = typeUtil_->findInsertPosition(this, key, &parent);
    Node* before = parent;
    if (left) {
        if (parent == begin())
            return insertNode(nullptr, parent, key, value, nullptr);
        before = parent->prev();
    }
    if (keyCompare(keyPtrOfNode(before), key))
        return insertNode(nullptr, parent, key, value, nullptr);
    return before;
}

Node* RBTreeImpl::insertNodeUnique(Node* hint, const void* key) {
    return insertNodeUnique(hint, key, nullptr);
}

// "Left of n" forces the left side by passing n as x; "right of h" passes h
// as rightOf.
Node* RBTreeImpl::insertNodeUnique(Node* hint, const void* key, const void* value) {
    Node* h = hint;
    if (h == begin() && size_ > 0) {
        if (keyCompare(key, keyPtrOfNode(h)))
            return insertNode(h, h, key, value, nullptr);
        if (!keyCompare(keyPtrOfNode(h), key))
            return h;
        Node* n = h->next();
        if (n == end())
            return insertNode(nullptr, h, key, value, h);
        if (keyCompare(key, keyPtrOfNode(n))) {
            if (!h->right)
                return insertNode(nullptr, h, key, value, h);
            return insertNode(n, n, key, value, nullptr);
        }
        return insertNodeUnique(key, value);
    }
    if (h == end()) {
        Node* rightmost = header_.right;
        if (size_ > 0 && keyCompare(keyPtrOfNode(rightmost), key))
            return insertNode(nullptr, rightmost, key, value, rightmost);
        return insertNodeUnique(key, value);
    }
    Node* p = h->prev();
    if (keyCompare(key, keyPtrOfNode(h))) {
        if (keyCompare(keyPtrOfNode(p), key)) {
            if (!p->right)
                return insertNode(nullptr, p, key, value, p);
            return insertNode(h, h, key, value, nullptr);
        }
        return insertNodeUnique(key, value);
    }
    if (!keyCompare(keyPtrOfNode(h), key))
        return h;
    Node* n = h->next();
    if (n == end() || keyCompare(key, keyPtrOfNode(n))) {
        if (!h->right)
            return insertNode(nullptr, h, key, value, h);
        return insertNode(n, n, key, value, nullptr);
    }
    return insertNodeUnique(key, value);
}

Node* RBTreeImpl::insertNodeNonUnique(const void* key) {
    return insertNodeNonUnique(key, nullptr);
}

Node* RBTreeImpl::insertNodeNonUnique(const void* key, const void* value) {
    Node* parent = nullptr;
    typeUtil_->findInsertPosition(this, key, &parent);
    return insertNode(nullptr, parent, key, value, nullptr);
}

Node* RBTreeImpl::insertNodeNonUnique(Node* hint, const void* key) {
    return insertNodeNonUnique(hint, key, nullptr);
}

Node* RBTreeImpl::insertNodeNonUnique(Node* hint, const void* key, const void* value) {
    Node* h = hint;
    if (h == begin()) {
        if (size_ == 0)
            return insertNodeNonUnique(key, value);
        if (!keyCompare(keyPtrOfNode(h), key))
            return insertNode(h, h, key, value, nullptr);
        Node* n = h->next();
        if (n != end() && keyCompare(keyPtrOfNode(n), key))
            return insertNodeNonUnique(key, value);
        if (h->right)
            return insertNode(n, n, key, value, nullptr);
        return insertNode(nullptr, h, key, value, h);
    }
    if (h == end()) {
        Node* rightmost = header_.right;
        // The value stands where the key belongs in this one comparison.
        if (keyCompare(value ? value : key, keyPtrOfNode(rightmost)))
            return insertNodeNonUnique(key, value);
        return insertNode(nullptr, rightmost, key, value, rightmost);
    }
    Node* p = h->prev();
    if (!keyCompare(keyPtrOfNode(h), key) && !keyCompare(key, keyPtrOfNode(p))) {
        if (p->right)
            return insertNode(h, h, key, value, nullptr);
        return insertNode(nullptr, p, key, value, p);
    }
    if (keyCompare(keyPtrOfNode(h), key)) {
        Node* n = h->next();
        if (n == end() || !keyCompare(keyPtrOfNode(n), key)) {
            if (h->right)
                return insertNode(n, n, key, value, nullptr);
            return insertNode(nullptr, h, key, value, h);
        }
    }
    return insertNodeNonUnique(key, value);
}

void RBTreeImpl::rotateLeft(Node* x) {
    Node* y = x->right;
    x->right = y->left;
    if (y->left)
        y->left->parent = x;
    y->parent = x->parent;
    if (x == root())
        header_.parent = y;
    else if (x == x->parent->left)
        x->parent->left = y;
    else
        x->parent->right = y;
    y->left = x;
    x->parent = y;
}

void RBTreeImpl::rotateRight(Node* x) {
    Node* y = x->left;
    x->left = y->right;
    if (y->right)
        y->right->parent = x;
    y->parent = x->parent;
    if (x == root())
        header_.parent = y;
    else if (x == x->parent->right)
        x->parent->right = y;
    else
        x->parent->left = y;
    y->right = x;
    x->parent = y;
}

void RBTreeImpl::rebalance(Node* x) {
    x->color = kRed;
    while (x != root() && x->parent->color == kRed) {
        Node* parent = x->parent;
        Node* grandparent = parent->parent;
        if (parent == grandparent->left) {
            Node* uncle = grandparent->right;
            if (isRed(uncle)) {
                parent->color = kBlack;
                uncle->color = kBlack;
                grandparent->color = kRed;
                x = grandparent;
                continue;
            }
            if (x == parent->right) {
                x = parent;
                rotateLeft(x);
                parent = x->parent;
            }
            parent->color = kBlack;
            grandparent->color = kRed;
            rotateRight(grandparent);
        } else {
            Node* uncle = grandparent->left;
            if (isRed(uncle)) {
                parent->color = kBlack;
                uncle->color = kBlack;
                grandparent->color = kRed;
                x = grandparent;
                continue;
            }
            if (x == parent->left) {
                x = parent;
                rotateRight(x);
                parent = x->parent;
            }
            parent->color = kBlack;
            grandparent->color = kRed;
            rotateLeft(grandparent);
        }
    }
    root()->color = kBlack;
}

void RBTreeImpl::unlinkAndRebalance(Node* z) {
    Node* y = z; // the node that leaves its place
    Node* x = nullptr;
    Node* xParent = nullptr;
    if (!y->left) {
        x = y->right;
    } else if (!y->right) {
        x = y->left;
    } else {
        y = sFindLeftMost(y->right); // z's successor takes z's place
        x = y->right;
    }
    if (y != z) {
        z->left->parent = y;
        y->left = z->left;
        if (y != z->right) {
            xParent = y->parent;
            if (x)
                x->parent = y->parent;
            y->parent->left = x;
            y->right = z->right;
            z->right->parent = y;
        } else {
            xParent = y;
        }
        if (root() == z)
            header_.parent = y;
        else if (z->parent->left == z)
            z->parent->left = y;
        else
            z->parent->right = y;
        y->parent = z->parent;
        std::swap(y->color, z->color);
        y = z; // z is the node taken out
    } else {
        xParent = y->parent;
        if (x)
            x->parent = y->parent;
        if (root() == z)
            header_.parent = x;
        else if (z->parent->left == z)
            z->parent->left = x;
        else
            z->parent->right = x;
        if (header_.left == z)
            header_.left = z->right ? sFindLeftMost(x) : z->parent;
        if (header_.right == z)
            header_.right = z->left ? sFindRightMost(x) : z->parent;
    }
    if (y->color == kRed)
        return;
    // A black node left: push the missing black up or fix it by rotation.
    while (x != root() && !isRed(x)) {
        if (x == xParent->left) {
            Node* w = xParent->right;
            if (isRed(w)) {
                w->color = kBlack;
                xParent->color = kRed;
                rotateLeft(xParent);
                w = xParent->right;
            }
            if (!isRed(w->left) && !isRed(w->right)) {
                w->color = kRed;
                x = xParent;
                xParent = xParent->parent;
                continue;
            }
            if (!isRed(w->right)) {
                w->left->color = kBlack;
                w->color = kRed;
                rotateRight(w);
                w = xParent->right;
            }
            w->color = xParent->color;
            xParent->color = kBlack;
            if (w->right)
                w->right->color = kBlack;
            rotateLeft(xParent);
            break;
        }
        Node* w = xParent->left;
        if (isRed(w)) {
            w->color = kBlack;
            xParent->color = kRed;
            rotateRight(xParent);
            w = xParent->left;
        }
        if (!isRed(w->right) && !isRed(w->left)) {
            w->color = kRed;
            x = xParent;
            xParent = xParent->parent;
            continue;
        }
        if (!isRed(w->left)) {
            w->right->color = kBlack;
            w->color = kRed;
            rotateLeft(w);
            w = xParent->left;
        }
        w->color = xParent->color;
        xParent->color = kBlack;
        if (w->left)
            w->left->color = kBlack;
        rotateRight(xParent);
        break;
    }
    if (x)
        x->color = kBlack;
}

void RBTreeImpl::eraseNode(Node* node) {
    unlinkAndRebalance(node);
    if (typeUtil_->destructKey)
        typeUtil_->destructKey(keyPtrOfNode(node));
    if (typeUtil_->destructValue)
        typeUtil_->destructValue(valuePtrOfNode(node));
    freeNode(node);
    --size_;
}

int RBTreeImpl::eraseNodesMatching(const void* key) {
    const Range range = equalRange(key);
    const int n = sDistanceBetween(range.first, range.second);
    eraseNodesRange(range.first, range.second);
    return n;
}

void RBTreeImpl::eraseNodesRange(Node* first, Node* last) {
    if (first == begin() && last == end()) {
        clear();
        return;
    }
    while (first != last) {
        Node* next = first->next();
        eraseNode(first);
        first = next;
    }
}

int RBTreeImpl::sDistanceBetween(const Node* first, const Node* last) {
    int n = 0;
    for (; first != last; first = first->next())
        ++n;
    return n;
}

Node* RBTreeImpl::sFindLeftMost(const Node* node) {
    while (node->left)
        node = node->left;
    return const_cast<Node*>(node);
}

Node* RBTreeImpl::sFindRightMost(const Node* node) {
    while (node->right)
        node = node->right;
    return const_cast<Node*>(node);
}

void RBTreeImpl::swap(RBTreeImpl& other) {
    header_.swapHeaders(other.header_);
    std::swap(size_, other.size_);
    std::swap(typeUtil_, other.typeUtil_);
    allocator_.swap(other.allocator_);
    for (RBTreeImpl* tree : {this, &other}) {
        if (tree->root())
            tree->root()->parent = &tree->header_;
    }
}

} // namespace kx
