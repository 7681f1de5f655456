// kxThread primitives against the standard ones: an uncontended lock and
// unlock through MutexOp against std::recursive_mutex, a round trip of two
// threads through a barrier against std::barrier, and a post/wait ping-pong
// between two threads against std::counting_semaphore. The partner thread
// is started before and joined after the timed loop, and runs exactly as
// many rounds as the loop. The lock is timed with a second thread alive, as
// in any program that needs locks: glibc drops the atomic instructions from
// its mutexes while a process has a single thread.
#include "Compare.h"

#include <Base/Thread/Barrier.h>
#include <Base/Thread/Mutex.h>
#include <Base/Thread/Semaphore.h>

#include <benchmark/benchmark.h>

#include <barrier>
#include <mutex>
#include <semaphore>
#include <string>
#include <thread>

namespace {

template <class Body>
void add(const std::string& name, Body body) {
    benchmark::RegisterBenchmark(name.c_str(), body);
}

// Keeps a second thread alive, idle, while the benchmark loop runs.
class IdleThread {
public:
    IdleThread() : thread_([this] { release_.acquire(); }) {}
    ~IdleThread() {
        release_.release();
        thread_.join();
    }

private:
    std::binary_semaphore release_{0};
    std::thread thread_;
};

// Runs `partner(rounds)` on a second thread while the benchmark loop calls
// `step()` once per iteration.
template <class Partner, class Step>
void withPartner(benchmark::State& state, Partner partner, Step step) {
    std::thread other(partner, state.max_iterations);
    for (auto _ : state)
        step();
    other.join();
}

void registerMutex() {
    add(std::string("lock+unlock/") + bench::kOurs, [](benchmark::State& state) {
        kxThread::Mutex mutex;
        const IdleThread other;
        for (auto _ : state) {
            kxThread::MutexOp op(mutex, true);
            op.lock();
            op.unlock();
        }
    });
    add("lock+unlock/std::recursive_mutex", [](benchmark::State& state) {
        std::recursive_mutex mutex;
        const IdleThread other;
        for (auto _ : state) {
            mutex.lock();
            mutex.unlock();
        }
    });
}

void registerBarrier() {
    add(std::string("barrier round trip/") + bench::kOurs, [](benchmark::State& state) {
        kxThread::Barrier barrier(2);
        withPartner(
            state,
            [&](benchmark::IterationCount rounds) {
                for (benchmark::IterationCount i = 0; i < rounds; ++i)
                    barrier.wait();
            },
            [&] { barrier.wait(); });
    });
    add("barrier round trip/std::barrier", [](benchmark::State& state) {
        std::barrier<> barrier(2);
        withPartner(
            state,
            [&](benchmark::IterationCount rounds) {
                for (benchmark::IterationCount i = 0; i < rounds; ++i)
                    barrier.arrive_and_wait();
            },
            [&] { barrier.arrive_and_wait(); });
    });
}

void registerSemaphore() {
    add(std::string("semaphore ping-pong/") + bench::kOurs, [](benchmark::State& state) {
        kxThread::Semaphore ping, pong;
        withPartner(
            state,
            [&](benchmark::IterationCount rounds) {
                for (benchmark::IterationCount i = 0; i < rounds; ++i) {
                    ping.wait();
                    pong.post();
                }
            },
            [&] {
                ping.post();
                pong.wait();
            });
    });
    add("semaphore ping-pong/std::counting_semaphore", [](benchmark::State& state) {
        std::counting_semaphore<> ping(0), pong(0);
        withPartner(
            state,
            [&](benchmark::IterationCount rounds) {
                for (benchmark::IterationCount i = 0; i < rounds; ++i) {
                    ping.acquire();
                    pong.release();
                }
            },
            [&] {
                ping.release();
                pong.acquire();
            });
    });
}

} // namespace

int main(int argc, char** argv) {
    registerMutex();
    registerBarrier();
    registerSemaphore();
    return bench::runAndCompare(argc, argv);
}
