#pragma once

#include "Foundation/PageBlock.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

/// Keeps many short names back to back in large blocks, a NUL behind each. A name stays where it was put until the
/// arena is gone, also when the arena moves or is absorbed by another one.
class NameArena {
public:
    /// Longer names than this, in bytes, are not to be expected: file systems that count characters allow 255 of up to
    /// four bytes each, FUSE file systems what a path can hold. The limit is one of searching, not of keeping.
    static constexpr std::size_t maximumLength = 4095;

    /// Behind the used part of each block so many bytes can be read: they are zero.
    static constexpr std::size_t slack = 16384;

    /// One block's names: `size` bytes from `data`.
    struct Block {
        const char* data;
        std::size_t size;
    };

    /// Copies `name`, shorter than 64 KiB, and returns its position for `view()`.
    std::uint32_t append(std::string_view name) {
        if (m_blocks.empty() || m_blocks.back().used + name.size() + 1 > blockSize) {
            m_blocks.push_back({PageBlock(blockSize + slack), 0});
        }
        Filled& block = m_blocks.back();
        std::memcpy(block.pages.data() + block.used, name.data(), name.size());
        const auto position = static_cast<std::uint32_t>((m_blocks.size() - 1) << blockBits | block.used);
        block.used += name.size() + 1;
        return position;
    }

    /// Whether a position for one more name fits 32 bits; false only beyond 4 GiB of names.
    [[nodiscard]] bool hasRoom() const { return m_blocks.size() < maximumBlocks; }

    /// The name at this position; it ends at its NUL.
    [[nodiscard]] const char* at(std::uint32_t position) const {
        return m_blocks[position >> blockBits].pages.data() + (position & (blockSize - 1));
    }

    [[nodiscard]] std::size_t blockCount() const { return m_blocks.size(); }
    [[nodiscard]] Block block(std::size_t index) const { return {m_blocks[index].pages.data(), m_blocks[index].used}; }

    /// The position of a byte in a block.
    [[nodiscard]] static std::uint32_t position(std::size_t block, std::size_t offset) {
        return static_cast<std::uint32_t>(block << blockBits | offset);
    }

    /// Takes over all names of `other`; what is returned is to be added to their positions. Only valid while
    /// `fits(other)`.
    std::uint32_t absorb(NameArena&& other) {
        const auto base = static_cast<std::uint32_t>(m_blocks.size() << blockBits);
        for (Filled& block : other.m_blocks) {
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

    struct Filled {
        PageBlock pages;
        std::size_t used;
    };
    std::vector<Filled> m_blocks;
};
