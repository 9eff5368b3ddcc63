// Serves one FuseDisk: `duskfern_fuse_server FOLDER`. What is written to its standard input at once is an order, which
// it confirms with a byte. A request that is held back keeps one of libfuse's threads.

#include "support/FuseDisk.h"

#define FUSE_USE_VERSION 312  // NOLINT(cppcoreguidelines-macro-usage): the library's own way to choose an interface
#include <fuse.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstring>
#include <map>
#include <mutex>
#include <set>
#include <sstream>
#include <thread>

namespace {

using Operation = FuseDisk::Operation;
using Habit = FuseDisk::Habit;

/// Seconds: longer than any test needs, shorter than what CTest gives one.
constexpr unsigned longestLife = 100;

struct Node {
    std::uint64_t number = 0;
    mode_t mode = 0;
    std::string data;
};

std::mutex mutex;  ///< Guards all of these.
std::condition_variable wasReleased;
std::map<std::string, Node> nodes;  ///< By their path on the disk; that of the root is empty.
std::vector<std::pair<Operation, std::string>> hanging;
std::map<std::string, int> failures;
std::set<Habit> habits;
std::uint64_t lastNumber = 0;

/// Whether a path is that of `top` or of something below it.
bool isAt(const std::string& path, const std::string& top) {
    return top.empty() || path == top || path.starts_with(top + '/');
}

bool hasEntries(const std::string& folder) {
    return std::any_of(nodes.begin(), nodes.end(),
                       [&](const auto& node) { return node.first != folder && isAt(node.first, folder); });
}

struct stat statusOf(const Node& node) {
    static std::uint64_t asked = 0;
    struct stat status {};
    status.st_ino = node.number + (habits.contains(Habit::changeInodes) ? ++asked * 1'000'000 : 0);
    status.st_mode = node.mode;
    status.st_nlink = 1;
    status.st_uid = geteuid();
    status.st_gid = getegid();
    status.st_size = static_cast<off_t>(node.data.size());
    status.st_blksize = 4096;
    status.st_blocks = habits.contains(Habit::forgetBlocks) ? 0 : (status.st_size + 4095) / 4096 * 8;
    return status;
}

/// Does work about what the kernel calls `fusePath` when it is not held back, and gives its error number as libfuse
/// wants it.
template <class Work>
int answer(Operation operation, const char* fusePath, const Work& work) {
    const std::string path = fusePath + 1;
    std::unique_lock lock(mutex);
    wasReleased.wait(lock, [&] {
        return std::none_of(hanging.begin(), hanging.end(), [&](const auto& rule) {
            return (rule.first == Operation::any || rule.first == operation) && isAt(path, rule.second);
        });
    });
    return -work(path);
}

/// The same for work on something that has to be there.
template <class Work>
int answerOf(Operation operation, const char* fusePath, const Work& work) {
    return answer(operation, fusePath, [&](const std::string& path) {
        const auto found = nodes.find(path);
        return found == nodes.end() ? ENOENT : work(path, found->second);
    });
}

int make(const char* path, mode_t mode, const char* data = "") {
    return answer(Operation::look, path, [&](const std::string& itself) {
        nodes[itself] = {++lastNumber, mode, data};
        return 0;
    });
}

int remove(const char* path) {
    return answerOf(Operation::look, path, [](const std::string& itself, const Node&) {
        if (hasEntries(itself)) {
            return ENOTEMPTY;
        }
        nodes.erase(itself);
        return 0;
    });
}

int move(const char* from, const char* to, unsigned flags) {
    return answerOf(Operation::look, from, [&](const std::string& path, const Node&) {
        const std::string target = to + 1;
        const unsigned known = habits.contains(Habit::renamePlainly) ? 0 : unsigned{RENAME_NOREPLACE};
        if ((flags & ~known) != 0) {
            return EINVAL;
        }
        if (nodes.contains(target) && (flags != 0 || hasEntries(target))) {
            return flags != 0 ? EEXIST : ENOTEMPTY;
        }
        if (target != path) {
            nodes.erase(target);
        }
        std::map<std::string, Node> moved;
        for (const auto& [each, node] : nodes) {
            moved.emplace(isAt(each, path) ? target + each.substr(path.size()) : each, node);
        }
        nodes = std::move(moved);
        return 0;
    });
}

/// The offset of an entry is its number, so that a folder may change while it is listed.
int list(const char* path, void* buffer, fuse_fill_dir_t fill, off_t offset, fuse_file_info*, fuse_readdir_flags) {
    return answer(offset == 0 ? Operation::list : Operation::listRest, path, [&](const std::string& folder) {
        const std::string start = folder.empty() ? folder : folder + '/';
        std::map<std::uint64_t, std::pair<std::string, struct stat>> rest;
        for (const auto& [each, node] : nodes) {
            if (node.number > static_cast<std::uint64_t>(offset) && each.size() > start.size() &&
                each.starts_with(start) && each.find('/', start.size()) == std::string::npos) {
                rest[node.number] = {each.substr(start.size()), statusOf(node)};
            }
        }
        std::size_t count = habits.contains(Habit::listFew) ? 3 : rest.size();
        for (auto& [number, entry] : rest) {
            auto& [name, status] = entry;
            status.st_mode = habits.contains(Habit::hideKinds) ? 0 : status.st_mode;
            if (count-- == 0 || fill(buffer, name.c_str(), &status, static_cast<off_t>(number), {}) != 0) {
                break;
            }
        }
        return 0;
    });
}

/// The kernel keeps nothing of it and asks anew each time.
void* begin(fuse_conn_info* connection, fuse_config* config) {
    connection->want &= ~unsigned{FUSE_CAP_READDIRPLUS};
    config->use_ino = 1;
    config->hard_remove = 1;
    config->entry_timeout = config->attr_timeout = config->negative_timeout = 0;
    return nullptr;
}

fuse_operations operations() {
    using File = fuse_file_info*;
    fuse_operations table{};
    table.init = begin;
    table.unlink = remove;
    table.rmdir = remove;
    table.rename = move;
    table.readdir = list;
    table.getattr = [](const char* path, struct stat* status, File) {
        return answerOf(Operation::look, path, [&](const std::string& itself, const Node& node) {
            *status = statusOf(node);
            const auto failure = failures.find(itself);
            return failure == failures.end() ? 0 : failure->second;
        });
    };
    table.mkdir = [](const char* path, mode_t mode) { return make(path, S_IFDIR | mode); };
    table.create = [](const char* path, mode_t mode, File) { return make(path, S_IFREG | mode); };
    table.symlink = [](const char* target, const char* path) { return make(path, S_IFLNK | 0777, target); };
    table.read = [](const char* path, char* buffer, std::size_t size, off_t offset, File) {
        return answerOf(Operation::read, path, [&](const std::string&, const Node& node) {
            const std::size_t from = std::min(static_cast<std::size_t>(offset), node.data.size());
            return -static_cast<int>(node.data.copy(buffer, size, from));
        });
    };
    table.write = [](const char* path, const char* bytes, std::size_t size, off_t offset, File) {
        return answerOf(Operation::read, path, [&](const std::string&, Node& node) {
            const auto from = static_cast<std::size_t>(offset);
            node.data.resize(std::max(node.data.size(), from + size));
            node.data.replace(from, size, bytes, size);
            return -static_cast<int>(size);
        });
    };
    table.statfs = [](const char* path, struct statvfs* values) {
        return answer(Operation::look, path, [&](const std::string&) {
            values->f_bsize = values->f_frsize = 4096;
            values->f_blocks = 2'000'000;
            values->f_bfree = values->f_bavail = 1'000'000;
            values->f_namemax = 1024;
            return 0;
        });
    };
    return table;
}

/// Obeys one order: a word, a number and a path. False when the test has gone, or a signal came.
bool obey() {
    std::array<char, 8192> message{};
    if (read(STDIN_FILENO, message.data(), message.size() - 1) <= 0) {
        return false;
    }
    std::istringstream text(message.data());
    std::string order;
    int value = 0;
    std::string path;
    text >> order >> value;
    std::getline(text.ignore(), path);
    const std::lock_guard lock(mutex);
    if (order == "hang") {
        hanging.emplace_back(static_cast<Operation>(value), path);
    } else if (order == "fail") {
        failures[path] = value;
    } else if (order == "habit") {
        habits.insert(static_cast<Habit>(value));
    } else {
        hanging.clear();
        wasReleased.notify_all();
    }
    return write(STDOUT_FILENO, "", 1) == 1;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    // A test that hangs or dies with threads that wait for this disk can only end when the disk does.
    for (const int number : {SIGALRM, SIGTERM}) {
        struct sigaction action {};
        action.sa_handler = [](int) {};
        sigaction(number, &action, nullptr);
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    alarm(longestLife);

    make("/", S_IFDIR | 0755);
    fuse_args options{};
    fuse_opt_add_arg(&options, "duskfern");
    // A source that looks like a device, as file systems for USB sticks have it.
    fuse_opt_add_arg(&options, "-osubtype=duskfern,fsname=/dev/duskfern,default_permissions");
    const fuse_operations table = operations();
    fuse* const disk = fuse_new(&options, &table, sizeof table, nullptr);
    if (disk == nullptr || fuse_mount(disk, argv[1]) != 0 || write(STDOUT_FILENO, "", 1) != 1) {
        return 1;
    }
    std::thread([disk] {
        fuse_loop_config* const config = fuse_loop_cfg_create();
        fuse_loop_cfg_set_max_threads(config, 1000);
        fuse_loop_mt(disk, config);
    }).detach();
    while (obey()) {
    }
    // Its end closes the connection, which answers everything that waits with an error.
    fuse_unmount(disk);
    _exit(0);
}
