#pragma once

#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <array>
#include <cstdint>
#include <optional>

/// The origin of a junk item.
namespace JunkKinds {
enum class JunkKind : unsigned char { cache, log, temporary, leftover };

/// Every kind, in the order of the scan.
inline constexpr std::array allCases{JunkKind::cache, JunkKind::log, JunkKind::temporary, JunkKind::leftover};

/// The displayed name; also identifies the kind as text.
[[nodiscard]] QString rawValue(JunkKind kind);

/// The kind with exactly this `rawValue`; none for any other text.
[[nodiscard]] std::optional<JunkKind> fromRawValue(const QString& rawValue);

/// The name of the kind's symbol.
[[nodiscard]] QString icon(JunkKind kind);
}  // namespace JunkKinds

using JunkKinds::JunkKind;

/// A file or folder that can be moved to the Trash.
struct JunkItem {
    FileURL url;            ///< A direct child of one of the scanned places.
    FileIdentity identity;  ///< Identifies the item that was found: only this one may be moved.
    std::int64_t size = 0;  ///< Bytes allocated on disk; for a folder those of its contents.
    JunkKind kind = JunkKind::leftover;
    QString origin;  ///< Displayed text: what it belongs to.

    /// Whether bulk selection includes it; false for leftovers, for what may exist only once, and for what a running
    /// program uses.
    bool isSafeForBulk = false;

    [[nodiscard]] const FileURL& id() const { return url; }
    [[nodiscard]] QString name() const { return displayText(url.lastPathComponent()); }

    bool operator==(const JunkItem&) const = default;
};
