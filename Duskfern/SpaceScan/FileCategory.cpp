#include "SpaceScan/FileCategory.h"

#include <algorithm>

namespace FileCategories {

namespace {

struct Row {
    const char16_t* rawValue;
    const char16_t* icon;
};

/// In the order of the enumerators.
constexpr std::array<Row, allCases.size()> rows{{
    {u"Todo el espacio", u"circle.grid.2x2.fill"},
    {u"Vídeos", u"play.rectangle.fill"},
    {u"Imágenes", u"photo.fill"},
    {u"Documentos", u"doc.fill"},
    {u"Comprimidos", u"archivebox.fill"},
    {u"Otros", u"square.stack.3d.up.fill"},
}};

const Row& row(FileCategory category) {
    return rows.at(static_cast<size_t>(category));
}

}  // namespace

QString rawValue(FileCategory category) {
    return QString::fromUtf16(row(category).rawValue);
}

QString icon(FileCategory category) {
    return QString::fromUtf16(row(category).icon);
}

std::optional<FileCategory> fromRawValue(const QString& text) {
    const auto* const found = std::find_if(allCases.begin(), allCases.end(),
                                           [&](FileCategory category) { return rawValue(category) == text; });
    return found == allCases.end() ? std::nullopt : std::optional(*found);
}

}  // namespace FileCategories
