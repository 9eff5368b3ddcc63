#include "support/Shortage.h"

#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <fstream>

namespace {

std::atomic<bool> hasThreads = true;

}  // namespace

/// Stands before the C library's, which the standard library's threads are made with.
extern "C" int createUnlessForbidden(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                                     void* argument) noexcept asm("pthread_create");

extern "C" int createUnlessForbidden(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                                     void* argument) noexcept {
    static const auto create =
        reinterpret_cast<decltype(&pthread_create)>(dlsym(RTLD_NEXT, "pthread_create"));  // NOLINT
    return hasThreads ? create(thread, attributes, start, argument) : EAGAIN;
}

NoThreads::NoThreads() {
    hasThreads = false;
}

NoThreads::~NoThreads() {
    hasThreads = true;
}

Limit Limit::toMemory(rlim_t bytes) {
    rlim_t pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    return {RLIMIT_AS, pages * static_cast<rlim_t>(sysconf(_SC_PAGESIZE)) + bytes};
}

Limit Limit::toDescriptors(rlim_t count) {
    const int next = dup(STDERR_FILENO);
    close(next);
    return {RLIMIT_NOFILE, static_cast<rlim_t>(next) + count};
}
