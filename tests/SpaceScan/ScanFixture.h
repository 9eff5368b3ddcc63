#pragma once

#include "SpaceScan/FileScanner.h"
#include "SpaceScan/ScanStore.h"
#include "support/FakeDesktop.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <set>
#include <thread>

/// A folder with files to scan.
class ScanFixture : public testing::Test {
protected:
    using Paths = std::set<std::string>;

    void files(const Paths& paths) const {
        for (const std::string& path : paths) {
            tree.text(path, path);
        }
    }
    void manyFiles(int count) const {
        for (int i = 0; i < count; ++i) {
            tree.text(std::to_string(i % 9).append("/").append(std::to_string(i)), "");
        }
    }

    [[nodiscard]] ScanResult scan(const char* relative = "") const {
        const auto report = [asking = std::this_thread::get_id()](std::int64_t) {
            EXPECT_EQ(std::this_thread::get_id(), asking);
        };
        return FileScanner::scan(tree.url(relative), report);
    }

    /// What a scan finds, by its path in the folder; a file found twice is an error.
    void expect(const Paths& found, std::int64_t skipped, const std::string& where = {}) const {
        const ScanResult result = scan();
        Paths paths;
        for (const FileItem& item : result.files) {
            EXPECT_TRUE(paths.insert(item.url.path().substr(tree.path("").size())).second) << item.url.path();
        }
        EXPECT_EQ(paths, found) << where;
        EXPECT_EQ(result.skipped, skipped) << where;
    }

    TemporaryFolder tree;
};

/// A store that scans it, on a desktop that does what the test says.
class StoreFixture : public ScanFixture {
protected:
    void scanAndWait() {
        store.setRootURL(tree.url());
        store.startScan();
        awaitEnd();
    }
    void awaitEnd() {
        ASSERT_TRUE(waitUntil([this] { return !store.isScanning(); }));
    }
    void trashSelected() {
        const qint64 before = store.fileCount();
        store.moveSelectedToTrash();
        dialogs.confirmed(true);
        ASSERT_TRUE(waitUntil([&] { return store.fileCount() == before - 1; }));
    }

    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    ScanStore store{dialogs, trash, fileManager};
};
