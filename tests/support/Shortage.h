#pragma once

#include <sys/resource.h>

/// While it lives, no thread can be started in this process.
class NoThreads {
public:
    NoThreads();
    ~NoThreads();
    NoThreads(const NoThreads&) = delete;
    NoThreads& operator=(const NoThreads&) = delete;
};

/// While it lives, this process gets no more of a resource than that.
class Limit {
public:
    Limit(__rlimit_resource resource, rlim_t value) : m_resource(resource) {
        getrlimit(m_resource, &m_before);
        const rlimit now{value, m_before.rlim_max};
        setrlimit(m_resource, &now);
    }
    ~Limit() { setrlimit(m_resource, &m_before); }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;

    /// That many bytes of memory, or open descriptors, beyond what it has now.
    [[nodiscard]] static Limit toMemory(rlim_t bytes);
    [[nodiscard]] static Limit toDescriptors(rlim_t count);

private:
    const __rlimit_resource m_resource;
    rlimit m_before{};
};
