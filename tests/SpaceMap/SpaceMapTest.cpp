#include "SpaceMap/BubbleLayout.h"
#include "SpaceMap/BubbleMapModel.h"
#include "SpaceMap/FileListModel.h"
#include "SpaceMap/StatusTexts.h"
#include "SpaceScan/ScanFixture.h"

#include <QtTest/QAbstractItemModelTester>
#include <QtTest/QSignalSpy>

#include <algorithm>
#include <array>
#include <tuple>

namespace {

TEST(BubbleLayout, AreasFollowSizesWithinTheirLimits) {
    const std::vector<std::int64_t> sizes{4'000'000, 1'000'000, 0};
    // A narrow pane caps them, but not below the least that can be hit.
    const std::pair<double, std::array<double, 3>> rows[] = {
        {1000, {152, 102, 52}}, {300, {102, 102, 52}}, {100, {42, 42, 42}}};
    for (const auto& [width, diameters] : rows) {
        const auto bubbles = bubbleLayout(sizes, width, 800);
        for (std::size_t index = 0; index < sizes.size(); ++index) {
            EXPECT_DOUBLE_EQ(bubbles[index].diameter, diameters.at(index)) << width;
        }
    }
    EXPECT_DOUBLE_EQ(bubbleLayout(std::vector<std::int64_t>{0}, 1000, 800)[0].diameter, 52);
}

TEST(BubbleLayout, ArrowKeysReachEveryBubbleAndGoInTheirDirection) {
    using enum Direction;
    const std::tuple<Direction, int, int> directions[] = {{left, -1, 0}, {right, 1, 0}, {up, 0, -1}, {down, 0, 1}};
    const auto bubbles = bubbleLayout(std::vector<std::int64_t>(14, 100), 600, 400);
    std::vector<std::size_t> reached{0};
    for (std::size_t at = 0; at < reached.size(); ++at) {
        const Bubble from = bubbles[reached[at]];
        for (const auto& [direction, x, y] : directions) {
            const std::size_t to = nearestBubble(bubbles, reached[at], direction);
            EXPECT_TRUE(to == reached[at] || (bubbles[to].x - from.x) * x + (bubbles[to].y - from.y) * y > 0);
            if (std::find(reached.begin(), reached.end(), to) == reached.end()) {
                reached.push_back(to);
            }
        }
    }
    EXPECT_EQ(reached.size(), 14U);
    // Level with it rather than nearer but aside.
    const std::vector<Bubble> few{{0, 0, 42}, {30, 0, 42}, {15, 20, 42}};
    EXPECT_EQ(nearestBubble(few, 0, right), 1U);
    EXPECT_EQ(nearestBubble(few, 1, right), 1U) << "none there";
}

class ModelsTest : public StoreFixture {
protected:
    /// Scans files with numbers as names, the first thirty of which differ in size.
    void scanNumbered(int count) {
        for (int i = 0; i < count; ++i) {
            tree.file("folder/" + std::to_string(1000 + i) + ".png", i < 30 ? (100 - i) * 4096 : 0);
        }
        scanAndWait();
        list.setStore(&store);
        map.setArea({600, 400});
        map.setStore(&store);
    }

    [[nodiscard]] std::string text(int row, FileListModel::Role role) const {
        return list.data(list.index(row), role).toString().toStdString();
    }

    FileListModel list;
    BubbleMapModel map;
    const QAbstractItemModelTester tester{&list, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ModelsTest, ShowAThousandRowsAndFourteenBubblesOfWhatIsFiltered) {
    scanNumbered(1500);
    EXPECT_EQ(list.rowCount(), 1000);
    EXPECT_EQ(text(999, FileListModel::NumberRole), "1000");
    EXPECT_EQ(text(0, FileListModel::NameRole), "1000.png");
    EXPECT_EQ(text(0, FileListModel::FolderRole), "folder");
    EXPECT_EQ(text(0, FileListModel::SizeTextRole), "410 KB");
    EXPECT_EQ(text(0, FileListModel::IconRole), "photo.fill");
    EXPECT_EQ(map.count(), 14);
    EXPECT_EQ(map.data(map.index(0), BubbleMapModel::CenterXRole).toDouble(), 300);
    EXPECT_EQ(map.data(map.index(0), BubbleMapModel::PathRole).toString().toStdString(), tree.path("folder/1000.png"));

    // The selection follows its file.
    store.selectRow(2);
    store.setSearch(QStringLiteral("1002"));
    EXPECT_EQ(list.rowCount(), 1);
    EXPECT_EQ(list.selectedRow(), 0);
    EXPECT_EQ(map.count(), 1);
    store.setCategory(FileCategory::videos);
    EXPECT_EQ(list.rowCount(), 0);
    EXPECT_EQ(list.selectedRow(), -1);
    EXPECT_EQ(map.count(), 0);
    store.setCategory(FileCategory::all);
    store.setSearch({});
    EXPECT_EQ(list.selectedRow(), 2);
}

TEST_F(ModelsTest, ATrashedFileLeavesItsRowAlone) {
    scanNumbered(1200);
    const QSignalSpy removals(&list, &QAbstractItemModel::rowsRemoved);
    store.selectRow(5);
    trashSelected();
    EXPECT_EQ(list.selectedRow(), -1);
    EXPECT_EQ(text(5, FileListModel::NameRole), "1006.png");
    EXPECT_EQ(text(5, FileListModel::NumberRole), "6");
    EXPECT_EQ(list.rowCount(), 1000) << "the next file moves up into the last row";
    store.selectRow(1100);
    trashSelected();
    EXPECT_EQ(list.rowCount(), 1000) << "what lies behind the rows changes none of them";
    EXPECT_EQ(removals.count(), 1) << "no other row was touched";

    store.setSearch(QStringLiteral("1000.png"));
    store.selectRow(0);
    trashSelected();
    EXPECT_EQ(list.rowCount(), 0);
    store.setSearch({});
    EXPECT_EQ(text(0, FileListModel::NameRole), "1001.png");
}

TEST(StatusTexts, SayHowItStands) {
    EXPECT_EQ(StatusTexts::analysis(true, 12'345, 7), QStringLiteral("Analizando… 12.345 archivos"));
    EXPECT_EQ(StatusTexts::moving(0), QStringLiteral("Moviendo a la papelera… 0%"));
}

}  // namespace
