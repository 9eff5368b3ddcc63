#pragma once

#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"

#include <QtCore/QObject>

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

class Dialogs;
class FileManager;
class Trash;

/// State shared by the whole window: which screen is shown, and the space map. Every property is read and written on
/// the main thread. A scan runs in the background and posts its results to the main thread's queue in order, so that
/// the final values come last. Each change emits one notification, after the value is set.
class ScanStore : public QObject {
    Q_OBJECT

public:
    /// The screens: overview of the disks, map of a folder, junk cleaner.
    enum class Mode { home, space, junk };
    Q_ENUM(Mode)

    /// The services must outlive the store.
    ScanStore(Dialogs& dialogs, Trash& trash, FileManager& fileManager, QObject* parent = nullptr);
    ~ScanStore() override;
    Q_DISABLE_COPY_MOVE(ScanStore)

    /// The screen in the detail area.
    Q_PROPERTY(ScanStore::Mode mode READ mode WRITE setMode NOTIFY modeChanged)
    [[nodiscard]] Mode mode() const { return m_mode; }
    void setMode(Mode mode);
    Q_SIGNAL void modeChanged();

    /// The folder chosen for the space map; for QML its path, and whether there is one.
    Q_PROPERTY(QString rootPath READ rootPath NOTIFY rootURLChanged)
    Q_PROPERTY(bool hasRoot READ hasRoot NOTIFY rootURLChanged)
    [[nodiscard]] const std::optional<FileURL>& rootURL() const { return m_rootURL; }
    [[nodiscard]] QString rootPath() const { return m_rootURL ? displayText(m_rootURL->path()) : QString(); }
    [[nodiscard]] bool hasRoot() const { return m_rootURL.has_value(); }
    void setRootURL(std::optional<FileURL> url);
    Q_SIGNAL void rootURLChanged();

    /// The result of the last scan, largest first; for QML the number of files, and their total and largest size in
    /// bytes.
    Q_PROPERTY(qint64 fileCount READ fileCount NOTIFY filesChanged)
    Q_PROPERTY(qint64 totalSize READ totalSize NOTIFY filesChanged)
    Q_PROPERTY(qint64 largestSize READ largestSize NOTIFY filesChanged)
    [[nodiscard]] const FileList& files() const { return m_files; }
    [[nodiscard]] qint64 fileCount() const { return static_cast<qint64>(m_files.size()); }
    [[nodiscard]] qint64 totalSize() const { return m_files.totalSize(); }
    [[nodiscard]] qint64 largestSize() const { return m_files.isEmpty() ? 0 : m_files.sizeAt(0); }
    Q_SIGNAL void filesChanged();

    /// The category filter of list and map.
    Q_PROPERTY(FileCategories::FileCategory category READ category WRITE setCategory NOTIFY categoryChanged)
    [[nodiscard]] FileCategory category() const { return m_category; }
    void setCategory(FileCategory category);
    Q_SIGNAL void categoryChanged();

    /// The search text of list and map.
    Q_PROPERTY(QString search READ search WRITE setSearch NOTIFY searchChanged)
    [[nodiscard]] const QString& search() const { return m_search; }
    void setSearch(const QString& search);
    Q_SIGNAL void searchChanged();

    /// The selected file; for QML its name, and whether there is one.
    Q_PROPERTY(QString selectedName READ selectedName NOTIFY selectedChanged)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedChanged)
    [[nodiscard]] const std::optional<FileItem>& selected() const { return m_selected; }
    [[nodiscard]] QString selectedName() const { return m_selected ? m_selected->name() : QString(); }
    [[nodiscard]] bool hasSelection() const { return m_selected.has_value(); }
    void setSelected(std::optional<FileItem> item);
    Q_SIGNAL void selectedChanged();

    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    Q_SIGNAL void isScanningChanged();

    /// Files found so far, or in total after the scan. Moving a file to the Trash does not change it.
    Q_PROPERTY(qint64 scannedCount READ scannedCount NOTIFY scannedCountChanged)
    [[nodiscard]] qint64 scannedCount() const { return m_scannedCount; }
    Q_SIGNAL void scannedCountChanged();

    /// Entries that the last scan could not read.
    Q_PROPERTY(qint64 skippedCount READ skippedCount NOTIFY skippedCountChanged)
    [[nodiscard]] qint64 skippedCount() const { return m_skippedCount; }
    Q_SIGNAL void skippedCountChanged();

    /// The text of the last failure until it is cleared; for QML empty if there is none.
    Q_PROPERTY(QString errorMessage READ errorText NOTIFY errorMessageChanged)
    [[nodiscard]] const std::optional<QString>& errorMessage() const { return m_errorMessage; }
    [[nodiscard]] QString errorText() const { return m_errorMessage.value_or(QString()); }
    void setErrorMessage(std::optional<QString> text);
    Q_INVOKABLE void clearErrorMessage() { setErrorMessage(std::nullopt); }
    Q_SIGNAL void errorMessageChanged();

    /// The files that match category and search; for QML their number.
    Q_PROPERTY(qint64 filteredCount READ filteredCount NOTIFY filteredFilesChanged)
    [[nodiscard]] const FilteredFiles& filteredFiles() const;
    [[nodiscard]] qint64 filteredCount() const { return static_cast<qint64>(filteredFiles().size()); }
    Q_SIGNAL void filteredFilesChanged();

    /// Lets the user choose a folder and scans it. Cancelling changes nothing.
    Q_INVOKABLE void chooseFolder();

    /// Scans `rootURL` again. Does nothing without one or during a scan.
    Q_INVOKABLE void startScan();

    /// Shows the item in the file manager.
    void reveal(const FileItem& item);
    Q_INVOKABLE void revealSelected();

    /// Selects the file in a row of `filteredFiles`.
    Q_INVOKABLE void selectRow(int row);

    /// Asks for confirmation, then moves the selected file to the Trash in the background. Moves only the file that was
    /// there when the question was asked. Does nothing while that file is already being moved.
    Q_INVOKABLE void moveSelectedToTrash();

    /// Whether the selected file is being moved. For QML its name, and the percentage copied if it has to be copied; -1
    /// if unknown.
    Q_PROPERTY(bool isMoving READ isMoving NOTIFY movingChanged)
    Q_PROPERTY(QString movingName READ movingName NOTIFY movingChanged)
    Q_PROPERTY(int movingPercent READ movingPercent NOTIFY movingChanged)
    [[nodiscard]] bool isMoving() const { return m_selected && m_moving.contains(m_selected->id()); }
    [[nodiscard]] QString movingName() const { return isMoving() ? m_selected->name() : QString(); }
    [[nodiscard]] int movingPercent() const { return isMoving() ? m_moving.at(m_selected->id()) : -1; }
    Q_SIGNAL void movingChanged();

private:
    struct PendingStatus;

    void scan(int rescans);
    void publish(ScanResult result, int rescans);
    void rescan(std::uint64_t scanNumber, int rescans);
    void move(const FileItem& item, const std::shared_ptr<PendingStatus>& pending);
    void setMovingPercent(const FileURL& url, std::optional<int> percent);
    void setFiles(FileList files);
    void setIsScanning(bool isScanning);
    void setScannedCount(qint64 count);
    void setSkippedCount(qint64 count);
    void finishTrashing(const FileItem& item, const std::optional<QString>& failure);

    Dialogs& m_dialogs;
    Trash& m_trash;
    FileManager& m_fileManager;

    Mode m_mode = Mode::home;
    std::optional<FileURL> m_rootURL;
    FileList m_files;
    FileCategory m_category = FileCategory::all;
    QString m_search;
    std::optional<FileItem> m_selected;
    std::unordered_map<FileURL, int> m_moving;  ///< Files being moved to the Trash, with the percentage copied.
    std::vector<FileURL> m_movedSinceScan;      ///< A running scan may have recorded them.
    bool m_isScanning = false;
    std::uint64_t m_scanNumber = 0;  ///< Number of the last scan started by the user.
    qint64 m_scannedCount = 0;
    qint64 m_skippedCount = 0;
    std::optional<QString> m_errorMessage;

    mutable FilteredFiles m_filteredFiles;  ///< Recomputed on access after a change of the filter.
    mutable bool m_filterIsStale = false;
};
