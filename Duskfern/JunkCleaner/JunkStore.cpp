#include "JunkCleaner/JunkStore.h"

#include "Desktop/Dialogs.h"
#include "Desktop/FileManager.h"
#include "Desktop/InstalledApplications.h"
#include "Desktop/Trash.h"
#include "Desktop/UserFolders.h"
#include "Foundation/CheckedSum.h"
#include "Foundation/Dispatch.h"
#include "Foundation/Formatters.h"
#include "JunkCleaner/JunkPlaces.h"
#include "JunkCleaner/JunkScanner.h"

#include <QtCore/QPointer>

#include <algorithm>
#include <utility>

namespace {

JunkStore::Selection safeOnes(const std::vector<JunkItem>& items) {
    JunkStore::Selection safe;
    for (const JunkItem& item : items) {
        if (item.isSafeForBulk) {
            safe.insert(item.id());
        }
    }
    return safe;
}

qint64 sizeOf(const std::vector<JunkItem>& items) {
    qint64 size = 0;
    for (const JunkItem& item : items) {
        size = checkedSum(size, item.size);
    }
    return size;
}

std::vector<JunkItem> onlyThose(const std::vector<JunkItem>& items, const JunkStore::Selection& selected) {
    std::vector<JunkItem> chosen;
    std::copy_if(items.begin(), items.end(), std::back_inserter(chosen),
                 [&](const JunkItem& item) { return selected.contains(item.id()); });
    return chosen;
}

}  // namespace

JunkStore::JunkStore(Services services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
    connect(&m_turn, &QTimer::timeout, this, &JunkStore::cleanNext);
}

JunkStore::~JunkStore() = default;

int JunkStore::safeCount() const {
    return static_cast<int>(
        std::count_if(m_items.begin(), m_items.end(), [](const JunkItem& item) { return item.isSafeForBulk; }));
}

qint64 JunkStore::selectedSize() const {
    return sizeOf(onlyThose(m_items, m_selected));
}

void JunkStore::setItems(std::vector<JunkItem> items) {
    if (m_items != items) {
        m_items = std::move(items);
        Q_EMIT itemsChanged();
    }
}

void JunkStore::setSelected(Selection selected) {
    if (m_selected != selected) {
        m_selected = std::move(selected);
        Q_EMIT selectedChanged();
    }
}

void JunkStore::setIsScanning(bool isScanning) {
    if (std::exchange(m_isScanning, isScanning) != isScanning) {
        Q_EMIT isScanningChanged();
    }
}

void JunkStore::setMessage(std::optional<QString> message) {
    if (m_message != message) {
        m_message = std::move(message);
        Q_EMIT messageChanged();
    }
}

void JunkStore::scan() {
    setIsScanning(true);
    setItems({});
    setSelected({});
    Dispatch::background([self = QPointer(this), places = junkPlaces(m_services.userFolders.paths()),
                          applications = m_services.applications](const std::stop_token& stop) {
        std::vector<JunkItem> found = JunkScanner::scan(places, *applications, stop);
        Dispatch::main([self, found = std::move(found)] {
            if (self != nullptr) {
                self->setItems(found);
                self->setSelected(safeOnes(found));
                self->setIsScanning(false);
            }
        });
    });
}

void JunkStore::toggle(const JunkItem& item) {
    Selection selected = m_selected;
    if (selected.erase(item.id()) == 0) {
        selected.insert(item.id());
    }
    setSelected(std::move(selected));
}

const JunkItem* JunkStore::itemInRow(int row) const {
    return row >= 0 && row < count() ? &m_items[static_cast<std::size_t>(row)] : nullptr;
}

void JunkStore::toggleRow(int row) {
    if (const JunkItem* const item = itemInRow(row)) {
        toggle(*item);
    }
}

void JunkStore::selectSafe() {
    setSelected(safeOnes(m_items));
}

void JunkStore::cleanAllSafe() {
    selectSafe();
    cleanSelected();
}

void JunkStore::cleanSelected() {
    std::vector<JunkItem> chosen = onlyThose(m_items, m_selected);
    if (chosen.empty() || m_isCleaning) {
        return;
    }
    const Confirmation question{
        QStringLiteral("¿Mover %1 elementos a la Papelera?").arg(chosen.size()),
        QStringLiteral("Liberarás aproximadamente %1. Podrás recuperarlos desde la Papelera.")
            .arg(Formatters::size(sizeOf(chosen))),
        QStringLiteral("Limpiar"),
        QStringLiteral("Cancelar"),
    };
    m_services.dialogs.confirm(question, [self = QPointer(this), chosen = std::move(chosen)](bool confirmed) {
        if (self != nullptr && confirmed) {
            self->clean(chosen);
        }
    });
}

void JunkStore::clean(std::vector<JunkItem> chosen) {
    m_chosen = std::move(chosen);
    m_next = 0;
    m_cleaned.clear();
    m_failures = 0;
    m_isCleaning = true;
    Q_EMIT cleaningChanged();
    m_turn.start(0);
}

void JunkStore::cleanNext() {
    if (m_next == m_chosen.size()) {
        finishCleaning();
        return;
    }
    const JunkItem& item = m_chosen[m_next];
    if (m_services.trash.move(item.url, item.identity)) {
        ++m_failures;
    } else {
        m_cleaned.insert(item.id());
    }
    ++m_next;
    Q_EMIT cleaningChanged();
}

void JunkStore::finishCleaning() {
    m_turn.stop();
    std::vector<JunkItem> rest = m_items;
    std::erase_if(rest, [this](const JunkItem& item) { return m_cleaned.contains(item.id()); });
    Selection selected = m_selected;
    std::erase_if(selected, [this](const FileURL& id) { return m_cleaned.contains(id); });
    setItems(std::move(rest));
    setSelected(std::move(selected));
    m_isCleaning = false;
    Q_EMIT cleaningChanged();
    setMessage(m_failures > 0 ? QStringLiteral("Limpieza parcial: %1 elementos no se pudieron mover.").arg(m_failures)
                              : QStringLiteral("Limpieza completada."));
}

void JunkStore::reveal(const JunkItem& item) {
    m_services.fileManager.reveal({item.url});
}

void JunkStore::revealRow(int row) {
    if (const JunkItem* const item = itemInRow(row)) {
        reveal(*item);
    }
}
