#include "SpaceMap/BubbleMapModel.h"
#include "SpaceMap/FileListModel.h"
#include "support/FakeDesktop.h"
#include "support/TemporaryFolder.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>
#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

namespace {

class ModelsTest : public testing::Test {
protected:
    void scan(int count) {
        for (int i = 0; i < count; ++i) {
            const std::string name = "folder/" + std::to_string(1000 + i) + ".png";
            if (i < 30) {
                tree.file(name, (100 - i) * 4096);
            } else {
                tree.text(name, "");
            }
        }
        store.setRootURL(tree.url());
        store.startScan();
        ASSERT_TRUE(waitUntil([&] { return !store.isScanning(); }));
        list.setStore(&store);
        map.setArea({600, 400});
        map.setStore(&store);
    }

    void trashSelected() {
        const qint64 before = store.fileCount();
        store.moveSelectedToTrash();
        dialogs.confirmed(true);
        ASSERT_TRUE(waitUntil([&] { return store.fileCount() == before - 1; }));
    }

    [[nodiscard]] QString text(int row, FileListModel::Role role) const {
        return list.data(list.index(row), role).toString();
    }

    TemporaryFolder tree;
    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    ScanStore store{dialogs, trash, fileManager};
    FileListModel list;
    BubbleMapModel map;
};

TEST_F(ModelsTest, ShowAThousandRowsAndFourteenBubbles) {
    scan(1500);
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    EXPECT_EQ(list.rowCount(), 1000);
    EXPECT_EQ(text(999, FileListModel::NumberRole), QStringLiteral("1000"));
    EXPECT_EQ(text(0, FileListModel::NameRole), QStringLiteral("1000.png"));
    EXPECT_EQ(text(0, FileListModel::FolderRole), QStringLiteral("folder"));
    EXPECT_EQ(text(0, FileListModel::SizeTextRole), QStringLiteral("410 KB"));
    EXPECT_EQ(text(0, FileListModel::IconRole), QStringLiteral("photo.fill"));
    EXPECT_EQ(map.count(), 14);
    EXPECT_EQ(map.data(map.index(0), BubbleMapModel::CenterXRole).toDouble(), 300);
    EXPECT_EQ(map.data(map.index(0), BubbleMapModel::PathRole).toString().toStdString(), tree.path("folder/1000.png"));

    store.setSearch(QStringLiteral("1002"));
    EXPECT_EQ(list.rowCount(), 1);
    EXPECT_EQ(map.count(), 1);
    store.setCategory(FileCategory::videos);
    EXPECT_EQ(list.rowCount(), 0);
    EXPECT_EQ(map.count(), 0);
}

TEST_F(ModelsTest, ATrashedFileLeavesItsRowAlone) {
    scan(1200);
    const QAbstractItemModelTester tester(&list, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const QSignalSpy resets(&list, &QAbstractItemModel::modelReset);
    store.selectRow(5);
    EXPECT_EQ(list.selectedRow(), 5);
    trashSelected();
    EXPECT_EQ(list.selectedRow(), -1);
    EXPECT_EQ(text(5, FileListModel::NameRole), QStringLiteral("1006.png"));
    EXPECT_EQ(text(5, FileListModel::NumberRole), QStringLiteral("6"));
    EXPECT_EQ(list.rowCount(), 1000) << "the next file moves up into the last row";
    EXPECT_EQ(resets.count(), 0);
    store.selectRow(1100);
    trashSelected();
    EXPECT_EQ(list.rowCount(), 1000) << "what lies behind the rows changes none of them";
    EXPECT_EQ(resets.count(), 0);

    store.setSearch(QStringLiteral("1000.png"));
    store.selectRow(0);
    trashSelected();
    EXPECT_EQ(list.rowCount(), 0);
    store.setSearch({});
    EXPECT_EQ(store.filteredCount(), 1197);
    EXPECT_EQ(text(0, FileListModel::NameRole), QStringLiteral("1001.png"));
}

TEST_F(ModelsTest, TheSelectionFollowsItsFile) {
    scan(40);
    store.selectRow(7);
    store.setSearch(QStringLiteral("1007"));
    EXPECT_EQ(list.selectedRow(), 0);
    store.setSearch(QStringLiteral("1008"));
    EXPECT_EQ(list.selectedRow(), -1);
    EXPECT_TRUE(store.hasSelection());
    store.setSearch({});
    EXPECT_EQ(list.selectedRow(), 7);
}

}  // namespace
