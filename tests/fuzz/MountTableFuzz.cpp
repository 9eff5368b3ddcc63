#include "Foundation/MountTable.h"
#include "Input.h"

#include <algorithm>

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text = textOf(data, size);
    const std::size_t middle = text.find('\0');
    const Descriptor mounts = memoryFile(text.substr(0, middle));
    const Descriptor noted = memoryFile(middle == std::string_view::npos ? "" : text.substr(middle + 1));
    const auto path = [](const Descriptor& file) { return "/proc/self/fd/" + std::to_string(file.number()); };
    const auto table = readMountTable(path(mounts).c_str(), path(noted).c_str());
    require(!table ||
            std::any_of(table->begin(), table->end(), [](const Mount& mount) { return mount.target == "/"; }));
    return 0;
}
