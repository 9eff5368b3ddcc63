// Names and notes of the Trash, and its list of sizes, whatever bytes come in.

#include "Input.h"
#include "Trash/DirectorySizes.h"
#include "Trash/TrashNames.h"

namespace {

std::string decoded(std::string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            require(i + 2 < text.size());
            bytes += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

}  // namespace

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 6) {
        return 0;
    }
    const std::size_t longest = 30 + data[0];
    const auto number = static_cast<std::uint32_t>(data[1]) << 20U | data[2];
    const std::string_view bytes = textOf(data, size).substr(3);

    const std::string name(bytes.substr(0, bytes.find_first_of(std::string_view("/\0", 2))));
    if (!name.empty()) {
        for (const std::optional<std::uint32_t>& each : {std::optional<std::uint32_t>(), std::optional(number)}) {
            const std::string inTrash = nameInTrash(name, each, longest);
            require(!inTrash.empty() && inTrash.find('/') == std::string::npos);
            require(inTrash.size() + trashInfoSuffix.size() <= longest);
            require(each || name.size() + trashInfoSuffix.size() > longest || inTrash == name);
        }
    }

    const std::string note = trashInfoText(bytes, static_cast<std::time_t>(number) * 10);
    const std::size_t end = note.find("\nDeletionDate=");
    require(note.starts_with("[Trash Info]\nPath=") && end != std::string::npos && note.size() == end + 34);
    require(note.find('\n', 13) == end && decoded(std::string_view(note).substr(18, end - 18)) == bytes);

    // What is in the list stays, once, and what is added can be found.
    const std::string once = withDirectorySize(bytes, name, number, 7);
    const std::string entry = std::to_string(number) + " 7 " + percentEncoded(name) + "\n";
    require(once.ends_with(entry) && withDirectorySize(once, name, number, 7) == once);
    return 0;
}
