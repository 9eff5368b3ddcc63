#pragma once

#include "Foundation/PageBlock.h"

#include <cstddef>
#include <new>
#include <type_traits>
#include <vector>

/// A vector that grows without moving its elements and returns all its memory to the kernel when it is destroyed.
template <class T>
class ChunkedVector {
    static_assert(std::is_trivially_destructible_v<T>);

public:
    template <class... Arguments>
    T& append(Arguments&&... arguments) {
        if (m_size == m_chunks.size() * perChunk) {
            m_chunks.emplace_back(perChunk * sizeof(T));
        }
        return *new (place(m_size++)) T{std::forward<Arguments>(arguments)...};
    }

    void removeLast() { --m_size; }

    [[nodiscard]] std::size_t size() const { return m_size; }
    [[nodiscard]] const T& operator[](std::size_t index) const { return *std::launder(place(index)); }
    [[nodiscard]] T& operator[](std::size_t index) { return *std::launder(place(index)); }
    [[nodiscard]] T& back() { return (*this)[m_size - 1]; }

private:
    static constexpr std::size_t perChunk = (std::size_t{1} << 18) / sizeof(T);

    [[nodiscard]] T* place(std::size_t index) const {
        return reinterpret_cast<T*>(m_chunks[index / perChunk].data()) + index % perChunk;  // NOLINT: raw pages
    }

    std::vector<PageBlock> m_chunks;
    std::size_t m_size = 0;
};
