#pragma once

#include "FolderBrowser/FolderBrowser.h"
#include "Shell/DuskfernApp.h"
#include "support/Driver.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <QtTest/QTest>

#include <memory>

/// The program's window on a desktop made for the test, with a Trash and volumes of the test's choice.
template <class ChosenTrash, class ChosenVolumes = FakeVolumes>
class Journey : public testing::Test {
protected:
    void showWindow() {
        app.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&app.window()));
    }

    TemporaryFolder tree;
    ChosenTrash trash;
    FakeFileManager fileManager;
    FakeFolderChooser chooser;
    FakeColorScheme colorScheme;
    ChosenVolumes volumes;
    FakeUserFolders userFolders;
    std::shared_ptr<FakeApplications> applications = std::make_shared<FakeApplications>();
    FolderBrowser browser{userFolders, [] { return std::vector<FileURL>(); }};
    DuskfernApp app{{trash, fileManager, chooser, browser, colorScheme, volumes, userFolders, applications}};
    Driver driver{app.window()};
};
