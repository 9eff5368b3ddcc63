#include "SpaceScan/ScanStore.h"

#include "Foundation/FileStatus.h"
#include "Foundation/Threads.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

using Names = std::vector<std::string>;

class ScanStoreTest : public testing::Test {
protected:
    /// Files, each with its size in blocks of 4096 bytes.
    void files(const std::vector<std::pair<std::string, int>>& sizes) const {
        for (const auto& [name, blocks] : sizes) {
            tree.file(name, blocks * 4096);
        }
    }
    void scan(const FileURL& root) {
        store.setRootURL(root);
        store.startScan();
        awaitEnd();
    }
    void awaitEnd() {
        ASSERT_TRUE(waitUntil([&] { return !store.isScanning(); }));
    }
    void trashSelected() {
        store.moveSelectedToTrash();
        dialogs.confirmed(true);
    }

    TemporaryFolder tree;
    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    ScanStore store{dialogs, trash, fileManager};
};

TEST_F(ScanStoreTest, DoesNothingWithoutAFolderOrASelection) {
    store.startScan();
    EXPECT_FALSE(store.isScanning());
    store.chooseFolder();
    dialogs.chosen(std::nullopt);
    EXPECT_EQ(store.rootURL(), std::nullopt);
    files({{"a.mov", 1}});
    store.chooseFolder();
    dialogs.chosen(tree.url());
    EXPECT_EQ(store.mode(), ScanStore::Mode::home);
    awaitEnd();
    store.moveSelectedToTrash();
    EXPECT_FALSE(dialogs.lastQuestion);
    store.revealSelected();
    EXPECT_TRUE(fileManager.revealed.empty());
}

TEST_F(ScanStoreTest, PublishesProgressAndResultInOrder) {
    for (int i = 0; i < 600; ++i) {
        tree.text(std::to_string(i % 9) + "/" + std::to_string(i), "");
    }
    Names log;
    const auto note = [&](const std::string& text) { log.push_back(text); };
    QObject::connect(&store, &ScanStore::isScanningChanged, [&] { note(store.isScanning() ? "begin" : "end"); });
    QObject::connect(&store, &ScanStore::filesChanged, [&] { note("files " + std::to_string(store.fileCount())); });
    QObject::connect(&store, &ScanStore::scannedCountChanged,
                     [&] { note("scanned " + std::to_string(store.scannedCount())); });
    QObject::connect(&store, &ScanStore::skippedCountChanged,
                     [&] { note("skipped " + std::to_string(store.skippedCount())); });
    scan(tree.url());
    EXPECT_EQ(log, (Names{"begin", "files 0", "scanned 250", "scanned 500", "files 600", "scanned 600", "end"}));

    // A second scan first clears what the first one left, in this order.
    store.selectRow(0);
    store.setErrorMessage(QStringLiteral("text"));
    QObject::connect(&store, &ScanStore::selectedChanged, [&] { note("selected"); });
    QObject::connect(&store, &ScanStore::errorMessageChanged, [&] { note("error"); });
    store.setCategory(FileCategory::other);
    store.setSearch(QStringLiteral("1"));
    log.clear();
    store.startScan();
    EXPECT_EQ(log, (Names{"begin", "files 0", "selected", "scanned 0", "error"}));
    log.clear();
    store.startScan();
    EXPECT_TRUE(log.empty()) << "a scan that runs is not started again";
    EXPECT_EQ(store.category(), FileCategory::other);
    EXPECT_EQ(store.search(), QStringLiteral("1"));
    awaitEnd();
}

TEST_F(ScanStoreTest, AFolderChosenWhileAScanRunsWaitsForTheNextOne) {
    files({{"first/a", 1}});
    tree.folder("second");
    store.setRootURL(tree.url("first"));
    store.startScan();
    store.chooseFolder();
    dialogs.chosen(tree.url("second"));
    EXPECT_EQ(store.rootURL(), tree.url("second"));
    awaitEnd();
    EXPECT_EQ(store.fileCount(), 1);
    store.startScan();
    awaitEnd();
    EXPECT_EQ(store.fileCount(), 0);
    EXPECT_EQ(store.skippedCount(), 0);
}

TEST_F(ScanStoreTest, TrashesWhatWasAskedAbout) {
    files({{"large “1”.mov", 2}, {"small.txt", 1}});
    scan(tree.url());
    store.selectRow(0);
    store.moveSelectedToTrash();
    ASSERT_TRUE(dialogs.lastQuestion);
    EXPECT_EQ(dialogs.lastQuestion->message, QStringLiteral("¿Mover “large “1”.mov” a la papelera?"));
    dialogs.confirmed(false);
    EXPECT_TRUE(trash.moved.empty());
    EXPECT_EQ(store.fileCount(), 2);

    store.moveSelectedToTrash();
    // A result that arrives behind the question changes nothing of what it names.
    store.selectRow(1);
    dialogs.confirmed(true);
    ASSERT_TRUE(waitUntil([&] { return store.fileCount() == 1; }));
    EXPECT_EQ(trash.moved, std::vector{tree.url("large “1”.mov")});
    EXPECT_EQ(store.selectedName(), QStringLiteral("small.txt"));
    EXPECT_EQ(store.totalSize(), 4096);
    EXPECT_EQ(store.scannedCount(), 2);

    trashSelected();
    ASSERT_TRUE(waitUntil([&] { return store.fileCount() == 0; }));
    EXPECT_FALSE(store.hasSelection());
}

TEST_F(ScanStoreTest, MovesNothingButTheFileThatWasAskedAbout) {
    files({{"a.mov", 1}});
    scan(tree.url());
    store.selectRow(0);
    const FileIdentity asked = fileStatus(tree.url("a.mov"))->identity;
    trash.error = TrashError::changed;
    for (const bool isFolder : {false, true}) {
        store.moveSelectedToTrash();
        ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20))) << "the disk is asked beside the window";
        std::filesystem::rename(tree.path("a.mov"), tree.path(isFolder ? "second" : "first"));
        tree.folder("a.mov");
        dialogs.confirmed(true);
        ASSERT_TRUE(waitUntil([&] { return store.errorMessage().has_value(); }));
        EXPECT_TRUE(store.errorText().contains(QStringLiteral("a.mov"))) << "also the second time";
        store.clearErrorMessage();
    }
    EXPECT_EQ(trash.identities, std::vector{asked}) << "a folder is never moved from here";
    EXPECT_EQ(store.fileCount(), 1);
    EXPECT_EQ(store.selectedName(), QStringLiteral("a.mov"));
}

TEST_F(ScanStoreTest, MayGoWhileItsScanRuns) {
    for (int i = 0; i < 2000; ++i) {
        tree.text(std::to_string(i % 40) + "/" + std::to_string(i), "");
    }
    for (int round = 0; round < 10; ++round) {
        ScanStore brief(dialogs, trash, fileManager);
        brief.setRootURL(tree.url());
        brief.startScan();
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

}  // namespace
