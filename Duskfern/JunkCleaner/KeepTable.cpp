#include "JunkCleaner/KeepTable.h"

#include "JunkCleaner/KeepRows.h"
#include "JunkCleaner/NamePattern.h"

#include <algorithm>
#include <unordered_map>

namespace {

std::vector<std::span<const KeepRow>> tablesOf(KeepList list) {
    switch (list) {
        case KeepList::caches:
            return {cacheKeepRows()};
        case KeepList::temporary:
            return {temporaryKeepRows()};
        case KeepList::support:
            return {desktopKeepRows(), secretKeepRows(), personalKeepRows(), programKeepRows()};
        case KeepList::personal:
            return {secretKeepRows(), personalKeepRows(), programKeepRows()};
        case KeepList::none:
            break;
    }
    return {};
}

/// The rows of a list, for quick look-ups.
class KeptNames {
public:
    explicit KeptNames(KeepList list) {
        for (const auto& table : tablesOf(list)) {
            for (const KeepRow& row : table) {
                forEachPart(row.names, '|', [&](std::string_view name) {
                    if (name.find('*') == std::string_view::npos) {
                        m_names.emplace(foldedName(name), row.reason);
                    } else {
                        m_patterns.emplace_back(foldedName(name), row.reason);
                    }
                });
            }
        }
    }

    [[nodiscard]] std::string_view reason(std::string_view name) const {
        const std::string folded = foldedName(name);
        if (const auto found = m_names.find(folded); found != m_names.end()) {
            return found->second;
        }
        const auto found = std::find_if(m_patterns.begin(), m_patterns.end(),
                                        [&](const auto& pattern) { return matchesPattern(folded, pattern.first); });
        return found == m_patterns.end() ? std::string_view() : found->second;
    }

private:
    std::unordered_map<std::string, std::string_view> m_names;
    std::vector<std::pair<std::string, std::string_view>> m_patterns;
};

const KeptNames& namesOf(KeepList list) {
    static const KeptNames caches(KeepList::caches);
    static const KeptNames temporary(KeepList::temporary);
    static const KeptNames support(KeepList::support);
    static const KeptNames personal(KeepList::personal);
    static const KeptNames none(KeepList::none);
    switch (list) {
        case KeepList::caches:
            return caches;
        case KeepList::temporary:
            return temporary;
        case KeepList::support:
            return support;
        case KeepList::personal:
            return personal;
        case KeepList::none:
            break;
    }
    return none;
}

}  // namespace

std::string_view reasonToKeep(KeepList list, std::string_view name) {
    return namesOf(list).reason(name);
}

std::vector<std::string_view> keepPatterns(KeepList list) {
    std::vector<std::string_view> patterns;
    for (const auto& table : tablesOf(list)) {
        for (const KeepRow& row : table) {
            forEachPart(row.names, '|', [&](std::string_view name) { patterns.push_back(name); });
        }
    }
    return patterns;
}
