#pragma once

#include <cstddef>
#include <utility>

/// Zeroed memory mapped from the kernel and unmapped when the block is destroyed, so that the memory of a scan does not
/// stay with the process's heap. Pages that were never written take no memory.
class PageBlock {
public:
    explicit PageBlock(std::size_t size);
    ~PageBlock();
    PageBlock(PageBlock&& other) noexcept
        : m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)) {}
    PageBlock& operator=(PageBlock&& other) noexcept {
        std::swap(m_data, other.m_data);
        std::swap(m_size, other.m_size);
        return *this;
    }
    PageBlock(const PageBlock&) = delete;
    PageBlock& operator=(const PageBlock&) = delete;

    [[nodiscard]] char* data() const { return m_data; }

private:
    char* m_data = nullptr;
    std::size_t m_size = 0;
};
