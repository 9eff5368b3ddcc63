// Opens the program's window, walks its screens on a real folder and takes a picture of each:
//     duskfern_tour PICTURES FOLDER [WIDTHxHEIGHT] [light|dark] [POINTS]
// All is the program's own but the answer to the folder dialog and the Trash, which takes nothing.

#include "Desktop/DesktopApplications.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/VisibleDisks.h"
#include "Desktop/XdgUserFolders.h"
#include "FolderBrowser/FolderBrowser.h"
#include "Shell/DuskfernApp.h"
#include "support/Driver.h"
#include "support/FakeDesktop.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtGui/QFont>
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <cstdlib>
#include <iostream>

namespace {

void require(bool holds, const std::string& what) {
    if (!holds) {
        std::cerr << "tour: " << what << '\n';
        std::exit(1);
    }
}

void walk(const QStringList& arguments) {
    FakeTrash trash;
    FakeFileManager fileManager;
    FakeFolderChooser chooser;
    FakeAppearance scheme;
    SystemVolumes volumes;
    XdgUserFolders userFolders;
    FolderBrowser browser(userFolders, diskFolders);
    DuskfernApp app({trash, fileManager, chooser, browser, scheme, volumes, userFolders,
                     std::make_shared<DesktopApplications>(applicationFolders(userFolders.fromEnvironment()))});
    const Driver driver(app.window());
    chooser.folder = FileURL(QFile::encodeName(QDir(arguments.value(2)).absolutePath()).toStdString());
    const bool dark = arguments.value(4) == QLatin1String("dark");
    scheme.prefer(dark ? Appearance::Preference::dark : Appearance::Preference::light);
    const QStringList size = arguments.value(3, QStringLiteral("1180x760")).split(QLatin1Char('x'));
    app.window().resize(size.value(0).toInt(), size.value(1).toInt());
    app.show();
    require(QTest::qWaitForWindowActive(&app.window()), "the window did not come to the front");

    const auto takePicture = [&](const char* name, const char* nextButton = nullptr) {
        // Long enough for what the window still has to lay out and draw.
        QTest::qWait(300);
        const QString file = QStringLiteral("%1/%2.png").arg(arguments.value(1), QLatin1String(name));
        require(app.window().grabWindow().save(file), qPrintable(file));
        require(nextButton == nullptr || driver.press(nextButton), std::string("no button after ") + name);
    };
    takePicture("inicio", "Mapa de espacio");
    chooser.next = &browser;
    takePicture("bienvenida", "Elegir carpeta…");
    takePicture("elegir", "Cancelar");
    chooser.next = nullptr;
    driver.key("Ctrl+O");
    while (app.store().isScanning()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    takePicture("mapa");
    app.store().selectRow(2);
    takePicture("seleccion", "A la papelera");
    takePicture("confirmacion", "Cancelar");
    driver.press("Limpiar basura");
    require(waitUntil([&] { return !app.screens().junk()->isScanning(); }), "the junk scan did not end");
    takePicture("limpiar");
}

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    const QStringList arguments = QGuiApplication::arguments();
    QFont font = QGuiApplication::font();
    font.setPointSizeF(arguments.value(5, QStringLiteral("11")).toDouble());
    QGuiApplication::setFont(font);
    require(arguments.size() > 2 && QDir().mkpath(arguments[1]),
            "usage: duskfern_tour PICTURES FOLDER [WIDTHxHEIGHT] [light|dark] [POINTS]");
    walk(arguments);
    return 0;
}
