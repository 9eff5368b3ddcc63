#include "WindowRuns.h"

#include "SpaceScan/FileScanner.h"
#include "WindowMeters.h"

#include <QtCore/QCoreApplication>

#include <array>
#include <cstdio>
#include <ctime>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

namespace {

void print(const char* name, double value) {
    std::printf("%s %.2f\n", name, value);
}

/// Goes to the space map, and waits until nothing happens any more.
void showSpaceMap(DuskfernApp& app) {
    app.store().setMode(ScanStore::Mode::space);
    wait(1000);
}

void measureKeystrokes(DuskfernApp& app) {
    ScanStore& store = app.store();
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
    print("keystroke", keystroke);
    print("rows", rows);
}

void measureScan(DuskfernApp& app, MeasuredFolders&, const std::string& folder) {
    ScanStore& store = app.store();
    showSpaceMap(app);
    Clock::time_point frameBegin;
    double frame = 0;
    QObject::connect(
        &app.window(), &QQuickWindow::beforeSynchronizing, &app.window(), [&] { frameBegin = Clock::now(); },
        Qt::DirectConnection);
    const auto swapped = QObject::connect(
        &app.window(), &QQuickWindow::frameSwapped, &app.window(),
        [&] { frame = std::max(frame, inMilliseconds(Clock::now() - frameBegin)); }, Qt::DirectConnection);
    {
        const StallMeter stall;
        store.setRootURL(FileURL(folder));
        store.startScan();
        waitFor([&] { return !store.isScanning(); });
        wait(300);
        print("stall", stall.longest());
        print("drawing", frame);
    }
    QObject::disconnect(swapped);
    measureKeystrokes(app);
}

void measureHome(DuskfernApp& app, MeasuredFolders& folders, const std::string&) {
    folders.hold(true);
    showSpaceMap(app);
    app.store().setMode(ScanStore::Mode::home);
    const HomeStore& store = *app.screens().home();
    waitFor([&] { return store.isScanning(); });
    wait(300);
    const StallMeter stall;
    folders.hold(false);
    waitFor([&] { return !store.isScanning(); });
    wait(300);
    print("stall", stall.longest());
}

void measureJunk(DuskfernApp& app, MeasuredFolders&, const std::string&) {
    showSpaceMap(app);
    const StallMeter stall;
    app.store().setMode(ScanStore::Mode::junk);
    const JunkStore& store = *app.screens().junk();
    waitFor([&] { return !store.isScanning(); });
    wait(300);
    print("stall", stall.longest());
}

void measureRescan(DuskfernApp& app, MeasuredFolders&, const std::string& folder) {
    ScanStore& store = app.store();
    showSpaceMap(app);
    store.setRootURL(FileURL(folder));
    std::vector<double> shown;
    std::vector<double> alone;
    bool isDrawn = false;
    QObject::connect(&app.window(), &QQuickWindow::frameSwapped, &app.window(), [&] { isDrawn = !store.isScanning(); });
    for (int round = 0; round < 6; ++round) {
        const Clock::time_point start = Clock::now();
        isDrawn = false;
        store.startScan();
        while (!isDrawn) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        }
        const Clock::time_point end = Clock::now();
        wait(300);
        const Clock::time_point again = Clock::now();
        (void)FileScanner::scan(FileURL(folder), [](std::int64_t) {});
        // The first round fills the caches.
        if (round > 0) {
            shown.push_back(inMilliseconds(end - start));
            alone.push_back(inMilliseconds(Clock::now() - again));
        }
        wait(300);
    }
    print("shown", median(shown));
    print("alone", median(alone));
}

/// Seconds of a processor that this process has used.
double processorTime() {
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void measureBar(DuskfernApp& app, MeasuredFolders& folders, const std::string&) {
    constexpr int seconds = 4;
    folders.hold(true);
    waitFor([&] { return app.screens().home()->isScanning(); });
    wait(1500);
    const double before = processorTime();
    wait(1000 * seconds);
    print("bar", 100 * (processorTime() - before) / seconds);
    folders.hold(false);
}

void measureRest(DuskfernApp& app, MeasuredFolders&, const std::string&) {
    waitFor([&] { return !app.screens().home()->volumes().empty() && !app.screens().home()->isScanning(); });
    wait(2000);
    print("rest", ownMegabytes());
}

}  // namespace

UserFolderPaths MeasuredFolders::paths() {
    while (m_isHeld) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    UserFolderPaths paths = m_real.paths();
    if (!m_folder.empty()) {
        paths.music = FileURL(m_folder);
        paths.cacheHome = FileURL(m_folder);
    }
    return paths;
}

bool measureRun(const std::string& run, DuskfernApp& app, MeasuredFolders& folders, const std::string& folder) {
    using Measurement = void (*)(DuskfernApp&, MeasuredFolders&, const std::string&);
    constexpr std::array<std::pair<const char*, Measurement>, 6> runs{{
        {"scan", measureScan},
        {"home", measureHome},
        {"junk", measureJunk},
        {"rescan", measureRescan},
        {"bar", measureBar},
        {"rest", measureRest},
    }};
    const auto* const found =
        std::find_if(runs.begin(), runs.end(), [&](const auto& each) { return run == each.first; });
    if (found != runs.end()) {
        found->second(app, folders, folder);
    }
    return found != runs.end();
}
