#include "support/Shortage.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
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
    using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
    static const auto create = reinterpret_cast<Create>(dlsym(RTLD_NEXT, "pthread_create"));  // NOLINT
    return hasThreads ? create(thread, attributes, start, argument) : EAGAIN;
}

NoThreads::NoThreads() {
    hasThreads = false;
}

NoThreads::~NoThreads() {
    hasThreads = true;
}

namespace {

/// Sets the soft limit of a resource and returns the one before.
unsigned long limit(__rlimit_resource resource, unsigned long value) {
    rlimit both{};
    getrlimit(resource, &both);
    const unsigned long before = both.rlim_cur;
    both.rlim_cur = value;
    setrlimit(resource, &both);
    return before;
}

}  // namespace

LittleMemory::LittleMemory(unsigned long bytes) {
    unsigned long pages = 0;
    std::ifstream("/proc/self/statm") >> pages;
    m_before = limit(RLIMIT_AS, pages * static_cast<unsigned long>(sysconf(_SC_PAGESIZE)) + bytes);
}

LittleMemory::~LittleMemory() {
    limit(RLIMIT_AS, m_before);
}

FewDescriptors::FewDescriptors(int count) {
    const int next = dup(STDERR_FILENO);
    close(next);
    m_before = limit(RLIMIT_NOFILE, static_cast<unsigned long>(next) + static_cast<unsigned long>(count));
}

FewDescriptors::~FewDescriptors() {
    limit(RLIMIT_NOFILE, m_before);
}
