#pragma once

#include "Desktop/FolderChooser.h"
#include "FolderBrowser/FolderListModel.h"
#include "FolderBrowser/FolderPlace.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QElapsedTimer>
#include <QtCore/QObject>
#include <QtCore/QTimer>
#include <QtCore/QVariantList>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

class UserFolders;

/// The program's own folder dialog, which the window shows: one looks through the folders of the disk and chooses one.
/// Only looks: nothing is written, made, renamed or removed, no file is read, and nothing is remembered. Folders are
/// listed in the background; one that does not answer says so and holds nothing up.
class FolderBrowser : public QObject, public FolderChooser {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The program has one, made at launch")

public:
    /// Tells where the disks are mounted; asked on the main thread, so that it may not wait for one.
    using Disks = std::function<std::vector<FileURL>()>;

    /// `userFolders` outlives this.
    FolderBrowser(UserFolders& userFolders, Disks disks, QObject* parent = nullptr);
    ~FolderBrowser() override;
    Q_DISABLE_COPY_MOVE(FolderBrowser)

    void choose(const FolderQuestion& question, Answer answer) override;
    Q_INVOKABLE void cancel() override;

    /// Whether a folder is being chosen, and what the button that confirms says.
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY isOpenChanged)
    Q_PROPERTY(QString prompt READ prompt NOTIFY isOpenChanged)
    [[nodiscard]] bool isOpen() const { return m_answer != nullptr; }
    [[nodiscard]] QString prompt() const { return m_prompt; }
    Q_SIGNAL void isOpenChanged();

    /// For the screens: a list of `folderPlace`, and the row of the one that is shown; -1 if none is.
    Q_PROPERTY(QVariantList places READ placeRows NOTIFY placesChanged)
    Q_PROPERTY(int currentPlace READ currentPlace NOTIFY shownChanged)
    [[nodiscard]] const std::vector<FolderPlace>& places() const { return m_places; }
    [[nodiscard]] QVariantList placeRows() const;
    [[nodiscard]] int currentPlace() const;
    Q_SIGNAL void placesChanged();

    /// The folder that is shown, the folders in it, and what stands there instead of them.
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

    /// Another folder is shown from now on.
    Q_SIGNAL void arrived();

    /// Why the text typed last led nowhere; empty when it did not fail.
    Q_PROPERTY(QString typedError READ typedError NOTIFY typedErrorChanged)
    [[nodiscard]] QString typedError() const { return m_typedError; }
    Q_SIGNAL void typedErrorChanged();

    /// The selected row, -1 for none; and the name of the folder that would be chosen now, the selected one or else
    /// the one shown, empty when neither can be.
    Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectionChanged)
    Q_PROPERTY(QString choice READ choice NOTIFY selectionChanged)
    [[nodiscard]] int selectedRow() const { return m_selectedRow; }
    [[nodiscard]] QString choice() const;
    Q_SIGNAL void selectionChanged();

    /// Selects the row, or the nearest one there is.
    Q_INVOKABLE void select(int row);

    /// Selects the first row whose name begins with the letters typed until now; a pause begins anew, and the same
    /// letter again goes to the next one. False for text that is no letter to look for.
    Q_INVOKABLE bool typeAhead(const QString& text);

    /// Goes into the selected folder; without one, chooses the folder shown.
    Q_INVOKABLE void enter();

    /// Goes to the folder above, to the one shown before, to a place. Where there is none nothing happens.
    Q_INVOKABLE void goUp();
    Q_INVOKABLE void goBack();
    Q_INVOKABLE void goToPlace(int row);

    /// Goes where the text says (see `typedPath`). If that leads nowhere, what is shown stays and `typedError` says
    /// why.
    Q_INVOKABLE void goTo(const QString& text);

    /// Closes with the folder that `choice` names.
    Q_INVOKABLE void accept();

private:
    /// A folder that was shown, and what was selected in it.
    struct Visit {
        FileURL url;
        std::string selected;
    };
    enum class State { waiting, shown, failed };

    void findPlaces();
    void setPlaces(const UserFolderPaths& folders);
    void close(const std::optional<FileURL>& answer);
    void leaveFor(const FileURL& url, const std::string& selected = {});
    void remember(const FileURL& next);
    void show(const FileURL& url, const std::string& selected, std::shared_ptr<FolderReading> reading);
    [[nodiscard]] std::shared_ptr<FolderReading> read(const FileURL& url);
    void finished(const std::shared_ptr<FolderReading>& reading);
    void look();
    void giveUp();
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
    std::string m_toSelect;  ///< What is to be selected as soon as it is listed.
    std::vector<Visit> m_history;
    bool m_isStart = false;  ///< The first folder may be gone by now; another one is shown then.

    std::shared_ptr<FolderReading> m_shown;  ///< What the rows come from.
    std::shared_ptr<FolderReading> m_typed;  ///< What the text typed last leads to, until that is known.
    QString m_typedError;

    /// What has not come to its end, by path. A folder that does not answer is asked once, however often it is tried.
    std::map<std::string, std::shared_ptr<FolderReading>> m_readings;
    QTimer m_firstLook;
    QTimer m_patience;

    QString m_letters;
    QElapsedTimer m_sinceLetter;
};
