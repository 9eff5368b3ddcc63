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

/// How often one scan is repeated because something answered late.
constexpr int maximumQuietRounds = 3;

}  // namespace

/// What lay at a location at a certain time, as soon as the disk has told.
struct ScanStore::Identified {
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
    // By now nothing shows the old files any more.
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
    ++m_round;
    scan(0);
}

/// Scans in the background. A scan that repeats another one quietly shows nothing before it is complete.
void ScanStore::scan(int quietRounds) {
    m_movedSinceScan.clear();
    Dispatch::background(
        [self = QPointer(this), root = *m_rootURL, round = m_round, quietRounds](const std::stop_token& stop) {
            const auto report = [self, quietRounds](std::int64_t count) {
                if (quietRounds > 0) {
                    return;
                }
                Dispatch::main([self, count] {
                    if (self != nullptr) {
                        self->setScannedCount(count);
                    }
                });
            };
            ScanResult result = FileScanner::scan(root, report, stop);
            Dispatch::main([self, round, quietRounds, result = std::move(result)]() mutable {
                if (self != nullptr && self->m_round == round) {
                    self->publish(std::move(result), quietRounds);
                }
            });
        });
}

void ScanStore::publish(ScanResult result, int quietRounds) {
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
    if (result.lateAnswer && quietRounds < maximumQuietRounds) {
        result.lateAnswer->whenAnswered([self = QPointer(this), round = m_round, quietRounds] {
            Dispatch::main([self, round, quietRounds] {
                if (self != nullptr) {
                    self->lookAgain(round, quietRounds + 1);
                }
            });
        });
    }
}

/// Something that was passed over has answered: it is shown with the rest, unless a newer scan has begun.
void ScanStore::lookAgain(std::uint64_t round, int quietRounds) {
    if (round == m_round && !m_isScanning && m_rootURL) {
        scan(quietRounds);
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
    // What lies there now is what may be moved. The disk is asked on another thread, because it may not answer.
    const auto identified = std::make_shared<Identified>();
    Dispatch::background(
        [identified, url = item.url](const std::stop_token&) { identified->answer.set_value(fileStatus(url)); });
    const Confirmation question{
        QStringLiteral("¿Mover “%1” a la papelera?").arg(elidedName(item.name())),
        QStringLiteral("Duskfern nunca borra archivos sin esta confirmación."),
        QStringLiteral("Mover a la papelera"),
        QStringLiteral("Cancelar"),
    };
    m_dialogs.confirm(question, [self = QPointer(this), item, identified](bool confirmed) {
        if (self != nullptr && confirmed) {
            self->move(item, identified);
        }
    });
}

void ScanStore::move(const FileItem& item, const std::shared_ptr<Identified>& identified) {
    setMovingPercent(item.url, -1);
    Dispatch::background([self = QPointer(this), item, identified, &trash = m_trash](const std::stop_token& stop) {
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
        const std::optional<FileStatus>& status = identified->status.get();
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

/// No percentage means that the file is not on its way any more.
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
    // Meanwhile the user may have chosen another file; that choice stands.
    if (m_selected && m_selected->id() == item.id()) {
        setSelected(std::nullopt);
    }
}
