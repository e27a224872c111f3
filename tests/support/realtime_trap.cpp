// SPDX-License-Identifier: MIT
#include "support/realtime_trap.h"

#include <csignal>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <initializer_list>
#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define HALVANE_TRAP_INTERPOSES 0
#else
#define HALVANE_TRAP_INTERPOSES 1
#endif

namespace {

// From the kernel's interface, for headers that are older than it.
constexpr int setSyscallUserDispatch = 59;
constexpr unsigned long dispatchOn = 1;
constexpr char allow = 0;
constexpr char block = 1;

thread_local bool armed = false;
thread_local volatile char selector = allow;

[[noreturn]] void offend(const char* what) {
    selector = allow;
    armed = false;
    for (const char* part : {"real-time trap: ", what, " in the audio callback\n"})
        (void)!write(STDERR_FILENO, part, std::strlen(part));
    std::abort();
}

void onSystemCall(int, siginfo_t*, void*) {
    offend("system call");
}

bool dispatchSystemCalls() {
    struct sigaction action = {};
    action.sa_sigaction = onSystemCall;
    action.sa_flags = SA_SIGINFO;
    sigaction(SIGSYS, &action, nullptr);
    return prctl(setSyscallUserDispatch, dispatchOn, 0, 0, &selector) == 0;
}

} // namespace

namespace halvane::test {

void RealtimeTrap::arm() {
    // Each time: a process that forks does not keep it.
    const bool dispatched = dispatchSystemCalls();
    armed = true;
    selector = dispatched ? block : allow;
}

void RealtimeTrap::disarm() {
    selector = allow;
    armed = false;
}

bool RealtimeTrap::watchesMemoryAndLocks() {
    return HALVANE_TRAP_INTERPOSES;
}

bool RealtimeTrap::watchesSystemCalls() {
    return dispatchSystemCalls();
}

} // namespace halvane::test

#if HALVANE_TRAP_INTERPOSES

// The C library's own entry points, under names that nothing else defines.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

void* malloc(std::size_t size) {
    if (armed)
        offend("malloc");
    return __libc_malloc(size);
}

void* calloc(std::size_t count, std::size_t size) {
    if (armed)
        offend("calloc");
    return __libc_calloc(count, size);
}

void* realloc(void* memory, std::size_t size) {
    if (armed)
        offend("realloc");
    return __libc_realloc(memory, size);
}

void* aligned_alloc(std::size_t alignment, std::size_t size) {
    if (armed)
        offend("aligned_alloc");
    return __libc_memalign(alignment, size);
}

int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    if (armed)
        offend("posix_memalign");
    *memory = __libc_memalign(alignment, size);
    return *memory ? 0 : 12; // ENOMEM
}

void free(void* memory) {
    if (armed && memory)
        offend("free");
    __libc_free(memory);
}

int pthread_mutex_lock(pthread_mutex_t* mutex) {
    if (armed)
        offend("pthread_mutex_lock");
    using Function = int (*)(pthread_mutex_t*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_mutex_lock"));
    return next(mutex);
}

int pthread_rwlock_rdlock(pthread_rwlock_t* lock) {
    if (armed)
        offend("pthread_rwlock_rdlock");
    using Function = int (*)(pthread_rwlock_t*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_rwlock_rdlock"));
    return next(lock);
}

int pthread_rwlock_wrlock(pthread_rwlock_t* lock) {
    if (armed)
        offend("pthread_rwlock_wrlock");
    using Function = int (*)(pthread_rwlock_t*);
    static const auto next = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "pthread_rwlock_wrlock"));
    return next(lock);
}
}

#endif
