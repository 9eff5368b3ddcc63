#include "SpaceScan/FileCategory.h"
#include "SpaceScan/FileClassifier.h"
#include "SpaceScan/FileItem.h"

#include <gtest/gtest.h>

namespace {

TEST(FileCategory, ShowsItselfAndComesBackFromItsText) {
    const std::pair<QString, QString> rows[] = {
        {QStringLiteral("Todo el espacio"), QStringLiteral("circle.grid.2x2.fill")},
        {QStringLiteral("Vídeos"), QStringLiteral("play.rectangle.fill")},
        {QStringLiteral("Imágenes"), QStringLiteral("photo.fill")},
        {QStringLiteral("Documentos"), QStringLiteral("doc.fill")},
        {QStringLiteral("Comprimidos"), QStringLiteral("archivebox.fill")},
        {QStringLiteral("Otros"), QStringLiteral("square.stack.3d.up.fill")},
    };
    ASSERT_EQ(FileCategories::allCases.size(), std::size(rows));
    for (size_t i = 0; i < std::size(rows); ++i) {
        const FileCategory category = FileCategories::allCases.at(i);
        EXPECT_EQ(FileCategories::rawValue(category), rows[i].first);
        EXPECT_EQ(FileCategories::icon(category), rows[i].second);
        EXPECT_EQ(FileCategories::fromRawValue(rows[i].first), category);
    }
    for (const auto& text : {QStringLiteral("Videos"), QStringLiteral("vídeos"), QString()}) {
        EXPECT_EQ(FileCategories::fromRawValue(text), std::nullopt);
    }
}

TEST(FileClassifier, GoesByTheLastExtension) {
    using enum FileCategory;
    const std::pair<const char*, FileCategory> rows[] = {
        {"Movie.MP4", videos},
        {"a.webm", videos},
        {"photo.JPEG", images},
        {"x.heic", images},
        {"notes.key", documents},
        {"carta.Pages", documents},
        {"archive.tar.gz", archives},
        {"disco.DMG", archives},
        {"scan.tif", other},
        {"a.mpg", other},
        {"a.mp3", other},
        {"a.tgz", other},
        {"noextension", other},
        {"mp4", other},
        {"ends.", other},
        {"gif.", other},
        {"a.mp44", other},
        {"a.mp", other},
        {"a.pdf ", other},
        {"a.\xFFpdf", other},
        {"a.m\xE2\x84\xAAv", videos},  // The Kelvin sign is a capital k.
    };
    for (const auto& [name, category] : rows) {
        EXPECT_EQ(FileClassifier::categoryForName(name), category) << name;
    }
    EXPECT_EQ(FileClassifier::category(FileURL("/a.zip/b.png")), images);
}

TEST(FileItem, NamesItsFileAndItsFolder) {
    const FileItem item{FileURL("/home/Movies/trip.mov"), 10, FileCategory::videos};
    EXPECT_EQ(item.name(), QStringLiteral("trip.mov"));
    EXPECT_EQ(item.parent(), QStringLiteral("Movies"));
    EXPECT_EQ((FileItem{FileURL("/trip.mov")}).parent(), QStringLiteral("/"));
    FileItem larger = item;
    larger.size = 11;
    EXPECT_NE(item, larger);
    EXPECT_EQ(item.id(), larger.id());
}

}  // namespace
