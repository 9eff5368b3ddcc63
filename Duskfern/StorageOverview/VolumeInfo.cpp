#include "StorageOverview/VolumeInfo.h"

#include "Foundation/CheckedSum.h"

#include <algorithm>
#include <cmath>

std::int64_t VolumeInfo::used() const {
    return std::max<std::int64_t>(0, checkedDifference(total, available));
}

double VolumeInfo::usedFraction() const {
    return total <= 0 ? 0.0 : static_cast<double>(used()) / static_cast<double>(total);
}

std::int64_t VolumeInfo::usedPercent() const {
    const double percent = usedFraction() * 100;
    constexpr double limit = 9223372036854775808.0;  // 2^63, the first value that does not fit
    if (!(std::abs(percent) < limit)) {
        qFatal("a volume's percentage is no number that fits 64 bits");
    }
    return static_cast<std::int64_t>(percent);
}
