#include <Base/Containers/ListImpl.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace kx {
namespace {

constexpr int kSortBins = 32;

} // namespace

ListImpl::ListImpl() : typeUtil_(nullptr) {
    initializeListState();
}

ListImpl::ListImpl(const TypeUtil* typeUtil) {
    initialize(typeUtil);
}

ListImpl::ListImpl(const ListImpl& other) {
    initialize(other);
}

ListImpl::~ListImpl() {
    freeStorage();
}

void ListImpl::initializeListState() {
    head_.next = &head_;
    head_.prev = &head_;
    size_ = 0;
}

void ListImpl::initialize(const TypeUtil* typeUtil) {
    typeUtil_ = typeUtil;
    initializeListState();
}

void ListImpl::initialize_inline(const TypeUtil* typeUtil) {
    initialize(typeUtil);
}

void ListImpl::initialize(const ListImpl& other) {
    initialize(other.typeUtil_);
    append(other);
}

void ListImpl::freeStorage() {
    if (!empty())
        clear();
}

ListImpl::Node* ListImpl::allocateNode() {
    return static_cast<Node*>(std::malloc(typeUtil_->nodeSize));
}

void ListImpl::freeNode(Node* node) {
    std::free(node);
}

void ListImpl::destructNode(Node* node) {
    if (typeUtil_->destruct)
        typeUtil_->destruct(elementPtrOfNode(node));
}

ListImpl::Node* ListImpl::linkBefore(Node* pos, Node* node) {
    node->next = pos;
    node->prev = pos->prev;
    pos->prev->next = node;
    pos->prev = node;
    return node;
}

void ListImpl::insert(Node* pos, Node* node) {
    linkBefore(pos, node);
    ++size_;
}

void ListImpl::append(Node* node) {
    insert(end(), node);
}

void ListImpl::prepend(Node* node) {
    insert(begin(), node);
}

ListImpl::Node* ListImpl::insert(Node* pos) {
    Node* node = allocateNode();
    insert(pos, node);
    return node;
}

ListImpl::Node* ListImpl::append() {
    return insert(end());
}

ListImpl::Node* ListImpl::prepend() {
    return insert(begin());
}

ListImpl::Node* ListImpl::insertAndReturnNode(Node* pos) {
    return insert(pos);
}

ListImpl::Node* ListImpl::insert(Node* pos, void (*ctor)(void*)) {
    Node* node = insert(pos);
    if (ctor)
        ctor(elementPtrOfNode(node));
    return node;
}

ListImpl::Node* ListImpl::append(void (*ctor)(void*)) {
    return insert(end(), ctor);
}

ListImpl::Node* ListImpl::prepend(void (*ctor)(void*)) {
    return insert(begin(), ctor);
}

ListImpl::Node* ListImpl::insert(Node* pos, const void* value, void (*copy)(void*, const void*)) {
    Node* node = insert(pos);
    copy(elementPtrOfNode(node), value);
    return node;
}

ListImpl::Node* ListImpl::insert(Node* pos, const void* value) {
    return insert(pos, value, typeUtil_->copy);
}

ListImpl::Node* ListImpl::append(const void* value) {
    return insert(end(), value);
}

ListImpl::Node* ListImpl::prepend(const void* value) {
    return insert(begin(), value);
}

ListImpl::Node* ListImpl::append(const void* value, void (*copy)(void*, const void*)) {
    return insert(end(), value, copy);
}

ListImpl::Node* ListImpl::prepend(const void* value, void (*copy)(void*, const void*)) {
    return insert(begin(), value, copy);
}

ListImpl::Node* ListImpl::insertAndAssignPtr(Node* pos, const void* p) {
    Node* node = insert(pos);
    std::memcpy(elementPtrOfNode(node), &p, sizeof p);
    return node;
}

ListImpl::Node* ListImpl::appendAndAssignPtr(const void* p) {
    return insertAndAssignPtr(end(), p);
}

ListImpl::Node* ListImpl::prependAndAssignPtr(const void* p) {
    return insertAndAssignPtr(begin(), p);
}

void* ListImpl::appendAndReturnPtr() {
    return elementPtrOfNode(append());
}

void* ListImpl::prependAndReturnPtr() {
    return elementPtrOfNode(prepend());
}

void ListImpl::append(const ListImpl& other) {
    if (&other == this) {
        // Walking this list while appending to it would never end.
        ListImpl copy(other);
        splice(end(), copy);
        return;
    }
    insert(end(), other.begin(), other.end());
}

void ListImpl::prepend(const ListImpl& other) {
    insert(begin(), other.begin(), other.end());
}

void ListImpl::insert(Node* pos, const Node* first, const Node* last) {
    for (const Node* n = first; n != last; n = n->next)
        insert(pos, elementPtrOfNode(n));
}

void ListImpl::insert(Node* pos, const void* first, const void* last, int stride,
                      void (*copy)(void*, const void*)) {
    for (const char* p = static_cast<const char*>(first); p != last; p += stride)
        insert(pos, p, copy);
}

// Both assignments walk the old nodes and the source together: each old
// element is replaced in its node, surplus old nodes are freed, and new
// nodes are made only for what the old ones cannot hold.
void ListImpl::assign(const Node* first, const Node* last) {
    Node* node = begin();
    int count = 0;
    for (const Node* source = first; source != last; source = source->next, ++count) {
        if (node == end()) {
            insert(end(), elementPtrOfNode(source));
            continue;
        }
        destructNode(node);
        typeUtil_->copy(elementPtrOfNode(node), elementPtrOfNode(source));
        node = node->next;
    }
    erase(node, end());
    size_ = count;
}

void ListImpl::assign(const void* first, const void* last, int stride,
                      void (*copy)(void*, const void*)) {
    Node* node = begin();
    int count = 0;
    for (const char* p = static_cast<const char*>(first); p != last; p += stride, ++count) {
        if (node == end()) {
            insert(end(), p, copy);
            continue;
        }
        destructNode(node);
        copy(elementPtrOfNode(node), p);
        node = node->next;
    }
    erase(node, end());
    size_ = count;
}

void ListImpl::copy(const ListImpl& other) {
    if (&other != this)
        assign(other.begin(), other.end());
}

void ListImpl::clear() {
    for (Node* node = begin(); node != end();) {
        Node* next = node->next;
        destructNode(node);
        freeNode(node);
        node = next;
    }
    initializeListState();
}

ListImpl::Node* ListImpl::unlink(Node* node) {
    Node* next = node->next;
    node->prev->next = next;
    next->prev = node->prev;
    --size_;
    return next;
}

ListImpl::Node* ListImpl::erase(Node* node) {
    Node* next = unlink(node);
    destructNode(node);
    freeNode(node);
    return next;
}

ListImpl::Node* ListImpl::erase_inline(Node* node) {
    return erase(node);
}

ListImpl::Node* ListImpl::erase(Node* first, Node* last) {
    if (first == begin() && last == end()) {
        clear();
        return last;
    }
    Node* before = first->prev;
    int count = 0;
    for (Node* node = first; node != last; ++count) {
        Node* next = node->next;
        destructNode(node);
        freeNode(node);
        node = next;
    }
    before->next = last;
    last->prev = before;
    size_ -= count;
    return last;
}

void ListImpl::erase(const void* value, FindFrom find) {
    for (Node* node = find(begin(), end(), value); node != end(); node = find(node, end(), value))
        node = erase(node);
}

void ListImpl::eraseFront() {
    erase(begin());
}

void ListImpl::eraseBack() {
    erase(head_.prev);
}

ListImpl::Node* ListImpl::find(const void* value,
                               Node* (*find)(const ListImpl& list, const void* value)) const {
    return find(*this, value);
}

void ListImpl::merge(ListImpl& other, const void* context, Merge merge) {
    merge(*this, other, context);
}

void ListImpl::sort(const void* context, Merge merge) {
    if (size_ < 2)
        return;
    // Bin i holds a sorted run of up to 2^i nodes; each node taken from the
    // front is carried up through the full bins, merging as it goes.
    ListImpl carry;
    ListImpl bins[kSortBins];
    int used = 1;
    while (!empty()) {
        carry.splice(carry.begin(), *this, begin());
        int bin = 0;
        for (; bin < used && !bins[bin].empty(); ++bin) {
            merge(bins[bin], carry, context);
            carry.swap(bins[bin]);
        }
        if (bin == kSortBins) {
            merge(bins[kSortBins - 1], carry, context);
        } else {
            carry.swap(bins[bin]);
            if (bin == used)
                ++used;
        }
    }
    for (int bin = 1; bin < used; ++bin)
        merge(bins[bin], bins[bin - 1], context);
    swap(bins[used - 1]);
}

void ListImpl::sTransferNode(Node* pos, Node* node) {
    node->prev->next = node->next;
    node->next->prev = node->prev;
    linkBefore(pos, node);
}

void ListImpl::sTransferNodes(Node* pos, Node* first, Node* last) {
    if (first == last || pos == last)
        return;
    Node* lastIncluded = last->prev;
    // Cut [first, last) out.
    first->prev->next = last;
    last->prev = first->prev;
    // Link it in before pos.
    first->prev = pos->prev;
    lastIncluded->next = pos;
    pos->prev->next = first;
    pos->prev = lastIncluded;
}

void ListImpl::splice(Node* pos, ListImpl& other) {
    if (other.empty())
        return;
    const int moved = other.size_;
    sTransferNodes(pos, other.begin(), other.end());
    size_ += moved;
    other.size_ -= moved;
}

void ListImpl::splice(Node* pos, ListImpl& other, Node* node) {
    sTransferNode(pos, node);
    ++size_;
    --other.size_;
}

void ListImpl::splice(Node* pos, ListImpl& other, Node* first, Node* last) {
    if (first == last)
        return;
    sTransferNodes(pos, first, last);
    int count = 0;
    for (Node* node = first; node != pos; node = node->next)
        ++count;
    size_ += count;
    other.size_ -= count;
}

void ListImpl::reverse() {
    Node* node = &head_;
    do {
        std::swap(node->next, node->prev);
        node = node->prev; // the old next
    } while (node != &head_);
}

void ListImpl::swap(ListImpl& other) {
    std::swap(head_, other.head_);
    std::swap(size_, other.size_);
    // Point the end nodes' neighbours at their new sentinel; an empty list
    // points at itself.
    for (ListImpl* list : {this, &other}) {
        if (list->size_ == 0) {
            list->head_.next = list->head_.prev = &list->head_;
        } else {
            list->head_.next->prev = &list->head_;
            list->head_.prev->next = &list->head_;
        }
    }
}

void ListImpl::unique(bool (*equal)(const void* a, const void* b)) {
    if (size_ < 2)
        return;
    for (Node *a = begin(), *b = a->next; b != end(); a = b, b = b->next) {
        if (equal(elementPtrOfNode(a), elementPtrOfNode(b)))
            erase(a);
    }
}

} // namespace kx
