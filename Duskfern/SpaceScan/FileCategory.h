#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <array>
#include <optional>

namespace FileCategories {
Q_NAMESPACE

/// The category of a file. `all` is only a filter: no file has it.
enum class FileCategory : unsigned char { all, videos, images, documents, archives, other };
Q_ENUM_NS(FileCategory)

/// Every category, in the order in which the screens list them.
inline constexpr std::array allCases{FileCategory::all,       FileCategory::videos,   FileCategory::images,
                                     FileCategory::documents, FileCategory::archives, FileCategory::other};

/// The displayed name; also identifies the category in lists.
[[nodiscard]] QString rawValue(FileCategory category);

/// The name of the category's symbol.
[[nodiscard]] QString icon(FileCategory category);

/// The category with exactly this `rawValue`; none for any other text.
[[nodiscard]] std::optional<FileCategory> fromRawValue(const QString& text);

}  // namespace FileCategories

using FileCategories::FileCategory;
