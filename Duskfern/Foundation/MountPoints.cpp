#include "Foundation/MountPoints.h"

#include <mntent.h>
#include <cstdio>
#include <memory>

namespace {

struct CloseMountTable {
    void operator()(FILE* table) const { endmntent(table); }
};

}  // namespace

std::vector<MountPoint> mountPoints() {
    std::vector<MountPoint> points;
    const std::unique_ptr<FILE, CloseMountTable> table(setmntent("/proc/self/mounts", "re"));
    if (!table) {
        return points;
    }
    mntent entry{};
    std::string buffer(std::size_t{16} * 1024, '\0');
    while (getmntent_r(table.get(), &entry, buffer.data(), static_cast<int>(buffer.size())) != nullptr) {
        points.push_back({entry.mnt_dir, entry.mnt_type});
    }
    return points;
}
