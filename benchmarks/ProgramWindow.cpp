// Shows the program's window, with the desktop it really runs on, and measures it:
//     duskfern_window first-frame     ends after the first frame
//     duskfern_window volumes         ends after the first frame that shows the volumes
//     duskfern_window RUN FOLDER      measures a run of WindowRuns.h and prints it, a name and a value a line

#include "Desktop/BusFileManager.h"
#include "Desktop/DesktopApplications.h"
#include "Desktop/PortalAppearance.h"
#include "Desktop/PortalFolderChooser.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/VisibleDisks.h"
#include "FolderBrowser/FolderBrowser.h"
#include "Foundation/Dispatch.h"
#include "Shell/DuskfernApp.h"
#include "Trash/FreedesktopTrash.h"
#include "WindowRuns.h"

#include <QtGui/QGuiApplication>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

/// Ends the program after the first frame, or the first that shows the volumes.
void endAfterFrame(DuskfernApp& app, bool withVolumes) {
    QObject::connect(&app.window(), &QQuickWindow::frameSwapped, &app, [&app, withVolumes] {
        if (!withVolumes || !app.screens().home()->volumes().empty()) {
            QCoreApplication::quit();
        }
    });
    app.show();
    QGuiApplication::exec();
}

}  // namespace

int main(int argc, char** argv) {
    setenv("GIO_USE_VFS", "local", 1);
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    const std::string run = argc > 1 ? argv[1] : "first-frame";
    const std::string folder = argc > 2 ? argv[2] : "";
    FreedesktopTrash trash;
    BusFileManager fileManager;
    PortalAppearance appearance;
    SystemVolumes volumes;
    MeasuredFolders folders(folder);
    FolderBrowser folderBrowser(folders, diskFolders);
    PortalFolderChooser folderChooser(folderBrowser);
    const auto applications =
        std::make_shared<const DesktopApplications>(applicationFolders(folders.fromEnvironment()));
    DuskfernApp app({trash, fileManager, folderChooser, folderBrowser, appearance, volumes, folders, applications});
    int code = 0;
    if (argc < 3) {
        endAfterFrame(app, run == "volumes");
    } else {
        app.show();
        code = measureRun(run, app, folders, folder) ? 0 : 1;
    }
    // Does not wait for a measurement of the user's folders that may still run.
    (void)Dispatch::shutDown(std::chrono::milliseconds(0));
    std::fflush(stdout);
    std::_Exit(code);
}
