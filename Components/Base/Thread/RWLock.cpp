#include <Base/Thread/RWLock.h>

namespace kxThread {

namespace {

constexpr kxUtil::Interval kNoLimit;

} // namespace

RWLock::RWLock() : readers_(0), writer_(false) {}

RWLock::RWLock(const RWLock& other) : condition_(other.condition_) {
    MutexOp op(condition_.getMutex());
    op.lock();
    readers_ = other.readers_;
    writer_ = other.writer_;
}

RWLock& RWLock::operator=(const RWLock& other) {
    condition_ = other.condition_;
    MutexOp op(condition_.getMutex());
    op.lock();
    readers_ = other.readers_;
    writer_ = other.writer_;
    return *this;
}

RWLock::~RWLock() = default;

bool RWLock::hasWriter() const {
    MutexOp op(condition_.getMutex());
    op.lock();
    return writer_;
}

int RWLock::numberOfReaders() const {
    MutexOp op(condition_.getMutex());
    op.lock();
    return readers_;
}

void RWLock::readLock() {
    MutexOp op(condition_.getMutex());
    op.lock();
    while (writer_)
        condition_.wait(kNoLimit);
    ++readers_;
}

void RWLock::readUnlock() {
    MutexOp op(condition_.getMutex());
    op.lock();
    // Readers wait only for a writer that holds the lock, so only writers
    // can be waiting now.
    if (readers_-- == 1)
        condition_.signal();
}

void RWLock::writeLock() {
    MutexOp op(condition_.getMutex());
    op.lock();
    while (writer_ || readers_ >= 1)
        condition_.wait(kNoLimit);
    writer_ = true;
}

void RWLock::writeUnlock() {
    MutexOp op(condition_.getMutex());
    op.lock();
    writer_ = false;
    condition_.broadcast();
}

RWLockOp::RWLockOp(RWLock& lock, bool flag)
    : lock_(lock), reading_(false), writing_(false), flag_(flag) {}

RWLockOp::~RWLockOp() {
    unlock();
}

void RWLockOp::read() {
    unlock();
    reading_ = true;
    lock_.readLock();
}

void RWLockOp::write() {
    unlock();
    writing_ = true;
    lock_.writeLock();
}

void RWLockOp::unlock() {
    if (reading_) {
        lock_.readUnlock();
        reading_ = false;
    } else if (writing_) {
        lock_.writeUnlock();
        writing_ = false;
    }
}

} // namespace kxThread
