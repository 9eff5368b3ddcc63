#pragma once

#include "Foundation/PageBlock.h"

#include <cstdint>
#include <cstring>
#include <string_view>
#include <vector>

/// Stores many short strings one after the other in large blocks, each ended by a NUL. A string keeps its address until
/// the arena is destroyed, also when the arena is moved or absorbed by another one.
class StringArena {
public:
    /// The longest name in bytes that a search supports; longer ones can be stored. Linux limits a name by the file
    /// system, not in general: file systems that count characters allow 255 of up to four bytes, and FUSE up to the
    /// length of a path.
    static constexpr std::size_t maximumSearchLength = 4095;

    /// After the used part of each block this many bytes can be read; they are zero.
    static constexpr std::size_t padding = 16384;

    /// The contents of one block: `size` bytes from `data`.
    struct Block {
        const char* data;
        std::size_t size;
    };

    /// Copies `name`, which must be shorter than 64 KiB, and returns its position for `at()`.
    std::uint32_t append(std::string_view name) {
        if (m_blocks.empty() || m_blocks.back().used + name.size() + 1 > blockSize) {
            m_blocks.push_back({PageBlock(blockSize + padding), 0});
        }
        Filled& block = m_blocks.back();
        std::memcpy(block.pages.data() + block.used, name.data(), name.size());
        const auto position = static_cast<std::uint32_t>((m_blocks.size() - 1) << blockBits | block.used);
        block.used += name.size() + 1;
        return position;
    }

    /// Whether the position of another string fits 32 bits; false only beyond 4 GiB.
    [[nodiscard]] bool hasRoom() const { return m_blocks.size() < maximumBlocks; }

    /// The string at a position, ended by its NUL.
    [[nodiscard]] const char* at(std::uint32_t position) const {
        return m_blocks[position >> blockBits].pages.data() + (position & (blockSize - 1));
    }

    [[nodiscard]] std::size_t blockCount() const { return m_blocks.size(); }
    [[nodiscard]] Block block(std::size_t index) const { return {m_blocks[index].pages.data(), m_blocks[index].used}; }

    /// The position of the byte at `offset` in a block.
    [[nodiscard]] static std::uint32_t position(std::size_t block, std::size_t offset) {
        return static_cast<std::uint32_t>(block << blockBits | offset);
    }

    /// The block that a position lies in.
    [[nodiscard]] static std::size_t blockOf(std::uint32_t position) { return position >> blockBits; }

    /// Takes over all strings of `other`. The result is to be added to their positions. Requires `fits(other)`.
    std::uint32_t absorb(StringArena&& other) {
        const auto base = static_cast<std::uint32_t>(m_blocks.size() << blockBits);
        for (Filled& block : other.m_blocks) {
            m_blocks.push_back(std::move(block));
        }
        other.m_blocks.clear();
        return base;
    }

    [[nodiscard]] bool fits(const StringArena& other) const {
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
