#include "Foundation/HiddenList.h"

#include "Foundation/SmallFile.h"

#include <algorithm>

NameSet hiddenNames(int directory) {
    NameSet names;
    constexpr std::size_t limit = std::size_t{1} << 20;
    const std::string text =
        readSmallFile(directory, hiddenListName.data(), limit, FollowLinks::no).value_or(std::string());
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (end > begin) {
            names.insert(std::string_view(text).substr(begin, end - begin));
        }
        begin = end + 1;
    }
    return names;
}
