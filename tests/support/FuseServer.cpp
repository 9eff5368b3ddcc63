// Serves one FuseDisk: `duskfern_fuse_server FOLDER`, with the socket its orders come from as standard input.

#include "support/ServedDisk.h"

#define FUSE_USE_VERSION 34  // NOLINT(cppcoreguidelines-macro-usage): the library's own way to choose an interface
#include <fuse_lowlevel.h>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <functional>
#include <map>
#include <vector>

namespace {

using Disk = ServedDisk;
using Operation = Disk::Operation;
using Node = Disk::Node;

/// Seconds: longer than any test needs, shorter than what CTest gives one.
constexpr unsigned longestLife = 100;

volatile std::sig_atomic_t ended = 0;

/// What work returns that has sent its own answer; otherwise the answer is an error number, or 0.
constexpr int answered = -1;

/// Answers one request about an entry that lies at `path` now.
void about(fuse_req_t request, Operation operation, const std::string& path, const std::function<int(Disk&)>& work) {
    auto& disk = *static_cast<Disk*>(fuse_req_userdata(request));
    disk.answer(operation, path, [request, work, &disk] {
        if (const int error = work(disk); error != answered) {
            fuse_reply_err(request, error);
        }
    });
}

void aboutName(fuse_req_t request, Operation operation, fuse_ino_t parent, const std::string& name,
               const std::function<int(Disk&, Node& folder)>& work) {
    Node& folder = static_cast<Disk*>(fuse_req_userdata(request))->node(parent);
    about(request, operation, Disk::path(folder, name), [work, &folder](Disk& disk) { return work(disk, folder); });
}

void aboutNode(fuse_req_t request, Operation operation, fuse_ino_t number,
               const std::function<int(Disk&, Node&)>& work) {
    Node& node = static_cast<Disk*>(fuse_req_userdata(request))->node(number);
    about(request, operation, Disk::path(node), [work, &node](Disk& disk) { return work(disk, node); });
}

/// The kernel keeps nothing of it and asks anew each time.
fuse_entry_param entryOf(Disk& disk, const Node& node) {
    fuse_entry_param entry{};
    entry.ino = node.number;
    entry.attr = disk.status(node);
    return entry;
}

void lookUp(fuse_req_t request, fuse_ino_t parent, const char* text) {
    const std::string name = text;
    aboutName(request, Operation::look, parent, name, [request, name](Disk& disk, const Node& folder) {
        const Node* const found = Disk::child(folder, name);
        if (const int error = found == nullptr ? ENOENT : disk.failure(*found)) {
            return error;
        }
        const fuse_entry_param entry = entryOf(disk, *found);
        fuse_reply_entry(request, &entry);
        return answered;
    });
}

int replyStatus(fuse_req_t request, Disk& disk, const Node& node) {
    if (const int error = disk.failure(node)) {
        return error;
    }
    const struct stat status = disk.status(node);
    fuse_reply_attr(request, &status, 0);
    return answered;
}

void getStatus(fuse_req_t request, fuse_ino_t number, fuse_file_info* /*file*/) {
    aboutNode(request, Operation::look, number,
              [request](Disk& disk, const Node& node) { return replyStatus(request, disk, node); });
}

void setStatus(fuse_req_t request, fuse_ino_t number, struct stat* attributes, int what, fuse_file_info* /*file*/) {
    aboutNode(request, Operation::look, number, [request, what, wanted = *attributes](Disk& disk, Node& node) {
        if ((what & FUSE_SET_ATTR_SIZE) != 0) {
            node.data.resize(static_cast<std::size_t>(wanted.st_size));
        }
        if ((what & FUSE_SET_ATTR_MODE) != 0) {
            node.mode = (node.mode & S_IFMT) | (wanted.st_mode & 07777);
        }
        if ((what & FUSE_SET_ATTR_MTIME) != 0) {
            node.modified = wanted.st_mtim;
        }
        return replyStatus(request, disk, node);
    });
}

void makeFolder(fuse_req_t request, fuse_ino_t parent, const char* text, mode_t mode) {
    const std::string name = text;
    aboutName(request, Operation::look, parent, name, [=](Disk& disk, Node& folder) {
        const fuse_entry_param entry = entryOf(disk, disk.add(folder, name, S_IFDIR | mode));
        fuse_reply_entry(request, &entry);
        return answered;
    });
}

void makeFile(fuse_req_t request, fuse_ino_t parent, const char* text, mode_t mode, fuse_file_info* file) {
    const std::string name = text;
    aboutName(request, Operation::look, parent, name, [=, file = *file](Disk& disk, Node& folder) {
        const fuse_entry_param entry = entryOf(disk, disk.add(folder, name, S_IFREG | mode));
        fuse_reply_create(request, &entry, &file);
        return answered;
    });
}

void removeEntry(fuse_req_t request, fuse_ino_t parent, const char* text) {
    const std::string name = text;
    aboutName(request, Operation::look, parent, name, [name](Disk& /*disk*/, Node& folder) {
        const Node* const node = Disk::child(folder, name);
        if (node == nullptr || !node->children.empty()) {
            return node == nullptr ? ENOENT : ENOTEMPTY;
        }
        folder.children.erase(name);
        return 0;
    });
}

void moveEntry(fuse_req_t request, fuse_ino_t parent, const char* text, fuse_ino_t newParent, const char* newText,
               unsigned flags) {
    const std::string name = text;
    const std::string newName = newText;
    aboutName(request, Operation::move, parent, name, [=](Disk& disk, Node& folder) {
        Node& newFolder = disk.node(newParent);
        Node* const node = Disk::child(folder, name);
        const Node* const replaced = Disk::child(newFolder, newName);
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
    });
}

void readFile(fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, fuse_file_info* /*file*/) {
    aboutNode(request, Operation::read, number, [=](Disk& /*disk*/, const Node& node) {
        const std::size_t from = std::min(static_cast<std::size_t>(offset), node.data.size());
        fuse_reply_buf(request, node.data.data() + from, std::min(size, node.data.size() - from));
        return answered;
    });
}

void writeFile(fuse_req_t request, fuse_ino_t number, const char* bytes, std::size_t size, off_t offset,
               fuse_file_info* /*file*/) {
    aboutNode(request, Operation::read, number, [=, text = std::string(bytes, size)](Disk& /*disk*/, Node& node) {
        const auto from = static_cast<std::size_t>(offset);
        node.data.resize(std::max(node.data.size(), from + size));
        node.data.replace(from, size, text);
        fuse_reply_write(request, size);
        return answered;
    });
}

/// The offset of an entry is its number, so that a folder may change while it is listed.
void listFolder(fuse_req_t request, fuse_ino_t number, std::size_t size, off_t offset, fuse_file_info* /*file*/) {
    const Operation operation = offset == 0 ? Operation::list : Operation::listRest;
    aboutNode(request, operation, number, [=](Disk& disk, const Node& node) {
        std::map<fuse_ino_t, const Node*> rest;
        for (const auto& [name, child] : node.children) {
            if (child->number > static_cast<fuse_ino_t>(offset)) {
                rest.emplace(child->number, child);
            }
        }
        std::vector<char> buffer(size);
        std::size_t used = 0;
        std::size_t count = disk.has(Disk::Oddity::listFew) ? 3 : rest.size();
        for (const auto& [place, child] : rest) {
            struct stat status = disk.status(*child);
            status.st_mode = disk.has(Disk::Oddity::hideKinds) ? 0 : status.st_mode;
            const std::size_t more = fuse_add_direntry(request, buffer.data() + used, size - used, child->name.c_str(),
                                                       &status, static_cast<off_t>(place));
            if (more > size - used || count-- == 0) {
                break;
            }
            used += more;
        }
        fuse_reply_buf(request, buffer.data(), used);
        return answered;
    });
}

void describeDisk(fuse_req_t request, fuse_ino_t number) {
    aboutNode(request, Operation::look, number, [request](Disk& /*disk*/, const Node& /*node*/) {
        struct statvfs values {};
        values.f_bsize = values.f_frsize = 4096;
        values.f_blocks = 2'000'000;
        values.f_bfree = values.f_bavail = 1'000'000;
        values.f_namemax = 1024;
        fuse_reply_statfs(request, &values);
        return answered;
    });
}

void forget(fuse_req_t request, fuse_ino_t /*number*/, std::uint64_t /*count*/) {
    fuse_reply_none(request);
}

fuse_lowlevel_ops answers() {
    fuse_lowlevel_ops table{};
    table.lookup = lookUp;
    table.forget = forget;
    table.getattr = getStatus;
    table.setattr = setStatus;
    table.mkdir = makeFolder;
    table.unlink = removeEntry;
    table.rmdir = removeEntry;
    table.rename = moveEntry;
    table.read = readFile;
    table.write = writeFile;
    table.readdir = listFolder;
    table.statfs = describeDisk;
    table.create = makeFile;
    return table;
}

/// One order from the test, and a byte back when it is obeyed. False when the test has gone.
bool receiveOrder(Disk& disk) {
    std::array<char, 8192> message{};
    FuseDisk::Order order{};
    const ssize_t size = read(STDIN_FILENO, message.data(), message.size());
    if (size < static_cast<ssize_t>(sizeof order)) {
        return false;
    }
    std::memcpy(&order, message.data(), sizeof order);
    disk.obey(order, std::string(message.data() + sizeof order, static_cast<std::size_t>(size) - sizeof order));
    return write(STDIN_FILENO, "", 1) == 1;
}

void serve(fuse_session* session, Disk& disk) {
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
        if (sources[1].revents != 0 && !receiveOrder(disk)) {
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

    Disk disk;
    std::string name = "duskfern";
    // A source that looks like a device, as file systems for USB sticks have it.
    std::string option = "-osubtype=duskfern,fsname=/dev/duskfern,default_permissions";
    std::array<char*, 3> arguments{name.data(), option.data(), nullptr};
    fuse_args options = FUSE_ARGS_INIT(2, arguments.data());
    const fuse_lowlevel_ops operations = answers();
    fuse_session* const session = fuse_session_new(&options, &operations, sizeof operations, &disk);
    if (session == nullptr || fuse_session_mount(session, argv[1]) != 0 || write(STDIN_FILENO, "", 1) != 1) {
        return 1;
    }
    serve(session, disk);
    // Closes the connection first, which answers everything that waits with an error.
    fuse_session_unmount(session);
    return 0;
}
