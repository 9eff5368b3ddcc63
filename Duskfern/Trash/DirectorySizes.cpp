#include "Trash/DirectorySizes.h"

#include "Foundation/SmallFile.h"
#include "Trash/StagingFolder.h"
#include "Trash/TrashNames.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cstdio>

namespace {

constexpr const char* fileName = "directorysizes";
constexpr std::size_t maximumBytes = std::size_t{64} * 1024 * 1024;

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

/// The encoded name in a line "SIZE TIME NAME"; empty if the line is malformed.
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

std::string withDirectorySize(std::string_view sizes, std::string_view name, std::int64_t bytes,
                              std::int64_t infoModified) {
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
    return result.append(std::to_string(bytes))
               .append(" ")
               .append(std::to_string(infoModified))
               .append(" ")
               .append(encoded) +
           '\n';
}

void recordDirectorySize(const TrashFolder& trash, const std::string& name, std::int64_t bytes) {
    const std::optional<FileStatus> info = fileStatus(trash.info(), std::string(name).append(trashInfoSuffix).c_str());
    const std::optional<FileStatus> known = fileStatus(trash.root(), fileName);
    if (!info || (known && (!known->isRegularFile() || known->length > static_cast<std::int64_t>(maximumBytes)))) {
        return;
    }
    const std::string before = readSmallFile(trash.root(), fileName, maximumBytes, FollowLinks::no).value_or("");
    const std::string text = withDirectorySize(before, name, bytes, info->modifiedSeconds);
    const std::string temporary = stagingName();
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
