#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <cstdint>

/// A mounted volume and how full it is. Sizes are bytes.
class VolumeInfo {
    Q_GADGET

public:
    FileURL url;                 ///< The mount point; "/" for the disk the system runs from.
    QString name;                ///< What people call it; may be empty.
    std::int64_t total = 0;      ///< Capacity; above 0 in what `StorageOverviewScanner::volumes` makes.
    std::int64_t available = 0;  ///< What this user can still write; never negative there.

    [[nodiscard]] const FileURL& id() const { return url; }

    /// `total` less `available`, never below 0. A difference beyond 64 bits ends the program.
    Q_PROPERTY(qint64 used READ used)
    [[nodiscard]] std::int64_t used() const;

    /// The part of the volume that is used: 0 to 1, and 0 for a volume without capacity.
    Q_PROPERTY(double usedFraction READ usedFraction)
    [[nodiscard]] double usedFraction() const;

    /// The same in percent, cut off rather than rounded: 99 until the last byte is used. A fraction that is no number
    /// or too large ends the program.
    Q_PROPERTY(qint64 usedPercent READ usedPercent)
    [[nodiscard]] std::int64_t usedPercent() const;

    /// For the screens.
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(qint64 total READ totalBytes)
    Q_PROPERTY(qint64 available READ availableBytes)
    Q_PROPERTY(bool isStartupDisk READ isStartupDisk)
    [[nodiscard]] qint64 totalBytes() const { return total; }
    [[nodiscard]] qint64 availableBytes() const { return available; }
    [[nodiscard]] bool isStartupDisk() const { return url == FileURL("/"); }

    bool operator==(const VolumeInfo&) const = default;
};
