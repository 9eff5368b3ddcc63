#pragma once

#include <QtCore/QObject>
#include <QtCore/QString>

#include <array>
#include <optional>

namespace FileCategories {
Q_NAMESPACE

/// What kind of file something is. `all` is a filter only: no file is of that category.
enum class FileCategory : unsigned char { all, videos, images, documents, archives, other };
Q_ENUM_NS(FileCategory)

/// Every category, in the order in which they are listed.
inline constexpr std::array allCases{FileCategory::all,       FileCategory::videos,   FileCategory::images,
                                     FileCategory::documents, FileCategory::archives, FileCategory::other};

/// The name that people read; also the category's identity in lists.
[[nodiscard]] QString rawValue(FileCategory category);

/// The name of the symbol that stands for the category.
[[nodiscard]] QString icon(FileCategory category);

/// The category whose `rawValue` this is, to the letter; none for any other text.
[[nodiscard]] std::optional<FileCategory> fromRawValue(const QString& text);

}  // namespace FileCategories

using FileCategories::FileCategory;
