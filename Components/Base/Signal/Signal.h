// Signals and slots: typed signals that call the callbacks connected to
// them.
//
// A signal keeps a list of connections; each owns one callback object
// derived from FunctionBase. A connection to a member function of an object
// that derives from SignalClient is entered in the object's list too, so
// that destroying either end ends the connection:
//
//     class View : public kxRTB::SignalClient {
//     public:
//         void onChanged(int what);
//     };
//     kxRTB::SignalArg<int> changed;
//     View view;
//     kxRTB::Connection* c = changed.connect(&view, &View::onChanged);
//     changed.emit(3);         // view.onChanged(3)
//     changed.disconnect(c);   // or destroy view, or changed
//
// Emission calls the newest connection first. A callback may disconnect any
// connection (its own included), connect new ones (not called by the
// emission under way), block the signal (the rest of the emission is
// skipped), emit the signal again, or destroy a client or the signal
// itself. A connection destroyed while an emission stands on it is skipped
// by every other walk and freed when that emission leaves it; one destroyed
// further on is unlinked at once and not called.
//
// Connecting, disconnecting and blocking one connection are const, so that
// an object can offer its signals as const references that others connect
// to but cannot emit or block.
//
// Cost: connecting allocates the callback and one list item, plus a twin
// item in the client's list for a member function. Emission allocates
// nothing: one virtual call per callback, newest first. The operations that
// take a Connection first find it in the list (a stale or foreign pointer is
// answered safely, never followed), as do numConnections() and the finds:
// linear in the number of connections, constant for the newest one.
//
// Thread safety: none. A signal, its clients and its connections are used by
// one thread at a time (lock counts count re-entrant emissions, they are not
// mutexes); AsyncSignal (<Base/Signal/AsyncSignal.h>) carries an emission to
// another thread.
#pragma once

#include <Base/Utility/Api.h>

#include <cstdint>
#include <type_traits>
#include <utility>

namespace kxRTB {

class SignalClient;
class SignalClientBase;

/// A callback object, owned by the connection that holds it.
class BASE_API FunctionBase {
public:
    virtual ~FunctionBase();
    /// Whether this callback calls the global function `function`.
    virtual bool isGlobalFunction(const void* function) const;
    /// Whether this callback calls a member function of `object` (named by
    /// its complete object's address for a polymorphic class).
    virtual bool isInstance(const void* object) const;

protected:
    FunctionBase() = default;
    FunctionBase(const FunctionBase&) = default;
    FunctionBase& operator=(const FunctionBase&) = default;
};

/// The callback of a signal without arguments; derive from it for callbacks
/// of your own.
class BASE_API FunctionVoid : public FunctionBase {
public:
    ~FunctionVoid() override;
    virtual void call() = 0;
};

/// The callback of a signal with one argument.
template <class T>
class FunctionArg : public FunctionBase {
public:
    virtual void call(T argument) = 0;
};

/// The callback of a signal with three arguments.
template <class A1, class A2, class A3>
class Function3Args : public FunctionBase {
public:
    virtual void call(A1 first, A2 second, A3 third) = 0;
};

} // namespace kxRTB

namespace kx::detail {

// The callback class of a signal with these arguments.
template <class... Args>
struct SignalCallback;
template <>
struct SignalCallback<> {
    using type = kxRTB::FunctionVoid;
};
template <class T>
struct SignalCallback<T> {
    using type = kxRTB::FunctionArg<T>;
};
template <class A1, class A2, class A3>
struct SignalCallback<A1, A2, A3> {
    using type = kxRTB::Function3Args<A1, A2, A3>;
};

// The address that names an object for FunctionBase::isInstance: the
// complete object's for a polymorphic class, so that a pointer to any of its
// bases finds the same connections.
template <class T>
const void* objectAddress(const T* object) {
    if constexpr (std::is_polymorphic_v<T>)
        return dynamic_cast<const void*>(object);
    else
        return object;
}

} // namespace kx::detail

namespace kxRTB {

/// A callback that calls a global function.
template <class... Args>
class FunctionGlobal final : public kx::detail::SignalCallback<Args...>::type {
public:
    explicit FunctionGlobal(void (*function)(Args...)) : function_(function) {}

    bool isGlobalFunction(const void* function) const override {
        return function == reinterpret_cast<const void*>(function_);
    }
    void call(Args... args) override { function_(std::forward<Args>(args)...); }

private:
    void (*function_)(Args...);
};

/// A callback that calls a member function of one object.
template <class Object, class... Args>
class FunctionMember final : public kx::detail::SignalCallback<Args...>::type {
public:
    FunctionMember(Object* object, void (Object::*member)(Args...))
        : object_(object), member_(member) {}

    bool isInstance(const void* object) const override {
        return object == kx::detail::objectAddress(object_);
    }
    void call(Args... args) override { (object_->*member_)(std::forward<Args>(args)...); }

private:
    Object* object_;
    void (Object::*member_)(Args...);
};

using FunctionVoidGlobal = FunctionGlobal<>;
template <class C>
using FunctionVoidMember = FunctionMember<C>;
template <class T>
using FunctionArgGlobal = FunctionGlobal<T>;
template <class T, class C>
using FunctionArgMember = FunctionMember<C, T>;
template <class A1, class A2, class A3>
using Function3ArgsGlobal = FunctionGlobal<A1, A2, A3>;
template <class A1, class A2, class A3, class C>
using Function3ArgsMember = FunctionMember<C, A1, A2, A3>;

/// The connection list and every operation of a signal but emission.
class BASE_API SignalBase {
public:
    /// One connection: an item in the signal's list, which owns the
    /// callback. For a member function of a client, its twin in the client's
    /// list (with no callback) is its partner.
    class BASE_API connectionItem {
    public:
        connectionItem(const connectionItem&) = delete;
        connectionItem& operator=(const connectionItem&) = delete;

        /// Keeps the connection allocated: a destruction asked for while it
        /// is locked waits for the last unlock(). Emissions lock the
        /// connection they stand on.
        void lock() { ++lockCount_; }
        /// Ends a lock(); the last one carries out a pending destruction.
        /// Nothing on a connection that is not locked.
        void unlock() {
            if (lockCount_ > 0 && --lockCount_ == 0 && destroyPending_)
                destroy();
        }
        /// A blocked connection is skipped by emissions. Blocks nest.
        void block() { ++blockCount_; }
        void unblock() { --blockCount_; }
        bool isBlocked() const { return blockCount_ > 0; }

    private:
        friend class SignalBase;
        friend class SignalClientBase;

        connectionItem(FunctionBase* callback, connectionItem** owner);
        ~connectionItem();
        // Destroys the partner, then this item, or only marks it while it is
        // locked.
        void destroy();
        void linkFront();
        void unlink();

        connectionItem* next_ = nullptr;
        connectionItem* prev_ = nullptr;
        FunctionBase* callback_;
        connectionItem** owner_; // the head field of the list that holds it
        connectionItem* partner_ = nullptr;
        std::int16_t lockCount_ = 0;
        std::int16_t blockCount_ = 0;
        bool destroyPending_ = false;
    };

    SignalBase(const SignalBase&) = delete;
    SignalBase& operator=(const SignalBase&) = delete;

    /// Ends `connection` if it is in this signal's list; else nothing.
    void disconnect(connectionItem* connection) const;

    /// While blocked, emissions call nothing. Blocks nest: each unblock()
    /// ends one block(). Emission stops whenever the count is not zero, so
    /// an unblock() without its block() also silences the signal (until
    /// another block() brings the count back), although isBlocked() only
    /// answers true for a count above zero.
    void block();
    void unblock();
    bool isBlocked() const;

    /// The same for one connection of this signal's list; nothing for any
    /// other connection.
    void block(connectionItem* connection) const;
    void unblock(connectionItem* connection) const;
    /// True as well for a connection that is not in this signal's list.
    bool isBlocked(connectionItem* connection) const;

    bool isConnected() const;
    /// Connections in the list, including those whose destruction waits for
    /// an emission to leave them.
    int numConnections() const;

protected:
    SignalBase() = default;
    /// Ends every connection, and with them their twins in the clients.
    ~SignalBase();

    /// A connection that owns `callback` (deleted with the connection) and
    /// is entered in `client`'s list too. Null for a null callback.
    connectionItem* addCallback(FunctionBase* callback, SignalClient& client) const;
    /// A connection that owns `callback` and belongs to no client. It stays
    /// protected: emission calls each callback as the signal's own callback
    /// class, so an untyped public entry would let a callback of another
    /// arity be connected and then called through the wrong type. Callers
    /// use the typed Signal::connect(Callback*), which does the same.
    connectionItem* addCallback(FunctionBase* callback) const;

    /// Ends every connection whose callback answers isInstance(object).
    void disconnectInstance(const void* object) const;
    /// The first connection, as void*, whose callback answers
    /// isInstance(object) and that is not waiting to be destroyed; null if
    /// none.
    void* findInstance(const void* object) const;
    /// The first connection whose callback answers
    /// isGlobalFunction(function), even one waiting to be destroyed.
    connectionItem* findGlobalCallback(const void* function) const;

    /// Calls the callbacks, which are all of class Callback, newest first.
    /// Nothing of this signal is read once a callback has destroyed it: its
    /// destruction detaches the connection under the walk, which then ends.
    /// An exception thrown by a callback ends the emission and reaches the
    /// caller; the connection it came from is unlocked on the way out, so
    /// the signal is left as the callbacks left it.
    template <class Callback, class... Args>
    void emitTo(Args&... args) {
        for (connectionItem* item = head_; item;) {
            if (blockCount_ != 0)
                return;
            const StandingLock standing(item);
            if (!item->destroyPending_ && item->blockCount_ <= 0)
                static_cast<Callback*>(item->callback_)->call(args...);
            // Read before the lock ends, which may free the item.
            item = item->next_;
        }
    }

private:
    // The lock an emission holds on the item it stands on.
    class StandingLock {
    public:
        explicit StandingLock(connectionItem* item) : item_(item) { ++item->lockCount_; }
        ~StandingLock() {
            // unlock() without its guard: this walk holds a lock.
            if (--item_->lockCount_ == 0 && item_->destroyPending_)
                item_->destroy();
        }
        StandingLock(const StandingLock&) = delete;
        StandingLock& operator=(const StandingLock&) = delete;

    private:
        connectionItem* item_;
    };

    // `connection` if it is in this list, else null. Compares addresses
    // only, so a stale pointer is safe.
    connectionItem* find(const connectionItem* connection) const;

    mutable connectionItem* head_ = nullptr;
    std::int16_t blockCount_ = 0;
};

/// What the connect operations return: a handle to pass to disconnect,
/// block and unblock. It is valid until the connection ends.
using Connection = SignalBase::connectionItem;

/// The list of connections to an object's member functions: the twins of
/// the connections in the signals' lists.
class BASE_API SignalClientBase {
public:
    SignalClientBase(const SignalClientBase&) = delete;
    SignalClientBase& operator=(const SignalClientBase&) = delete;

    /// Connections to this object's member functions, in every signal.
    int numConnections() const { return count_; }
    bool isConnected() const { return head_ != nullptr; }
    /// Ends every connection to this object's member functions. Safe during
    /// an emission that is calling one of them.
    void disconnectAll();

protected:
    SignalClientBase() = default;
    ~SignalClientBase();

private:
    friend class SignalBase;
    friend class SignalBase::connectionItem;

    // The head must come first: an item finds its client through its
    // owner, the head field's address.
    SignalBase::connectionItem* head_ = nullptr;
    int count_ = 0;
};

/// The base of every class whose member functions serve as slots. Its
/// connections end when the object is destroyed. A copy is a new object:
/// it starts with no connections, and assignment leaves both objects'
/// connections as they were. The class is polymorphic, so that a pointer
/// to any base of a client names the client in disconnectInstance and
/// findInstance.
class BASE_API SignalClient : public SignalClientBase {
public:
    SignalClient() = default;
    // GCC asks for the base's initializer, which here is the point.
    SignalClient(const SignalClient&)
        : SignalClientBase() {} // NOLINT(readability-redundant-member-init)
    SignalClient& operator=(const SignalClient&) { return *this; }
    virtual ~SignalClient();
};

/// The connect, find, disconnect and emit operations of a signal whose
/// callbacks take Args. Use it through SignalVoid, SignalArg<T> and
/// Signal3Args<A1, A2, A3>.
template <class... Args>
class Signal : public SignalBase {
public:
    /// The callback class of this signal.
    using Callback = typename kx::detail::SignalCallback<Args...>::type;

    /// Connects a global function; null for a null function.
    Connection* connect(void (*function)(Args...)) const {
        return function ? addCallback(new FunctionGlobal<Args...>(function)) : nullptr;
    }
    /// Connects a member function of `object`, whose class derives from
    /// SignalClient; null for a null object or member.
    template <class Object, class Class>
    Connection* connect(Object* object, void (Class::*member)(Args...)) const {
        static_assert(std::is_base_of_v<SignalClient, Object>,
                      "member slots belong to classes derived from kxRTB::SignalClient");
        if (!object || !member)
            return nullptr;
        return addCallback(new FunctionMember<Object, Args...>(object, member), *object);
    }
    /// Connects a callback of your own, which the connection deletes; null
    /// for a null callback.
    Connection* connect(Callback* callback) const { return addCallback(callback); }
    /// The same, ended with `client` as well.
    Connection* connect(Callback* callback, SignalClient& client) const {
        return addCallback(callback, client);
    }

    using SignalBase::disconnect;
    /// Ends every connection to a member function of `object`.
    template <class Object>
    void disconnectInstance(const Object* object) const {
        SignalBase::disconnectInstance(kx::detail::objectAddress(object));
    }

    /// The first live connection to a member function of `object`, or null.
    template <class Object>
    Connection* findInstance(const Object* object) const {
        return static_cast<Connection*>(
            SignalBase::findInstance(kx::detail::objectAddress(object)));
    }
    /// The first live connection of the global function, or null.
    Connection* findGlobalCallback(void (*function)(Args...)) const {
        return SignalBase::findGlobalCallback(reinterpret_cast<const void*>(function));
    }

    /// Calls the connected callbacks, newest first (see the top of this
    /// file for what they may do meanwhile).
    void emit(Args... args) { this->template emitTo<Callback>(args...); }

protected:
    Signal() = default;
    ~Signal() = default;
};

/// A signal without arguments.
class SignalVoid : public Signal<> {};

/// A signal with one argument.
template <class T>
class SignalArg : public Signal<T> {
public:
    using argument_type = T;
};

/// A signal with three arguments.
template <class A1, class A2, class A3>
class Signal3Args : public Signal<A1, A2, A3> {};

} // namespace kxRTB
