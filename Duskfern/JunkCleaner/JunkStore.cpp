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

/// How often one scan is repeated because something answered late.
constexpr int maximumQuietRounds = 3;

/// An item that shows no progress for so long is passed over. Longer than for reading: a disk may be busy with what was
/// copied before.
constexpr std::chrono::seconds movePatience{20};

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

/// One cleaning, from the confirmed question to its message.
struct JunkStore::Cleaning {
    std::vector<JunkItem> chosen;  ///< What is moved, in order.
    std::size_t next = 0;          ///< The item that is being moved.
    Selection moved;
    int failures = 0;
};

JunkStore::JunkStore(Services services, QObject* parent) : QObject(parent), m_services(std::move(services)) {
    m_patience.setSingleShot(true);
    m_patience.setInterval(movePatience);
    connect(&m_patience, &QTimer::timeout, this, [this] {
        // The end of the last item ends the cleaning, which is then held here alone.
        const std::shared_ptr<Cleaning> cleaning = m_cleaning;
        finishItem(cleaning, cleaning->next, false);
    });
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
    ++m_round;
    look(0);
}

/// Looks in the background. What repeats another look quietly adds what that one had passed over.
void JunkStore::look(int quietRounds) {
    m_movedSinceScan.clear();
    Dispatch::background([self = QPointer(this), round = m_round, quietRounds, &userFolders = m_services.userFolders,
                          applications = m_services.applications,
                          &trash = m_services.trash](const std::stop_token& stop) {
        const auto isMovable = [&trash](const FileURL& url) { return !trash.refusal(url); };
        JunkScan found = JunkScanner::scan(junkPlaces(userFolders.paths()), applications, isMovable, stop);
        Dispatch::main([self, round, quietRounds, found = std::move(found)]() mutable {
            if (self != nullptr && (quietRounds == 0 || self->m_round == round)) {
                self->publish(std::move(found), quietRounds);
            }
        });
    });
}

void JunkStore::publish(JunkScan found, int quietRounds) {
    std::erase_if(found.items, [this](const JunkItem& item) { return m_movedSinceScan.contains(item.id()); });
    Selection selected = safeOnes(found.items);
    if (quietRounds > 0) {
        // What was listed before keeps the tick that it has by now.
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
    if (found.lateAnswer && quietRounds < maximumQuietRounds) {
        found.lateAnswer->whenAnswered([self = QPointer(this), round = m_round, quietRounds] {
            Dispatch::main([self, round, quietRounds] {
                if (self != nullptr) {
                    self->lookAgain(round, quietRounds + 1);
                }
            });
        });
    }
}

/// Something that was passed over has answered: it is listed with the rest, unless a newer look has begun or what is
/// listed is being moved.
void JunkStore::lookAgain(std::uint64_t round, int quietRounds) {
    if (round == m_round && !m_isScanning && !isCleaning()) {
        look(quietRounds);
    }
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

/// Each item is moved by a thread of its own, because it may lie on a disk that never answers.
void JunkStore::cleanNext() {
    m_copiedPercent = -1;
    Q_EMIT cleaningChanged();
    m_patience.start();
    const std::size_t index = m_cleaning->next;
    Dispatch::background([self = QPointer(this), cleaning = m_cleaning, index, item = m_cleaning->chosen[index],
                          &trash = m_services.trash](const std::stop_token& stop) {
        const auto report = [&self, &cleaning, index, last = -1](std::int64_t copied, std::int64_t total) mutable {
            const int percent = static_cast<int>(100.0 * static_cast<double>(copied) /
                                                 static_cast<double>(std::max<std::int64_t>(1, total)));
            if (std::exchange(last, percent) != percent) {
                Dispatch::main([self, cleaning, index, percent] {
                    if (self != nullptr && self->m_cleaning == cleaning && cleaning->next == index) {
                        self->m_patience.start();
                        self->m_copiedPercent = percent;
                        Q_EMIT self->cleaningChanged();
                    }
                });
            }
        };
        const bool isMoved = !stop.stop_requested() && !trash.move(item.url, item.identity, report, stop);
        Dispatch::main([self, cleaning, index, isMoved] {
            if (self != nullptr) {
                self->finishItem(cleaning, index, isMoved);
            }
        });
    });
}

/// An item was moved, or could not be, or is passed over. What was passed over may come here again later.
void JunkStore::finishItem(const std::shared_ptr<Cleaning>& cleaning, std::size_t index, bool isMoved) {
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
        ++cleaning->failures;
    }
    m_cleanedCount = static_cast<int>(++cleaning->next);
    if (cleaning->next < cleaning->chosen.size()) {
        cleanNext();
    } else {
        finishCleaning();
    }
}

void JunkStore::finishCleaning() {
    m_patience.stop();
    const std::shared_ptr<Cleaning> cleaning = std::exchange(m_cleaning, nullptr);
    removeMoved(cleaning->moved);
    Q_EMIT cleaningChanged();
    setMessage(cleaning->failures > 0
                   ? QStringLiteral("Limpieza parcial: %1 elementos no se pudieron mover.").arg(cleaning->failures)
                   : QStringLiteral("Limpieza completada."));
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
    if (const JunkItem* const item = itemInRow(row)) {
        reveal(*item);
    }
}
