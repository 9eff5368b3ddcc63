#include "JunkCleaner/JunkStore.h"

#include "Foundation/Threads.h"
#include "JunkTree.h"
#include "support/WaitUntil.h"

#include <gtest/gtest.h>

#include <atomic>
#include <semaphore>
#include <thread>

namespace {

class JunkStoreTest : public testing::Test, protected JunkTree {
protected:
    JunkStoreTest() {
        folders.folders = paths;
        for (int i = 1; i <= 10; ++i) {
            tree.file("home/.cache/app" + std::to_string(i) + "/a", i * 4096);
        }
        tree.file("home/.config/Olvidado/a", 100 * 4096);
    }

    void find() {
        store->scan();
        ASSERT_TRUE(waitUntil([this] { return !store->isScanning(); }));
        ASSERT_EQ(store->count(), 11);
    }

    [[nodiscard]] FileURL cache(int i) const { return tree.url("home/.cache/app" + std::to_string(i)); }

    void begin() {
        find();
        store->cleanSelected();
        std::exchange(dialogs.confirmed, nullptr)(true);
    }

    void answer(bool confirmed) {
        ASSERT_TRUE(dialogs.confirmed);
        std::exchange(dialogs.confirmed, nullptr)(confirmed);
        ASSERT_TRUE(waitUntil([this] { return !store->isCleaning(); }));
    }

    const FileURL forgotten = tree.url("home/.config/Olvidado");
    FakeDialogs dialogs;
    FakeTrash trash;
    FakeFileManager fileManager;
    FakeUserFolders folders;
    std::unique_ptr<JunkStore> store =
        std::make_unique<JunkStore>(JunkStore::Services{dialogs, trash, fileManager, folders, applications});
};

TEST_F(JunkStoreTest, TicksWhatIsSafe) {
    find();
    EXPECT_EQ(store->items().front().url, forgotten);
    EXPECT_EQ(store->safeCount(), 10);
    for (const int row : {0, 1, 99}) {
        store->toggleRow(row);
    }
    EXPECT_EQ(store->selectedSize(), (55 - 10 + 100) * 4096);
    store->revealRow(0);
    EXPECT_EQ(fileManager.revealed, std::vector{forgotten});
    store->selectSafe();
    EXPECT_EQ(store->selectedSize(), 55 * 4096);

    store->toggleRow(0);
    store->scan();
    EXPECT_EQ(store->count(), 0) << "at once";
    EXPECT_TRUE(store->selected().empty());
    ASSERT_TRUE(waitUntil([this] { return !store->isScanning(); }));
    EXPECT_EQ(store->selected().size(), 10U);
}

TEST_F(JunkStoreTest, AsksBeforeItCleans) {
    store->cleanSelected();
    EXPECT_FALSE(dialogs.confirmed) << "nothing is ticked, nothing is asked";
    find();
    store->toggleRow(0);
    store->toggleRow(1);
    store->cleanAllSafe();
    EXPECT_EQ(dialogs.lastQuestion.value().message, QStringLiteral("¿Mover 10 elementos a la Papelera?"));
    EXPECT_EQ(dialogs.lastQuestion->informativeText,
              QStringLiteral("Liberarás aproximadamente 225 KB. Podrás recuperarlos desde la Papelera."));
    answer(false);
    EXPECT_TRUE(trash.moved.empty());
    EXPECT_EQ(store->message(), std::nullopt);
    EXPECT_FALSE(store->selected().contains(forgotten)) << "unticked before the question";

    store->cleanSelected();
    store->toggleRow(0);  // What is ticked after the question was asked is not in it.
    answer(true);
    EXPECT_EQ(trash.moved.size(), 10U);
    EXPECT_EQ(trash.moved.front(), cache(10)) << "in the order of the list";
    EXPECT_EQ(store->count(), 1);
    EXPECT_EQ(store->selected(), JunkStore::Selection{forgotten});
    EXPECT_EQ(store->message(), QStringLiteral("Limpieza completada."));
}

TEST_F(JunkStoreTest, KeepsWhatCouldNotBeMoved) {
    find();
    constexpr auto noPermission = TrashError::noPermission;
    trash.refused = {{cache(2), noPermission}, {cache(5), TrashError::gone}, {cache(9), noPermission}};
    store->cleanSelected();
    std::vector<int> steps;
    QObject::connect(store.get(), &JunkStore::cleaningChanged, [&] { steps.push_back(store->cleanedCount()); });
    answer(true);
    EXPECT_EQ(steps, (std::vector<int>{0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(store->count(), 4);
    EXPECT_EQ(store->selected(), (JunkStore::Selection{cache(2), cache(5), cache(9)}));
    EXPECT_EQ(store->message(), QStringLiteral("Limpieza parcial: 3 elementos no se pudieron mover."));
    EXPECT_EQ(store->messageReasons(), QStringLiteral("No tienes permiso: 2\nYa no existe: 1"));
    store->clearMessage();
    EXPECT_EQ(store->messageText() + store->messageReasons(), QString());
}

TEST_F(JunkStoreTest, MovesOneAfterTheOtherAndNeverOnTheMainThread) {
    std::atomic<int> running = 0;
    std::atomic<bool> isOrderly = true;
    trash.onMove = [&, mainThread = std::this_thread::get_id()](const FileURL&) {
        isOrderly = isOrderly && ++running == 1 && std::this_thread::get_id() != mainThread;
        std::this_thread::yield();
        --running;
    };
    begin();
    store->cleanSelected();
    EXPECT_FALSE(dialogs.confirmed) << "nor is a second cleaning begun";
    ASSERT_TRUE(waitUntil([&] { return !store->isCleaning(); }));
    EXPECT_TRUE(isOrderly);
    EXPECT_EQ(trash.moved.size(), 10U);
}

TEST_F(JunkStoreTest, EndsWithoutHarmWhileItWorks) {
    std::atomic<bool> isThird = false;
    std::binary_semaphore mayGoOn(0);
    trash.onMove = [&, moves = 0](const FileURL&) mutable {
        if (++moves == 3) {
            isThird = true;
            mayGoOn.acquire();
        }
    };
    begin();
    ASSERT_TRUE(waitUntil([&] { return isThird.load(); }));
    store->scan();
    store.reset();
    mayGoOn.release();
    ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    QCoreApplication::processEvents();
    ASSERT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    EXPECT_EQ(trash.moved.size(), 3U) << "the item that was being moved, and none after it";
}

}  // namespace
