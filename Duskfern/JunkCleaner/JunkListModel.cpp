#include "JunkCleaner/JunkListModel.h"

#include "Foundation/Formatters.h"

#include <algorithm>
#include <utility>

namespace {

/// The rows from `first` up to, but not including, `end`.
struct Range {
    std::size_t first;
    std::size_t end;
};

/// With more ranges than this, resetting the model is quicker.
constexpr std::size_t maximumRanges = 200;

/// The rows of `before` that are missing in `after`, if the lists differ in nothing else and the rows form few ranges.
std::optional<std::vector<Range>> removedRanges(const std::vector<JunkItem>& before,
                                                const std::vector<JunkItem>& after) {
    std::vector<Range> ranges;
    std::size_t kept = 0;
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (kept < after.size() && before[row] == after[kept]) {
            ++kept;
        } else if (!ranges.empty() && ranges.back().end == row) {
            ++ranges.back().end;
        } else if (ranges.size() == maximumRanges) {
            return std::nullopt;
        } else {
            ranges.push_back({row, row + 1});
        }
    }
    return kept == after.size() && kept > 0 ? std::optional(ranges) : std::nullopt;
}

}  // namespace

void JunkListModel::setStore(JunkStore* store) {
    m_store = store;
    connect(store, &JunkStore::itemsChanged, this, &JunkListModel::updateItems);
    connect(store, &JunkStore::rowToggled, this, [this](int row) { updateRow(row); });
    connect(store, &JunkStore::selectedChanged, this, &JunkListModel::updateSelection);
    updateItems();
    Q_EMIT storeChanged();
}

void JunkListModel::updateItems() {
    if (auto ranges = removedRanges(m_items, m_store->items())) {
        // From the end, so that the rows of the other ranges do not change.
        std::reverse(ranges->begin(), ranges->end());
        for (const Range& range : *ranges) {
            beginRemoveRows({}, static_cast<int>(range.first), static_cast<int>(range.end) - 1);
            m_items.erase(m_items.begin() + static_cast<std::ptrdiff_t>(range.first),
                          m_items.begin() + static_cast<std::ptrdiff_t>(range.end));
            endRemoveRows();
        }
    } else {
        beginResetModel();
        m_items = m_store->items();
        endResetModel();
    }
}

void JunkListModel::updateRow(int row) {
    Q_EMIT dataChanged(index(row), index(row), {TickedRole});
    m_isUpToDate = true;
}

void JunkListModel::updateSelection() {
    if (!std::exchange(m_isUpToDate, false) && !m_items.empty()) {
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {TickedRole});
    }
}

int JunkListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_items.size());
}

QVariant JunkListModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const JunkItem& item = m_items[static_cast<std::size_t>(index.row())];
    switch (role) {
        case NameRole:
            return item.name();
        case KindRole:
            return JunkKinds::rawValue(item.kind);
        case OriginRole:
            return item.origin;
        case IconRole:
            return JunkKinds::icon(item.kind);
        case FolderRole:
            return displayText(item.url.deletingLastPathComponent().path());
        case SizeTextRole:
            return Formatters::size(item.size);
        case SafeRole:
            return item.isSafeForBulk;
        case TickedRole:
            return m_store->selected().contains(item.id());
        default:
            return {};
    }
}

QHash<int, QByteArray> JunkListModel::roleNames() const {
    return {{NameRole, "name"}, {KindRole, "kind"},         {OriginRole, "origin"}, {FolderRole, "folder"},
            {IconRole, "icon"}, {SizeTextRole, "sizeText"}, {SafeRole, "safe"},     {TickedRole, "ticked"}};
}
