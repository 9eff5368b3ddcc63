// Names and notes of the Trash, and its list of sizes, whatever bytes come in.

#include "Input.h"
#include "Trash/DirectorySizes.h"
#include "Trash/TrashNames.h"

void use(std::string_view text) {
    if (text.size() < 6) {
        return;
    }
    const std::size_t longest = 30 + static_cast<std::uint8_t>(text[0]);
    const auto number = static_cast<std::uint32_t>(text[1]) << 20U | static_cast<std::uint8_t>(text[2]);
    const std::string_view bytes = text.substr(3);

    const std::string name(bytes.substr(0, bytes.find_first_of(std::string_view("/\0", 2))));
    for (const std::optional<std::uint32_t>& each : {std::optional<std::uint32_t>(), std::optional(number)}) {
        const std::string inTrash = name.empty() ? "-" : nameInTrash(name, each, longest);
        require(!inTrash.empty() && inTrash.find('/') == std::string::npos);
        require(inTrash.size() + trashInfoSuffix.size() <= longest);
        require(name.empty() || each || name.size() + trashInfoSuffix.size() > longest || inTrash == name);
    }

    const QByteArray note = QByteArray::fromStdString(trashInfoText(bytes, static_cast<std::time_t>(number) * 10));
    const qsizetype end = note.indexOf("\nDeletionDate=");
    require(note.startsWith("[Trash Info]\nPath=") && note.size() == end + 34 && note.indexOf('\n', 13) == end);
    require(QByteArray::fromPercentEncoding(note.mid(18, end - 18)) == bytesOf(bytes));

    // What is in the list stays, once, and what is added can be found.
    const std::string once = withDirectorySize(bytes, name, number, 7);
    const std::string entry = std::to_string(number) + " 7 " + percentEncoded(name) + "\n";
    require(once.ends_with(entry) && withDirectorySize(once, name, number, 7) == once);
}
