// Serves one FuseDisk: `duskfern_fuse_server FOLDER`, with the socket its orders come from as standard input. One
// thread does all of it.

#include "support/FuseDisk.h"

#define FUSE_USE_VERSION 34  // NOLINT(cppcoreguidelines-macro-usage): the library's own way to choose an interface
#include <fuse_lowlevel.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <deque>
#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

namespace {

using Operation = FuseDisk::Operation;
using Habit = FuseDisk::Habit;
using Order = FuseDisk::Order;

/// Seconds: longer than any test needs, shorter than what CTest gives one.
constexpr unsigned longestLife = 100;

volatile std::sig_atomic_t ended = 0;

/// What work returns that has sent its own answer; otherwise the answer is an error number, or 0.
constexpr int answered = -1;

struct Node {
    fuse_ino_t number;
    Node* parent;
    std::string name;
    mode_t mode;
    timespec modified{};
    std::string data{};
    std::map<std::string, Node*> children{};

    /// Where it, or an entry of it, lies; relative to the root, whose path is empty.
    [[nodiscard]] std::string path() const { return parent == nullptr ? std::string() : parent->path(name); }
    [[nodiscard]] std::string path(const std::string& entry) const {
        return parent == nullptr ? entry : path() + '/' + entry;
    }
    [[nodiscard]] Node* child(const std::string& entry) const {
        const auto found = children.find(entry);
        return found == children.end() ? nullptr : found->second;
    }
};

/// What is kept in memory. Nodes live as long as the program, so that no number is given twice; 1 is the root.
std::deque<Node> nodes;
std::vector<std::pair<Operation, std::string>> hanging;
std::vector<std::function<void()>> held;
std::map<std::string, int> failures;
std::set<Habit> habits;

Node& add(Node* folder, const std::string& name, mode_t mode) {
    Node& node = nodes.emplace_back(Node{nodes.size() + 1, folder, name, mode});
    clock_gettime(CLOCK_REALTIME, &node.modified);
    if (folder != nullptr) {
        folder->children[name] = &node;
    }
    return node;
}

int failureOf(const Node& node) {
    const auto found = failures.find(node.path());
    return found == failures.end() ? 0 : found->second;
}

struct stat statusOf(const Node& node) {
    static std::uint64_t told = 0;
    struct stat status {};
    status.st_ino = node.number + (habits.contains(Habit::changeInodes) ? ++told * 1'000'000 : 0);
    status.st_mode = node.mode;
    status.st_nlink = 1;
    status.st_uid = geteuid();
    status.st_gid = getegid();
    status.st_size = static_cast<off_t>(node.data.size());
    status.st_blksize = 4096;
    status.st_blocks = habits.contains(Habit::forgetBlocks) ? 0 : (status.st_size + 4095) / 4096 * 8;
    status.st_mtim = status.st_ctim = status.st_atim = node.modified;
    return status;
}

/// The kernel keeps nothing of it and asks anew each time.
fuse_entry_param entryOf(const Node& node) {
    fuse_entry_param entry{};
    entry.ino = node.number;
    entry.attr = statusOf(node);
    return entry;
}

int replyEntry(fuse_req_t request, const Node& node) {
    const fuse_entry_param entry = entryOf(node);
    fuse_reply_entry(request, &entry);
    return answered;
}

int replyStatus(fuse_req_t request, const Node& node) {
    if (const int error = failureOf(node)) {
        return error;
    }
    const struct stat status = statusOf(node);
    fuse_reply_attr(request, &status, 0);
    return answered;
}

/// Does work that answers a request about what lies at `path` now, at once or when it is held back no longer.
void answer(fuse_req_t request, Operation operation, const std::string& path, std::function<int()> work) {
    const auto reply = [request, work = std::move(work)] {
        if (const int error = work(); error != answered) {
            fuse_reply_err(request, error);
        }
    };
    const bool isHeld = std::any_of(hanging.begin(), hanging.end(), [&](const auto& rule) {
        return (rule.first == Operation::any || rule.first == operation) &&
               (rule.second.empty() || path == rule.second || path.starts_with(rule.second + '/'));
    });
    if (isHeld) {
        held.emplace_back(reply);
    } else {
        reply();
    }
}

/// The same for work on a node, and for work on a folder that has, or gets, an entry of this name.
void onNode(fuse_req_t request, Operation operation, fuse_ino_t number, const std::function<int(Node&)>& work) {
    Node& node = nodes[number - 1];
    answer(request, operation, node.path(), [work, &node] { return work(node); });
}
void onEntry(fuse_req_t request, Operation operation, fuse_ino_t parent, const char* text,
             const std::function<int(Node& folder, const std::string& name)>& work) {
    Node& folder = nodes[parent - 1];
    answer(request, operation, folder.path(text),
           [work, &folder, name = std::string(text)] { return work(folder, name); });
}

void removeEntry(fuse_req_t request, fuse_ino_t parent, const char* text) {
    onEntry(request, Operation::look, parent, text, [](Node& folder, const std::string& name) {
        const Node* const node = folder.child(name);
        if (node == nullptr || !node->children.empty()) {
            return node == nullptr ? ENOENT : ENOTEMPTY;
        }
        folder.children.erase(name);
        return 0;
    });
}

int moveEntry(Node& folder, const std::string& name, Node& newFolder, const std::string& newName, unsigned flags) {
    Node* const node = folder.child(name);
    const Node* const replaced = newFolder.child(newName);
    if (node == nullptr || (flags & ~unsigned{RENAME_NOREPLACE}) != 0) {
        return node == nullptr ? ENOENT : EINVAL;
    }
    if (replaced != nullptr && ((flags & RENAME_NOREPLACE) != 0 || !replaced->children.empty())) {
        return (flags & RENAME_NOREPLACE) != 0 ? EEXIST : ENOTEMPTY;
    }
    folder.children.erase(name);
    newFolder.children[newName] = node;
    node->parent = &newFolder;
    node->name = newName;
    return 0;
}

/// The offset of an entry is its number, so that a folder may change while it is listed.
int list(fuse_req_t request, const Node& node, std::size_t size, off_t offset) {
    std::map<fuse_ino_t, const Node*> rest;
    for (const auto& [name, child] : node.children) {
        if (child->number > static_cast<fuse_ino_t>(offset)) {
            rest.emplace(child->number, child);
        }
    }
    std::vector<char> buffer(size);
    std::size_t used = 0;
    std::size_t count = habits.contains(Habit::listFew) ? 3 : rest.size();
    for (const auto& [place, child] : rest) {
        struct stat status = statusOf(*child);
        status.st_mode = habits.contains(Habit::hideKinds) ? 0 : status.st_mode;
        const std::size_t more = fuse_add_direntry(request, buffer.data() + used, size - used, child->name.c_str(),
                                                   &status, static_cast<off_t>(place));
        if (more > size - used || count-- == 0) {
            break;
        }
        used += more;
    }
    fuse_reply_buf(request, buffer.data(), used);
    return answered;
}

fuse_lowlevel_ops answers() {
    using File = fuse_file_info*;
    fuse_lowlevel_ops table{};
    table.forget = [](fuse_req_t request, fuse_ino_t, std::uint64_t) { fuse_reply_none(request); };
    table.unlink = removeEntry;
    table.rmdir = removeEntry;
    table.lookup = [](fuse_req_t request, fuse_ino_t parent, const char* text) {
        onEntry(request, Operation::look, parent, text, [request](const Node& folder, const std::string& name) {
            const Node* const found = folder.child(name);
            const int error = found == nullptr ? ENOENT : failureOf(*found);
            return error != 0 ? error : replyEntry(request, *found);
        });
    };
    table.getattr = [](fuse_req_t request, fuse_ino_t number, File) {
        onNode(request, Operation::look, number, [request](const Node& node) { return replyStatus(request, node); });
    };
    table.setattr = [](fuse_req_t request, fuse_ino_t number, struct stat* attributes, int what, File) {
        onNode(request, Operation::look, number, [request, what, wanted = *attributes](Node& node) {
            if ((what & FUSE_SET_ATTR_SIZE) != 0) {
                node.data.resize(static_cast<std::size_t>(wanted.st_size));
            }
            if ((what & FUSE_SET_ATTR_MODE) != 0) {
                node.mode = (node.mode & S_IFMT) | (wanted.st_mode & 07777);
            }
            if ((what & FUSE_SET_ATTR_MTIME) != 0) {
                node.modified = wanted.st_mtim;
            }
            return replyStatus(request, node);
        });
    };
    table.mkdir = [](fuse_req_t request, fuse_ino_t parent, const char* text, mode_t mode) {
        onEntry(request, Operation::look, parent, text, [=](Node& folder, const std::string& name) {
            return replyEntry(request, add(&folder, name, S_IFDIR | mode));
        });
    };
    table.create = [](fuse_req_t request, fuse_ino_t parent, const char* text, mode_t mode, File file) {
        onEntry(request, Operation::look, parent, text, [=, file = *file](Node& folder, const std::string& name) {
            const fuse_entry_param entry = entryOf(add(&folder, name, S_IFREG | mode));
            fuse_reply_create(request, &entry, &file);
            return answered;
        });
    };
    table.rename = [](fuse_req_t request, fuse_ino_t parent, const char* text, fuse_ino_t newParent,
                      const char* newText, unsigned flags) {
        onEntry(request, Operation::look, parent, text,
                [=, newName = std::string(newText)](Node& folder, const std::string& name) {
                    return moveEntry(folder, name, nodes[newParent - 1], newName, flags);
                });
    };
    table.read = [](fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, File) {
        onNode(request, Operation::read, number, [=](const Node& node) {
            const std::size_t from = std::min(static_cast<std::size_t>(offset), node.data.size());
            fuse_reply_buf(request, node.data.data() + from, std::min(size, node.data.size() - from));
            return answered;
        });
    };
    table.write = [](fuse_req_t request, fuse_ino_t number, const char* bytes, std::size_t size, off_t offset, File) {
        onNode(request, Operation::read, number, [=, text = std::string(bytes, size)](Node& node) {
            const auto from = static_cast<std::size_t>(offset);
            node.data.resize(std::max(node.data.size(), from + size));
            node.data.replace(from, size, text);
            fuse_reply_write(request, size);
            return answered;
        });
    };
    table.readdir = [](fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, File) {
        onNode(request, offset == 0 ? Operation::list : Operation::listRest, number,
               [=](const Node& node) { return list(request, node, size, offset); });
    };
    table.statfs = [](fuse_req_t request, fuse_ino_t number) {
        onNode(request, Operation::look, number, [request](const Node& /*node*/) {
            struct statvfs values {};
            values.f_bsize = values.f_frsize = 4096;
            values.f_blocks = 2'000'000;
            values.f_bfree = values.f_bavail = 1'000'000;
            values.f_namemax = 1024;
            fuse_reply_statfs(request, &values);
            return answered;
        });
    };
    return table;
}

/// One order from the test, and a byte back when it is obeyed. False when the test has gone.
bool receiveOrder() {
    std::array<char, 8192> message{};
    Order order{};
    const ssize_t size = read(STDIN_FILENO, message.data(), message.size());
    if (size < static_cast<ssize_t>(sizeof order)) {
        return false;
    }
    std::memcpy(&order, message.data(), sizeof order);
    const std::string path(message.data() + sizeof order, static_cast<std::size_t>(size) - sizeof order);
    switch (order.kind) {
        case Order::Kind::hang:
            hanging.emplace_back(static_cast<Operation>(order.value), path);
            break;
        case Order::Kind::release:
            hanging.clear();
            for (const std::function<void()>& work : std::exchange(held, {})) {
                work();
            }
            break;
        case Order::Kind::failStatus:
            failures[path] = order.value;
            break;
        case Order::Kind::habit:
            habits.insert(static_cast<Habit>(order.value));
            break;
    }
    return write(STDIN_FILENO, "", 1) == 1;
}

void serve(fuse_session* session) {
    fcntl(fuse_session_fd(session), F_SETFL, O_NONBLOCK);
    fuse_buf request{};
    std::array<pollfd, 2> sources{{{fuse_session_fd(session), POLLIN, 0}, {STDIN_FILENO, POLLIN, 0}}};
    while (ended == 0 && fuse_session_exited(session) == 0) {
        if (poll(sources.data(), sources.size(), -1) < 0) {
            continue;
        }
        if (sources[0].revents != 0 && fuse_session_receive_buf(session, &request) > 0) {
            fuse_session_process_buf(session, &request);
        }
        if (sources[1].revents != 0 && !receiveOrder()) {
            return;
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        return 2;
    }
    // A test that hangs or dies with threads that wait for this disk can only end when the disk does.
    for (const int number : {SIGALRM, SIGTERM}) {
        struct sigaction action {};
        action.sa_handler = [](int) { ended = 1; };
        sigaction(number, &action, nullptr);
    }
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    alarm(longestLife);

    add(nullptr, "", S_IFDIR | 0755);
    std::string name = "duskfern";
    // A source that looks like a device, as file systems for USB sticks have it.
    std::string option = "-osubtype=duskfern,fsname=/dev/duskfern,default_permissions";
    std::array<char*, 3> arguments{name.data(), option.data(), nullptr};
    fuse_args options = FUSE_ARGS_INIT(2, arguments.data());
    const fuse_lowlevel_ops operations = answers();
    fuse_session* const session = fuse_session_new(&options, &operations, sizeof operations, nullptr);
    if (session == nullptr || fuse_session_mount(session, argv[1]) != 0 || write(STDIN_FILENO, "", 1) != 1) {
        return 1;
    }
    serve(session);
    // Closes the connection first, which answers everything that waits with an error.
    fuse_session_unmount(session);
    return 0;
}
