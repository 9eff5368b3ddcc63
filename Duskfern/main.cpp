#include "Desktop/BusFileManager.h"
#include "Desktop/DesktopApplications.h"
#include "Desktop/PortalColorScheme.h"
#include "Desktop/PortalFolderChooser.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/VisibleDisks.h"
#include "Desktop/XdgUserFolders.h"
#include "FolderBrowser/FolderBrowser.h"
#include "Foundation/Dispatch.h"
#include "Shell/DuskfernApp.h"
#include "Trash/FreedesktopTrash.h"

#include <QtGui/QGuiApplication>

#include <chrono>
#include <cstdlib>
#include <memory>

namespace {

int run(int& argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    FreedesktopTrash trash;
    BusFileManager fileManager;
    PortalColorScheme colorScheme;
    SystemVolumes mountedVolumes;
    XdgUserFolders userFolders;
    FolderBrowser folderBrowser(userFolders, diskFolders);
    PortalFolderChooser folderChooser(folderBrowser);
    const auto applications =
        std::make_shared<const DesktopApplications>(applicationFolders(userFolders.fromEnvironment()));
    DuskfernApp duskfern(
        {trash, fileManager, folderChooser, folderBrowser, colorScheme, mountedVolumes, userFolders, applications});
    duskfern.show();
    const int code = QGuiApplication::exec();
    if (Dispatch::shutDown(std::chrono::milliseconds(700)) == Dispatch::Finish::stuck) {
        std::_Exit(code);
    }
    return code;
}

}  // namespace

int main(int argc, char* argv[]) {
    // No caches are written to the home folder, not even by the graphics driver.
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
    // Keeps GIO from starting the daemons of its virtual file system, which write files there. Only local files are
    // used.
    setenv("GIO_USE_VFS", "local", 1);
    return run(argc, argv);
}
