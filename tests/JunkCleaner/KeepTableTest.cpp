#include "JunkCleaner/KeepTable.h"

#include <fnmatch.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

constexpr KeepList lists[] = {KeepList::caches, KeepList::temporary, KeepList::support, KeepList::personal};

bool isKept(KeepList list, const std::string& name) {
    return !reasonToKeep(list, name).empty();
}

/// Each row keeps what its pattern means, in capitals too, and not what only begins or ends like it.
TEST(KeepTable, KeepsWhatItsPatternsMeanAndNoMore) {
    for (const KeepList list : lists) {
        const std::vector<std::string_view> patterns = keepPatterns(list);
        for (const std::string_view pattern : patterns) {
            std::string name(pattern);
            const std::size_t star = name.find('*');
            if (star != std::string::npos) {
                name[star] = 'x';
            }
            std::string capitals = name;
            std::transform(name.begin(), name.end(), capitals.begin(), [](char c) { return std::toupper(c); });
            EXPECT_TRUE(isKept(list, name) && isKept(list, capitals)) << name;
            EXPECT_FALSE(isKept(KeepList::none, name)) << name;
            for (const std::string& other : {name + "q", "q" + name, name.substr(1), name.substr(0, name.size() - 1)}) {
                EXPECT_EQ(isKept(list, other), std::any_of(patterns.begin(), patterns.end(),
                                                           [&](std::string_view each) {
                                                               return fnmatch(std::string(each).c_str(), other.c_str(),
                                                                              FNM_CASEFOLD) == 0;
                                                           }))
                    << other;
            }
        }
    }
}

}  // namespace
