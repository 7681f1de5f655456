// The containers against the standard library and Abseil: vectors, ordered
// maps (also std::pmr::map over a pool), hash maps with 64-bit and string
// keys, and the byte hash.
#include "Compare.h"

#include <Base/Containers/Hash.h>
#include <Base/Containers/HashMap.h>
#include <Base/Containers/Map.h>
#include <Base/Containers/Vector.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <memory_resource>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#if BASE_BENCH_HAVE_ABSL
#    include <absl/container/flat_hash_map.h>
#    include <absl/hash/hash.h>
#endif

namespace {

template <class Body>
void add(const std::string& name, Body body) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) mutable {
        for (auto _ : state)
            body();
    });
}

// A case's data is built on its first run and freed when another case runs,
// so that every case finds the heap as it was, whatever ran before. One
// holder serves all cases.
struct LiveData {
    static inline std::shared_ptr<void> data;
    static inline const void* owner = nullptr;
};

template <class Build>
auto fixture(Build build) {
    using Data = decltype(build());
    auto token = std::make_shared<char>();
    return [token, build]() -> Data& {
        if (LiveData::owner != token.get()) {
            LiveData::data.reset();
            LiveData::data = std::make_shared<Data>(build());
            LiveData::owner = token.get();
        }
        return *static_cast<Data*>(LiveData::data.get());
    };
}

std::string count(int n) {
    return n >= 1000000 ? std::to_string(n / 1000000) + "M" : std::to_string(n / 1000) + "K";
}

std::vector<std::uint64_t> randomKeys(int n, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<std::uint64_t> keys(static_cast<std::size_t>(n));
    for (auto& k : keys)
        k = random();
    return keys;
}

// Keys of 8 to 32 bytes.
std::vector<std::string> randomTexts(int n, std::uint64_t seed) {
    std::mt19937_64 random(seed);
    std::vector<std::string> texts(static_cast<std::size_t>(n));
    for (auto& t : texts) {
        t.resize(8 + random() % 25);
        for (char& c : t)
            c = static_cast<char>('a' + random() % 26);
    }
    return texts;
}

template <class T>
std::vector<T> shuffled(std::vector<T> items) {
    std::shuffle(items.begin(), items.end(), std::mt19937(1));
    return items;
}

template <class Vector, class T>
void registerVector(const std::string& type, const std::string& impl, T value) {
    for (int n : {1000, 1000000}) {
        add("vector<" + type + "> push_back " + count(n) + "/" + impl, [=] {
            Vector v;
            for (int i = 0; i < n; ++i)
                v.push_back(value);
            benchmark::DoNotOptimize(v.data());
        });
        const auto filled = fixture([=] { return Vector(n, value); });
        add("vector<" + type + "> insert front of " + count(n) + "/" + impl, [=] {
            Vector& v = filled();
            v.insert(v.begin(), value);
            v.pop_back();
            benchmark::ClobberMemory();
        });
        const auto filledAgain = fixture([=] { return Vector(n, value); });
        add("vector<" + type + "> erase front of " + count(n) + "/" + impl, [=] {
            Vector& v = filledAgain();
            v.erase(v.begin());
            v.push_back(value);
            benchmark::ClobberMemory();
        });
    }
}

void registerOrdered(const std::string& impl, auto make) {
    for (int n : {1000, 100000, 1000000}) {
        struct Keys {
            std::vector<std::uint64_t> keys;
            std::vector<std::uint64_t> lookups;
        };
        const auto keysOf = [n] {
            Keys k{randomKeys(n, 7), {}};
            k.lookups = shuffled(k.keys);
            return k;
        };
        const std::string size = count(n);
        const auto data = fixture(keysOf);
        add("map insert+find " + size + "/" + impl, [=] {
            const Keys& k = data();
            auto map = make();
            for (std::uint64_t key : k.keys)
                (*map)[key] = key;
            std::uint64_t sum = 0;
            for (std::uint64_t key : k.lookups)
                sum += map->find(key)->second;
            benchmark::DoNotOptimize(sum);
        });
        const auto built = fixture([=] {
            auto map = make();
            for (std::uint64_t key : keysOf().keys)
                (*map)[key] = key;
            return map;
        });
        add("map in-order walk " + size + "/" + impl, [=] {
            std::uint64_t sum = 0;
            for (const auto& entry : *built())
                sum += entry.second;
            benchmark::DoNotOptimize(sum);
        });
        const auto erasing = fixture(keysOf);
        add("map insert+erase half " + size + "/" + impl, [=] {
            const Keys& k = erasing();
            auto map = make();
            for (std::uint64_t key : k.keys)
                (*map)[key] = key;
            for (std::size_t i = 0; i < k.keys.size(); i += 2)
                map->erase(k.lookups[i]);
            benchmark::DoNotOptimize(map->size());
        });
    }
}

template <class Key>
struct HashKeys {
    std::vector<Key> keys;
    std::vector<Key> lookups;
    std::vector<Key> misses;
};

template <class Map, class Key>
void registerHash(const std::string& keyName, const std::string& impl, int n,
                  std::function<HashKeys<Key>()> keysOf) {
    const std::string size = count(n);
    const auto inserting = fixture(keysOf);
    add("hash<" + keyName + "> insert " + size + "/" + impl, [=] {
        Map map;
        for (const Key& k : inserting().keys)
            map[k] = 1;
        benchmark::DoNotOptimize(map.size());
    });
    struct Built {
        HashKeys<Key> keys;
        Map map;
    };
    const auto built = fixture([=] {
        Built b{keysOf(), {}};
        for (const Key& k : b.keys.keys)
            b.map[k] = 1;
        return b;
    });
    add("hash<" + keyName + "> find hit " + size + "/" + impl, [=] {
        Built& b = built();
        std::uint64_t found = 0;
        for (const Key& k : b.keys.lookups)
            found += b.map.find(k) != b.map.end();
        benchmark::DoNotOptimize(found);
    });
    const auto builtAgain = fixture([=] {
        Built b{keysOf(), {}};
        for (const Key& k : b.keys.keys)
            b.map[k] = 1;
        return b;
    });
    add("hash<" + keyName + "> find miss " + size + "/" + impl, [=] {
        Built& b = builtAgain();
        std::uint64_t found = 0;
        for (const Key& k : b.keys.misses)
            found += b.map.find(k) != b.map.end();
        benchmark::DoNotOptimize(found);
    });
    const auto erasing = fixture(keysOf);
    add("hash<" + keyName + "> insert+erase " + size + "/" + impl, [=] {
        const HashKeys<Key>& k = erasing();
        Map map;
        for (const Key& key : k.keys)
            map[key] = 1;
        for (const Key& key : k.lookups)
            map.erase(key);
        benchmark::DoNotOptimize(map.size());
    });
}

template <class Key>
void registerHashes(const std::string& keyName, int n, std::function<HashKeys<Key>()> keysOf) {
    registerHash<kx::hash_map<Key, std::uint64_t>, Key>(keyName, bench::kOurs, n, keysOf);
    registerHash<std::unordered_map<Key, std::uint64_t>, Key>(keyName, "std", n, keysOf);
#if BASE_BENCH_HAVE_ABSL
    registerHash<absl::flat_hash_map<Key, std::uint64_t>, Key>(keyName, "absl", n, keysOf);
#endif
}

void registerHashFunction() {
    for (int n : {8, 16, 64, 1000}) {
        const auto texts = std::make_shared<std::vector<std::string>>();
        for (int i = 0; i < 64; ++i)
            texts->push_back(
                std::string(static_cast<std::size_t>(n), static_cast<char>('a' + i % 26)));
        const std::string name = "hash " + std::to_string(n) + " bytes";
        const auto run = [texts, n](auto hash) {
            return [texts, n, hash](benchmark::State& state) {
                for (auto _ : state) {
                    for (const std::string& t : *texts)
                        benchmark::DoNotOptimize(hash(t));
                }
                state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * 64 * n);
            };
        };
        benchmark::RegisterBenchmark((name + "/" + bench::kOurs).c_str(),
                                     run([](const std::string& t) {
                                         return kx::hashfunction(t.data(), t.data() + t.size());
                                     }));
        benchmark::RegisterBenchmark((name + "/std").c_str(), run([](const std::string& t) {
                                         return std::hash<std::string_view>()(t);
                                     }));
#if BASE_BENCH_HAVE_ABSL
        benchmark::RegisterBenchmark((name + "/absl").c_str(), run([](const std::string& t) {
                                         return absl::Hash<std::string_view>()(t);
                                     }));
#endif
    }
}

// A pmr map with the pool it draws from; the pool is built first.
struct PooledMap : std::pmr::unsynchronized_pool_resource,
                   std::pmr::map<std::uint64_t, std::uint64_t> {
    PooledMap()
        : std::pmr::map<std::uint64_t, std::uint64_t>(
              static_cast<std::pmr::memory_resource*>(this)) {}
};

} // namespace

int main(int argc, char** argv) {
#if !BASE_BENCH_HAVE_ABSL
    std::printf("Abseil not found (package libabsl-dev): its comparisons are skipped.\n");
#endif
    int dummy = 0;
    registerVector<kx::vector<int>>("int", bench::kOurs, 7);
    registerVector<std::vector<int>>("int", "std", 7);
    registerVector<kx::vector<int*>>("pointer", bench::kOurs, &dummy);
    registerVector<std::vector<int*>>("pointer", "std", &dummy);

    using Key = std::uint64_t;
    registerOrdered(bench::kOurs, [] { return std::make_shared<kx::map<Key, Key>>(); });
    registerOrdered("std", [] { return std::make_shared<std::map<Key, Key>>(); });
    registerOrdered("std::pmr", [] { return std::make_shared<PooledMap>(); });

    for (int n : {1000, 1000000}) {
        registerHashes<std::uint64_t>("u64", n, [n] {
            const auto keys = randomKeys(n, 11);
            return HashKeys<std::uint64_t>{keys, shuffled(keys), randomKeys(n, 12)};
        });
        registerHashes<std::string>("text", n, [n] {
            const auto keys = randomTexts(n, 13);
            return HashKeys<std::string>{keys, shuffled(keys), randomTexts(n, 14)};
        });
    }
    registerHashFunction();
    return bench::runAndCompare(argc, argv);
}
