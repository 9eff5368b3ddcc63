// Opens the program's window, walks its screens on a real folder and takes a picture of each:
//     duskfern_tour PICTURES FOLDER [WIDTHxHEIGHT] [light|dark]
// The window, its stores and the walk are the program's own; only the folder dialog is answered from here,
// and the Trash is one that takes nothing.

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
#include <QtGui/QGuiApplication>
#include <QtTest/QTest>

#include <cstdlib>
#include <iostream>

namespace {

[[noreturn]] void fail(const QString& what) {
    std::cerr << "tour: " << qPrintable(what) << '\n';
    std::exit(1);
}

class Tour {
public:
    Tour(const QStringList& arguments) : m_pictures(arguments.value(1)) {
        if (arguments.size() < 3) {
            fail(QStringLiteral("usage: duskfern_tour PICTURES FOLDER [WIDTHxHEIGHT] [light|dark]"));
        }
        const QByteArray folder = QFile::encodeName(QDir(arguments.value(2)).absolutePath());
        m_chooser.folder = FileURL(folder.toStdString());
        const QStringList size = arguments.value(3, QStringLiteral("1180x760")).split(QLatin1Char('x'));
        const bool dark = arguments.value(4) == QLatin1String("dark");
        m_scheme.prefer(dark ? ColorScheme::Preference::dark : ColorScheme::Preference::light);
        m_app.window().resize(size.value(0).toInt(), size.value(1).toInt());
        if (!QDir().mkpath(m_pictures)) {
            fail(QStringLiteral("%1 cannot be made").arg(m_pictures));
        }
    }

    void run() {
        m_app.show();
        if (!QTest::qWaitForWindowActive(&m_app.window())) {
            fail(QStringLiteral("the window did not come to the front"));
        }
        takePicture("inicio");
        press("Mapa de espacio");
        takePicture("bienvenida");
        m_chooser.next = &m_browser;
        press("Elegir carpeta…");
        takePicture("elegir");
        press("Cancelar");
        m_chooser.next = nullptr;
        press("Elegir carpeta…");
        while (m_app.store().isScanning()) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        takePicture("mapa");
        if (m_app.store().fileCount() > 0) {
            m_app.store().selectRow(2);
            press("A la papelera");
            takePicture("confirmacion");
            press("Cancelar");
        }
        press("Limpiar basura");
        takePicture("limpiar");
    }

private:
    void press(const char* button) {
        if (!m_driver.press(QString::fromUtf8(button))) {
            fail(QStringLiteral("there is no button %1").arg(QString::fromUtf8(button)));
        }
    }

    void takePicture(const char* name) {
        // Long enough for what the window still has to lay out and draw.
        QTest::qWait(300);
        const QString file = QStringLiteral("%1/%2.png").arg(m_pictures, QLatin1String(name));
        if (!m_driver.save(file)) {
            fail(QStringLiteral("%1 cannot be written").arg(file));
        }
    }

    QString m_pictures;
    FakeTrash m_trash;
    FakeFileManager m_fileManager;
    FakeFolderChooser m_chooser;
    FakeColorScheme m_scheme;
    SystemVolumes m_volumes;
    XdgUserFolders m_userFolders;
    FolderBrowser m_browser{m_userFolders, diskFolders};
    DuskfernApp m_app{{m_trash, m_fileManager, m_chooser, m_browser, m_scheme, m_volumes, m_userFolders,
                       std::make_shared<DesktopApplications>(
                           [&folders = m_userFolders] { return applicationFolders(folders.paths()); })}};
    Driver m_driver{m_app.window()};
};

}  // namespace

int main(int argc, char** argv) {
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    Tour(QGuiApplication::arguments()).run();
    return 0;
}
