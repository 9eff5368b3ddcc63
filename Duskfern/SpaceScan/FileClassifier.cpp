#include "SpaceScan/FileClassifier.h"

#include "Foundation/FileExtension.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace FileClassifier {

namespace {

/// An extension of at most eight bytes as a number, so that the table is searched quickly.
constexpr std::uint64_t packed(std::string_view extension) {
    std::uint64_t number = 0;
    for (const char c : extension) {
        number = number << 8 | static_cast<unsigned char>(c);
    }
    return number;
}

struct Row {
    constexpr Row(std::string_view text, FileCategory of) : extension(packed(text)), category(of) {}

    std::uint64_t extension;
    FileCategory category;
};

/// Deliberately short: an extension that is not listed is `other`, even a related one (tif, mpg, mp3, tgz).
constexpr std::array<Row, 36> extensions{{
    {"mp4", FileCategory::videos},    {"mov", FileCategory::videos},     {"mkv", FileCategory::videos},
    {"avi", FileCategory::videos},    {"m4v", FileCategory::videos},     {"webm", FileCategory::videos},
    {"jpg", FileCategory::images},    {"jpeg", FileCategory::images},    {"png", FileCategory::images},
    {"gif", FileCategory::images},    {"heic", FileCategory::images},    {"tiff", FileCategory::images},
    {"webp", FileCategory::images},   {"svg", FileCategory::images},     {"raw", FileCategory::images},
    {"pdf", FileCategory::documents}, {"doc", FileCategory::documents},  {"docx", FileCategory::documents},
    {"txt", FileCategory::documents}, {"rtf", FileCategory::documents},  {"pages", FileCategory::documents},
    {"xls", FileCategory::documents}, {"xlsx", FileCategory::documents}, {"csv", FileCategory::documents},
    {"ppt", FileCategory::documents}, {"pptx", FileCategory::documents}, {"key", FileCategory::documents},
    {"zip", FileCategory::archives},  {"rar", FileCategory::archives},   {"7z", FileCategory::archives},
    {"tar", FileCategory::archives},  {"gz", FileCategory::archives},    {"bz2", FileCategory::archives},
    {"xz", FileCategory::archives},   {"dmg", FileCategory::archives},   {"pkg", FileCategory::archives},
}};
constexpr std::size_t longestExtension = 5;

}  // namespace

FileCategory categoryForName(std::string_view name) {
    const std::uint64_t extension = packed(lowerCaseExtension(name, longestExtension));
    const auto* const found =
        std::find_if(extensions.begin(), extensions.end(), [&](const Row& row) { return row.extension == extension; });
    return found == extensions.end() ? FileCategory::other : found->category;
}

}  // namespace FileClassifier
