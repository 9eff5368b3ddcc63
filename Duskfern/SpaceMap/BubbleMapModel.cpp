#include "SpaceMap/BubbleMapModel.h"

#include "Foundation/Formatters.h"

#include <algorithm>
#include <optional>
#include <utility>

void BubbleMapModel::setStore(ScanStore* store) {
    m_store = store;
    connect(store, &ScanStore::filteredFilesChanged, this, &BubbleMapModel::updateItems);
    updateItems();
    Q_EMIT storeChanged();
}

void BubbleMapModel::setArea(const QSizeF& area) {
    if (m_area == area) {
        return;
    }
    m_area = area;
    layOutBubbles();
    if (!m_items.empty()) {
        Q_EMIT dataChanged(index(0), index(count() - 1), {CenterXRole, CenterYRole, DiameterRole});
    }
    Q_EMIT areaChanged();
}

void BubbleMapModel::updateItems() {
    const FilteredFiles& files = m_store->filteredFiles();
    std::vector<FileItem> items;
    for (std::size_t i = 0; i < std::min(files.size(), maximumBubbles); ++i) {
        items.push_back(files[i]);
    }
    if (items == m_items) {
        return;
    }
    const std::optional<FileItem> focused =
        m_focused < 0 ? std::nullopt : std::optional(m_items[static_cast<std::size_t>(m_focused)]);
    m_isUpdating = true;
    show(std::move(items));
    m_isUpdating = false;
    if (focused) {
        const auto place = std::find_if(m_items.begin(), m_items.end(),
                                        [&](const FileItem& item) { return item.id() == focused->id(); });
        const int now = place == m_items.end() ? -1 : static_cast<int>(place - m_items.begin());
        if (std::exchange(m_focused, now) != now) {
            Q_EMIT focusedMoved();
        }
    }
}

void BubbleMapModel::show(std::vector<FileItem> items) {
    // Reuses the existing bubbles for other files, because creating new ones takes longer than a search.
    const int before = count();
    const int now = static_cast<int>(items.size());
    const auto fill = [&] {
        m_items = std::move(items);
        layOutBubbles();
    };
    if (now < before) {
        beginRemoveRows({}, now, before - 1);
        fill();
        endRemoveRows();
    } else if (now > before) {
        beginInsertRows({}, before, now - 1);
        fill();
        endInsertRows();
    } else {
        fill();
    }
    if (const int kept = std::min(before, now); kept > 0) {
        Q_EMIT dataChanged(index(0), index(kept - 1));
    }
    if (count() != before) {
        Q_EMIT tabStopChanged();
        Q_EMIT countChanged();
    }
}

void BubbleMapModel::setFocus(int bubble, bool hasFocus) {
    if (!m_isUpdating && (hasFocus || bubble == m_focused)) {
        m_focused = hasFocus ? bubble : -1;
        if (hasFocus && std::exchange(m_lastFocused, bubble) != bubble) {
            Q_EMIT tabStopChanged();
        }
    }
}

int BubbleMapModel::bubbleAfter(int key, int bubble) const {
    const auto nearest = [&](Direction direction) {
        return static_cast<int>(nearestBubble(m_bubbles, static_cast<std::size_t>(bubble), direction));
    };
    switch (key) {
        case Qt::Key_Left:
            return nearest(Direction::left);
        case Qt::Key_Right:
            return nearest(Direction::right);
        case Qt::Key_Up:
            return nearest(Direction::up);
        case Qt::Key_Down:
            return nearest(Direction::down);
        case Qt::Key_Home:
            return 0;
        case Qt::Key_End:
            return count() - 1;
        default:
            return -1;
    }
}

void BubbleMapModel::layOutBubbles() {
    std::vector<std::int64_t> sizes;
    std::transform(m_items.begin(), m_items.end(), std::back_inserter(sizes),
                   [](const FileItem& item) { return item.size; });
    m_bubbles = bubbleLayout(sizes, m_area.width(), m_area.height());
}

int BubbleMapModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : count();
}

QVariant BubbleMapModel::data(const QModelIndex& index, int role) const {
    if (!checkIndex(index, CheckIndexOption::IndexIsValid)) {
        return {};
    }
    const auto row = static_cast<std::size_t>(index.row());
    const FileItem& item = m_items[row];
    switch (role) {
        case CenterXRole:
            return m_bubbles[row].x;
        case CenterYRole:
            return m_bubbles[row].y;
        case DiameterRole:
            return m_bubbles[row].diameter;
        case NameRole:
            return item.name();
        case SizeTextRole:
            return Formatters::size(item.size);
        case PathRole:
            return displayText(item.url.path());
        default:
            return {};
    }
}

QHash<int, QByteArray> BubbleMapModel::roleNames() const {
    return {{CenterXRole, "centerX"}, {CenterYRole, "centerY"},   {DiameterRole, "diameter"},
            {NameRole, "name"},       {SizeTextRole, "sizeText"}, {PathRole, "path"}};
}
