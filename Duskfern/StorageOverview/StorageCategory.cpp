#include "StorageOverview/StorageCategory.h"

#include <algorithm>

namespace StorageKinds {

namespace {

struct Row {
    const char16_t* rawValue;
    const char16_t* icon;
};

/// In the order of the enumerators.
constexpr std::array<Row, allCases.size()> rows{{
    {u"Música", u"music.note"},
    {u"Vídeos", u"film.fill"},
    {u"Imágenes", u"photo.fill"},
    {u"Documentos", u"doc.fill"},
    {u"Descargas", u"arrow.down.circle.fill"},
    {u"Aplicaciones", u"square.grid.2x2.fill"},
    {u"Sistema y otros", u"gearshape.2.fill"},
}};

const Row& row(StorageKind kind) {
    return rows.at(static_cast<size_t>(kind));
}

}  // namespace

QString rawValue(StorageKind kind) {
    return QString::fromUtf16(row(kind).rawValue);
}

std::optional<StorageKind> fromRawValue(const QString& rawValue) {
    const auto* const found = std::find_if(allCases.begin(), allCases.end(),
                                           [&](StorageKind kind) { return StorageKinds::rawValue(kind) == rawValue; });
    return found == allCases.end() ? std::nullopt : std::optional(*found);
}

QString icon(StorageKind kind) {
    return QString::fromUtf16(row(kind).icon);
}

}  // namespace StorageKinds
