#include "Desktop/SystemVolumes.h"

#include "Desktop/GioSupport.h"
#include "Desktop/VisibleDisks.h"
#include "Desktop/VolumeLabel.h"
#include "Foundation/FileURL.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <limits>
#include <mutex>
#include <set>
#include <system_error>
#include <thread>

namespace {

/// How long the window may wait for all mounts together.
constexpr std::chrono::milliseconds deadline{400};

/// `blocks` × `size`, as far as it fits: what a file system says of itself may be anything. A count with the highest
/// bit set is one that fell below zero.
std::int64_t bytes(std::uint64_t blocks, std::uint64_t size) {
    constexpr std::int64_t most = std::numeric_limits<std::int64_t>::max();
    if (blocks > most) {
        return -1;
    }
    std::int64_t product = 0;
    return __builtin_mul_overflow(blocks, size, &product) ? most : product;
}

/// The name of the operating system, for the disk it runs from.
std::string systemName() {
    const GPtr<char> name(g_get_os_info(G_OS_INFO_KEY_NAME));
    return name == nullptr ? std::string() : name.get();
}

/// Whether the open folder still belongs to the mount: where a volume was taken away, the disk below would answer in
/// its place. Kernels before 5.8 do not tell.
bool isStillMounted(const Mount& mount, int folder) {
    struct statx status {};
    if (mount.target == "/" || mount.id < 0 || statx(folder, "", AT_EMPTY_PATH, STATX_MNT_ID, &status) != 0 ||
        (status.stx_mask & STATX_MNT_ID) == 0) {
        return true;
    }
    return status.stx_mnt_id == static_cast<std::uint64_t>(mount.id);
}

std::optional<VolumeValues> valuesOf(const Mount& mount) {
    const int folder = open(mount.target.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0) {
        return std::nullopt;
    }
    std::optional<VolumeValues> values;
    struct statvfs status {};
    if (isStillMounted(mount, folder) && fstatvfs(folder, &status) == 0) {
        values.emplace();
        values->total = bytes(status.f_blocks, status.f_frsize);
        values->available = bytes(status.f_bavail, status.f_frsize);
        std::string name = volumeLabel(mount, folder);
        if (name.empty() && mount.target == "/") {
            name = systemName();
        }
        if (!name.empty()) {
            values->name = displayText(name);
        }
    }
    close(folder);
    return values;
}

/// A FUSE file system over a folder of another disk says of itself what that disk says; between the two questions
/// something may have been written there.
bool repeats(const Mount& mount, const VolumeValues& values, const VolumeValues& other) {
    constexpr std::int64_t fewBytes = 64'000'000;
    return mount.type.starts_with("fuse.") && values.total == other.total &&
           std::abs(*values.available - *other.available) < fewBytes;
}

}  // namespace

struct SystemVolumes::Asked {
    std::mutex mutex;
    std::condition_variable answered;
    std::set<std::string> silent;  ///< Mount points that have not answered yet, of this round or an earlier one.
};

SystemVolumes::SystemVolumes() : m_asked(std::make_shared<Asked>()) {}

SystemVolumes::~SystemVolumes() = default;

std::optional<std::vector<Mount>> SystemVolumes::visibleMounts() {
    const std::optional<std::vector<Mount>> table = readMountTable();
    if (!table) {
        return std::nullopt;
    }
    return ::visibleMounts(*table, [](const std::string& path) {
        struct stat status {};
        return stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    });
}

std::vector<std::optional<VolumeValues>> SystemVolumes::values(const std::vector<Mount>& mounts) {
    using Answers = std::vector<std::optional<VolumeValues>>;
    const auto answers = std::make_shared<Answers>(mounts.size());
    const auto open = std::make_shared<std::size_t>(0);
    std::unique_lock lock(m_asked->mutex);
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        if (!m_asked->silent.insert(mounts[i].target).second) {
            continue;
        }
        try {
            std::thread([asked = m_asked, answers, open, mount = mounts[i], i] {
                std::optional<VolumeValues> values = valuesOf(mount);
                const std::lock_guard guard(asked->mutex);
                (*answers)[i] = std::move(values);
                --*open;
                asked->silent.erase(mount.target);
                asked->answered.notify_all();
            }).detach();
            ++*open;
        } catch (const std::system_error&) {
            // No thread is to be had; the volume is left out.
            m_asked->silent.erase(mounts[i].target);
        }
    }
    m_asked->answered.wait_for(lock, deadline, [&] { return *open == 0; });
    Answers result = *answers;
    for (std::size_t i = 0; i < result.size(); ++i) {
        for (std::size_t other = 0; result[i] && other < result.size(); ++other) {
            if (other != i && result[other] && repeats(mounts[i], *result[i], *result[other]) &&
                (other < i || !mounts[other].type.starts_with("fuse."))) {
                result[i].reset();
            }
        }
    }
    return result;
}
