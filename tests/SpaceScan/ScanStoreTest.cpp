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

    [[nodiscard]] Names filtered() const {
        Names names;
        for (size_t row = 0; row < store.filteredFiles().size(); ++row) {
            names.push_back(store.filteredFiles()[row].name().toStdString());
        }
        return names;
    }

    TemporaryFolder tree;
    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    ScanStore store{dialogs, trash, fileManager};
};

TEST_F(ScanStoreTest, ChoosingAFolderScansIt) {
    files({{"a.mov", 1}});
    EXPECT_EQ(store.mode(), ScanStore::Mode::home);
    store.startScan();
    EXPECT_FALSE(store.isScanning());
    store.moveSelectedToTrash();
    EXPECT_FALSE(dialogs.lastQuestion);
    store.chooseFolder();
    EXPECT_EQ(dialogs.lastPrompt, QStringLiteral("Elegir"));
    dialogs.chosen(std::nullopt);
    EXPECT_EQ(store.rootURL(), std::nullopt);
    store.chooseFolder();
    dialogs.chosen(tree.url());
    EXPECT_TRUE(store.isScanning());
    EXPECT_EQ(store.mode(), ScanStore::Mode::home);
    awaitEnd();
    EXPECT_EQ(store.fileCount(), 1);
    store.revealSelected();
    EXPECT_TRUE(fileManager.revealed.empty());
    store.selectRow(0);
    store.revealSelected();
    EXPECT_EQ(fileManager.revealed, std::vector{tree.url("a.mov")});
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
    for (const char* root : {"first/a", "missing"}) {
        scan(tree.url(root));
        EXPECT_EQ(store.fileCount(), 0);
        EXPECT_EQ(store.skippedCount(), 1) << "a root that is no folder";
        EXPECT_EQ(store.errorMessage(), std::nullopt);
    }
}

TEST_F(ScanStoreTest, FiltersByCategoryAndName) {
    files({{"img_0001.jpg", 3}, {"IMG.mov", 2}, {"imgs/note.txt", 1}});
    scan(tree.url());
    EXPECT_EQ(store.filteredCount(), 3);
    store.setSearch(QStringLiteral("IMG"));
    EXPECT_EQ(filtered(), (Names{"img_0001.jpg", "IMG.mov"})) << "names count, folders do not";
    store.setCategory(FileCategory::images);
    EXPECT_EQ(filtered(), Names{"img_0001.jpg"});
    store.setSearch({});
    store.setCategory(FileCategory::documents);
    EXPECT_EQ(filtered(), Names{"note.txt"});
    EXPECT_EQ(store.totalSize(), 6 * 4096);
}

TEST_F(ScanStoreTest, TrashesWhatWasAskedAbout) {
    files({{"large “1”.mov", 2}, {"small.txt", 1}});
    scan(tree.url());
    store.selectRow(0);
    store.moveSelectedToTrash();
    ASSERT_TRUE(dialogs.lastQuestion);
    EXPECT_EQ(dialogs.lastQuestion->message, QStringLiteral("¿Mover “large “1”.mov” a la papelera?"));
    EXPECT_EQ(dialogs.lastQuestion->informativeText,
              QStringLiteral("Duskfern nunca borra archivos sin esta confirmación."));
    EXPECT_EQ(dialogs.lastQuestion->confirmTitle, QStringLiteral("Mover a la papelera"));
    EXPECT_EQ(dialogs.lastQuestion->cancelTitle, QStringLiteral("Cancelar"));
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
    store.moveSelectedToTrash();
    ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20))) << "the disk is asked beside the window";
    std::filesystem::rename(tree.path("a.mov"), tree.path("before.mov"));
    files({{"a.mov", 1}});
    trash.error = TrashError::changed;
    dialogs.confirmed(true);
    ASSERT_TRUE(waitUntil([&] { return store.errorMessage().has_value(); }));
    EXPECT_EQ(trash.identities, std::vector{asked});

    // A folder is never moved from here, not even one that was there when the question was asked.
    std::filesystem::remove(tree.path("a.mov"));
    tree.folder("a.mov");
    store.clearErrorMessage();
    trashSelected();
    ASSERT_TRUE(waitUntil([&] { return store.errorMessage().has_value(); }));
    EXPECT_EQ(trash.identities.size(), 1U);
}

TEST_F(ScanStoreTest, AFailedMoveChangesNothingButTheMessage) {
    files({{"stays.mov", 1}});
    scan(tree.url());
    store.selectRow(0);
    int shown = 0;
    QObject::connect(&store, &ScanStore::errorMessageChanged, [&] { shown += store.errorMessage() ? 1 : 0; });
    trash.error = TrashError::readOnly;
    for (int round = 1; round <= 2; ++round) {
        trashSelected();
        ASSERT_TRUE(waitUntil([&] { return store.errorMessage().has_value(); }));
        EXPECT_TRUE(store.errorText().contains(QStringLiteral("stays.mov")));
        EXPECT_EQ(shown, round) << "the same text shows again after it was dismissed";
        store.clearErrorMessage();
    }
    EXPECT_EQ(store.fileCount(), 1);
    EXPECT_EQ(store.selectedName(), QStringLiteral("stays.mov"));
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
