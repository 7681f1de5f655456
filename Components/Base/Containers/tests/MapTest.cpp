#include <Base/Containers/Map.h>

#include <Base/String/CString.h>

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace {

using Node = kx::RBTreeImpl::Node;

// Opens the tree of a container for the invariant checks.
template <class Container>
struct Inspect : Container {
    const kx::RBTreeImpl& tree() const { return *this; }
};

// Checks a subtree: parent links, ordering against its bounds, no red node
// with a red child; returns its black height.
int blackHeight(const kx::RBTreeImpl& tree, const Node* node, const Node* parent, const int* low,
                const int* high) {
    if (!node)
        return 1;
    EXPECT_EQ(node->parent, parent);
    const int key = *static_cast<const int*>(tree.keyPtrOfNode(node));
    if (low) {
        EXPECT_LE(*low, key);
    }
    if (high) {
        EXPECT_LE(key, *high);
    }
    if (node->color == kx::RBTreeImpl::kRed) {
        EXPECT_TRUE(!node->left || node->left->color == kx::RBTreeImpl::kBlack);
        EXPECT_TRUE(!node->right || node->right->color == kx::RBTreeImpl::kBlack);
    }
    const int left = blackHeight(tree, node->left, node, low, &key);
    const int right = blackHeight(tree, node->right, node, &key, high);
    EXPECT_EQ(left, right) << "black heights differ under " << key;
    return left + (node->color == kx::RBTreeImpl::kBlack);
}

// The red-black rules, the header's leftmost, rightmost and root, and the
// size, for a tree of int keys.
void expectValidTree(const kx::RBTreeImpl& tree) {
    const Node* header = tree.end();
    const Node* root = tree.root();
    EXPECT_EQ(header->color, kx::RBTreeImpl::kRed);
    if (!root) {
        EXPECT_EQ(tree.size(), 0);
        EXPECT_EQ(header->left, header);
        EXPECT_EQ(header->right, header);
        return;
    }
    EXPECT_EQ(root->color, kx::RBTreeImpl::kBlack);
    EXPECT_EQ(root->parent, header);
    EXPECT_EQ(header->left, kx::RBTreeImpl::sFindLeftMost(root));
    EXPECT_EQ(header->right, kx::RBTreeImpl::sFindRightMost(root));
    blackHeight(tree, root, header, nullptr, nullptr);
    EXPECT_EQ(kx::RBTreeImpl::sDistanceBetween(tree.begin(), tree.end()), tree.size());
}

template <class Map>
std::vector<std::pair<int, int>> entries(const Map& map) {
    std::vector<std::pair<int, int>> result;
    for (const auto& [key, value] : map)
        result.emplace_back(key, value);
    return result;
}

} // namespace

static_assert(sizeof(kx::map<int, int>) == sizeof(kx::RBTreeImpl), "the shell adds no data");

TEST(Map, RandomEditsKeepTheTreeValidAndMatchStdMap) {
    std::mt19937 random(5);
    Inspect<kx::map<int, int>> ours;
    std::map<int, int> theirs;
    for (int step = 0; step < 4000; ++step) {
        const int key = static_cast<int>(random() % 500);
        switch (random() % 5) {
        case 0:
        case 1: {
            const auto [it, added] = ours.insert({key, step});
            EXPECT_EQ(added, theirs.insert({key, step}).second);
            EXPECT_EQ(it->first, key);
            break;
        }
        case 2: ours[key] += 1, theirs[key] += 1; break;
        case 3: EXPECT_EQ(ours.erase(key), static_cast<int>(theirs.erase(key))); break;
        default: {
            const auto it = ours.find(key);
            if (it != ours.end())
                ours.erase(it), theirs.erase(key);
            break;
        }
        }
        if (step % 97 == 0)
            expectValidTree(ours.tree());
    }
    expectValidTree(ours.tree());
    using Entries = std::vector<std::pair<int, int>>;
    EXPECT_EQ(entries(ours), Entries(theirs.begin(), theirs.end()));
    while (!ours.empty())
        ours.erase(ours.begin());
    expectValidTree(ours.tree());
}

TEST(Map, HintedInsertsKeepTheTreeValid) {
    std::mt19937 random(8);
    Inspect<kx::multiset<int>> ours;
    Inspect<kx::set<int>> unique;
    std::multiset<int> theirs;
    for (int step = 0; step < 3000; ++step) {
        const int key = static_cast<int>(random() % 300);
        // Hints near, far from and at the right place, begin() and end().
        auto hint = ours.lower_bound(static_cast<int>(random() % 300));
        if (step % 5 == 0)
            hint = ours.begin();
        if (step % 7 == 0)
            hint = ours.end();
        ours.insert(hint, key);
        theirs.insert(key);
        auto uniqueHint = unique.lower_bound(static_cast<int>(random() % 300));
        if (step % 3 == 0)
            uniqueHint = unique.end();
        unique.insert(uniqueHint, key);
    }
    expectValidTree(ours.tree());
    expectValidTree(unique.tree());
    EXPECT_EQ(std::vector<int>(ours.begin(), ours.end()),
              std::vector<int>(theirs.begin(), theirs.end()));
    EXPECT_EQ(std::set<int>(unique.begin(), unique.end()),
              std::set<int>(theirs.begin(), theirs.end()));
}

TEST(Map, EqualKeysKeepInsertionOrder) {
    kx::multimap<int, int> map;
    for (int i = 0; i < 6; ++i)
        map.insert({i % 2, i});
    using Entries = std::vector<std::pair<int, int>>;
    EXPECT_EQ(entries(map), (Entries{{0, 0}, {0, 2}, {0, 4}, {1, 1}, {1, 3}, {1, 5}}));
    EXPECT_EQ(map.count(0), 3);
    const auto [first, last] = map.equal_range(1);
    EXPECT_EQ(std::distance(first, last), 3);
    EXPECT_EQ(map.erase(0), 3);
    EXPECT_EQ(map.size(), 3);
    map.insert(map.end(), {1, 7}); // the end() hint of a map goes to the right place
    EXPECT_EQ(std::prev(map.end())->second, 7);
}

TEST(Map, UniqueInsertKeepsThePresentEntry) {
    kx::map<int, kxString::CString> map;
    map[2] = "two";
    const auto [it, added] = map.insert({2, "other"});
    EXPECT_FALSE(added);
    EXPECT_STREQ(it->second.asChar(), "two");
    EXPECT_EQ(map.size(), 1);
    EXPECT_EQ(map[5], kxString::CString()); // a subscript inserts a default value
    kx::map<int, int> numbers;
    EXPECT_EQ(numbers[3], 0);
}

TEST(Map, IterationEndsAtTheHeader) {
    kx::set<int> set = {5, 1, 9, 3};
    EXPECT_EQ(*std::prev(set.end()), 9); // prev(end()) is the largest
    EXPECT_EQ(std::next(set.find(9)), set.end());
    EXPECT_EQ(*set.lower_bound(4), 5);
    EXPECT_EQ(*set.upper_bound(5), 9);
    EXPECT_EQ(set.lower_bound(10), set.end());
    EXPECT_EQ(std::vector<int>(set.rbegin(), set.rend()), (std::vector<int>{9, 5, 3, 1}));
    EXPECT_TRUE(set.contains(3));
    EXPECT_FALSE(set.contains(4));
    EXPECT_EQ(set.erase(set.begin(), set.find(5)), set.find(5));
    EXPECT_EQ(std::vector<int>(set.begin(), set.end()), (std::vector<int>{5, 9}));
}

TEST(Map, CopySwapAndMove) {
    Inspect<kx::map<int, int>> a;
    for (int i = 0; i < 50; ++i)
        a[i] = i * i;
    kx::map<int, int> b(a);
    EXPECT_EQ(b, a);
    Inspect<kx::map<int, int>> empty;
    empty.swap(a);
    expectValidTree(a.tree());
    expectValidTree(empty.tree());
    EXPECT_TRUE(a.empty());
    EXPECT_EQ(empty.size(), 50);
    a[1] = 1; // the emptied tree works with its own header
    expectValidTree(a.tree());
    kx::map<int, int> moved(std::move(b));
    EXPECT_EQ(moved.size(), 50);
    b = moved;
    EXPECT_EQ(b.size(), 50);
    b = kx::map<int, int>();
    EXPECT_TRUE(b.empty());
}

TEST(Map, BlockSizeCanBeSetBeforeTheFirstInsert) {
    kx::map<std::string, std::string> map;
    map.setNumElementsInBlock(100);
    for (int i = 0; i < 1000; ++i)
        map[std::to_string(i)] = std::string(40, 'x'); // destructors run on clear
    map.clear();
    EXPECT_TRUE(map.empty());
    map["a"] = "b";
    EXPECT_EQ(map["a"], "b");
}

namespace {

// A core tree of int keys and int values, for what the shells never do.
struct IntTree : Inspect<kx::map<int, int>> {
    Node* hintedNonUnique(Node* hint, int key, int value) {
        return insertNodeNonUnique(hint, &key, &value);
    }
    Node* unique(int key) { return insertNodeUnique(&key); }
    Node* findKey(int key) const { return findNode(&key); }
    int keyOf(const Node* node) const { return *static_cast<const int*>(keyPtrOfNode(node)); }
    Node* header() { return RBTreeImpl::end(); }
};

} // namespace

TEST(RBTreeImpl, EndHintOfNonUniqueInsertComparesTheValue) {
    IntTree quirk;
    quirk.hintedNonUnique(quirk.header(), 10, 0);
    quirk.hintedNonUnique(quirk.header(), 20, 0);
    // The value 30 is compared with the last key, 20, so key 5 goes last.
    quirk.hintedNonUnique(quirk.header(), 5, 30);
    EXPECT_EQ(quirk.keyOf(quirk.header()->prev()), 5);

    IntTree plain;
    plain.hintedNonUnique(plain.header(), 10, 0);
    plain.hintedNonUnique(plain.header(), 20, 0);
    // The value 1 sends key 15 through the plain insert, to its place.
    plain.hintedNonUnique(plain.header(), 15, 1);
    EXPECT_EQ(plain.keyOf(plain.findKey(15)->prev()), 10);
    EXPECT_EQ(plain.keyOf(plain.findKey(15)->next()), 20);
}

TEST(RBTreeImpl, UniqueInsertOfAPresentKeyReturnsItsNode) {
    IntTree tree;
    for (int key : {4, 2, 6})
        tree.unique(key);
    Node* existing = tree.findKey(2);
    EXPECT_EQ(tree.unique(2), existing);
    EXPECT_EQ(tree.size(), 3);
    EXPECT_EQ(tree.findKey(5), tree.header());
}
