#include "SpaceScan/ScanStore.h"

#include "Desktop/Dialogs.h"
#include "Desktop/FileManager.h"
#include "Desktop/Trash.h"
#include "Foundation/Dispatch.h"

#include <QtCore/QPointer>

#include <algorithm>
#include <future>
#include <memory>
#include <utility>

namespace {

/// How often one scan is repeated because of late answers.
constexpr int maximumRescans = 3;

}  // namespace

/// The status of a file when the question was asked, once the disk has answered.
struct ScanStore::PendingStatus {
    std::promise<std::optional<FileStatus>> answer;
    std::shared_future<std::optional<FileStatus>> status = answer.get_future().share();
};

ScanStore::ScanStore(Dialogs& dialogs, Trash& trash, FileManager& fileManager, QObject* parent)
    : QObject(parent), m_dialogs(dialogs), m_trash(trash), m_fileManager(fileManager) {}

ScanStore::~ScanStore() = default;

void ScanStore::setMode(Mode mode) {
    if (std::exchange(m_mode, mode) != mode) {
        Q_EMIT modeChanged();
    }
}

void ScanStore::setRootURL(std::optional<FileURL> url) {
    if (m_rootURL != url) {
        m_rootURL = std::move(url);
        Q_EMIT rootURLChanged();
    }
}

void ScanStore::setFiles(FileList files) {
    FileList old = std::exchange(m_files, std::move(files));
    m_filteredFiles = FilteredFiles(m_files, m_category, m_search, &m_filteredFiles);
    m_filterIsStale = false;
    Q_EMIT filesChanged();
    Q_EMIT filteredFilesChanged();
    // Nothing shows the old files any more.
    FileList::release(std::move(old));
}

void ScanStore::setCategory(FileCategory category) {
    if (std::exchange(m_category, category) != category) {
        m_filterIsStale = true;
        Q_EMIT categoryChanged();
        Q_EMIT filteredFilesChanged();
    }
}

void ScanStore::setSearch(const QString& search) {
    if (m_search != search) {
        m_search = search;
        m_filterIsStale = true;
        Q_EMIT searchChanged();
        Q_EMIT filteredFilesChanged();
    }
}

const FilteredFiles& ScanStore::filteredFiles() const {
    if (std::exchange(m_filterIsStale, false)) {
        m_filteredFiles = FilteredFiles(m_files, m_category, m_search, &m_filteredFiles);
    }
    return m_filteredFiles;
}

void ScanStore::setSelected(std::optional<FileItem> item) {
    if (m_selected != item) {
        m_selected = std::move(item);
        Q_EMIT selectedChanged();
        Q_EMIT movingChanged();
    }
}

void ScanStore::setIsScanning(bool isScanning) {
    if (std::exchange(m_isScanning, isScanning) != isScanning) {
        Q_EMIT isScanningChanged();
    }
}

void ScanStore::setScannedCount(qint64 count) {
    if (std::exchange(m_scannedCount, count) != count) {
        Q_EMIT scannedCountChanged();
    }
}

void ScanStore::setSkippedCount(qint64 count) {
    if (std::exchange(m_skippedCount, count) != count) {
        Q_EMIT skippedCountChanged();
    }
}

void ScanStore::setErrorMessage(std::optional<QString> text) {
    if (m_errorMessage != text) {
        m_errorMessage = std::move(text);
        Q_EMIT errorMessageChanged();
    }
}

void ScanStore::chooseFolder() {
    m_dialogs.chooseFolder(QStringLiteral("Elegir"), m_rootURL,
                           [self = QPointer(this)](const std::optional<FileURL>& url) {
                               if (self != nullptr && url) {
                                   self->setRootURL(url);
                                   self->startScan();
                               }
                           });
}

void ScanStore::startScan() {
    if (!m_rootURL || m_isScanning) {
        return;
    }
    setIsScanning(true);
    setFiles({});
    setSelected(std::nullopt);
    setScannedCount(0);
    setSkippedCount(0);
    setErrorMessage(std::nullopt);
    ++m_scanNumber;
    scan(0);
}

/// Scans in the background. Rescans show no progress.
void ScanStore::scan(int rescans) {
    m_movedSinceScan.clear();
    Dispatch::background(
        [self = QPointer(this), root = *m_rootURL, scanNumber = m_scanNumber, rescans](const std::stop_token& stop) {
            const auto report = [self, rescans](std::int64_t count) {
                if (rescans > 0) {
                    return;
                }
                Dispatch::main([self, count] {
                    if (self != nullptr) {
                        self->setScannedCount(count);
                    }
                });
            };
            ScanResult result = FileScanner::scan(root, report, stop);
            Dispatch::main([self, scanNumber, rescans, result = std::move(result)]() mutable {
                if (self != nullptr && self->m_scanNumber == scanNumber) {
                    self->publish(std::move(result), rescans);
                }
            });
        });
}

void ScanStore::publish(ScanResult result, int rescans) {
    const auto count = static_cast<qint64>(result.files.size());
    for (const FileURL& url : m_movedSinceScan) {
        result.files = result.files.removing(url);
    }
    setFiles(std::move(result.files));
    if (m_selected && !m_files.indexOf(m_selected->id())) {
        setSelected(std::nullopt);
    }
    setScannedCount(count);
    setSkippedCount(result.skipped);
    setIsScanning(false);
    if (result.lateAnswer && rescans < maximumRescans) {
        result.lateAnswer->whenAnswered([self = QPointer(this), scanNumber = m_scanNumber, rescans] {
            Dispatch::main([self, scanNumber, rescans] {
                if (self != nullptr) {
                    self->rescan(scanNumber, rescans + 1);
                }
            });
        });
    }
}

/// Called when something that was skipped has answered. Scans once more, unless a newer scan has begun.
void ScanStore::rescan(std::uint64_t scanNumber, int rescans) {
    if (scanNumber == m_scanNumber && !m_isScanning && m_rootURL) {
        scan(rescans);
    }
}

void ScanStore::reveal(const FileItem& item) {
    m_fileManager.reveal({item.url});
}

void ScanStore::revealSelected() {
    if (m_selected) {
        reveal(*m_selected);
    }
}

void ScanStore::selectRow(int row) {
    if (row >= 0 && row < filteredCount()) {
        setSelected(filteredFiles()[static_cast<std::size_t>(row)]);
    }
}

void ScanStore::moveSelectedToTrash() {
    if (!m_selected || isMoving()) {
        return;
    }
    const FileItem item = *m_selected;
    // Only the file that is there now may be moved. Its status is read on another thread, because the disk may not
    // answer.
    const auto pending = std::make_shared<PendingStatus>();
    Dispatch::background(
        [pending, url = item.url](const std::stop_token&) { pending->answer.set_value(fileStatus(url)); });
    const QString name = elidedName(item.name());
    const Confirmation question{
        QStringLiteral("¿Mover “%1” a la papelera?").arg(name),
        QStringLiteral("Duskfern nunca borra archivos sin esta confirmación."),
        QStringLiteral("Mover a la papelera"),
        QStringLiteral("Cancelar"),
        name == item.name() ? QString() : item.name(),
    };
    m_dialogs.confirm(question, [self = QPointer(this), item, pending](bool confirmed) {
        if (self != nullptr && confirmed) {
            self->move(item, pending);
        }
    });
}

void ScanStore::move(const FileItem& item, const std::shared_ptr<PendingStatus>& pending) {
    setMovingPercent(item.url, -1);
    Dispatch::background([self = QPointer(this), item, pending, &trash = m_trash](const std::stop_token& stop) {
        const auto report = [self, url = item.url, last = -1](std::int64_t copied, std::int64_t total) mutable {
            const int percent = static_cast<int>(100.0 * static_cast<double>(copied) /
                                                 static_cast<double>(std::max<std::int64_t>(1, total)));
            if (std::exchange(last, percent) != percent) {
                Dispatch::main([self, url, percent] {
                    if (self != nullptr) {
                        self->setMovingPercent(url, percent);
                    }
                });
            }
        };
        const std::optional<FileStatus>& status = pending->status.get();
        std::optional<TrashError> error = TrashError::gone;
        if (status) {
            // Only regular files are ever moved from here.
            error = status->isRegularFile() ? trash.move(item.url, status->identity, report, stop)
                                            : std::optional(TrashError::changed);
        }
        std::optional<QString> failure;
        if (error) {
            failure = trashErrorText(*error, item.url);
        }
        Dispatch::main([self, item, failure] {
            if (self != nullptr) {
                self->setMovingPercent(item.url, std::nullopt);
                self->finishTrashing(item, failure);
            }
        });
    });
}

/// Without a percentage: the move has ended.
void ScanStore::setMovingPercent(const FileURL& url, std::optional<int> percent) {
    if (percent) {
        m_moving.insert_or_assign(url, *percent);
    } else {
        m_moving.erase(url);
    }
    Q_EMIT movingChanged();
}

void ScanStore::finishTrashing(const FileItem& item, const std::optional<QString>& failure) {
    if (failure) {
        setErrorMessage(failure);
        return;
    }
    setFiles(m_files.removing(item.id()));
    m_movedSinceScan.push_back(item.id());
    // The selection is kept if the user selected another file meanwhile.
    if (m_selected && m_selected->id() == item.id()) {
        setSelected(std::nullopt);
    }
}
