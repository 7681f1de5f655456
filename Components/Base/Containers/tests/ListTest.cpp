#include <Base/Containers/List.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <random>
#include <vector>

namespace {

// A value whose equality and order look at `key` only, so that the tests
// can tell equal elements apart by `tag`.
struct Tagged {
    int key;
    int tag;
    bool operator==(const Tagged& other) const { return key == other.key; }
    bool operator<(const Tagged& other) const { return key < other.key; }
};

template <class T>
std::vector<T> asVector(const kx::list<T>& list) {
    return std::vector<T>(list.begin(), list.end());
}

std::vector<int> tags(const kx::list<Tagged>& list) {
    std::vector<int> result;
    for (const Tagged& t : list)
        result.push_back(t.tag);
    return result;
}

// Walks the ring both ways: every link must be answered by the node it
// points at, and the count must match the size.
template <class T>
void expectConsistent(const kx::list<T>& list) {
    int forward = 0;
    for (auto it = list.begin(); it != list.end(); ++it)
        ++forward;
    int backward = 0;
    for (auto it = list.end(); it != list.begin(); --it)
        ++backward;
    EXPECT_EQ(forward, list.size());
    EXPECT_EQ(backward, list.size());
}

} // namespace

TEST(List, EditsMatchTheStandardList) {
    std::mt19937 random(3);
    kx::list<int> ours;
    std::list<int> theirs;
    for (int step = 0; step < 3000; ++step) {
        const int value = static_cast<int>(random() % 50);
        const int size = static_cast<int>(theirs.size());
        const int at = size == 0 ? 0 : static_cast<int>(random() % (size + 1));
        auto ourPos = std::next(ours.begin(), at);
        auto theirPos = std::next(theirs.begin(), at);
        switch (random() % 7) {
        case 0: ours.push_back(value), theirs.push_back(value); break;
        case 1: ours.push_front(value), theirs.push_front(value); break;
        case 2: ours.insert(ourPos, value), theirs.insert(theirPos, value); break;
        case 3:
            if (at < size)
                ours.erase(ourPos), theirs.erase(theirPos);
            break;
        case 4: ours.remove(value), theirs.remove(value); break;
        case 5: ours.reverse(), theirs.reverse(); break;
        default:
            if (size > 0)
                ours.pop_back(), theirs.pop_back();
            break;
        }
        ASSERT_EQ(asVector(ours), std::vector<int>(theirs.begin(), theirs.end())) << step;
    }
    expectConsistent(ours);
}

TEST(List, SortIsStable) {
    std::mt19937 random(9);
    for (int n : {0, 1, 2, 3, 31, 32, 33, 1000}) {
        kx::list<Tagged> list;
        std::vector<Tagged> expected;
        for (int i = 0; i < n; ++i) {
            const Tagged t{static_cast<int>(random() % 10), i};
            list.push_back(t);
            expected.push_back(t);
        }
        list.sort();
        std::stable_sort(expected.begin(), expected.end());
        std::vector<int> expectedTags;
        for (const Tagged& t : expected)
            expectedTags.push_back(t.tag);
        EXPECT_EQ(tags(list), expectedTags) << n;
        expectConsistent(list);
    }
    kx::list<int> descending = {1, 5, 3};
    descending.sort(std::greater<>());
    EXPECT_EQ(asVector(descending), (std::vector<int>{5, 3, 1}));
}

TEST(List, UniqueKeepsTheLastOfEachRun) {
    kx::list<Tagged> list = {{1, 0}, {1, 1}, {2, 2}, {2, 3}, {2, 4}, {3, 5}};
    list.unique();
    EXPECT_EQ(tags(list), (std::vector<int>{1, 4, 5}));
}

TEST(List, MergeKeepsThisListsEqualsFirst) {
    kx::list<Tagged> a = {{1, 0}, {2, 1}, {4, 2}};
    kx::list<Tagged> b = {{2, 10}, {3, 11}, {4, 12}, {9, 13}};
    a.merge(b);
    EXPECT_EQ(tags(a), (std::vector<int>{0, 1, 10, 11, 2, 12, 13}));
    EXPECT_TRUE(b.empty());
}

TEST(List, SpliceMovesNodesAndCounts) {
    kx::list<int> a = {1, 2, 3};
    kx::list<int> b = {10, 20, 30, 40};
    a.splice(std::next(a.begin()), b, std::next(b.begin()), std::prev(b.end()));
    EXPECT_EQ(asVector(a), (std::vector<int>{1, 20, 30, 2, 3}));
    EXPECT_EQ(a.size(), 5);
    EXPECT_EQ(b.size(), 2);
    a.splice(a.end(), b, b.begin());
    EXPECT_EQ(a.back(), 10);
    EXPECT_EQ(b.size(), 1);
    a.splice(a.begin(), b);
    EXPECT_EQ(a.front(), 40);
    EXPECT_TRUE(b.empty());
    a.splice(a.begin(), a, std::prev(a.end(), 2), a.end()); // within one list
    EXPECT_EQ(asVector(a), (std::vector<int>{3, 10, 40, 1, 20, 30, 2}));
    EXPECT_EQ(a.size(), 7);
    expectConsistent(a);
    expectConsistent(b);
}

TEST(List, SwapAndMoveRepointTheEndNode) {
    kx::list<int> a = {1, 2};
    kx::list<int> empty;
    a.swap(empty);
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(asVector(empty), (std::vector<int>{1, 2}));
    expectConsistent(a);
    expectConsistent(empty);
    kx::list<int> moved(std::move(empty));
    moved.push_back(3); // links at the new end node
    EXPECT_EQ(asVector(moved), (std::vector<int>{1, 2, 3}));
    expectConsistent(moved);
    kx::list<int> both = {7};
    both.swap(moved);
    EXPECT_EQ(asVector(both), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(asVector(moved), (std::vector<int>{7}));
}

TEST(List, AssignmentReusesNodesAndSelfAppendEnds) {
    kx::list<int> a = {1, 2, 3};
    const int* first = &a.front();
    const int* second = &*std::next(a.begin());
    const kx::list<int> shorter = {4, 5};
    a = shorter;
    EXPECT_EQ(&a.front(), first);
    EXPECT_EQ(&*std::next(a.begin()), second);
    EXPECT_EQ(asVector(a), (std::vector<int>{4, 5}));
    const kx::list<int> longer = {6, 7, 8, 9};
    a = longer;
    EXPECT_EQ(asVector(a), (std::vector<int>{6, 7, 8, 9}));

    EXPECT_EQ(a.erase(a.begin(), a.end()), a.end()); // the clear path
    EXPECT_TRUE(a.empty());
    a.assign({1, 2});
    a.insert(a.end(), a.begin(), a.end()); // the source grows as it is read
    EXPECT_EQ(asVector(a), (std::vector<int>{1, 2, 1, 2}));
    a.remove_if([](int x) { return x == 1; });
    EXPECT_EQ(asVector(a), (std::vector<int>{2, 2}));
    a.resize(3, 9);
    EXPECT_EQ(asVector(a), (std::vector<int>{2, 2, 9}));
}
