#pragma once

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

/// What the junk screen shows: what was found, what of it is ticked, and how cleaning goes. Lives on the main thread
/// for as long as the screen is shown; a scan that it has begun runs on without it. Each change notifies once, after
/// the new value is in place.
class JunkStore : public QObject {
    Q_OBJECT

public:
    using Selection = std::unordered_set<FileURL>;

    /// The desktop as this store uses it; outlives it.
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

    /// What was found, largest first. For the screens: how many, and how many of them are safe.
    Q_PROPERTY(int count READ count NOTIFY itemsChanged)
    Q_PROPERTY(int safeCount READ safeCount NOTIFY itemsChanged)
    [[nodiscard]] const std::vector<JunkItem>& items() const { return m_items; }
    [[nodiscard]] int count() const { return static_cast<int>(m_items.size()); }
    [[nodiscard]] int safeCount() const;
    Q_SIGNAL void itemsChanged();

    /// The ticked items. For the screens: whether there are any, and their bytes.
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedChanged)
    Q_PROPERTY(qint64 selectedSize READ selectedSize NOTIFY selectedChanged)
    [[nodiscard]] const Selection& selected() const { return m_selected; }
    [[nodiscard]] bool hasSelection() const { return !m_selected.empty(); }
    [[nodiscard]] qint64 selectedSize() const;
    Q_SIGNAL void selectedChanged();

    /// From the start of a scan until its result has come.
    Q_PROPERTY(bool isScanning READ isScanning NOTIFY isScanningChanged)
    [[nodiscard]] bool isScanning() const { return m_isScanning; }
    Q_SIGNAL void isScanningChanged();

    /// How the last cleaning went, until it was read; for the screens empty when there is nothing to say.
    Q_PROPERTY(QString message READ messageText NOTIFY messageChanged)
    [[nodiscard]] const std::optional<QString>& message() const { return m_message; }
    [[nodiscard]] QString messageText() const { return m_message.value_or(QString()); }
    Q_INVOKABLE void clearMessage() { setMessage(std::nullopt); }
    Q_SIGNAL void messageChanged();

    /// While a cleaning runs: how many items it has dealt with, and of how many; and how much of the present one is
    /// copied where that is needed, in percent, -1 where nothing is known.
    Q_PROPERTY(bool isCleaning READ isCleaning NOTIFY cleaningChanged)
    Q_PROPERTY(int cleanedCount READ cleanedCount NOTIFY cleaningChanged)
    Q_PROPERTY(int cleaningCount READ cleaningCount NOTIFY cleaningChanged)
    Q_PROPERTY(int copiedPercent READ copiedPercent NOTIFY cleaningChanged)
    [[nodiscard]] bool isCleaning() const { return m_cleaning != nullptr; }
    [[nodiscard]] int cleanedCount() const { return m_cleanedCount; }
    [[nodiscard]] int cleaningCount() const { return m_cleaningCount; }
    [[nodiscard]] int copiedPercent() const { return m_copiedPercent; }
    Q_SIGNAL void cleaningChanged();

    /// Looks for junk anew. What was listed goes at once; what is found comes later, all that is safe ticked. Called
    /// again meanwhile it looks twice, and what comes last stays.
    Q_INVOKABLE void scan();

    /// Ticks an item, or unticks it.
    void toggle(const JunkItem& item);
    Q_INVOKABLE void toggleRow(int row);

    /// Ticks all that is safe and nothing else.
    Q_INVOKABLE void selectSafe();

    /// Ticks all that is safe and nothing else, then asks and moves it to the Trash.
    Q_INVOKABLE void cleanAllSafe();

    /// Asks, and moves what is ticked to the Trash: what was ticked when the question was asked, one after the other in
    /// the background. What cannot be moved stays listed and ticked. Something that does not answer for a long while is
    /// passed over and counts as not moved; its row goes if it is moved after all. The end of the program ends it after
    /// the present item.
    Q_INVOKABLE void cleanSelected();

    /// Shows an item in the file manager.
    void reveal(const JunkItem& item);
    Q_INVOKABLE void revealRow(int row);

private:
    void setItems(std::vector<JunkItem> items);
    void setSelected(Selection selected);
    void setIsScanning(bool isScanning);
    void setMessage(std::optional<QString> message);
    struct Cleaning;

    void look(int quietRounds);
    void publish(JunkScan found, int quietRounds);
    void lookAgain(std::uint64_t round, int quietRounds);
    void clean(std::vector<JunkItem> chosen);
    void cleanNext();
    void finishItem(const std::shared_ptr<Cleaning>& cleaning, std::size_t index, bool isMoved);
    void finishCleaning();
    void removeMoved(const Selection& moved);
    [[nodiscard]] const JunkItem* itemInRow(int row) const;

    Services m_services;
    std::vector<JunkItem> m_items;
    Selection m_selected;
    bool m_isScanning = false;
    std::optional<QString> m_message;

    std::uint64_t m_round = 0;   ///< The number of the last scan that was begun.
    Selection m_movedSinceScan;  ///< What a scan that runs may have seen before it went.

    std::shared_ptr<Cleaning> m_cleaning;  ///< Null while none runs.
    int m_cleanedCount = 0;
    int m_cleaningCount = 0;
    int m_copiedPercent = -1;
    QTimer m_patience;  ///< Fires when the present item of a cleaning has been silent for too long.
};
