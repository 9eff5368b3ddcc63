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
#include <chrono>
#include <utility>

namespace {

/// How often one scan is repeated because of late answers.
constexpr int maximumRescans = 3;

/// An item whose move makes no progress for this long counts as failed. Longer than `diskTimeout`, because a disk may
/// be busy writing earlier copies.
constexpr std::chrono::seconds moveTimeout{20};

JunkStore::Selection safeItems(const std::vector<JunkItem>& items) {
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

std::vector<JunkItem> selectedItems(const std::vector<JunkItem>& items, const JunkStore::Selection& selected) {
    std::vector<JunkItem> chosen;
    std::copy_if(items.begin(), items.end(), std::back_inserter(chosen),
                 [&](const JunkItem& item) { return selected.contains(item.id()); });
    return chosen;
}

}  // namespace

/// One cleaning, from the confirmation to the result message.
struct JunkStore::Cleaning {
    std::vector<JunkItem> chosen;  ///< The items to move, in order.
    std::size_t next = 0;          ///< Index of the item that is being moved.
    Selection moved;
    FailureCounts failures;
};

JunkStore::JunkStore(Services services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
    m_moveTimer.setSingleShot(true);
    m_moveTimer.setInterval(moveTimeout);
    connect(&m_moveTimer, &QTimer::timeout, this, [this] {
        // `finishItem` drops `m_cleaning` after the last item, so this keeps the object alive until the call returns.
        const std::shared_ptr<Cleaning> cleaning = m_cleaning;
        finishItem(cleaning, cleaning->next, MoveResult::timedOut());
    });
}

JunkStore::~JunkStore() = default;

void JunkStore::setItems(std::vector<JunkItem> items) {
    if (m_items != items) {
        m_items = std::move(items);
        m_safeCount = static_cast<int>(
            std::count_if(m_items.begin(), m_items.end(), [](const JunkItem& item) { return item.isSafeForBulk; }));
        recountSelection();
        Q_EMIT itemsChanged();
    }
}

void JunkStore::setSelected(Selection selected) {
    if (m_selected != selected) {
        m_selected = std::move(selected);
        recountSelection();
        Q_EMIT selectedChanged();
    }
}

void JunkStore::recountSelection() {
    m_selectedSize = 0;
    for (const JunkItem& item : m_items) {
        if (m_selected.contains(item.id())) {
            m_selectedSize = checkedSum(m_selectedSize, item.size);
        }
    }
}

void JunkStore::setIsScanning(bool isScanning) {
    if (std::exchange(m_isScanning, isScanning) != isScanning) {
        Q_EMIT isScanningChanged();
    }
}

void JunkStore::setMessage(std::optional<QString> message, const QString& reasons) {
    if (m_message != message || m_messageReasons != reasons) {
        m_message = std::move(message);
        m_messageReasons = reasons;
        Q_EMIT messageChanged();
    }
}

void JunkStore::scan() {
    setIsScanning(true);
    setItems({});
    setSelected({});
    ++m_scanNumber;
    startScan(0);
}

/// Scans in the background. A rescan keeps the current list until its result is complete.
void JunkStore::startScan(int rescans) {
    m_movedSinceScan.clear();
    Dispatch::background([self = QPointer(this), scanNumber = m_scanNumber, rescans,
                          &userFolders = m_services.userFolders, applications = m_services.applications,
                          &trash = m_services.trash](const std::stop_token& stop) {
        const auto isMovable = [&trash](const FileURL& url) { return !trash.refusal(url); };
        JunkScan found = JunkScanner::scan(junkPlaces(userFolders.paths()), applications, isMovable, stop);
        Dispatch::main([self, scanNumber, rescans, found = std::move(found)]() mutable {
            if (self != nullptr && (rescans == 0 || self->m_scanNumber == scanNumber)) {
                self->publish(std::move(found), rescans);
            }
        });
    });
}

void JunkStore::publish(JunkScan found, int rescans) {
    std::erase_if(found.items, [this](const JunkItem& item) { return m_movedSinceScan.contains(item.id()); });
    Selection selected = safeItems(found.items);
    if (rescans > 0) {
        // Items that were listed before keep their current selection.
        for (const JunkItem& item : m_items) {
            selected.erase(item.id());
            if (m_selected.contains(item.id())) {
                selected.insert(item.id());
            }
        }
    }
    setItems(std::move(found.items));
    setSelected(std::move(selected));
    setIsScanning(false);
    if (found.lateAnswer && rescans < maximumRescans) {
        found.lateAnswer->whenAnswered([self = QPointer(this), scanNumber = m_scanNumber, rescans] {
            Dispatch::main([self, scanNumber, rescans] {
                if (self != nullptr) {
                    self->rescan(scanNumber, rescans + 1);
                }
            });
        });
    }
}

/// Called when something that was skipped has answered. Scans once more, unless a newer scan has begun or a cleaning
/// runs.
void JunkStore::rescan(std::uint64_t scanNumber, int rescans) {
    if (scanNumber == m_scanNumber && !m_isScanning && !isCleaning()) {
        startScan(rescans);
    }
}

void JunkStore::toggle(const JunkItem& item) {
    const auto row =
        std::find_if(m_items.begin(), m_items.end(), [&](const JunkItem& listed) { return listed.id() == item.id(); });
    if (row != m_items.end()) {
        toggleAt(static_cast<std::size_t>(row - m_items.begin()));
    }
}

void JunkStore::toggleAt(std::size_t row) {
    const JunkItem& item = m_items[row];
    const bool isSelected = m_selected.insert(item.id()).second;
    if (!isSelected) {
        m_selected.erase(item.id());
    }
    m_selectedSize = checkedSum(m_selectedSize, isSelected ? item.size : -item.size);
    Q_EMIT rowToggled(static_cast<int>(row));
    Q_EMIT selectedChanged();
}

void JunkStore::toggleRow(int row) {
    if (row >= 0 && row < count()) {
        toggleAt(static_cast<std::size_t>(row));
    }
}

void JunkStore::selectSafe() {
    setSelected(safeItems(m_items));
}

void JunkStore::cleanAllSafe() {
    selectSafe();
    cleanSelected();
}

void JunkStore::cleanSelected() {
    std::vector<JunkItem> chosen = selectedItems(m_items, m_selected);
    if (chosen.empty() || isCleaning()) {
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
    m_cleaning = std::make_shared<Cleaning>();
    m_cleaning->chosen = std::move(chosen);
    m_cleaningCount = static_cast<int>(m_cleaning->chosen.size());
    m_cleanedCount = 0;
    cleanNext();
}

/// Moves each item on a thread of its own, because a disk may never answer.
void JunkStore::cleanNext() {
    m_copiedPercent = -1;
    Q_EMIT cleaningChanged();
    m_moveTimer.start();
    const std::size_t index = m_cleaning->next;
    Dispatch::background([self = QPointer(this), cleaning = m_cleaning, index, item = m_cleaning->chosen[index],
                          &trash = m_services.trash](const std::stop_token& stop) {
        const auto report = [&self, &cleaning, index, last = -1](std::int64_t copied, std::int64_t total) mutable {
            const int percent = static_cast<int>(100.0 * static_cast<double>(copied) /
                                                 static_cast<double>(std::max<std::int64_t>(1, total)));
            if (std::exchange(last, percent) != percent) {
                Dispatch::main([self, cleaning, index, percent] {
                    if (self != nullptr && self->m_cleaning == cleaning && cleaning->next == index) {
                        self->m_moveTimer.start();
                        self->m_copiedPercent = percent;
                        Q_EMIT self->cleaningChanged();
                    }
                });
            }
        };
        const MoveResult result{stop.stop_requested() ? TrashError::stopped
                                                      : trash.move(item.url, item.identity, report, stop)};
        Dispatch::main([self, cleaning, index, result] {
            if (self != nullptr) {
                self->finishItem(cleaning, index, result);
            }
        });
    });
}

/// Called when an item was moved, failed or timed out. An item that timed out may be reported a second time.
void JunkStore::finishItem(const std::shared_ptr<Cleaning>& cleaning, std::size_t index, MoveResult result) {
    const bool isMoved = result.isMoved();
    const FileURL& id = cleaning->chosen[index].id();
    if (isMoved) {
        m_movedSinceScan.insert(id);
    }
    if (m_cleaning != cleaning || cleaning->next != index) {
        if (isMoved) {
            removeMoved({id});
        }
        return;
    }
    if (isMoved) {
        cleaning->moved.insert(id);
    } else {
        cleaning->failures.add(result);
    }
    m_cleanedCount = static_cast<int>(++cleaning->next);
    if (cleaning->next < cleaning->chosen.size()) {
        cleanNext();
    } else {
        finishCleaning();
    }
}

void JunkStore::finishCleaning() {
    m_moveTimer.stop();
    const std::shared_ptr<Cleaning> cleaning = std::exchange(m_cleaning, nullptr);
    removeMoved(cleaning->moved);
    Q_EMIT cleaningChanged();
    const int failed = cleaning->failures.total();
    setMessage(failed > 0 ? QStringLiteral("Limpieza parcial: %1 elementos no se pudieron mover.").arg(failed)
                          : QStringLiteral("Limpieza completada."),
               cleaning->failures.text());
}

void JunkStore::removeMoved(const Selection& moved) {
    std::vector<JunkItem> rest = m_items;
    std::erase_if(rest, [&](const JunkItem& item) { return moved.contains(item.id()); });
    Selection selected = m_selected;
    std::erase_if(selected, [&](const FileURL& id) { return moved.contains(id); });
    setItems(std::move(rest));
    setSelected(std::move(selected));
}

void JunkStore::reveal(const JunkItem& item) {
    m_services.fileManager.reveal({item.url});
}

void JunkStore::revealRow(int row) {
    if (row >= 0 && row < count()) {
        reveal(m_items[static_cast<std::size_t>(row)]);
    }
}
