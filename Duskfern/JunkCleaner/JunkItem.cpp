#include "JunkCleaner/JunkItem.h"

#include <algorithm>

namespace JunkKinds {

namespace {

struct Row {
    const char16_t* rawValue;
    const char16_t* icon;
};

/// In the order of the enumerators.
constexpr std::array<Row, allCases.size()> rows{{
    {u"Caché", u"shippingbox.fill"},
    {u"Registro", u"doc.text.fill"},
    {u"Temporal", u"clock.fill"},
    {u"Posible resto", u"puzzlepiece.extension.fill"},
}};

const Row& row(JunkKind kind) {
    return rows.at(static_cast<size_t>(kind));
}

}  // namespace

QString rawValue(JunkKind kind) {
    return QString::fromUtf16(row(kind).rawValue);
}

std::optional<JunkKind> fromRawValue(const QString& rawValue) {
    const auto* const found = std::find_if(allCases.begin(), allCases.end(),
                                           [&](JunkKind kind) { return JunkKinds::rawValue(kind) == rawValue; });
    return found == allCases.end() ? std::nullopt : std::optional(*found);
}

QString icon(JunkKind kind) {
    return QString::fromUtf16(row(kind).icon);
}

}  // namespace JunkKinds
