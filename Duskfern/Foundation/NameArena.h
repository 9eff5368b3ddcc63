#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>
#include <vector>

/// Keeps many short names back to back in large blocks. A name stays where it was put until the arena is gone, also
/// when the arena moves or is absorbed by another one.
class NameArena {
public:
    /// No name is longer: the kernel's limit for one.
    static constexpr std::size_t maximumLength = 255;

    /// Copies `name`, NUL-terminated, and returns its position for `view()`.
    std::uint32_t append(std::string_view name) {
        if (m_blocks.empty() || m_used + name.size() + 1 > blockSize) {
            m_blocks.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
            m_used = 0;
        }
        char* place = m_blocks.back().get() + m_used;
        std::memcpy(place, name.data(), name.size());
        place[name.size()] = '\0';
        const auto position = static_cast<std::uint32_t>((m_blocks.size() - 1) << blockBits | m_used);
        m_used += name.size() + 1;
        return position;
    }

    /// Whether a position for one more name fits 32 bits; false only beyond 4 GiB of names.
    [[nodiscard]] bool hasRoom() const { return m_blocks.size() < maximumBlocks; }

    [[nodiscard]] const char* at(std::uint32_t position) const {
        return m_blocks[position >> blockBits].get() + (position & (blockSize - 1));
    }

    [[nodiscard]] std::string_view view(std::uint32_t position, std::size_t length) const {
        return {at(position), length};
    }

    /// Takes over all names of `other`; what is returned is to be added to their positions. Only valid while
    /// `fits(other)`.
    std::uint32_t absorb(NameArena&& other) {
        const auto base = static_cast<std::uint32_t>(m_blocks.size() << blockBits);
        m_used = other.m_blocks.empty() ? m_used : other.m_used;
        for (auto& block : other.m_blocks) {
            m_blocks.push_back(std::move(block));
        }
        other.m_blocks.clear();
        return base;
    }

    [[nodiscard]] bool fits(const NameArena& other) const {
        return m_blocks.size() + other.m_blocks.size() <= maximumBlocks;
    }

private:
    static constexpr unsigned blockBits = 20;
    static constexpr std::size_t blockSize = std::size_t{1} << blockBits;
    static constexpr std::size_t maximumBlocks = std::size_t{1} << (32 - blockBits);

    std::vector<std::unique_ptr<char[]>> m_blocks;
    std::size_t m_used = 0;
};
