#pragma once

#include "Desktop/FolderChooser.h"
#include "FolderBrowser/FolderListModel.h"
#include "FolderBrowser/FolderPlace.h"
#include "FolderBrowser/FolderReading.h"
#include "Foundation/TypeAhead.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVariantList>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class UserFolders;

/// The program's own folder dialog, shown in the window. Read-only: it creates, changes and removes nothing, reads no
/// file contents except ".hidden", and stores nothing. Folders are listed in the background; one that does not answer
/// is reported as such and does not block the dialog.
class FolderBrowser : public QObject, public FolderChooser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one, made at launch")

public:
    /// Returns the mount points of disks. Called on the main thread, so it must not access a disk that may not answer.
    using Disks = std::function<std::vector<FileURL>()>;

    /// `userFolders` must outlive this.
    FolderBrowser(UserFolders& userFolders, Disks disks, QObject* parent = nullptr);
    ~FolderBrowser() override;
    Q_DISABLE_COPY_MOVE(FolderBrowser)

    void choose(const FolderQuestion& question, Answer answer) override;
    Q_INVOKABLE void cancel() override;

    /// Whether the dialog is open, and the title of the confirming button.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY isOpenChanged)
    [[nodiscard]] bool isOpen() const { return m_answer != nullptr; }
    [[nodiscard]] QString prompt() const { return m_prompt; }
    Q_SIGNAL void isOpenChanged();

    /// For QML: a list of `folderPlace`, and the row of the current one; -1 if none is.
    Q_PROPERTY(QVariantList places READ placeRows NOTIFY placesChanged)
    Q_PROPERTY(int currentPlace READ currentPlace NOTIFY shownChanged)
    [[nodiscard]] const std::vector<FolderPlace>& places() const { return m_places; }
    [[nodiscard]] QVariantList placeRows() const;
    [[nodiscard]] int currentPlace() const;
    Q_SIGNAL void placesChanged();

    /// The current folder, the folders in it, and the message shown instead of them.
    Q_PROPERTY(QString location READ locationText NOTIFY shownChanged)
    Q_PROPERTY(QAbstractItemModel* folders READ model CONSTANT)
    Q_PROPERTY(QString message READ message NOTIFY shownChanged)
    Q_PROPERTY(bool canGoBack READ canGoBack NOTIFY shownChanged)
    Q_PROPERTY(bool canGoUp READ canGoUp NOTIFY shownChanged)
    [[nodiscard]] const FileURL& location() const { return m_location; }
    [[nodiscard]] QString locationText() const { return displayText(m_location.path()); }
    [[nodiscard]] const FolderListModel& folders() const { return m_folders; }
    [[nodiscard]] QAbstractItemModel* model() { return &m_folders; }
    [[nodiscard]] QString message() const { return m_message; }
    [[nodiscard]] bool canGoBack() const { return !m_history.empty(); }
    [[nodiscard]] bool canGoUp() const { return m_location != FileURL("/"); }
    Q_SIGNAL void shownChanged();

    /// Another folder is shown, or the current one is confirmed.
    Q_SIGNAL void navigated();

    /// Why the last typed path failed; empty if it did not.
    Q_PROPERTY(QString typedError READ typedError NOTIFY typedErrorChanged)
    [[nodiscard]] QString typedError() const { return m_typedError; }
    Q_SIGNAL void typedErrorChanged();

    /// The selected row, -1 for none; and the name of the folder that `accept()` would choose: the selected one, else
    /// the current one; empty if there is none.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged)
    Q_PROPERTY(QString choice READ choice NOTIFY selectionChanged)
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }
    [[nodiscard]] QString choice() const;
    Q_SIGNAL void selectionChanged();

    /// Selects the row; the nearest one if it is out of range.
    Q_INVOKABLE void select(int row);

    /// Selects the next row whose name begins with the letters typed so far. After a pause the text starts again;
    /// repeating one letter moves to the next match. False if `text` is not printable.
    Q_INVOKABLE bool typeAhead(const QString& text);

    /// Opens the selected folder; without a selection, chooses the current one.
    Q_INVOKABLE void enter();

    /// Goes to the parent folder, the previous folder, or a place. Does nothing if there is none.
    Q_INVOKABLE void goUp();
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void goToPlace(int row);

    /// Goes to the folder at the typed path (see `typedPath`). If that fails, the current folder stays and `typedError`
    /// is set.
    Q_INVOKABLE void goTo(const QString& text);

    /// Closes the dialog with the folder that `choice` names.
    Q_INVOKABLE void accept();

private:
    /// A folder in the history, with its selection.
    struct Visit {
        FileURL url;
        std::string selected;
    };
    enum class State { waiting, shown, failed };

    void findPlaces();
    void setPlaces(const UserFolderPaths& folders);
    void close(const std::optional<FileURL>& answer);
    void navigateTo(const FileURL& url, const std::string& selected = {});
    void remember(const FileURL& next);
    void show(const FileURL& url, const std::string& selected, std::shared_ptr<FolderReading> reading);
    [[nodiscard]] std::shared_ptr<FolderReading> read(const FileURL& url);
    void finished(const std::shared_ptr<FolderReading>& reading);
    void updateShown();
    void timeOut();
    void showListing(FolderListing listing);
    void showMessage(State state, const QString& message);
    void setTypedError(const QString& error);
    void setSelectedRow(int row);
    [[nodiscard]] Visit visit() const;

    UserFolders& m_userFolders;
    Disks m_disks;
    Answer m_answer;
    QString m_prompt;
    FileURL m_home;
    std::vector<FolderPlace> m_places;

    FileURL m_location;
    State m_state = State::waiting;
    QString m_message;
    FolderListModel m_folders;
    int m_selectedRow = -1;
    std::string m_pendingSelection;  ///< The name to select when it is listed.
    std::vector<Visit> m_history;
    bool m_isStart =
        false;  ///< The first folder of the dialog: if it does not exist, the home folder is shown instead.

    std::shared_ptr<FolderReading> m_shown;  ///< Listing of the current folder, until complete.
    std::shared_ptr<FolderReading> m_typed;  ///< Listing of the last typed path, until it is known whether it succeeds.
    QString m_typedError;

    /// Listings in progress, by path. A folder that does not answer is listed only once at a time.
    std::map<std::string, std::shared_ptr<FolderReading>> m_readings;
    QTimer m_updateTimer;
    QTimer m_timeout;

    TypeAhead m_typeAhead;
};
