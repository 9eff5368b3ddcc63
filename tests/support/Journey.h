#pragma once

#include "FolderBrowser/FolderBrowser.h"
#include "Foundation/Threads.h"
#include "Shell/DuskfernApp.h"
#include "support/Driver.h"
#include "support/FakeDesktop.h"

#include <gtest/gtest.h>
#include <QtGui/QGuiApplication>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <algorithm>
#include <map>
#include <memory>

using Texts = std::vector<std::string>;

/// The most frequent colour of a part of a picture: what is behind its letters.
inline QColor groundOf(const QImage& picture, const QRect& part) {
    std::map<QRgb, int> counts;
    for (int y = part.top(); y <= part.bottom(); ++y) {
        for (int x = part.left(); x <= part.right(); ++x) {
            ++counts[picture.pixel(x, y)];
        }
    }
    const auto isRarer = [](const auto& a, const auto& b) { return a.second < b.second; };
    return std::max_element(counts.begin(), counts.end(), isRarer)->first;
}

/// The program's window on a desktop made for the test, with a Trash of the test's choice.
template <class ChosenTrash>
class Journey : public testing::Test {
protected:
    static constexpr auto list = QAccessible::ListItem;
    static constexpr auto dialog = QAccessible::Dialog;
    static constexpr auto button = QAccessible::Button;

    Journey() { userFolders.folders = foldersIn(tree); }

    /// What still runs beside the window may ask the desktop, which ends with the test.
    void TearDown() override { EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20))); }

    void showWindow() {
        app.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    }

    /// Expects all these texts, now or after some time.
    void expectShown(const Texts& texts) const {
        for (const std::string& text : texts) {
            EXPECT_TRUE(driver.waitFor(text)) << text;
        }
    }

    TemporaryFolder tree;
    ChosenTrash trash;
    FakeFileManager fileManager;
    FakeFolderChooser chooser;
    FakeAppearance appearance;
    FakeVolumes volumes;
    FakeUserFolders userFolders;
    std::shared_ptr<FakeApplications> applications = std::make_shared<FakeApplications>();
    FolderBrowser browser{userFolders, [] { return std::vector<FileURL>(); }};
    DuskfernApp app{{trash, fileManager, chooser, browser, appearance, volumes, userFolders, applications}};
    Driver driver{app.window()};
};

/// A home with junk and a folder with files, and a person who only has a keyboard.
class KeyboardJourney : public Journey<FakeTrash> {
protected:
    static constexpr const char* files = "Archivos más grandes";
    static constexpr const char* failure = "No se pudo completar la acción";

    void SetUp() override {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        tree.file("home/.config/org.ejemplo.Pintura/a", 4096);
        chooser.folder = tree.url("files");
        for (int i = 0; i < 40; ++i) {
            tree.file("files/f" + std::to_string(10 + i) + (i % 2 == 0 ? ".mov" : ".zip"), (60 - i) * 4096);
        }
        volumes.add("/", VolumeValues{QString(), 494'000'000'000, {}, 374'000'000'000});
    }

    void makeJunk(int caches) const {
        for (int i = 0; i < caches; ++i) {
            tree.file("home/.cache/app" + std::to_string(i) + "/a", 2 * 4096);
        }
    }

    /// Shows the window on the junk screen, with so many caches.
    void showJunk(int count) {
        makeJunk(count);
        showWindow();
        press("Ctrl+3");
        ASSERT_TRUE(waitUntil([&] { return app.screens().junk()->safeCount() == count; }));
    }

    /// Shows the window on the map of the folder.
    void showMap() {
        showWindow();
        press("Ctrl+2 Ctrl+O");
        ASSERT_TRUE(driver.waitFor("f10.mov", list));
        waitForScan();
    }
    void waitForScan() {
        ASSERT_TRUE(waitUntil([this] { return app.store().hasRoot() && !app.store().isScanning(); }));
    }

    /// Presses keys and sees that there is something for the next one to act on, each time.
    void press(const char* keys) {
        for (const QByteArray& key : QByteArray(keys).split(' ')) {
            const std::string before = driver.focused();
            driver.key(key);
            EXPECT_FALSE(driver.focused().empty()) << before << ", then " << key.constData();
        }
    }

    /// The name of the dialog that is open; empty without one.
    [[nodiscard]] std::string openDialog() const {
        const Texts names = driver.names(dialog);
        return names.empty() ? std::string() : names.front();
    }
    [[nodiscard]] bool waitForDialog(const std::string& name) const {
        return waitUntil([&] { return openDialog() == name; });
    }
};
