#include <Base/Signal/Signal.h>

#include <gtest/gtest.h>

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using kxRTB::Connection;
using kxRTB::SignalArg;

namespace {

using Log = std::vector<std::string>;

// A client whose slots write their name and arguments to a shared log.
class Recorder : public kxRTB::SignalClient {
public:
    Recorder(Log& log, std::string name) : log_(&log), name_(std::move(name)) {}

    void onVoid() { log_->push_back(name_); }
    void onValue(int value) { log_->push_back(name_ + std::to_string(value)); }
    void onThree(int a, const std::string& b, char c) {
        log_->push_back(name_ + std::to_string(a) + b + c);
    }

private:
    Log* log_;
    std::string name_;
};

Log globalLog;

void globalSlot(int value) {
    globalLog.push_back("g" + std::to_string(value));
}

// A global slot that disconnects itself, then looks itself up.
SignalArg<int>* pendingSignal = nullptr;
Connection* pendingSelf = nullptr;
Connection* pendingFound = nullptr;

void disconnectsItselfThenFinds(int) {
    pendingSignal->disconnect(pendingSelf);
    pendingFound = pendingSignal->findGlobalCallback(disconnectsItselfThenFinds);
}

// A callback that runs a body of the test's choosing and reports its own
// deletion, to show when a connection's callback is freed.
class Probe : public kxRTB::FunctionArg<int> {
public:
    Probe(std::function<void(int)> body, bool& deleted)
        : body_(std::move(body)), deleted_(deleted) {
        deleted_ = false;
    }
    ~Probe() override { deleted_ = true; }
    void call(int value) override { body_(value); }

private:
    std::function<void(int)> body_;
    bool& deleted_;
};

// A client that deletes itself from inside its slot.
class SelfDestroying : public kxRTB::SignalClient {
public:
    void onValue(int) { delete this; }
};

// Two bases, so that the SignalClient part does not start the object.
class Widget {
public:
    virtual ~Widget() = default;
    int widgetData = 0;
};
class Panel : public Widget, public kxRTB::SignalClient {
public:
    void onValue(int value) { last = value; }
    int last = 0;
};

} // namespace

TEST(Signal, CallsTheNewestConnectionFirst) {
    Log log;
    Recorder a(log, "a"), b(log, "b"), c(log, "c");
    SignalArg<int> signal;
    EXPECT_FALSE(signal.isConnected());
    signal.connect(&a, &Recorder::onValue);
    signal.connect(globalSlot);
    signal.connect(&b, &Recorder::onValue);
    signal.connect(&c, &Recorder::onValue);
    EXPECT_TRUE(signal.isConnected());
    EXPECT_EQ(signal.numConnections(), 4);

    globalLog.clear();
    signal.emit(1);
    EXPECT_EQ(log, (Log{"c1", "b1", "a1"}));
    EXPECT_EQ(globalLog, Log{"g1"});

    kxRTB::SignalVoid plain;
    kxRTB::Signal3Args<int, const std::string&, char> three;
    plain.connect(&a, &Recorder::onVoid);
    plain.connect(&b, &Recorder::onVoid);
    three.connect(&c, &Recorder::onThree);
    log.clear();
    plain.emit();
    three.emit(7, "x", 'y');
    EXPECT_EQ(log, (Log{"b", "a", "c7xy"}));
}

TEST(Signal, OperationsOnAConnectionIgnoreOtherSignals) {
    Log log;
    Recorder a(log, "a"), b(log, "b");
    SignalArg<int> first, second;
    Connection* ca = first.connect(&a, &Recorder::onValue);
    Connection* cb = second.connect(&b, &Recorder::onValue);

    first.disconnect(cb);
    first.block(cb);
    EXPECT_TRUE(first.isBlocked(cb)); // not in this list
    EXPECT_FALSE(second.isBlocked(cb));
    second.emit(1);
    EXPECT_EQ(log, Log{"b1"});

    first.block(ca);
    first.block(ca);
    first.unblock(ca);
    EXPECT_TRUE(first.isBlocked(ca));
    first.emit(2);
    first.unblock(ca);
    first.emit(3);
    EXPECT_EQ(log, (Log{"b1", "a3"}));

    first.block();
    EXPECT_TRUE(first.isBlocked());
    first.emit(4);
    first.unblock();
    first.emit(5);
    EXPECT_EQ(log, (Log{"b1", "a3", "a5"}));

    EXPECT_EQ(first.connect(static_cast<void (*)(int)>(nullptr)), nullptr);
    EXPECT_EQ(first.connect(static_cast<Recorder*>(nullptr), &Recorder::onValue), nullptr);
    EXPECT_EQ(first.numConnections(), 1);
}

TEST(Signal, FindsAndDisconnectsConnectionsByObjectAndFunction) {
    Log log;
    Recorder a(log, "a"), b(log, "b");
    SignalArg<int> signal;
    signal.connect(&a, &Recorder::onValue);
    Connection* global = signal.connect(globalSlot);
    Connection* ofB = signal.connect(&b, &Recorder::onValue);
    Connection* newestOfA = signal.connect(&a, &Recorder::onValue);

    EXPECT_EQ(signal.findInstance(&a), newestOfA);
    EXPECT_EQ(signal.findInstance(&b), ofB);
    EXPECT_EQ(signal.findGlobalCallback(globalSlot), global);
    EXPECT_EQ(a.numConnections(), 2);

    signal.disconnectInstance(&a);
    EXPECT_EQ(signal.findInstance(&a), nullptr);
    EXPECT_EQ(a.numConnections(), 0);
    EXPECT_EQ(signal.numConnections(), 2);

    // Through any base, a polymorphic object names the same connections.
    Panel panel;
    signal.connect(&panel, &Panel::onValue);
    const Widget* asWidget = &panel;
    const kxRTB::SignalClient* asClient = &panel;
    EXPECT_NE(signal.findInstance(asWidget), nullptr);
    signal.disconnectInstance(asClient);
    EXPECT_EQ(signal.findInstance(&panel), nullptr);
}

TEST(SignalReentrancy, ACallbackThatDisconnectsItselfIsFreedAfterItReturns) {
    SignalArg<int> signal;
    bool deleted = false;
    int calls = 0;
    Connection* self = nullptr;
    self = signal.connect(new Probe(
        [&](int) {
            ++calls;
            signal.disconnect(self);
            EXPECT_FALSE(deleted);
        },
        deleted));
    signal.emit(0);
    EXPECT_TRUE(deleted);
    signal.emit(0);
    EXPECT_EQ(calls, 1);
    EXPECT_FALSE(signal.isConnected());
}

TEST(SignalReentrancy, DisconnectingTheNextConnectionSkipsIt) {
    Log log;
    Recorder a(log, "a"), b(log, "b");
    SignalArg<int> signal;
    signal.connect(&a, &Recorder::onValue);
    Connection* next = signal.connect(&b, &Recorder::onValue);
    bool deleted = false;
    signal.connect(new Probe([&](int) { signal.disconnect(next); }, deleted));
    signal.emit(1);
    EXPECT_EQ(log, Log{"a1"});
    EXPECT_EQ(b.numConnections(), 0);
}

TEST(SignalReentrancy, BlockingTheSignalStopsTheEmission) {
    Log log;
    Recorder a(log, "a");
    SignalArg<int> signal;
    signal.connect(&a, &Recorder::onValue);
    bool deleted = false;
    signal.connect(new Probe(
        [&](int value) {
            if (value == 1)
                signal.block();
        },
        deleted));
    signal.emit(1);
    EXPECT_TRUE(log.empty());
    signal.unblock();
    signal.emit(2);
    EXPECT_EQ(log, Log{"a2"});
}

TEST(SignalReentrancy, NestedEmissionsVisitEveryConnectionAndDeferTheFree) {
    SignalArg<int> signal;
    Log log;
    bool outerDeleted = false, innerDeleted = false;
    Connection* outer = nullptr;
    signal.connect(new Probe(
        [&](int depth) {
            log.push_back("inner" + std::to_string(depth));
            if (depth == 1)
                signal.disconnect(outer); // the outer emission stands on it
        },
        innerDeleted));
    outer = signal.connect(new Probe(
        [&](int depth) {
            log.push_back("outer" + std::to_string(depth));
            if (depth == 0) {
                signal.emit(1);
                EXPECT_FALSE(outerDeleted);
                EXPECT_EQ(signal.numConnections(), 2); // pending, still listed
            }
        },
        outerDeleted));
    signal.emit(0);
    EXPECT_EQ(log, (Log{"outer0", "outer1", "inner1", "inner0"}));
    EXPECT_TRUE(outerDeleted);
    EXPECT_FALSE(innerDeleted);
    EXPECT_EQ(signal.numConnections(), 1);
}

TEST(SignalReentrancy, ACallbackMayDestroyItsClient) {
    Log log;
    Recorder a(log, "a");
    SignalArg<int> first, second;
    first.connect(&a, &Recorder::onValue);
    auto* doomed = new SelfDestroying;
    first.connect(doomed, &SelfDestroying::onValue);
    second.connect(doomed, &SelfDestroying::onValue);
    first.connect(&a, &Recorder::onValue);

    first.emit(1);
    EXPECT_EQ(log, (Log{"a1", "a1"}));
    EXPECT_EQ(first.numConnections(), 2);
    EXPECT_EQ(second.numConnections(), 0);
}

TEST(SignalReentrancy, ACallbackMayDestroyTheSignal) {
    Log log;
    Recorder older(log, "older"), client(log, "client");
    auto* signal = new SignalArg<int>;
    signal->connect(&older, &Recorder::onValue);
    signal->connect(&client, &Recorder::onValue);
    bool deleted = false;
    signal->connect(new Probe([&](int) { delete signal; }, deleted));

    signal->emit(1);
    EXPECT_TRUE(deleted);
    EXPECT_TRUE(log.empty());
    EXPECT_EQ(client.numConnections(), 0);
    EXPECT_EQ(older.numConnections(), 0);
}

TEST(SignalReentrancy, ConnectionsMadeDuringAnEmissionWaitForTheNext) {
    Log log;
    Recorder late(log, "late");
    SignalArg<int> signal;
    bool deleted = false;
    signal.connect(new Probe(
        [&](int value) {
            if (value == 1)
                signal.connect(&late, &Recorder::onValue);
        },
        deleted));
    signal.emit(1);
    EXPECT_TRUE(log.empty());
    signal.emit(2);
    EXPECT_EQ(log, Log{"late2"});
}

TEST(Signal, EitherEndEndsTheConnection) {
    Log log;
    SignalArg<int> first;
    {
        Recorder a(log, "a");
        first.connect(&a, &Recorder::onValue);
        {
            SignalArg<int> second;
            second.connect(&a, &Recorder::onValue);
            second.connect(&a, &Recorder::onValue);
            EXPECT_EQ(a.numConnections(), 3);
        }
        EXPECT_EQ(a.numConnections(), 1);

        // A copy is a new client: it has no connections, and assignment
        // moves none.
        Recorder copy(a);
        EXPECT_FALSE(copy.isConnected());
        copy = a;
        EXPECT_EQ(a.numConnections(), 1);
        EXPECT_EQ(copy.numConnections(), 0);
        first.connect(&copy, &Recorder::onValue);
    }
    EXPECT_FALSE(first.isConnected());

    Recorder b(log, "b");
    kxRTB::SignalVoid other;
    first.connect(&b, &Recorder::onValue);
    other.connect(&b, &Recorder::onVoid);
    b.disconnectAll();
    EXPECT_FALSE(first.isConnected());
    EXPECT_FALSE(other.isConnected());
    first.emit(1);
    EXPECT_TRUE(log.empty());
}

TEST(Signal, ALockedConnectionOutlivesItsDisconnection) {
    SignalArg<int> signal;
    bool deleted = false;
    int calls = 0;
    Connection* c = signal.connect(new Probe([&](int) { ++calls; }, deleted));
    c->lock();
    signal.disconnect(c);
    EXPECT_FALSE(deleted);
    EXPECT_EQ(signal.numConnections(), 1);
    signal.emit(1);
    EXPECT_EQ(calls, 0);
    c->unlock();
    EXPECT_TRUE(deleted);
    EXPECT_FALSE(signal.isConnected());
}

TEST(SignalReentrancy, AThrowingCallbackLeavesTheSignalAsItWas) {
    SignalArg<int> signal;
    bool deleted = false;
    int calls = 0;
    Connection* thrower = signal.connect(new Probe(
        [&](int value) {
            ++calls;
            if (value < 0)
                throw std::runtime_error("slot failed");
        },
        deleted));
    EXPECT_THROW(signal.emit(-1), std::runtime_error);
    EXPECT_FALSE(signal.isBlocked(thrower));
    signal.emit(1); // still called
    EXPECT_EQ(calls, 2);
    signal.disconnect(thrower); // freed at once: no lock was left behind
    EXPECT_TRUE(deleted);
    EXPECT_EQ(signal.numConnections(), 0);
}

TEST(SignalReentrancy, ACallbackThatDisconnectsItselfAndThrowsIsFreed) {
    SignalArg<int> signal;
    bool deleted = false;
    Connection* self = nullptr;
    self = signal.connect(new Probe(
        [&](int) {
            signal.disconnect(self);
            throw std::runtime_error("slot failed");
        },
        deleted));
    EXPECT_THROW(signal.emit(0), std::runtime_error);
    EXPECT_TRUE(deleted);
    EXPECT_FALSE(signal.isConnected());
}

TEST(SignalReentrancy, FindGlobalCallbackSeesAConnectionWaitingToBeDestroyed) {
    SignalArg<int> signal;
    pendingSignal = &signal;
    pendingSelf = signal.connect(disconnectsItselfThenFinds);
    signal.emit(0);
    EXPECT_EQ(pendingFound, pendingSelf); // still linked while the emission stands on it
    EXPECT_EQ(signal.findGlobalCallback(disconnectsItselfThenFinds), nullptr);
}
