#include <Base/Signal/Signal.h>

#include <memory>

namespace kxRTB {

// A client-side item finds its client from its owner, the address of the
// client's first member.
static_assert(std::is_standard_layout_v<SignalClientBase>,
              "a client's head field must share the client's address");

using Item = SignalBase::connectionItem;

namespace {

SignalClientBase& clientOwning(Item** owner) {
    return *reinterpret_cast<SignalClientBase*>(owner);
}

} // namespace

FunctionBase::~FunctionBase() = default;

bool FunctionBase::isGlobalFunction(const void*) const {
    return false;
}

bool FunctionBase::isInstance(const void*) const {
    return false;
}

FunctionVoid::~FunctionVoid() = default;

SignalBase::connectionItem::connectionItem(FunctionBase* callback, connectionItem** owner)
    : callback_(callback), owner_(owner) {
    linkFront();
}

SignalBase::connectionItem::~connectionItem() {
    delete callback_;
}

void SignalBase::connectionItem::linkFront() {
    next_ = *owner_;
    if (next_)
        next_->prev_ = this;
    *owner_ = this;
    if (!callback_)
        ++clientOwning(owner_).count_;
}

void SignalBase::connectionItem::unlink() {
    if (prev_)
        prev_->next_ = next_;
    else
        *owner_ = next_;
    if (next_)
        next_->prev_ = prev_;
    if (!callback_)
        --clientOwning(owner_).count_;
    next_ = nullptr;
    prev_ = nullptr;
    owner_ = nullptr;
}

void SignalBase::connectionItem::destroy() {
    if (partner_) {
        connectionItem* partner = partner_;
        partner->partner_ = nullptr;
        partner->destroy();
        partner_ = nullptr;
    }
    if (lockCount_ > 0) {
        destroyPending_ = true;
        return;
    }
    if (owner_)
        unlink();
    delete this;
}

SignalBase::~SignalBase() {
    // Each item leaves the list before it is destroyed, so an emission that
    // stands on it finds no next item, and a callback's destructor sees a
    // consistent list.
    while (connectionItem* item = head_) {
        item->unlink();
        item->destroy();
    }
}

Item* SignalBase::addCallback(FunctionBase* callback, SignalClient& client) const {
    Item* item = addCallback(callback);
    if (item) {
        SignalClientBase& base = client;
        Item* twin;
        try {
            twin = new Item(nullptr, &base.head_);
        } catch (...) {
            item->destroy();
            throw;
        }
        item->partner_ = twin;
        twin->partner_ = item;
    }
    return item;
}

Item* SignalBase::addCallback(FunctionBase* callback) const {
    if (!callback)
        return nullptr;
    // Allocation comes before the arguments: a failed one leaves the
    // callback in `owned`, which deletes it.
    std::unique_ptr<FunctionBase> owned(callback);
    return new Item(owned.release(), &head_);
}

Item* SignalBase::find(const Item* connection) const {
    for (Item* item = head_; item; item = item->next_) {
        if (item == connection)
            return item;
    }
    return nullptr;
}

void SignalBase::disconnect(Item* connection) const {
    if (Item* item = find(connection))
        item->destroy();
}

void SignalBase::disconnectInstance(const void* object) const {
    for (Item* item = head_; item;) {
        // Locked, the item stays in the list while its callback is asked and
        // while it is destroyed, so its next link stays good to read.
        item->lock();
        if (item->callback_->isInstance(object))
            item->destroy();
        Item* next = item->next_;
        item->unlock();
        item = next;
    }
}

void* SignalBase::findInstance(const void* object) const {
    for (Item* item = head_; item; item = item->next_) {
        if (!item->destroyPending_ && item->callback_->isInstance(object))
            return item;
    }
    return nullptr;
}

Item* SignalBase::findGlobalCallback(const void* function) const {
    for (Item* item = head_; item; item = item->next_) {
        if (item->callback_->isGlobalFunction(function))
            return item;
    }
    return nullptr;
}

void SignalBase::block() {
    ++blockCount_;
}

void SignalBase::unblock() {
    --blockCount_;
}

bool SignalBase::isBlocked() const {
    return blockCount_ > 0;
}

void SignalBase::block(Item* connection) const {
    if (Item* item = find(connection))
        item->block();
}

void SignalBase::unblock(Item* connection) const {
    if (Item* item = find(connection))
        item->unblock();
}

bool SignalBase::isBlocked(Item* connection) const {
    const Item* item = find(connection);
    return !item || item->isBlocked();
}

bool SignalBase::isConnected() const {
    return head_ != nullptr;
}

int SignalBase::numConnections() const {
    int n = 0;
    for (const Item* item = head_; item; item = item->next_)
        ++n;
    return n;
}

SignalClient::~SignalClient() = default;

SignalClientBase::~SignalClientBase() {
    disconnectAll();
}

void SignalClientBase::disconnectAll() {
    // Client-side items are never locked: each destroy() frees the head.
    while (head_)
        head_->destroy();
}

} // namespace kxRTB
