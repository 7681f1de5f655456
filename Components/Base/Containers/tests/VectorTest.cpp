#include <Base/Containers/Vector.h>

#include <Base/String/CString.h>
#include <Base/Utility/Error.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace {

// Counts live objects, so that every construction is matched by a
// destruction; it holds a heap pointer and may move as bytes.
struct Tracked {
    static inline int live = 0;
    int* value;

    explicit Tracked(int v = 0) : value(new int(v)) { ++live; }
    Tracked(const Tracked& other) : value(new int(*other.value)) { ++live; }
    Tracked& operator=(const Tracked& other) {
        *value = *other.value;
        return *this;
    }
    ~Tracked() {
        delete value;
        --live;
    }
    bool operator==(const Tracked& other) const { return *value == *other.value; }
};

// The core with its protected operations opened for testing.
struct Core : kx::VectorImpl {
    explicit Core(const TypeUtil* typeUtil) : VectorImpl(typeUtil) {}
    using VectorImpl::append;
    using VectorImpl::data_;
    using VectorImpl::setCapacity;
    using VectorImpl::typeUtil_;
};

void copyInt(void* dst, const void* src) {
    *static_cast<int*>(dst) = *static_cast<const int*>(src);
}
void copyInts(void* dst, const void* src, int n) {
    std::copy_n(static_cast<const int*>(src), n, static_cast<int*>(dst));
}
std::int64_t intDistance(const void* last, const void* first) {
    return static_cast<const int*>(last) - static_cast<const int*>(first);
}
const kx::VectorImpl::TypeUtil kInts = {&copyInt, &copyInts, nullptr, nullptr, &intDistance, 4};
const kx::VectorImpl::TypeUtil kOtherInts = kInts;

template <class T>
std::vector<T> asStd(const kx::vector<T>& v) {
    return std::vector<T>(v.begin(), v.end());
}

} // namespace

namespace kx {
template <>
struct is_relocatable<Tracked> : std::true_type {};
} // namespace kx

static_assert(sizeof(kx::vector<int>) == sizeof(kx::VectorImpl), "the shell adds no data");
static_assert(kx::is_relocatable_v<kxString::CString> && kx::is_relocatable_v<kxUtil::Error>);
static_assert(kx::is_relocatable_v<kx::vector<std::string*>>);
static_assert(!kx::is_relocatable_v<std::string>, "a small-text buffer points into the object");

TEST(Vector, GrowsByEightThenDoubles) {
    kx::vector<int> v;
    std::vector<int> capacities;
    for (int i = 0; i < 130; ++i) {
        v.push_back(i);
        if (capacities.empty() || capacities.back() != v.capacity())
            capacities.push_back(v.capacity());
    }
    EXPECT_EQ(capacities, (std::vector<int>{8, 16, 24, 32, 64, 128, 256}));

    kx::vector<int> exact;
    exact.insert(exact.end(), 3, 7); // several at once: exactly what is needed
    EXPECT_EQ(exact.capacity(), 3);
    exact.reserve(2);
    EXPECT_EQ(exact.capacity(), 3);
    exact.shrink_to_fit();
    exact.clear();
    exact.shrink_to_fit();
    EXPECT_EQ(exact.capacity(), 0);
    EXPECT_EQ(exact.data(), nullptr);
}

TEST(VectorImpl, MultiElementOperationsSizeExactly) {
    Core a(&kInts);
    a.reserve(100);
    for (int i = 0; i < 2; ++i)
        a.append(&i);
    Core b(&kInts);
    for (int i = 0; i < 3; ++i)
        b.append(&i);
    a.append(static_cast<const kx::VectorImpl&>(b));
    EXPECT_EQ(a.size(), 5);
    EXPECT_EQ(a.capacity(), 5);                      // shrunk to fit
    a.append(static_cast<const kx::VectorImpl&>(a)); // itself
    EXPECT_EQ(a.size(), 10);
    EXPECT_EQ(static_cast<int*>(a.data_)[9], 2);

    a.reserve(20);
    a.reserve(10);
    EXPECT_EQ(a.capacity(), 20);
    a.setCapacity(0);
    EXPECT_EQ(a.data_, nullptr);
    EXPECT_EQ(a.capacity(), 0);

    Core c(&kInts);
    Core d(&kOtherInts);
    const int one = 1;
    c.append(&one);
    c.swap(d);
    EXPECT_EQ(c.typeUtil_, &kInts);
    EXPECT_EQ(d.typeUtil_, &kOtherInts);
    EXPECT_EQ(d.size(), 1);
}

// Random edits checked against std::vector, for a 4-byte type (gaps made
// with memmove), an 8-byte type (the word shift) and one with a destructor.
template <class T, class Make>
void matchesStdVector(Make make) {
    std::mt19937 random(42);
    kx::vector<T> ours;
    std::vector<T> theirs;
    for (int step = 0; step < 3000; ++step) {
        const int op = static_cast<int>(random() % 8);
        const int size = static_cast<int>(theirs.size());
        const int at = size == 0 ? 0 : static_cast<int>(random() % (size + 1));
        const T value = make(static_cast<int>(random() % 1000));
        switch (op) {
        case 0:
        case 1:
            ours.push_back(value);
            theirs.push_back(value);
            break;
        case 2:
            ours.insert(ours.begin() + at, value);
            theirs.insert(theirs.begin() + at, value);
            break;
        case 3:
            if (at < size) {
                ours.erase(ours.begin() + at);
                theirs.erase(theirs.begin() + at);
            }
            break;
        case 4: {
            const int end = std::min(size, at + static_cast<int>(random() % 5));
            ours.erase(ours.begin() + at, ours.begin() + end);
            theirs.erase(theirs.begin() + at, theirs.begin() + end);
            break;
        }
        case 5:
            ours.insert(ours.begin() + at, 2, value);
            theirs.insert(theirs.begin() + at, 2, value);
            break;
        case 6:
            if (size > 0) {
                ours.pop_back();
                theirs.pop_back();
            }
            break;
        default: {
            const int n = static_cast<int>(random() % 40);
            ours.resize(n, value);
            theirs.resize(static_cast<std::size_t>(n), value);
            break;
        }
        }
        ASSERT_EQ(asStd(ours), theirs) << "step " << step << " op " << op;
    }
}

TEST(Vector, EditsMatchTheStandardVector) {
    matchesStdVector<int>([](int i) { return i; });
    matchesStdVector<std::uint64_t>([](int i) { return std::uint64_t{1} << (i % 64); });
    matchesStdVector<kxString::CString>(
        [](int i) { return kxString::CString(std::to_string(i).c_str()); });
    {
        kx::vector<Tracked> tracked;
        for (int i = 0; i < 100; ++i)
            tracked.emplace_back(i);
        tracked.insert(tracked.begin() + 5, Tracked(-1));
        tracked.erase(tracked.begin(), tracked.begin() + 10);
        tracked.resize(50);
        kx::vector<Tracked> copy(tracked);
        copy = tracked;
        EXPECT_EQ(copy, tracked);
    }
    EXPECT_EQ(Tracked::live, 0);
}

TEST(Vector, ArgumentsMayLieInTheVector) {
    kx::vector<kxString::CString> v;
    v.push_back("first");
    for (int i = 0; i < 40; ++i)
        v.push_back(v[0]); // the array moves while the argument is read
    EXPECT_EQ(v.size(), 41);
    EXPECT_STREQ(v.back().asChar(), "first");
    v.insert(v.begin(), v[3]);
    v.insert(v.begin() + 1, 2, v[0]);
    v.insert(v.end(), v.begin(), v.begin() + 3);
    v.assign(v.begin() + 1, v.begin() + 4);
    EXPECT_EQ(v.size(), 3);
    for (const kxString::CString& s : v)
        EXPECT_STREQ(s.asChar(), "first");
}

TEST(Vector, ValueSemantics) {
    kx::vector<int> a = {3, 1, 2};
    kx::vector<int> b(a);
    b[0] = 9;
    EXPECT_EQ(a[0], 3);
    EXPECT_TRUE(a < b);
    kx::vector<int> c(std::move(b));
    EXPECT_TRUE(b.empty()); // NOLINT(bugprone-use-after-move): moved-from is empty
    EXPECT_EQ(c.front(), 9);
    EXPECT_EQ(c.back(), 2);
    c.swap(a);
    EXPECT_EQ(a.front(), 9);
    EXPECT_EQ(kx::vector<int>(4).size(), 4);
    EXPECT_EQ(kx::vector<int>(4)[3], 0);
    const std::vector<int> source = {5, 6, 7};
    EXPECT_EQ(asStd(kx::vector<int>(source.begin(), source.end())), source);
    EXPECT_EQ(std::vector<int>(a.rbegin(), a.rend()), (std::vector<int>{2, 1, 9}));
}
