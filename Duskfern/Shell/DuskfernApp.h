#pragma once

#include "Desktop/ColorScheme.h"
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

/// The application: its stores, its one window, and what connects them to the desktop.
class DuskfernApp : public QObject {
    Q_OBJECT

public:
    /// The desktop as this program uses it. Everything outlives the application object.
    struct Services {
        Trash& trash;
        FileManager& fileManager;
        FolderChooser& folderChooser;
        FolderBrowser& folderBrowser;  ///< Shown by the window when the chooser opens it.
        ColorScheme& colorScheme;
        MountedVolumes& mountedVolumes;
        UserFolders& userFolders;
        std::shared_ptr<const InstalledApplications> applications;
    };

    /// Sets up what concerns the whole process: names, and numbers in Spanish where the session names no locale. To be
    /// called before the first window, and before anything formats a number.
    static void prepareProcess();

    explicit DuskfernApp(const Services& services, QObject* parent = nullptr);
    ~DuskfernApp() override;
    Q_DISABLE_COPY_MOVE(DuskfernApp)

    /// Shows the window and brings it to the front.
    void show();

    [[nodiscard]] ScanStore& store() { return m_store; }
    [[nodiscard]] ScreenStores& screens() { return m_screens; }
    [[nodiscard]] QQuickWindow& window() { return *m_window; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void installSpanish();
    void followColorScheme();

    /// Looks for the system's fonts, which takes as long as loading half of the window, beside that. None where there
    /// is no thread to be had.
    std::jthread m_fonts;

    ColorScheme& m_colorScheme;
    WindowDialogs m_dialogs;
    ScanStore m_store;
    ScreenStores m_screens;
    QQmlApplicationEngine m_engine;
    QTranslator m_spanish;  ///< Qt's own texts.
    QQuickWindow* m_window = nullptr;
};
