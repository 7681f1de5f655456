#include <Base/Containers/HashMap.h>

#include <Base/String/CString.h>
#include <Base/String/IString.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <unordered_map>

namespace {

using HashNode = kx::HashTableImpl::HashNodeImpl;

// Every key in exactly one chain, in the bucket of its stored hash; the
// count and the iteration agree.
template <class Table>
struct Inspect : Table {
    void expectValid() const {
        const kx::HashTableImpl& core = *this;
        int nodes = 0;
        for (int b = 0; b < core.bucket_count(); ++b) {
            nodes += core.bucket_size(b);
            for (const HashNode* n = core.firstNode(); n; n = n->nextItem(&core))
                (void)n;
        }
        EXPECT_EQ(nodes, core.size());
        int walked = 0;
        for (const HashNode* n = core.firstNode(); n; n = n->nextItem(&core)) {
            EXPECT_EQ(n->hash, typename Table::hasher()(this->keyOf(n)));
            ++walked;
        }
        EXPECT_EQ(walked, core.size());
    }
    const typename Table::key_type& keyOf(const HashNode* n) const {
        return *static_cast<const typename Table::key_type*>(this->keyPtrOfNode(n));
    }
};

// All keys hash alike, to exercise the chains.
struct Collide {
    std::uint64_t operator()(int) const { return 42; }
};

} // namespace

TEST(HashMap, GrowsThroughThePrimes) {
    kx::hash_map<int, int> map;
    EXPECT_EQ(map.bucket_count(), 0);
    EXPECT_EQ(map.load_factor(), 0.0f);
    map[1] = 1;
    EXPECT_EQ(map.bucket_count(), 7);
    for (int i = 2; i <= 7; ++i)
        map[i] = i;
    EXPECT_EQ(map.bucket_count(), 7);
    map[8] = 8; // the 8th key passes a load of 1.0
    EXPECT_EQ(map.bucket_count(), 13);

    kx::hash_map<int, int> small;
    for (int i = 0; i < 5; ++i)
        small[i] = i;
    small.max_load_factor(0.5f);
    EXPECT_EQ(small.bucket_count(), 13);
    small.max_load_factor(4.0f); // never shrinks
    EXPECT_EQ(small.bucket_count(), 13);
    small.max_load_factor(0.0f); // ignored
    EXPECT_EQ(small.max_load_factor(), 4.0f);
    small.reserve(1000);
    EXPECT_EQ(small.bucket_count(), 389);
}

TEST(HashMap, RandomEditsMatchStdUnorderedMap) {
    std::mt19937 random(13);
    Inspect<kx::hash_map<std::string, int>> ours;
    std::unordered_map<std::string, int> theirs;
    for (int step = 0; step < 5000; ++step) {
        const std::string key = "key" + std::to_string(random() % 700);
        switch (random() % 4) {
        case 0:
            EXPECT_EQ(ours.insert({key, step}).second, theirs.insert({key, step}).second);
            break;
        case 1: ours[key] += 2, theirs[key] += 2; break;
        case 2: EXPECT_EQ(ours.erase(key), static_cast<int>(theirs.erase(key))); break;
        default: EXPECT_EQ(ours.contains(key), theirs.count(key) == 1); break;
        }
    }
    ours.expectValid();
    using Sorted = std::map<std::string, int>;
    EXPECT_EQ(Sorted(ours.begin(), ours.end()), Sorted(theirs.begin(), theirs.end()));
    for (auto it = ours.begin(); it != ours.end();)
        it = it->second % 2 == 0 ? ours.erase(it) : std::next(it);
    for (const auto& [key, value] : ours)
        EXPECT_EQ(value % 2, 1);
    ours.expectValid();
}

TEST(HashMap, CollidingKeysShareOneChain) {
    Inspect<kx::hash_map<int, int, Collide>> map;
    for (int i = 0; i < 20; ++i)
        map[i] = i;
    map.expectValid();
    EXPECT_EQ(map.size(), 20);
    for (int i = 0; i < 20; i += 2)
        EXPECT_EQ(map.erase(i), 1);
    EXPECT_EQ(map.erase(0), 0);
    for (int i = 1; i < 20; i += 2)
        EXPECT_EQ(map.find(i)->second, i);
    map.expectValid();
}

TEST(HashMap, StringKeysAndCopies) {
    kx::hash_set<kxString::CString> narrow = {"a", "b", "a"};
    EXPECT_EQ(narrow.size(), 2);
    EXPECT_TRUE(narrow.contains("b"));
    kx::hash_set<kxString::IString> wide = {kxString::IString(L"x"), kxString::IString(L"y")};
    EXPECT_EQ(wide.count(kxString::IString(L"y")), 1);

    kx::hash_map<int, std::string> a = {{1, "one"}, {2, "two"}};
    a.max_load_factor(0.25f);
    kx::hash_map<int, std::string> b(a);
    EXPECT_EQ(b, a);
    EXPECT_EQ(b.max_load_factor(), 0.25f);
    b[3] = "three";
    EXPECT_FALSE(b == a);
    kx::hash_map<int, std::string> c(std::move(b));
    EXPECT_TRUE(b.empty()); // NOLINT(bugprone-use-after-move): moved-from is empty
    a.swap(c);
    EXPECT_EQ(a.size(), 3);
    a.clear();
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(a.bucket_count(), 13); // the buckets stay
}

namespace {

// Non-unique inserts are reachable through the core only.
struct MultiTable : kx::hash_map<int, int> {
    void add(int key, int value) {
        rehash(size() + 1);
        insert_non_unique_noresize(kx::hash<int>()(key), &key, &value);
    }
    std::vector<int> chainValues(int key) const {
        std::vector<int> values;
        const kx::HashTableImpl& core = *this;
        for (const HashNode* n = buckets_[core.bucketNum(kx::hash<int>()(key))]; n; n = n->next)
            values.push_back(*static_cast<const int*>(valuePtrOfNode(n)));
        return values;
    }
    int eraseAll(int key) { return eraseKey(kx::hash<int>()(key), &key); }
    int countAll(int key) const { return HashTableImpl::count(kx::hash<int>()(key), &key); }
};

} // namespace

TEST(HashTableImpl, EqualKeysStayAdjacent) {
    MultiTable table;
    table.add(1, 10);
    table.add(1, 11); // right after the first equal node
    table.add(1, 12);
    EXPECT_EQ(table.chainValues(1), (std::vector<int>{10, 12, 11}));
    EXPECT_EQ(table.size(), 3);
    EXPECT_EQ(table.countAll(1), 3);
    EXPECT_EQ(table.eraseAll(1), 3);
    EXPECT_TRUE(table.empty());
}
