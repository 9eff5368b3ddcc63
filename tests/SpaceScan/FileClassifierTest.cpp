#include "SpaceScan/FileClassifier.h"

#include <gtest/gtest.h>

namespace {

TEST(FileCategory, ComesBackFromItsText) {
    for (const FileCategory category : FileCategories::allCases) {
        EXPECT_EQ(FileCategories::fromRawValue(FileCategories::rawValue(category)), category);
    }
    EXPECT_EQ(FileCategories::fromRawValue(QStringLiteral("vídeos")), std::nullopt);
}

TEST(FileClassifier, GoesByTheLastExtension) {
    using enum FileCategory;
    const std::pair<FileCategory, std::vector<const char*>> rows[] = {
        {videos, {"Movie.MP4", "a.webm", "a.m\xE2\x84\xAAv"}},  // The Kelvin sign is a capital k.
        {images, {"photo.JPEG", "x.heic"}},
        {documents, {"notes.key", "carta.Pages"}},
        {archives, {"archive.tar.gz", "disco.DMG"}},
        {other, {"scan.tif", "noextension", "mp4", "ends.", "gif.", "a.mp44", "a.mp", "a.pdf ", "a.\xFFpdf"}},
    };
    for (const auto& [category, names] : rows) {
        for (const char* const name : names) {
            EXPECT_EQ(FileClassifier::categoryForName(name), category) << name;
        }
    }
}

}  // namespace
