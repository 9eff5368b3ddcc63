#include "support/Shortage.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>

namespace {

std::atomic<bool> hasThreads = true;

}  // namespace

/// Stands before the C library's, which the standard library's threads are made with.
extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
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

FewDescriptors::FewDescriptors(int count) {
    const int next = dup(STDERR_FILENO);
    close(next);
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    m_before = limit.rlim_cur;
    limit.rlim_cur = static_cast<rlim_t>(next + count);
    setrlimit(RLIMIT_NOFILE, &limit);
}

FewDescriptors::~FewDescriptors() {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = m_before;
    setrlimit(RLIMIT_NOFILE, &limit);
}
