#include <Base/Thread/Thread.h>

#include <Base/Signal/Signal.h>

#include "Event.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

using kxThread::Thread;
using testing_support::Event;

namespace {

void increment(void* counter) {
    ++*static_cast<std::atomic<int>*>(counter);
}

// Waits for a gate, then reports that it ran.
struct Gated {
    Event gate;
    Event done;
};

void passGate(void* state) {
    auto* gated = static_cast<Gated*>(state);
    gated->gate.waitFor();
    gated->done.set();
}

class Worker : public kxRTB::SignalClient {
public:
    void run() { thread = std::this_thread::get_id(); }
    std::thread::id thread;
};

} // namespace

TEST(Thread, RunsItsFunctionAndStartsAgainAfterWait) {
    std::atomic<int> first{0}, second{0};
    Thread thread(increment, &first);
    ASSERT_FALSE(thread.start());
    EXPECT_FALSE(thread.wait());
    EXPECT_EQ(first, 1);

    thread.setArg(&second);
    ASSERT_FALSE(thread.start());
    EXPECT_FALSE(thread.wait());
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(Thread, WaitingForAStoppedThreadIsCode2) {
    std::atomic<int> runs{0};
    Thread thread(increment, &runs);
    const kxUtil::Error never = thread.wait();
    EXPECT_EQ(never.num(), 2);
    EXPECT_STREQ(never.message(), "cannot wait for a stopped thread");

    ASSERT_FALSE(thread.start());
    EXPECT_FALSE(thread.wait());
    EXPECT_EQ(thread.wait().num(), 2);
}

TEST(Thread, WaitingForItselfIsCode1) {
    struct Self {
        Thread* thread;
        kxUtil::Error result;
        Event started; // start() has returned: the thread object is ready
        Event done;
    } self;
    Thread thread(
        [](void* p) {
            auto* s = static_cast<Self*>(p);
            s->started.waitFor();
            s->result = s->thread->wait();
            s->done.set();
        },
        &self);
    self.thread = &thread;
    ASSERT_FALSE(thread.start());
    self.started.set();
    ASSERT_TRUE(self.done.waitFor());
    EXPECT_EQ(self.result.num(), 1);
    const std::string message = self.result.message();
    EXPECT_EQ(message.rfind("WaitForSingleObject() failed: ", 0), 0u) << message;
    EXPECT_EQ(message.back(), '\n');
    EXPECT_GT(message.size(), std::string("WaitForSingleObject() failed: \n").size());
    EXPECT_EQ(thread.wait().num(), 2); // stopped, and detached
}

TEST(Thread, ThreadsLeftWithoutWaitRunOnDetached) {
    Gated left;
    {
        Thread thread(passGate, &left);
        ASSERT_FALSE(thread.start());
    }
    left.gate.set();
    EXPECT_TRUE(left.done.waitFor());

    Gated created;
    EXPECT_EQ(kxThread_CreateThread(passGate, &created), 1);
    created.gate.set();
    EXPECT_TRUE(created.done.waitFor());
}

TEST(Thread, DestroyingACopyDetachesTheThread) {
    Gated gated;
    Thread thread(passGate, &gated);
    ASSERT_FALSE(thread.start());
    {
        Thread copy(thread);
        copy.setArg(nullptr); // the copy shares the record
    }
    gated.gate.set();
    ASSERT_TRUE(gated.done.waitFor());
    EXPECT_EQ(thread.wait().num(), 1);
    EXPECT_EQ(thread.wait().num(), 2);
}

TEST(Thread, SignalModeEmitsAndDeletesItsSignalOnTheNewThread) {
    Worker worker;
    Thread thread;
    thread.getSignal().connect(&worker, &Worker::run);
    EXPECT_EQ(worker.numConnections(), 1);

    ASSERT_FALSE(thread.start());
    EXPECT_FALSE(thread.getSignal().isConnected()); // the start signal is gone
    EXPECT_FALSE(thread.wait());
    EXPECT_NE(worker.thread, std::thread::id());
    EXPECT_NE(worker.thread, std::this_thread::get_id());
    EXPECT_EQ(worker.numConnections(), 0);

    // Without a signal a second start runs nothing.
    Worker late;
    thread.getSignal().connect(&late, &Worker::run);
    ASSERT_FALSE(thread.start());
    EXPECT_FALSE(thread.wait());
    EXPECT_EQ(late.thread, std::thread::id());

    Thread empty;
    ASSERT_FALSE(empty.start());
    EXPECT_FALSE(empty.wait());
}
