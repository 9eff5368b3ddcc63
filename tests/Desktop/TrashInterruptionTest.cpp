// Every system call of a move: killed before each, each failed in several ways, and races run in between.

#include "Desktop/SystemCalls.h"
#include "Desktop/TrashFixture.h"

#include <sys/syscall.h>

#include <cerrno>
#include <tuple>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

/// Moves a file or a folder, on its file system or by copying it from another one.
class TrashInterruption : public TrashTest, public testing::WithParamInterface<std::tuple<bool, bool>> {
protected:
    /// Runs the body with a home and another file system in memory, where nothing is slow.
    void inMemory(const std::function<void()>& body) {
        onFileSystem("tmpfs", disk, [&] {
            ASSERT_EQ(mount("home", home.c_str(), "tmpfs", 0, nullptr), 0);
            calls = run([](std::size_t) { return 0; }).calls;
            if (calls.empty()) {
                impossibleHere();
            }
            ASSERT_TRUE(isMoved());
            body();
        });
    }

    /// Moves the item, as before any move, in a process of its own.
    TracedRun run(const std::function<int(std::size_t)>& errorOf) {
        std::error_code busy;  // What is mounted can only be emptied.
        fs::remove_all(home, busy);
        fs::remove_all(disk, busy);
        fs::create_directories(folder);
        if (isFolder) {
            // A single file finds no Trash yet.
            fs::create_directories(trash / "files");
            fs::create_directories(trash / "info");
            write(item / "one");
            write(item / "sub/two");
            fs::create_directories(item / "sub/empty");
            fs::create_hard_link(item / "one", item / "sub/again");
            fs::create_symlink("one", item / "link");
        } else {
            write(item);
        }
        before = portraitOf(item);
        return runTraced(
            [this] {
                const std::optional<TrashError> error = moveAnew(item);
                return error ? static_cast<int>(*error) + 1 : 0;
            },
            errorOf);
    }

    [[nodiscard]] bool isWholeInPlace() const { return isThere(item) && portraitOf(item) == before; }

    [[nodiscard]] bool isWholeInTrash() const {
        return originsIn(trash).count(item) == 1 && portraitOf(onlyItemIn(trash)) == before;
    }

    [[nodiscard]] bool isMoved() const { return isWholeInTrash() && !isThere(item); }

    /// What else lies in the Trash.
    [[nodiscard]] Origins others() const {
        Origins origins = originsIn(trash);
        origins.erase(item);
        return origins;
    }

    const bool isFolder = std::get<0>(GetParam());
    const bool isCopied = std::get<1>(GetParam());
    const fs::path item = (isCopied ? disk : folder) / "item";
    std::string before;
    std::vector<int> calls;  ///< Those of a move that nothing interrupts.
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(FoldersAndCopies, TrashInterruption, testing::Combine(testing::Bool(), testing::Bool()));

TEST_P(TrashInterruption, KilledAtAnyCallNothingIsLostOrHalf) {
    inMemory([this] {
        for (std::size_t kill = 0; kill < calls.size(); ++kill) {
            const TracedRun killed = run([kill](std::size_t call) { return call == kill ? killInstead : 0; });
            if (killed.code) {
                // One that runs later has less to find out.
                EXPECT_GT(kill, calls.size() * 3 / 4);
                break;
            }
            const auto at = testing::Message() << kill << ", call " << killed.calls.back();
            EXPECT_TRUE(isWholeInPlace() || isWholeInTrash()) << at;
            for (const std::string& other : others()) {
                // A whole note may lie there already; a copy, or a list of sizes, may be unfinished beside.
                EXPECT_TRUE(other == "no item: " + item.string() || (other == "litter" && (isCopied || isFolder)))
                    << other << ' ' << at;
            }
            if (!isWholeInTrash()) {
                EXPECT_EQ(moveAnew(item), std::nullopt) << at;
                EXPECT_TRUE(isMoved()) << at;
            }
            EXPECT_EQ(moveAnew(make("later")), std::nullopt) << at;
            EXPECT_EQ(originsIn(trash).count("litter"), 0U) << at;
        }
    });
}

TEST_P(TrashInterruption, WhicheverCallFailsTheAnswerIsTrue) {
    inMemory([this] {
        for (const int error : {ENOSPC, EIO, EACCES, EXDEV, EINVAL, ENOSYS, EOPNOTSUPP}) {
            // The file system does not know the rename's flag; EXDEV says that no rename leads there.
            const bool isOfFlag = error == EINVAL || error == ENOSYS || error == EOPNOTSUPP;
            for (std::size_t at = 0; at < calls.size(); ++at) {
                if ((isOfFlag || error == EXDEV) && calls[at] != SYS_renameat2) {
                    continue;
                }
                const TracedRun failed = run([at, error](std::size_t call) { return call == at ? error : 0; });
                const auto where = testing::Message() << at << ", call " << calls[at] << ", error " << error;
                ASSERT_TRUE(failed.code) << where;
                const bool isDone = *failed.code == 0;
                EXPECT_TRUE(isDone || !isOfFlag) << where;
                EXPECT_EQ(isWholeInTrash(), isDone) << where;
                EXPECT_TRUE(isDone ? !isThere(item) : isWholeInPlace()) << where;
                EXPECT_EQ(others(), Origins()) << where;
            }
        }
    });
}

TEST_P(TrashInterruption, WhatIsSwappedOnTheWayIsNotTaken) {
    inMemory([this] {
        // At each rename and each removal from the item's folder another item gets its name.
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (calls[at] != SYS_renameat2 && calls[at] != SYS_linkat && calls[at] != SYS_fsync) {
                continue;
            }
            const fs::path aside = item.parent_path() / "aside";
            const TracedRun swapped = run([&](std::size_t call) {
                if (call == at && isThere(item)) {
                    fs::rename(item, aside);
                    write(item, "another");
                }
                return 0;
            });
            if (isThere(aside)) {
                EXPECT_NE(swapped.code, 0) << at;
                // What was swapped when the removal had begun is in the Trash already.
                EXPECT_TRUE(portraitOf(aside) == before || isWholeInTrash()) << at;
                EXPECT_EQ(contentOf(item), "another") << at;
                EXPECT_EQ(others(), Origins()) << at;
            }
        }
    });
}
