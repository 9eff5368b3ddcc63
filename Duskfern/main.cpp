#include "Desktop/BusFileManager.h"
#include "Desktop/DesktopApplications.h"
#include "Desktop/PortalAppearance.h"
#include "Desktop/PortalFolderChooser.h"
#include "Desktop/SingleInstance.h"
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
#include <string_view>

namespace {

/// The screen that `--screen=NAME` asks for; empty without it.
QString screenOf(int argc, char** argv) {
    constexpr std::string_view option = "--screen=";
    for (int index = 1; index < argc; ++index) {
        if (const std::string_view argument = argv[index]; argument.starts_with(option)) {
            return QString::fromUtf8(argument.substr(option.size()).data());
        }
    }
    return {};
}

int run(int& argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const SingleInstance::Request request = SingleInstance::requestOf(screenOf(argc, argv));
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    // Asks while the window is made.
    auto instance = std::make_unique<SingleInstance>(QGuiApplication::desktopFileName(), request);
    FreedesktopTrash trash;
    BusFileManager fileManager;
    PortalAppearance appearance;
    SystemVolumes mountedVolumes;
    XdgUserFolders userFolders;
    FolderBrowser folderBrowser(userFolders, diskFolders);
    PortalFolderChooser folderChooser(folderBrowser);
    const auto applications =
        std::make_shared<const DesktopApplications>(applicationFolders(userFolders.fromEnvironment()));
    DuskfernApp duskfern(
        {trash, fileManager, folderChooser, folderBrowser, appearance, mountedVolumes, userFolders, applications});
    int code = 0;
    if (instance->role() == SingleInstance::Role::first) {
        QObject::connect(instance.get(), &SingleInstance::requested, &duskfern,
                         [&](const SingleInstance::Request& later) { duskfern.showScreen(later.action, later.token); });
        duskfern.showScreen(request.action, {});
        code = QGuiApplication::exec();
    }
    // Starts that come while this one ends open a window of their own.
    instance.reset();
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
