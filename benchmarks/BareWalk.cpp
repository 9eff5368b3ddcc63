#include "BareWalk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <mutex>
#include <string_view>
#include <thread>
#include <vector>

namespace {

struct Shared {
    std::mutex mutex;
    std::condition_variable changed;
    std::vector<std::string> pending;
    unsigned busy = 0;
    std::atomic<std::int64_t> bytes = 0;
};

void list(const std::string& folder, std::vector<char>& buffer, std::vector<std::string>& found, std::int64_t& bytes) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    ssize_t size = 0;
    while ((size = getdents64(descriptor, buffer.data(), buffer.size())) > 0) {
        for (ssize_t at = 0; at < size;) {
            const auto& entry = *reinterpret_cast<const dirent64*>(buffer.data() + at);  // NOLINT
            at += entry.d_reclen;
            const std::string_view name = entry.d_name;
            if (entry.d_type == DT_DIR && name != "." && name != "..") {
                found.push_back(std::string(folder).append("/").append(name));
            } else if (entry.d_type == DT_REG) {
                struct statx status {};
                statx(descriptor, entry.d_name, AT_SYMLINK_NOFOLLOW, STATX_BLOCKS, &status);
                bytes += static_cast<std::int64_t>(status.stx_blocks) * 512;
            }
        }
    }
    close(descriptor);
}

void work(Shared& shared) {
    std::vector<char> buffer(std::size_t{64} * 1024);
    std::vector<std::string> found;
    std::int64_t bytes = 0;
    std::unique_lock lock(shared.mutex);
    for (;;) {
        shared.changed.wait(lock, [&] { return !shared.pending.empty() || shared.busy == 0; });
        if (shared.pending.empty()) {
            break;
        }
        const std::string folder = std::move(shared.pending.back());
        shared.pending.pop_back();
        ++shared.busy;
        lock.unlock();
        list(folder, buffer, found, bytes);
        lock.lock();
        --shared.busy;
        std::move(found.begin(), found.end(), std::back_inserter(shared.pending));
        found.clear();
        shared.changed.notify_all();
    }
    shared.bytes += bytes;
}

}  // namespace

std::int64_t bareWalk(const std::string& root, unsigned threads) {
    Shared shared;
    shared.pending.push_back(root);
    std::vector<std::thread> workers;
    for (unsigned i = 1; i < threads; ++i) {
        workers.emplace_back([&] { work(shared); });
    }
    work(shared);
    for (std::thread& worker : workers) {
        worker.join();
    }
    return shared.bytes;
}
