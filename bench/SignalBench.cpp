// kxRTB signals against libsigc++ 3, Boost.Signals2 and the floor, a plain
// loop over std::vector<std::function<void(int)>>: emission of an int to 0,
// 1, 10 and 100 member slots (also with the slot objects scattered over
// 64 MiB), connecting and disconnecting one slot, and a slot that
// disconnects itself while the signal is emitted. Every implementation calls
// the same out-of-line member function; the receivers derive from both
// libraries' client bases, so each library's automatic disconnection is in
// place. Boost.Signals2 is used as it comes, with its mutex.
#include "Compare.h"

#include <Base/Signal/Signal.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <memory>
#include <new>
#include <random>
#include <string>
#include <vector>

#if BASE_BENCH_HAVE_SIGCXX
#    include <sigc++/sigc++.h>
#endif
#if BASE_BENCH_HAVE_BOOST
#    include <boost/signals2.hpp>
#endif

namespace {

#if BASE_BENCH_HAVE_SIGCXX
using SigcClient = sigc::trackable;
#else
struct SigcClient {};
#endif

class Receiver : public kxRTB::SignalClient, public SigcClient {
public:
    // Out of line for every implementation alike: a slot does real work.
    [[gnu::noinline]] void onValue(int value) { sum_ += value; }

    // Slots that end their own connection.
    void onceLibBase(int value) {
        onValue(value);
        signal->disconnect(connection);
    }
#if BASE_BENCH_HAVE_SIGCXX
    void onceSigc(int value) {
        onValue(value);
        sigcConnection.disconnect();
    }
    sigc::connection sigcConnection;
#endif
#if BASE_BENCH_HAVE_BOOST
    boost::signals2::connection boostConnection;
#endif

    kxRTB::SignalArg<int>* signal = nullptr;
    kxRTB::Connection* connection = nullptr;

private:
    long sum_ = 0;
};

// `count` receivers, side by side or each on its own page at a random place
// in a 64 MiB arena, in a random order.
class Receivers {
public:
    Receivers(int count, bool scattered) {
        constexpr std::size_t kArena = 64u << 20, kPage = 4096;
        static_assert(sizeof(Receiver) <= kPage);
        const std::size_t stride = scattered ? kPage : sizeof(Receiver);
        const std::size_t slots = scattered ? kArena / kPage : static_cast<std::size_t>(count);
        arena_.reset(static_cast<unsigned char*>(
            ::operator new(std::max<std::size_t>(slots, 1) * stride, std::align_val_t(kPage))));
        std::vector<std::size_t> places(slots);
        for (std::size_t i = 0; i < slots; ++i)
            places[i] = i;
        std::mt19937 random(7);
        if (scattered)
            std::shuffle(places.begin(), places.end(), random);
        for (int i = 0; i < count; ++i)
            all.push_back(new (arena_.get() + places[i] * stride) Receiver);
    }
    ~Receivers() {
        for (Receiver* r : all)
            r->~Receiver();
    }

    std::vector<Receiver*> all;

private:
    struct Free {
        void operator()(unsigned char* p) const { ::operator delete(p, std::align_val_t(4096)); }
    };
    std::unique_ptr<unsigned char, Free> arena_;
};

template <class Body>
void add(const std::string& name, Body body) {
    benchmark::RegisterBenchmark(name.c_str(), body);
}

void registerEmission(int count, bool scattered) {
    const std::string prefix =
        "emit to " + std::to_string(count) + (scattered ? " scattered" : "") + "/";
    add(prefix + bench::kOurs, [=](benchmark::State& state) {
        Receivers receivers(count, scattered);
        kxRTB::SignalArg<int> signal;
        for (Receiver* r : receivers.all)
            signal.connect(r, &Receiver::onValue);
        for (auto _ : state)
            signal.emit(1);
    });
    add(prefix + "std::function", [=](benchmark::State& state) {
        Receivers receivers(count, scattered);
        std::vector<std::function<void(int)>> slots;
        for (Receiver* r : receivers.all)
            slots.emplace_back([r](int value) { r->onValue(value); });
        for (auto _ : state) {
            for (const std::function<void(int)>& slot : slots)
                slot(1);
            benchmark::ClobberMemory();
        }
    });
#if BASE_BENCH_HAVE_SIGCXX
    add(prefix + "libsigc++", [=](benchmark::State& state) {
        Receivers receivers(count, scattered);
        sigc::signal<void(int)> signal;
        for (Receiver* r : receivers.all)
            signal.connect(sigc::mem_fun(*r, &Receiver::onValue));
        for (auto _ : state)
            signal.emit(1);
    });
#endif
#if BASE_BENCH_HAVE_BOOST
    add(prefix + "Boost.Signals2", [=](benchmark::State& state) {
        Receivers receivers(count, scattered);
        boost::signals2::signal<void(int)> signal;
        for (Receiver* r : receivers.all)
            signal.connect([r](int value) { r->onValue(value); });
        for (auto _ : state)
            signal(1);
    });
#endif
}

void registerConnection() {
    add(std::string("connect+disconnect/") + bench::kOurs, [](benchmark::State& state) {
        Receivers receivers(1, false);
        kxRTB::SignalArg<int> signal;
        for (auto _ : state)
            signal.disconnect(signal.connect(receivers.all[0], &Receiver::onValue));
    });
    add("connect+disconnect/std::function", [](benchmark::State& state) {
        Receivers receivers(1, false);
        Receiver* r = receivers.all[0];
        std::vector<std::function<void(int)>> slots;
        for (auto _ : state) {
            slots.emplace_back([r](int value) { r->onValue(value); });
            slots.pop_back();
            benchmark::ClobberMemory();
        }
    });
    add(std::string("self-disconnecting slot/") + bench::kOurs, [](benchmark::State& state) {
        Receivers receivers(1, false);
        Receiver* r = receivers.all[0];
        kxRTB::SignalArg<int> signal;
        r->signal = &signal;
        for (auto _ : state) {
            r->connection = signal.connect(r, &Receiver::onceLibBase);
            signal.emit(1);
        }
    });
#if BASE_BENCH_HAVE_SIGCXX
    add("connect+disconnect/libsigc++", [](benchmark::State& state) {
        Receivers receivers(1, false);
        sigc::signal<void(int)> signal;
        for (auto _ : state)
            signal.connect(sigc::mem_fun(*receivers.all[0], &Receiver::onValue)).disconnect();
    });
    add("self-disconnecting slot/libsigc++", [](benchmark::State& state) {
        Receivers receivers(1, false);
        Receiver* r = receivers.all[0];
        sigc::signal<void(int)> signal;
        for (auto _ : state) {
            r->sigcConnection = signal.connect(sigc::mem_fun(*r, &Receiver::onceSigc));
            signal.emit(1);
        }
    });
#endif
#if BASE_BENCH_HAVE_BOOST
    add("connect+disconnect/Boost.Signals2", [](benchmark::State& state) {
        Receivers receivers(1, false);
        Receiver* r = receivers.all[0];
        boost::signals2::signal<void(int)> signal;
        for (auto _ : state)
            signal.connect([r](int value) { r->onValue(value); }).disconnect();
    });
    add("self-disconnecting slot/Boost.Signals2", [](benchmark::State& state) {
        Receivers receivers(1, false);
        Receiver* r = receivers.all[0];
        boost::signals2::signal<void(int)> signal;
        for (auto _ : state) {
            r->boostConnection = signal.connect([r](int value) {
                r->onValue(value);
                r->boostConnection.disconnect();
            });
            signal(1);
        }
    });
#endif
}

} // namespace

int main(int argc, char** argv) {
#if !BASE_BENCH_HAVE_SIGCXX
    std::printf(
        "libsigc++ 3 not found (package libsigc++-3.0-dev): its comparisons are skipped.\n");
#endif
#if !BASE_BENCH_HAVE_BOOST
    std::printf("Boost not found (package libboost-dev): its comparisons are skipped.\n");
#endif
    for (const int count : {0, 1, 10, 100})
        registerEmission(count, false);
    registerEmission(10, true);
    registerEmission(100, true);
    registerConnection();
    return bench::runAndCompare(argc, argv);
}
