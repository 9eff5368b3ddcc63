#include "JunkCleaner/RunningPrograms.h"

#include "Foundation/Descriptor.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/FileStatus.h"
#include "Foundation/OpenPath.h"
#include "Foundation/SmallFile.h"
#include "JunkCleaner/NamePattern.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <memory>
#include <optional>

namespace {

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// A process has no longer arguments or environment that matter.
constexpr std::size_t maximumText = 65'536;

/// Folders of data that are not named like the program's process.
struct Alias {
    std::string_view folder;
    std::string_view processes;
};
constexpr Alias aliases[] = {
    {"mozilla", "firefox|firefox-esr|firefox-bin"},
    {"google-chrome", "chrome"},
    {"google-chrome-beta", "chrome"},
    {"bravesoftware", "brave|brave-browser"},
    {"brave-browser", "brave"},
    {"microsoft-edge", "msedge"},
    {"vivaldi", "vivaldi-bin"},
    {"com.visualstudio.code", "code"},
    {"vscodium", "codium"},
    {"microsoft teams", "teams"},
    {"androidstudio", "studio"},
    {"steam", "steam|steamwebhelper"},
};

std::optional<int> numberIn(std::string_view text) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end != text.data() ? std::optional(number) : std::nullopt;
}

/// What follows the last `separator`; everything if there is none.
std::string_view lastPart(std::string_view text, char separator) {
    return text.substr(text.rfind(separator) + 1);
}

/// Environment variables that name what a process belongs to.
constexpr std::string_view identifying[] = {"FLATPAK_ID=", "SNAP_NAME=", "SNAP_INSTANCE_NAME="};

/// The beginning of a file of /proc, whose length is not known before it is read. Clears `isComplete` if it could not
/// be opened for lack of descriptors or memory.
std::string contentsOf(int proc, const std::string& file, bool& isComplete) {
    const Descriptor descriptor(openat(proc, file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    isComplete = isComplete && (descriptor.isOpen() || !isShortage(errno));
    std::string text(descriptor.isOpen() ? maximumText : 0, '\0');
    std::size_t size = 0;
    for (ssize_t count = 1; count > 0 && size < text.size();
         size += static_cast<std::size_t>(std::max<ssize_t>(0, count))) {
        count = read(descriptor.number(), text.data() + size, text.size() - size);
    }
    text.resize(size);
    return text;
}

/// The same for all that is read of a process.
void addProcess(int proc, const std::string& number, NameSet& names, bool& isComplete) {
    const auto contents = [&](const char* file) { return contentsOf(proc, number + '/' + file, isComplete); };
    forEachPart(contents("comm"), '\n', [&](std::string_view name) { names.insert(foldedName(name)); });
    forEachPart(contents("cmdline"), '\0', [&](std::string_view word) {
        // A path, a value ("-Didea.paths.selector=…"), or the main class of a Java program.
        const std::string_view piece = lastPart(lastPart(word, '='), '/');
        names.insert(foldedName(piece));
        if (std::count(piece.begin(), piece.end(), '.') > 1) {
            names.insert(foldedName(lastPart(piece, '.')));
        }
    });
    forEachPart(contents("environ"), '\0', [&](std::string_view variable) {
        for (const std::string_view start : identifying) {
            if (variable.starts_with(start)) {
                names.insert(foldedName(variable.substr(start.size())));
            }
        }
    });
}

constexpr std::size_t maximumNumber = 32;

/// Adds the number that a lock contains. Right after it was read.
void addOwner(const std::optional<std::string>& lock, std::vector<int>& owners) {
    if (!lock && isShortage(errno)) {
        owners.push_back(0);
    } else if (const auto number = lock ? numberIn(*lock) : std::nullopt) {
        owners.push_back(*number);
    }
}

}  // namespace

std::optional<RunningPrograms> RunningPrograms::read(const FileURL& proc) {
    RunningPrograms running;
    const std::unique_ptr<DIR, CloseFolder> folder(opendir(proc.path().c_str()));
    bool isComplete = folder != nullptr || !isShortage(errno);
    while (const dirent* const entry = folder != nullptr ? readdir(folder.get()) : nullptr) {
        heartbeat();
        const auto number = numberIn(entry->d_name);
        if (!number) {
            continue;
        }
        running.m_numbers.push_back(*number);
        const auto status = fileStatus(dirfd(folder.get()), entry->d_name);
        if (status && status->owner == geteuid()) {
            addProcess(dirfd(folder.get()), entry->d_name, running.m_names, isComplete);
        }
    }
    std::sort(running.m_numbers.begin(), running.m_numbers.end());
    return isComplete ? std::optional(std::move(running)) : std::nullopt;
}

bool RunningPrograms::runs(std::string_view name) const {
    const std::string folded = foldedName(name);
    if (m_names.contains(folded)) {
        return true;
    }
    bool runs = false;
    for (const Alias& alias : aliases) {
        if (alias.folder == folded) {
            forEachPart(alias.processes, '|',
                        [&](std::string_view process) { runs = runs || m_names.contains(process); });
        }
    }
    return runs;
}

bool RunningPrograms::hasProcess(int number) const {
    return number == 0 || std::binary_search(m_numbers.begin(), m_numbers.end(), number);
}

std::vector<int> lockOwners(int folder) {
    std::vector<int> owners;
    // Links to "host-number" (Chromium) or "address:+number" (Mozilla).
    for (const char* const name : {"SingletonLock", "lock"}) {
        std::array<char, 256> target{};
        const ssize_t size = readlinkat(folder, name, target.data(), target.size());
        if (size > 0) {
            const std::string_view text(target.data(), static_cast<std::size_t>(size));
            owners.push_back(numberIn(text.substr(text.find_last_not_of("0123456789") + 1)).value_or(0));
        }
    }
    for (const char* const name : {".pid", ".lock", "pid"}) {
        addOwner(readSmallFile(folder, name, maximumNumber, FollowLinks::no), owners);
    }
    return owners;
}

std::vector<int> lockOwner(const FileURL& file) {
    std::vector<int> owners;
    addOwner(readSmallFile(AT_FDCWD, file.path().c_str(), maximumNumber), owners);
    return owners;
}
