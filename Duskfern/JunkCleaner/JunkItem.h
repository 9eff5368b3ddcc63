#pragma once

#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"

#include <QtCore/QMetaType>
#include <QtCore/QString>

#include <array>
#include <cstdint>
#include <optional>

/// Where a candidate for cleaning comes from.
namespace JunkKinds {
enum class JunkKind : unsigned char { cache, log, temporary, leftover };

/// Every kind, in the order in which they are looked for.
inline constexpr std::array allCases{JunkKind::cache, JunkKind::log, JunkKind::temporary, JunkKind::leftover};

/// The name people read, which is also the kind's identity as text.
[[nodiscard]] QString rawValue(JunkKind kind);

/// The kind of exactly that name; none for any other text.
[[nodiscard]] std::optional<JunkKind> fromRawValue(const QString& rawValue);

/// The name of its symbol.
[[nodiscard]] QString icon(JunkKind kind);
}  // namespace JunkKinds

using JunkKinds::JunkKind;

/// A file or folder that could go to the Trash.
struct JunkItem {
    FileURL url;            ///< A direct child of one of the places looked at.
    FileIdentity identity;  ///< What lay there when it was found, and nothing else, is what may be moved.
    std::int64_t size = 0;  ///< Bytes allocated on disk; of a folder, those of its contents.
    JunkKind kind = JunkKind::leftover;
    QString origin;              ///< What it belongs to, for people.
    bool isSafeForBulk = false;  ///< Whether it may be chosen together with all that is safe; never for leftovers.

    [[nodiscard]] const FileURL& id() const { return url; }
    [[nodiscard]] QString name() const { return displayText(url.lastPathComponent()); }

    bool operator==(const JunkItem&) const = default;
};
