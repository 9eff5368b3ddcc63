#include "Foundation/MountTable.h"
#include "Input.h"

#include <algorithm>

void use(std::string_view text) {
    const std::size_t middle = std::min(text.find('\0'), text.size());
    const MemoryFile mounts(text.substr(0, middle));
    const MemoryFile noted(text.substr(middle));
    const auto table = readMountTable(mounts.path.c_str(), noted.path.c_str());
    require(!table ||
            std::any_of(table->begin(), table->end(), [](const Mount& mount) { return mount.target == "/"; }));
}
