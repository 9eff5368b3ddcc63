#pragma once

#include "FolderBrowser/FolderBrowser.h"
#include "Shell/DuskfernApp.h"
#include "support/Driver.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QtGui/QImage>
#include <QtTest/QTest>

#include <algorithm>
#include <map>
#include <memory>

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

    Journey() {
        UserFolderPaths& paths = userFolders.folders;
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
        paths.cacheHome = tree.url("home/.cache");
        paths.dataHome = tree.url("home/.local/share");
        paths.configHome = tree.url("home/.config");
    }

    void showWindow() {
        app.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    }

    /// Where something lies in the Trash of the test's own home.
    static std::string inTrash(const std::string& below) {
        return qgetenv("XDG_DATA_HOME").toStdString() + "/Trash/" + below;
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
