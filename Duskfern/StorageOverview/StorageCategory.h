#pragma once

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

/// The categories of storage on the main disk.
namespace StorageKinds {
Q_NAMESPACE
enum class StorageKind { music, videos, images, documents, downloads, applications, system };
Q_ENUM_NS(StorageKind)

/// Every kind, in the order in which the screen shows them.
inline constexpr std::array allCases{
    StorageKind::music,     StorageKind::videos,       StorageKind::images, StorageKind::documents,
    StorageKind::downloads, StorageKind::applications, StorageKind::system,
};

/// The displayed name; also identifies the kind as text.
[[nodiscard]] QString rawValue(StorageKind kind);

/// The kind with exactly this `rawValue`; none for any other text.
[[nodiscard]] std::optional<StorageKind> fromRawValue(const QString& rawValue);

/// The name of the kind's symbol.
[[nodiscard]] QString icon(StorageKind kind);
}  // namespace StorageKinds

using StorageKinds::StorageKind;

/// The size of one kind on the main disk.
class StorageCategory {
    Q_GADGET

public:
    StorageKind kind = StorageKind::system;
    std::int64_t size = 0;  ///< Bytes allocated on disk.

    [[nodiscard]] StorageKind id() const { return kind; }

    /// For QML.
    Q_PROPERTY(QString label READ label)
    Q_PROPERTY(QString icon READ icon)
    Q_PROPERTY(qint64 size READ sizeBytes)
    [[nodiscard]] QString label() const { return StorageKinds::rawValue(kind); }
    [[nodiscard]] QString icon() const { return StorageKinds::icon(kind); }
    [[nodiscard]] qint64 sizeBytes() const { return size; }

    bool operator==(const StorageCategory&) const = default;
};

/// One record per kind, in the order of `StorageKinds::allCases`.
using StorageCategories = std::vector<StorageCategory>;
