#include "SpaceScan/SearchIndex.h"

#include "Foundation/Threads.h"

#include <algorithm>
#include <atomic>
#include <new>
#include <thread>
#include <utility>

namespace {

/// The maximum number of threads of one search: more do not read the memory any faster.
constexpr std::size_t maximumThreads = 4;

bool isASCII(std::string_view text) {
    return std::all_of(text.begin(), text.end(), [](char byte) { return static_cast<unsigned char>(byte) < 0x80; });
}

}  // namespace

void SearchableNames::addFolded(std::string_view name, std::uint32_t number) {
    isFolded.resize(number + 1);
    folded.append(name);
    isFolded.insert(number);
}

std::uint32_t SearchIndex::add(SearchableNames&& names) {
    const std::uint32_t base = m_size;
    m_size += names.names.size();
    m_isFolded.resize(m_size);
    names.isFolded.forEach([&](std::uint32_t number) { m_isFolded.insert(base + number); });
    m_parts.push_back({base, m_foldedSize, std::move(names.names), std::move(names.folded)});
    m_foldedSize += m_parts.back().folded.size();
    return base;
}

std::string_view SearchIndex::nameOf(std::uint32_t number) const {
    const auto part = std::upper_bound(m_parts.begin(), m_parts.end(), number,
                                       [](std::uint32_t wanted, const Part& other) { return wanted < other.base; }) -
                      1;
    return part->names.at(number - part->base);
}

BitSet SearchIndex::search(std::string_view text) const {
    if (text.empty() || text.size() > NumberedNames::longestText) {
        BitSet allOrNone(m_size);
        allOrNone.fill(text.empty() ? m_size : 0);
        return allOrNone;
    }
    Found all = searchBlocks(text);
    // Names that are not ASCII only count by their folded form: "e" is not in an "e" that an accent follows.
    BitSet found = std::move(all.names);
    found.subtract(m_isFolded);
    found.insertRanked(all.folded, m_isFolded);
    return found;
}

SearchIndex::Found SearchIndex::searchBlocks(std::string_view text) const {
    struct Block {
        const NumberedNames* names;
        std::size_t block;
        std::uint32_t base;
        BitSet Found::*found;
    };
    // Names without a folded form are ASCII.
    const bool searchesNames = isASCII(text);
    std::vector<Block> blocks;
    for (const Part& part : m_parts) {
        for (std::size_t block = 0; searchesNames && block < part.names.blockCount(); ++block) {
            blocks.push_back({&part.names, block, part.base, &Found::names});
        }
        for (std::size_t block = 0; block < part.folded.blockCount(); ++block) {
            blocks.push_back({&part.folded, block, part.foldedBase, &Found::folded});
        }
    }
    // Each thread fills its own sets and takes one block after the other.
    const auto cores = static_cast<std::size_t>(std::thread::hardware_concurrency());
    std::vector<Found> sets(std::clamp<std::size_t>(std::min(blocks.size(), cores), 1, maximumThreads),
                            {BitSet(m_size), BitSet(m_foldedSize)});
    std::atomic<std::size_t> next = 0;
    Threads::runAll(sets.size(), [&](std::size_t thread) {
        for (std::size_t at = next++; at < blocks.size(); at = next++) {
            const Block& block = blocks[at];
            block.names->search(block.block, text, block.base, sets[thread].*block.found);
        }
    });
    for (std::size_t thread = 1; thread < sets.size(); ++thread) {
        sets[0].names.insert(sets[thread].names);
        sets[0].folded.insert(sets[thread].folded);
    }
    return std::move(sets[0]);
}
