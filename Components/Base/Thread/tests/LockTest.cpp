#include <Base/Thread/Barrier.h>
#include <Base/Thread/Condition.h>
#include <Base/Thread/Mutex.h>
#include <Base/Thread/RWLock.h>
#include <Base/Thread/ReferenceCount.h>
#include <Base/Thread/Semaphore.h>
#include <Base/Thread/ThreadKey.h>

#include <Base/Utility/Error.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <functional>
#include <thread>
#include <vector>

using kxThread::MutexOp;
using kxUtil::Interval;

namespace {

// Runs `body(i)` on `count` threads and joins them.
void runThreads(int count, const std::function<void(int)>& body) {
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (int i = 0; i < count; ++i)
        threads.emplace_back(body, i);
    for (std::thread& thread : threads)
        thread.join();
}

class Counted : public kxThread::ReferenceCount {
public:
    explicit Counted(int& deletions) : deletions_(&deletions) {}
    Counted(const Counted& other) = default;
    Counted& operator=(const Counted& other) = default;
    ~Counted() override { ++*deletions_; }

private:
    int* deletions_;
};

} // namespace

TEST(Mutex, BothModesAreRecursiveAndExclusive) {
    for (const bool criticalSection : {true, false}) {
        kxThread::Mutex mutex(criticalSection);
        long counter = 0;
        runThreads(4, [&](int) {
            for (int i = 0; i < 5000; ++i) {
                MutexOp outer(mutex, true);
                outer.lock();
                MutexOp inner(mutex, true);
                inner.lock();
                ++counter;
            }
        });
        EXPECT_EQ(counter, 20000);
    }
}

TEST(MutexOp, WithoutAutoUnlockLeavesTheMutexLocked) {
    kxThread::Mutex mutex;
    {
        MutexOp op(mutex, false);
        op.lock();
    }
    std::atomic<bool> entered{false};
    std::thread other([&] {
        MutexOp op(mutex, true);
        op.lock();
        entered = true;
    });
    // Still held by this thread: the other one cannot have entered.
    EXPECT_FALSE(entered);
    MutexOp(mutex, false).unlock();
    other.join();
    EXPECT_TRUE(entered);
}

TEST(Condition, ZeroIntervalWaitsUntilNotifiedAndBroadcastWakesAll) {
    kxThread::Condition condition;
    bool go = false;
    int woken = 0;
    std::vector<std::thread> waiters;
    waiters.reserve(3);
    for (int i = 0; i < 3; ++i) {
        waiters.emplace_back([&] {
            MutexOp op(condition.getMutex());
            op.lock();
            while (!go)
                condition.wait(Interval());
            ++woken;
        });
    }
    {
        MutexOp op(condition.getMutex());
        op.lock();
        go = true;
    }
    condition.broadcast();
    for (std::thread& waiter : waiters)
        waiter.join();
    EXPECT_EQ(woken, 3);

    // signal() wakes a waiter, whoever holds the mutex.
    bool ready = false;
    std::thread waiter([&] {
        MutexOp op(condition.getMutex());
        op.lock();
        while (!ready)
            condition.wait(Interval());
    });
    {
        MutexOp op(condition.getMutex());
        op.lock();
        ready = true;
        condition.signal();
    }
    waiter.join();
    EXPECT_TRUE(ready);
}

TEST(Condition, TimeLimitsCountMillisecondsAsMicroseconds) {
    kxThread::Condition condition;
    MutexOp op(condition.getMutex());
    op.lock();
    const auto start = std::chrono::steady_clock::now();
    condition.wait(Interval(1));         // about 1 ms, not 1 s
    condition.wait(Interval(-1));        // at once
    condition.wait(Interval(0, -20000)); // negative too: at once
    condition.wait(Interval(0, 3000));   // 3 ms read as 3 us
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(500));
    op.unlock();

    // A copy names the same condition and mutex.
    kxThread::Condition copy(condition);
    EXPECT_EQ(&copy.getMutex(), &condition.getMutex());
}

TEST(RWLock, ReadersAndWritersKeepTheInvariant) {
    kxThread::RWLock lock;
    int first = 0, second = 0; // writers keep them equal
    std::atomic<int> violations{0};
    runThreads(5, [&](int index) {
        const bool writer = index < 2;
        for (int i = 0; i < 2000; ++i) {
            kxThread::RWLockOp op(lock, true);
            if (writer) {
                op.write();
                if (!lock.hasWriter() || lock.numberOfReaders() != 0)
                    ++violations;
                ++first;
                ++second;
            } else {
                op.read();
                if (lock.hasWriter() || lock.numberOfReaders() < 1 || first != second)
                    ++violations;
            }
        }
    });
    EXPECT_EQ(violations, 0);
    EXPECT_EQ(first, 4000);
    EXPECT_FALSE(lock.hasWriter());
    EXPECT_EQ(lock.numberOfReaders(), 0);
}

TEST(RWLockOp, HoldsOneLockAtMost) {
    kxThread::RWLock lock;
    {
        kxThread::RWLockOp op(lock, false);
        op.unlock(); // holds nothing: nothing happens
        op.read();
        op.read();
        EXPECT_EQ(lock.numberOfReaders(), 1);
        op.write();
        EXPECT_TRUE(lock.hasWriter());
        EXPECT_EQ(lock.numberOfReaders(), 0);
    }
    EXPECT_FALSE(lock.hasWriter());

    // Assignment copies the state as it stands.
    kxThread::RWLock copy;
    {
        kxThread::RWLockOp op(lock);
        op.read();
        copy = lock;
    }
    EXPECT_EQ(lock.numberOfReaders(), 0);
    EXPECT_EQ(copy.numberOfReaders(), 1);
}

TEST(Semaphore, TryWaitTakesOnlyWhatWasPosted) {
    EXPECT_EQ(kxThread::Semaphore::maxValue(), 2147483647u);
    kxThread::Semaphore semaphore;
    EXPECT_FALSE(semaphore.tryWait());
    semaphore.post();
    EXPECT_TRUE(semaphore.tryWait());
    EXPECT_FALSE(semaphore.tryWait());

    kxThread::Semaphore full(kxThread::Semaphore::maxValue());
    EXPECT_TRUE(full.tryWait());
    try {
        kxThread::Semaphore tooMany(kxThread::Semaphore::maxValue() + 1u);
        ADD_FAILURE() << "a semaphore above the maximum was created";
    } catch (const kxUtil::Error& error) {
        EXPECT_EQ(error.num(), 1);
        EXPECT_STRNE(error.message(), "");
    }
}

TEST(Semaphore, EveryPostReleasesOneWait) {
    kxThread::Semaphore semaphore(0);
    runThreads(4, [&](int index) {
        for (int i = 0; i < 3000; ++i) {
            if (index % 2)
                semaphore.post();
            else
                semaphore.wait();
        }
    });
    EXPECT_FALSE(semaphore.tryWait());
}

// Four threads on a barrier of three: every round leaves one thread out,
// which arrives while the round drains and must wait for the next one.
// Threads take arrivals until a multiple of three is used up, so the last
// round fills whoever is left. The k-th pass needs round k / 3 to be full.
TEST(Barrier, IsReusedForManyRoundsWithALateArrival) {
    constexpr int kThreshold = 3, kArrivals = 3 * 80;
    kxThread::Barrier barrier(kThreshold);
    std::atomic<int> claimed{0}, passes{0}, early{0};
    runThreads(4, [&, barrier](int) mutable {
        while (claimed++ < kArrivals) {
            barrier.wait();
            const int pass = passes++;
            if (std::min(claimed.load(), kArrivals) < kThreshold * (pass / kThreshold + 1))
                ++early;
        }
    });
    EXPECT_EQ(early, 0);
    EXPECT_EQ(passes, kArrivals);

    kxThread::Barrier alone(0); // taken as 1
    alone.wait();
}

TEST(AtomicReferenceCount, CopiesStartAtZeroAndTheLastUnrefOfManyThreadsDeletes) {
    int deletions = 0;
    auto* object = new Counted(deletions);
    for (int i = 0; i < 5; ++i)
        object->ref();
    Counted copy(*object);
    EXPECT_EQ(copy.refs(), 0);
    copy.ref();
    *object = copy;
    EXPECT_EQ(object->refs(), 5);
    EXPECT_EQ(copy.refs(), 1);

    runThreads(4, [&](int) {
        for (int i = 0; i < 10000; ++i) {
            object->ref();
            object->unref();
        }
    });
    for (int i = 0; i < 4; ++i)
        object->unref();
    EXPECT_EQ(deletions, 0);
    object->unref();
    EXPECT_EQ(deletions, 1);

    int value = 0;
    runThreads(4, [&](int) {
        for (int i = 0; i < 10000; ++i)
            kxThread::atomicIncrement(value);
    });
    EXPECT_EQ(kxThread::atomicIncrement(value), 40001);
    EXPECT_EQ(kxThread::atomicDecrement(value), 40000);
}

TEST(ThreadKey, ValuesBelongToEachThread) {
    const unsigned int key = kxThread::createThreadKey();
    ASSERT_NE(key, kxThread::kInvalidThreadKey);
    int mine = 0, theirs = 0;
    kxThread::setThreadSpecificValue(key, &mine);
    std::thread other([&] {
        EXPECT_EQ(kxThread::getThreadSpecificValue(key), nullptr);
        kxThread::setThreadSpecificValue(key, &theirs);
        EXPECT_EQ(kxThread::getThreadSpecificValue(key), &theirs);
    });
    other.join();
    EXPECT_EQ(kxThread::getThreadSpecificValue(key), &mine);
    kxThread::freeThreadKey(key);

    EXPECT_EQ(kxThread::getThreadSpecificValue(kxThread::kInvalidThreadKey), nullptr);
    kxThread::setThreadSpecificValue(kxThread::kInvalidThreadKey, &mine);
}
