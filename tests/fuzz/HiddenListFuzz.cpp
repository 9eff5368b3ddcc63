#include "Foundation/HiddenList.h"
#include "Input.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

namespace {

/// A folder of the fuzzer's own, gone at its end.
struct Place {
    Place() {
        require(mkdtemp(path.data()) != nullptr);
        folder.reset(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    }
    ~Place() { std::filesystem::remove_all(path); }
    Place(const Place&) = delete;
    Place& operator=(const Place&) = delete;

    std::string path = (std::filesystem::temp_directory_path() / "hidden-XXXXXX").string();
    Descriptor folder;
};

}  // namespace

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const Place place;
    const int folder = place.folder.number();
    const std::string_view text = textOf(data, size);
    {
        const Descriptor file(openat(folder, ".hidden", O_CREAT | O_TRUNC | O_WRONLY | O_CLOEXEC, 0600));
        require(write(file.number(), text.data(), text.size()) == static_cast<ssize_t>(text.size()));
    }
    const NameSet names = hiddenNames(folder);
    const std::string_view first = text.substr(0, text.find('\n'));
    require(!names.contains("") && (first.empty() || names.contains(first)));
    return 0;
}
