#pragma once

#include "Desktop/Appearance.h"
#include "Shell/ScreenStores.h"
#include "Shell/WindowDialogs.h"
#include "SpaceScan/ScanStore.h"

#include <QtCore/QObject>
#include <QtCore/QTranslator>
#include <QtQml/QQmlApplicationEngine>
#include <QtQuick/QQuickWindow>

#include <memory>
#include <thread>

class FileManager;
class FolderBrowser;
class FolderChooser;
class InstalledApplications;
class MountedVolumes;
class Trash;
class UserFolders;

/// The application: stores, the window, and their connections to the desktop.
class DuskfernApp : public QObject {
    Q_OBJECT

public:
    /// The services of the desktop. They must outlive the application object.
    struct Services {
        Trash& trash;
        FileManager& fileManager;
        FolderChooser& folderChooser;
        FolderBrowser& folderBrowser;  ///< Shown by the window when the chooser falls back to it.
        Appearance& appearance;
        MountedVolumes& mountedVolumes;
        UserFolders& userFolders;
        std::shared_ptr<const InstalledApplications> applications;
    };

    /// Sets names, the Spanish locale where the session sets none, and the renderer. Must be called before a window is
    /// created and before a number is formatted.
    static void prepareProcess();

    explicit DuskfernApp(const Services& services, QObject* parent = nullptr);
    ~DuskfernApp() override;
    Q_DISABLE_COPY_MOVE(DuskfernApp)

    /// Shows the window and brings it to the front.
    void show();

    /// The same, on a screen: "home", "space" or "junk"; of another name the current one stays. The token of the
    /// request permits the window to come to the front on Wayland; empty without one.
    void showScreen(const QString& screen, const QString& token);

    [[nodiscard]] ScanStore& store() { return m_store; }
    [[nodiscard]] ScreenStores& screens() { return m_screens; }
    [[nodiscard]] QQuickWindow& window() { return *m_window; }
    [[nodiscard]] QQmlEngine& engine() { return m_engine; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void installTranslation();
    void applyAppearance();
    void applyWishes();

    /// Loads the list of system fonts while the window is loaded, which takes half as long as that. Not joinable if no
    /// thread can be started; the fonts are then loaded on first use.
    std::jthread m_fonts;

    Appearance& m_appearance;
    WindowDialogs m_dialogs;
    ScanStore m_store;
    ScreenStores m_screens;
    QQmlApplicationEngine m_engine;
    QTranslator m_spanish;  ///< Qt's own texts.
    QQuickWindow* m_window = nullptr;
};
