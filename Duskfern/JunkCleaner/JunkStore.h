#pragma once

#include "JunkCleaner/CleaningReasons.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/JunkScanner.h"

#include <QtCore/QObject>
#include <QtCore/QTimer>

#include <memory>
#include <optional>
#include <unordered_set>
#include <vector>

class Dialogs;
class FileManager;
class InstalledApplications;
class Trash;
class UserFolders;

/// The state of the junk screen: the items found, the selection, and the progress of cleaning. Lives on the main thread
/// while the screen is shown; a scan that it started ends without it. Each change emits one notification, after the
/// value is set.
class JunkStore : public QObject {
    Q_OBJECT

public:
    using Selection = std::unordered_set<FileURL>;

    /// The services of the desktop. They must outlive the store.
    struct Services {
        Dialogs& dialogs;
        Trash& trash;
        FileManager& fileManager;
        UserFolders& userFolders;
        std::shared_ptr<const InstalledApplications> applications;
    };

    explicit JunkStore(Services services, QObject* parent = nullptr);
    ~JunkStore() override;
    Q_DISABLE_COPY_MOVE(JunkStore)

    /// The items found, largest first; for QML their number, and how many of them are safe.
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    Q_PROPERTY(int safeCount READ safeCount NOTIFY itemsChanged)
    [[nodiscard]] const std::vector<JunkItem>& items() const { return m_items; }
    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
    [[nodiscard]] int safeCount() const { return m_safeCount; }
    Q_SIGNAL void itemsChanged();

    /// The selected items; for QML whether there are any, and their total size in bytes.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedChanged)
    Q_PROPERTY(qint64 selectedSize READ selectedSize NOTIFY selectedChanged)
    [[nodiscard]] const Selection& selected() const { return m_selected; }
    [[nodiscard]] bool hasSelection() const { return !m_selected.empty(); }
    [[nodiscard]] qint64 selectedSize() const { return m_selectedSize; }
    Q_SIGNAL void selectedChanged();

    /// Emitted before `selectedChanged()` when only the selection of this row has changed.
    Q_SIGNAL void rowToggled(int row);

    /// True from the start of a scan until its result is published.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    Q_SIGNAL void isScanningChanged();

    /// The result of the last cleaning until it is cleared, and why items could not be moved, a line for each reason
    /// with their number; for QML empty if there is none.
    Q_PROPERTY(QString message READ messageText NOTIFY messageChanged)
    Q_PROPERTY(QString messageReasons READ messageReasons NOTIFY messageChanged)
    [[nodiscard]] const std::optional<QString>& message() const { return m_message; }
    [[nodiscard]] QString messageText() const { return m_message.value_or(QString()); }
    [[nodiscard]] QString messageReasons() const { return m_messageReasons; }
    Q_INVOKABLE void clearMessage() { setMessage(std::nullopt); }
    Q_SIGNAL void messageChanged();

    /// Progress of a cleaning: items done, items in total, and the percentage copied of the current item if it has to
    /// be copied, -1 if unknown.
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY cleaningChanged)
    Q_PROPERTY(int cleanedCount READ cleanedCount NOTIFY cleaningChanged)
    Q_PROPERTY(int cleaningCount READ cleaningCount NOTIFY cleaningChanged)
    Q_PROPERTY(int copiedPercent READ copiedPercent NOTIFY cleaningChanged)
    [[nodiscard]] bool isCleaning() const { return m_cleaning != nullptr; }
    [[nodiscard]] int cleanedCount() const { return m_cleanedCount; }
    [[nodiscard]] int cleaningCount() const { return m_cleaningCount; }
    [[nodiscard]] int copiedPercent() const { return m_copiedPercent; }
    Q_SIGNAL void cleaningChanged();

    /// Scans for junk. Clears the list at once; the result comes later with all safe items selected. Called during a
    /// scan, it starts a second one; each result is shown when it comes, so the one that comes last is kept.
    Q_INVOKABLE void scan();

    /// Selects or deselects an item.
    void toggle(const JunkItem& item);
    Q_INVOKABLE void toggleRow(int row);

    /// Selects all safe items and nothing else.
    Q_INVOKABLE void selectSafe();

    /// Selects all safe items and nothing else, then cleans them as `cleanSelected()` does.
    Q_INVOKABLE void cleanAllSafe();

    /// Asks for confirmation, then moves the items selected at that time to the Trash, one after the other in the
    /// background. Items that fail stay listed and selected. An item that makes no progress for a long time counts as
    /// failed; its row is removed if it is moved later after all. When the program closes, cleaning ends after the
    /// current item.
    Q_INVOKABLE void cleanSelected();

    /// Shows the item in the file manager.
    void reveal(const JunkItem& item);
    Q_INVOKABLE void revealRow(int row);

private:
    void setItems(std::vector<JunkItem> items);
    void setSelected(Selection selected);
    void setIsScanning(bool isScanning);
    void setMessage(std::optional<QString> message, const QString& reasons = {});
    void toggleAt(std::size_t row);
    void recountSelection();
    struct Cleaning;

    void startScan(int rescans);
    void publish(JunkScan found, int rescans);
    void rescan(std::uint64_t scanNumber, int rescans);
    void clean(std::vector<JunkItem> chosen);
    void cleanNext();
    void finishItem(const std::shared_ptr<Cleaning>& cleaning, std::size_t index, MoveResult result);
    void finishCleaning();
    void removeMoved(const Selection& moved);

    Services m_services;
    std::vector<JunkItem> m_items;
    int m_safeCount = 0;
    Selection m_selected;
    qint64 m_selectedSize = 0;
    bool m_isScanning = false;
    std::optional<QString> m_message;
    QString m_messageReasons;

    std::uint64_t m_scanNumber = 0;  ///< Number of the last scan started by `scan()`.
    Selection m_movedSinceScan;      ///< A running scan may have recorded them.

    std::shared_ptr<Cleaning> m_cleaning;  ///< Null when none runs.
    int m_cleanedCount = 0;
    int m_cleaningCount = 0;
    int m_copiedPercent = -1;
    QTimer m_moveTimer;  ///< Runs while an item is moved; its timeout counts the item as failed.
};
