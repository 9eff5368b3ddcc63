#include "support/ServedDisk.h"

#include <unistd.h>

#include <algorithm>
#include <utility>

namespace {

timespec now() {
    timespec time{};
    clock_gettime(CLOCK_REALTIME, &time);
    return time;
}

}  // namespace

ServedDisk::ServedDisk() {
    m_nodes.push_back({1, nullptr, "", S_IFDIR | 0755, now()});
}

ServedDisk::Node& ServedDisk::add(Node& folder, const std::string& name, mode_t mode) {
    m_nodes.push_back({m_nodes.size() + 1, &folder, name, mode, now()});
    folder.children[name] = &m_nodes.back();
    return m_nodes.back();
}

ServedDisk::Node* ServedDisk::child(const Node& folder, const std::string& name) {
    const auto found = folder.children.find(name);
    return found == folder.children.end() ? nullptr : found->second;
}

std::string ServedDisk::path(const Node& of) {
    return of.parent == nullptr ? std::string() : path(*of.parent, of.name);
}

std::string ServedDisk::path(const Node& folder, const std::string& name) {
    return folder.parent == nullptr ? name : path(folder) + '/' + name;
}

struct stat ServedDisk::status(const Node& of) {
    struct stat status {};
    ++m_statuses;
    status.st_ino = of.number + (has(Oddity::changeInodes) ? m_statuses * 1'000'000 : 0);
    status.st_mode = of.mode;
    status.st_nlink = 1;
    status.st_uid = geteuid();
    status.st_gid = getegid();
    status.st_size = static_cast<off_t>(of.data.size());
    status.st_blksize = 4096;
    status.st_blocks = has(Oddity::forgetBlocks) ? 0 : (status.st_size + 4095) / 4096 * 8;
    status.st_mtim = status.st_ctim = status.st_atim = of.modified;
    return status;
}

int ServedDisk::failure(const Node& of) const {
    const auto found = m_failures.find(path(of));
    return found == m_failures.end() ? 0 : found->second;
}

void ServedDisk::answer(Operation operation, const std::string& path, std::function<void()> work) {
    if (isHeld(operation, path)) {
        m_held.push_back(std::move(work));
    } else {
        work();
    }
}

bool ServedDisk::isHeld(Operation operation, const std::string& path) const {
    return std::any_of(m_hanging.begin(), m_hanging.end(), [&](const Rule& rule) {
        return (rule.operation == Operation::any || rule.operation == operation) &&
               (rule.path.empty() || path == rule.path || path.starts_with(rule.path + '/'));
    });
}

void ServedDisk::obey(const FuseDisk::Order& order, const std::string& path) {
    switch (order.kind) {
        case Oddity::hang:
            m_hanging.push_back({static_cast<Operation>(order.value), path});
            break;
        case Oddity::release:
            m_hanging.clear();
            for (const std::function<void()>& work : std::exchange(m_held, {})) {
                work();
            }
            break;
        case Oddity::failStatus:
            m_failures[path] = order.value;
            break;
        default:
            m_oddities.insert(order.kind);
    }
}
