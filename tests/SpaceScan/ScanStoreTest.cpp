#include "Foundation/FileStatus.h"
#include "Foundation/Threads.h"
#include "SpaceScan/ScanFixture.h"

#include <filesystem>
#include <functional>

namespace {

using ScanStoreTest = StoreFixture;

TEST_F(ScanStoreTest, PublishesProgressAndResultInOrder) {
    manyFiles(500);
    std::vector<std::string> log;
    const auto note = [&](auto signal, const char* text, auto value) {
        QObject::connect(&store, signal, [this, &log, text, value] {
            log.push_back(text + std::to_string(std::invoke(value, store)));
        });
    };
    note(&ScanStore::isScanningChanged, "scanning ", &ScanStore::isScanning);
    note(&ScanStore::filesChanged, "files ", &ScanStore::fileCount);
    note(&ScanStore::scannedCountChanged, "scanned ", &ScanStore::scannedCount);
    note(&ScanStore::skippedCountChanged, "skipped ", &ScanStore::skippedCount);
    note(&ScanStore::selectedChanged, "selected ", &ScanStore::hasSelection);
    note(&ScanStore::errorMessageChanged, "error ", [](const ScanStore& of) { return of.errorMessage().has_value(); });
    scanAndWait();
    EXPECT_EQ(log, (std::vector<std::string>{"scanning 1", "files 0", "scanned 250", "scanned 500", "files 500",
                                             "scanning 0"}));

    // A second scan first clears what the first one left, in this order.
    store.selectRow(0);
    store.setErrorMessage(QStringLiteral("text"));
    store.setCategory(FileCategory::other);
    store.setSearch(QStringLiteral("1"));
    log.clear();
    store.startScan();
    EXPECT_EQ(log, (std::vector<std::string>{"scanning 1", "files 0", "selected 0", "scanned 0", "error 0"}));
    log.clear();
    store.startScan();
    EXPECT_TRUE(log.empty()) << "a scan that runs is not started again";
    EXPECT_EQ(store.category(), FileCategory::other);
    EXPECT_EQ(store.search(), QStringLiteral("1"));
    awaitEnd();
}

TEST_F(ScanStoreTest, ScansTheFolderThatWasChosen) {
    store.startScan();
    EXPECT_FALSE(store.isScanning()) << "there is none";
    files({"first/a"});
    tree.folder("second");
    store.chooseFolder();
    dialogs.chosen(tree.url("first"));
    EXPECT_EQ(store.mode(), ScanStore::Mode::home);
    EXPECT_TRUE(store.isScanning());
    dialogs.chosen(tree.url("second"));
    dialogs.chosen(std::nullopt);
    EXPECT_EQ(store.rootURL(), tree.url("second"));
    awaitEnd();
    EXPECT_EQ(store.fileCount(), 1) << "the next scan is that of the second";
    store.startScan();
    awaitEnd();
    EXPECT_EQ(store.fileCount(), 0);
}

TEST_F(ScanStoreTest, TrashesWhatWasAskedAbout) {
    tree.file("large “1”.mov", 8192);
    tree.file("small.txt", 4096);
    scanAndWait();
    store.moveSelectedToTrash();
    store.revealSelected();
    EXPECT_FALSE(dialogs.lastQuestion || !fileManager.revealed.empty()) << "nothing is selected";
    store.selectRow(0);
    store.moveSelectedToTrash();
    EXPECT_EQ(dialogs.lastQuestion.value().message, QStringLiteral("¿Mover “large “1”.mov” a la papelera?"));
    dialogs.confirmed(false);
    EXPECT_FALSE(store.isMoving());

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
    EXPECT_FALSE(store.hasSelection());
}

TEST_F(ScanStoreTest, MovesNothingButTheFileThatWasAskedAbout) {
    tree.text("a.mov", "");
    scanAndWait();
    store.selectRow(0);
    const FileIdentity asked = fileStatus(tree.url("a.mov"))->identity;
    trash.refusesAll = true;
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
    manyFiles(2000);
    for (int round = 0; round < 10; ++round) {
        ScanStore brief(dialogs, trash, fileManager);
        brief.setRootURL(tree.url());
        brief.startScan();
        QCoreApplication::processEvents();
    }
    QCoreApplication::processEvents();
}

}  // namespace
