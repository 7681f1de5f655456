// POSIX threads, mutexes, condition variables on the monotonic clock,
// unnamed semaphores and thread-specific keys.
#include <Base/Platform/Thread.h>

#include <cerrno>
#include <climits>
#include <ctime>
#include <new>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>

namespace kx::platform {
namespace {

// The native object that lives in `storage`, begun by create().
template <class Native, std::size_t Size>
Native* native(NativeStorage<Size>& storage) {
    static_assert(sizeof(Native) <= Size && alignof(Native) <= alignof(NativeStorage<Size>),
                  "the opaque storage is too small for the native object");
    return std::launder(reinterpret_cast<Native*>(storage.bytes));
}

struct Start {
    void (*entry)(void*);
    void* argument;
};

void* run(void* start) {
    const Start copy = *static_cast<Start*>(start);
    delete static_cast<Start*>(start);
    copy.entry(copy.argument);
    return nullptr;
}

// Where the threads that contend for a RecursiveMutex sleep.
struct Parking {
    pthread_mutex_t mutex;
    pthread_cond_t wake;
};

// sem_* calls report through errno; EINTR only means a signal came first.
template <class Call>
int retryOnInterrupt(Call call) {
    while (call() != 0) {
        if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace

static_assert(SEM_VALUE_MAX >= 2147483647, "semaphores must count to 2147483647");
static_assert(sizeof(pthread_key_t) <= sizeof(unsigned int) && PTHREAD_KEYS_MAX < kNoThreadKey,
              "thread keys must fit in 32 bits beside the failure value");

int ThreadHandle::start(void (*entry)(void*), void* argument) {
    Start* start = new (std::nothrow) Start{entry, argument};
    if (!start)
        return ENOMEM;
    pthread_t thread;
    const int result = pthread_create(&thread, nullptr, run, start);
    if (result != 0) {
        delete start;
        return result;
    }
    new (native_.bytes) pthread_t(thread);
    open_ = true;
    return 0;
}

int ThreadHandle::join() {
    // Joining a detached thread is undefined; pthread_join's own answer for
    // a thread that cannot be joined is EINVAL.
    if (!open_)
        return EINVAL;
    const pthread_t thread = *native<pthread_t>(native_);
    // pthread_join's own answer, given here: sanitizers lose track of a
    // thread that tried to join itself.
    if (pthread_equal(thread, pthread_self()))
        return EDEADLK;
    const int result = pthread_join(thread, nullptr);
    if (result == 0)
        open_ = false;
    return result;
}

void ThreadHandle::detach() {
    if (open_)
        pthread_detach(*native<pthread_t>(native_));
    open_ = false;
}

void yieldProcessor() {
    sched_yield();
}

int Mutex::create() {
    return pthread_mutex_init(new (native_.bytes) pthread_mutex_t, nullptr);
}

void Mutex::destroy() {
    pthread_mutex_destroy(native<pthread_mutex_t>(native_));
}

int Mutex::lock() {
    return pthread_mutex_lock(native<pthread_mutex_t>(native_));
}

int Mutex::unlock() {
    return pthread_mutex_unlock(native<pthread_mutex_t>(native_));
}

int RecursiveMutex::create() {
    Parking* parking = new (parking_.bytes) Parking;
    int result = pthread_mutex_init(&parking->mutex, nullptr);
    if (result != 0)
        return result;
    result = pthread_cond_init(&parking->wake, nullptr);
    if (result != 0)
        pthread_mutex_destroy(&parking->mutex);
    return result;
}

void RecursiveMutex::destroy() {
    Parking* parking = native<Parking>(parking_);
    pthread_cond_destroy(&parking->wake);
    pthread_mutex_destroy(&parking->mutex);
}

void RecursiveMutex::lockContended(void* self) {
    const auto acquire = [&] {
        void* expected = nullptr;
        return owner_.load(std::memory_order_seq_cst) == nullptr &&
               owner_.compare_exchange_strong(expected, self, std::memory_order_seq_cst);
    };
    if (spinUntil(acquire))
        return;
    Parking* parking = native<Parking>(parking_);
    pthread_mutex_lock(&parking->mutex);
    waiters_.fetch_add(1, std::memory_order_seq_cst);
    while (!acquire())
        pthread_cond_wait(&parking->wake, &parking->mutex);
    waiters_.fetch_sub(1, std::memory_order_relaxed);
    pthread_mutex_unlock(&parking->mutex);
}

void RecursiveMutex::wakeOne() {
    // Under the parking mutex: a sleeper that registered is either asleep
    // already or still holds that mutex, so the signal cannot pass it by.
    Parking* parking = native<Parking>(parking_);
    pthread_mutex_lock(&parking->mutex);
    pthread_cond_signal(&parking->wake);
    pthread_mutex_unlock(&parking->mutex);
}

std::int64_t monotonicMicroseconds() {
    timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::int64_t>(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

int ConditionVariable::create() {
    pthread_condattr_t attributes;
    int result = pthread_condattr_init(&attributes);
    if (result != 0)
        return result;
    // Deadlines follow the monotonic clock, so that setting the system
    // clock neither ends nor stretches a wait.
    result = pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    if (result == 0)
        result = pthread_cond_init(new (native_.bytes) pthread_cond_t, &attributes);
    pthread_condattr_destroy(&attributes);
    return result;
}

void ConditionVariable::destroy() {
    pthread_cond_destroy(native<pthread_cond_t>(native_));
}

int ConditionVariable::wait(Mutex& mutex, std::int64_t deadline) {
    pthread_cond_t* condition = native<pthread_cond_t>(native_);
    pthread_mutex_t* held = native<pthread_mutex_t>(mutex.native_);
    if (deadline == kNoDeadline)
        return pthread_cond_wait(condition, held);
    timespec until{0, 0};
    if (deadline > 0) {
        until.tv_sec = static_cast<time_t>(deadline / 1000000);
        until.tv_nsec = static_cast<long>(deadline % 1000000) * 1000;
    }
    const int result = pthread_cond_timedwait(condition, held, &until);
    return result == ETIMEDOUT ? 0 : result;
}

int ConditionVariable::signal() {
    return pthread_cond_signal(native<pthread_cond_t>(native_));
}

int ConditionVariable::broadcast() {
    return pthread_cond_broadcast(native<pthread_cond_t>(native_));
}

int Semaphore::create(unsigned int initial) {
    return sem_init(new (native_.bytes) sem_t, 0, initial) == 0 ? 0 : errno;
}

int Semaphore::destroy() {
    return sem_destroy(native<sem_t>(native_)) == 0 ? 0 : errno;
}

int Semaphore::post() {
    return sem_post(native<sem_t>(native_)) == 0 ? 0 : errno;
}

int Semaphore::wait() {
    if (spinUntil([this] { return tryWait(); }))
        return 0;
    sem_t* semaphore = native<sem_t>(native_);
    return retryOnInterrupt([=] { return sem_wait(semaphore); });
}

bool Semaphore::tryWait() {
    sem_t* semaphore = native<sem_t>(native_);
    return retryOnInterrupt([=] { return sem_trywait(semaphore); }) == 0;
}

unsigned int createThreadKey() {
    pthread_key_t key;
    return pthread_key_create(&key, nullptr) == 0 ? static_cast<unsigned int>(key) : kNoThreadKey;
}

// glibc answers keys that are not in use (and any above PTHREAD_KEYS_MAX)
// with EINVAL or null instead of undefined behaviour.
void freeThreadKey(unsigned int key) {
    pthread_key_delete(static_cast<pthread_key_t>(key));
}

void* threadValue(unsigned int key) {
    return pthread_getspecific(static_cast<pthread_key_t>(key));
}

void setThreadValue(unsigned int key, void* value) {
    pthread_setspecific(static_cast<pthread_key_t>(key), value);
}

} // namespace kx::platform
