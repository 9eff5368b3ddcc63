#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <cstdint>

/// A mounted volume and its usage. Sizes are in bytes.
class VolumeInfo {
    Q_GADGET

public:
    FileURL url;                 ///< The mount point; "/" for the startup disk.
    QString name;                ///< Displayed name; may be empty.
    std::int64_t total = 0;      ///< Capacity; above 0 if made by `StorageOverviewScanner::volumes`.
    std::int64_t available = 0;  ///< Space that this user can still write; never negative if made there.

    [[nodiscard]] const FileURL& id() const { return url; }

    /// `total` minus `available`, at least 0. Ends the program if the difference exceeds 64 bits.
    Q_PROPERTY(qint64 used READ used)
    [[nodiscard]] std::int64_t used() const;

    /// The fraction in use, from 0 to 1; 0 for a volume without capacity.
    Q_PROPERTY(double usedFraction READ usedFraction)
    [[nodiscard]] double usedFraction() const;

    /// `usedFraction` in percent, truncated: 100 only if every byte is used. Ends the program if it is not a finite
    /// number of 64 bits.
    Q_PROPERTY(qint64 usedPercent READ usedPercent)
    [[nodiscard]] std::int64_t usedPercent() const;

    /// For QML.
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(qint64 total READ totalBytes)
    Q_PROPERTY(qint64 available READ availableBytes)
    Q_PROPERTY(bool isStartupDisk READ isStartupDisk)
    [[nodiscard]] qint64 totalBytes() const { return total; }
    [[nodiscard]] qint64 availableBytes() const { return available; }
    [[nodiscard]] bool isStartupDisk() const { return url == FileURL("/"); }

    bool operator==(const VolumeInfo&) const = default;
};
