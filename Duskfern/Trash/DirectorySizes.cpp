#include "Trash/DirectorySizes.h"

#include "Foundation/SmallFile.h"
#include "Trash/TrashNames.h"
#include "Trash/UnfinishedPlace.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdio>

namespace {

constexpr const char* fileName = "directorysizes";
constexpr std::size_t mostBytes = std::size_t{64} * 1024 * 1024;

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The encoded name in a line "SIZE TIME NAME"; empty where it is no such line.
std::string_view nameIn(std::string_view line) {
    const std::size_t first = line.find(' ');
    const std::size_t second = first == std::string_view::npos ? first : line.find(' ', first + 1);
    if (second == std::string_view::npos || !isNumber(line.substr(0, first)) ||
        !isNumber(line.substr(first + 1, second - first - 1))) {
        return {};
    }
    return line.substr(second + 1);
}

bool writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(file, text.data(), text.size());
        if (count <= 0) {
            return false;
        }
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

}  // namespace

std::string withDirectorySize(std::string_view sizes, std::string_view name, std::int64_t bytes, std::int64_t noted) {
    const std::string encoded = percentEncoded(name);
    std::string result;
    result.reserve(sizes.size() + encoded.size() + 48);
    while (!sizes.empty()) {
        const std::size_t end = std::min(sizes.find('\n'), sizes.size());
        const std::string_view line = sizes.substr(0, end);
        const std::string_view known = nameIn(line);
        if (!known.empty() && known != encoded) {
            result.append(line).append("\n");
        }
        sizes.remove_prefix(std::min(end + 1, sizes.size()));
    }
    return result.append(std::to_string(bytes)).append(" ").append(std::to_string(noted)).append(" ").append(encoded) +
           '\n';
}

void noteDirectorySize(const TrashFolder& trash, const std::string& name, std::int64_t bytes) {
    const std::optional<FileStatus> note = fileStatus(trash.info(), std::string(name).append(trashNoteSuffix).c_str());
    const std::optional<FileStatus> known = fileStatus(trash.root(), fileName);
    if (!note || (known && (!known->isRegularFile() || known->length > static_cast<std::int64_t>(mostBytes)))) {
        return;
    }
    const std::string before = readSmallFile(trash.root(), fileName, mostBytes, FollowLinks::no).value_or("");
    const std::string text = withDirectorySize(before, name, bytes, note->modifiedSeconds);
    const std::string temporary = unfinishedName();
    const Descriptor file(
        openat(trash.root(), temporary.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!file.isOpen()) {
        return;
    }
    static_cast<void>(flock(file.number(), LOCK_EX | LOCK_NB));
    if (!writeAll(file.number(), text) || fdatasync(file.number()) != 0 ||
        renameat(trash.root(), temporary.c_str(), trash.root(), fileName) != 0) {
        unlinkat(trash.root(), temporary.c_str(), 0);
    }
}
