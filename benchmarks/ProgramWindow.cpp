// Shows the program's window, with the desktop it really runs on, and measures it:
//     duskfern_window first-frame       ends after the first frame
//     duskfern_window volumes           ends after the first frame that shows the volumes
//     duskfern_window scan FOLDER       prints maxima in milliseconds: how long the event loop was blocked while the
//                                       folder was scanned and shown, the time to draw a frame meanwhile, and the time
//                                       from a keystroke to list and count, and to the rows

#include "Desktop/BusFileManager.h"
#include "Desktop/DesktopApplications.h"
#include "Desktop/PortalColorScheme.h"
#include "Desktop/PortalFolderChooser.h"
#include "Desktop/SystemVolumes.h"
#include "Desktop/VisibleDisks.h"
#include "Desktop/XdgUserFolders.h"
#include "FolderBrowser/FolderBrowser.h"
#include "Foundation/Dispatch.h"
#include "Measure.h"
#include "Shell/DuskfernApp.h"
#include "Trash/FreedesktopTrash.h"

#include <QtCore/QTimer>
#include <QtGui/QGuiApplication>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// Measures the longest time in which its thread does not return to the event loop.
class StallMeter {
public:
    StallMeter() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const Clock::time_point now = Clock::now();
            m_longest = std::max(m_longest, inMilliseconds(now - m_last) - 1);
            m_last = now;
        });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
    }

    [[nodiscard]] double longest() const { return m_longest; }

private:
    QTimer m_timer;
    Clock::time_point m_last = Clock::now();
    double m_longest = 0;
};

void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

void measureScan(DuskfernApp& app, const char* folder) {
    ScanStore& store = app.store();
    store.setMode(ScanStore::Mode::space);
    wait(1000);
    Clock::time_point frameBegin;
    double frame = 0;
    QObject::connect(
        &app.window(), &QQuickWindow::beforeSynchronizing, &app.window(), [&] { frameBegin = Clock::now(); },
        Qt::DirectConnection);
    QObject::connect(
        &app.window(), &QQuickWindow::frameSwapped, &app.window(),
        [&] { frame = std::max(frame, inMilliseconds(Clock::now() - frameBegin)); }, Qt::DirectConnection);
    double stallTime = 0;
    {
        const StallMeter stall;
        store.setRootURL(FileURL(folder));
        store.startScan();
        while (store.isScanning()) {
            wait(20);
        }
        wait(300);
        stallTime = stall.longest();
    }
    const double drawing = frame;

    double keystroke = 0;
    double rows = 0;
    for (const char* const text : {"a", "añ", "año", "", "f", "fo", "fot", "foto", "foto-", "zzz", ""}) {
        const Clock::time_point start = Clock::now();
        double shown = 0;
        // searchChanged comes before filteredFilesChanged, so this measures the filter without the work of the screens.
        const auto counted = QObject::connect(&store, &ScanStore::searchChanged, [&] {
            (void)store.filteredCount();
            keystroke = std::max(keystroke, inMilliseconds(Clock::now() - start));
        });
        const auto connection = QObject::connect(
            &app.window(), &QQuickWindow::beforeSynchronizing, &app.window(),
            [&] { shown = shown > 0 ? shown : inMilliseconds(Clock::now() - start); }, Qt::DirectConnection);
        store.setSearch(QString::fromUtf8(text));
        while (shown == 0) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        QObject::disconnect(connection);
        QObject::disconnect(counted);
        rows = std::max(rows, shown);
        wait(100);
    }
    std::printf("%.2f %.2f %.2f %.2f\n", stallTime, drawing, keystroke, rows);
}

}  // namespace

int main(int argc, char** argv) {
    setenv("GIO_USE_VFS", "local", 1);
    QCoreApplication::setAttribute(Qt::AA_DisableShaderDiskCache);
    const QGuiApplication application(argc, argv);
    DuskfernApp::prepareProcess();
    FreedesktopTrash trash;
    BusFileManager fileManager;
    PortalColorScheme colorScheme;
    SystemVolumes volumes;
    XdgUserFolders folders;
    FolderBrowser folderBrowser(folders, diskFolders);
    PortalFolderChooser folderChooser(folderBrowser);
    const auto applications =
        std::make_shared<const DesktopApplications>(applicationFolders(folders.fromEnvironment()));
    DuskfernApp app({trash, fileManager, folderChooser, folderBrowser, colorScheme, volumes, folders, applications});
    if (argc < 3) {
        const bool untilVolumes = argc == 2 && std::strcmp(argv[1], "volumes") == 0;
        QObject::connect(&app.window(), &QQuickWindow::frameSwapped, &application, [&app, untilVolumes] {
            if (!untilVolumes || !app.screens().home()->volumes().empty()) {
                QCoreApplication::quit();
            }
        });
        app.show();
        QGuiApplication::exec();
    } else {
        app.show();
        measureScan(app, argv[2]);
    }
    // Does not wait for a measurement of the user's folders that may still run.
    (void)Dispatch::shutDown(std::chrono::milliseconds(0));
    std::fflush(stdout);
    std::_Exit(0);
}
