#include "SpaceScan/SearchIndex.h"

#include "Foundation/Threads.h"

#include <algorithm>
#include <atomic>
#include <thread>
#include <utility>

namespace {

/// The maximum number of threads of one search: more do not read the memory any faster.
constexpr std::size_t maximumThreads = 4;

}  // namespace

std::uint32_t SearchIndex::add(FoldedNames&& names) {
    const std::uint32_t base = m_size;
    m_size += names.size();
    m_parts.push_back({base, std::move(names)});
    return base;
}

BitSet SearchIndex::search(std::string_view text) const {
    BitSet keys(m_size);
    if (text.empty() || text.size() > FoldedNames::longestText) {
        if (text.empty()) {
            std::for_each(m_keys.begin(), m_keys.end(), [&](std::uint32_t key) { keys.insert(key); });
        }
        return keys;
    }
    std::vector<std::pair<const Part*, std::size_t>> blocks;
    for (const Part& part : m_parts) {
        for (std::size_t block = 0; block < part.names.blockCount(); ++block) {
            blocks.emplace_back(&part, block);
        }
    }
    // Each thread fills its own set and takes one block after the other.
    const auto cores = static_cast<std::size_t>(std::thread::hardware_concurrency());
    std::vector<BitSet> sets(std::clamp<std::size_t>(std::min(blocks.size(), cores), 1, maximumThreads), keys);
    std::atomic<std::size_t> next = 0;
    Threads::runAll(sets.size(), [&](std::size_t thread) {
        for (std::size_t at = next++; at < blocks.size(); at = next++) {
            const auto [part, block] = blocks[at];
            part->names.search(block, text, m_keys.data() + part->base, sets[thread]);
        }
    });
    std::for_each(sets.begin(), sets.end(), [&](const BitSet& set) { keys.insert(set); });
    return keys;
}
