// Every system call of a move: killed before each, each failed in several ways, and races run in between.

#include "Desktop/SystemCalls.h"
#include "Desktop/TrashFixture.h"

#include <sys/syscall.h>

#include <cerrno>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

/// Something to move, and where.
struct Scene {
    const char* what;
    bool isFolder = false;
    bool isCopied = false;  ///< From another file system.
    bool isFirst = false;   ///< There is no Trash yet.
};

const Scene scenes[] = {
    {.what = "FirstFile", .isFirst = true},
    {.what = "Folder", .isFolder = true},
    {.what = "CopiedFile", .isCopied = true},
    {.what = "CopiedFolder", .isFolder = true, .isCopied = true},
};

class TrashInterruption : public TrashTest, public testing::WithParamInterface<Scene> {
protected:
    /// Runs the body with a home and another file system in memory, where nothing is slow.
    void onScene(const std::function<void()>& body) {
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

    /// Moves the scene's item, as before any move, in a process of its own.
    TracedRun run(const std::function<int(std::size_t)>& errorOf) {
        std::error_code busy;  // What is mounted can only be emptied.
        fs::remove_all(home, busy);
        fs::remove_all(disk, busy);
        if (!scene.isFirst) {
            fs::create_directories(trash / "files");
            fs::create_directories(trash / "info");
        }
        fs::create_directories(folder);
        if (scene.isFolder) {
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

    const Scene& scene = GetParam();
    const fs::path item = (scene.isCopied ? disk : folder) / "item";
    std::string before;
    std::vector<int> calls;  ///< Those of a move that nothing interrupts.
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Scenes, TrashInterruption, testing::ValuesIn(scenes),
                         [](const auto& scene) { return std::string(scene.param.what); });

TEST_P(TrashInterruption, KilledAtAnyCallNothingIsLostOrHalf) {
    onScene([this] {
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
                EXPECT_TRUE(other == "no item: " + item.string() ||
                            (other == "litter" && (scene.isCopied || scene.isFolder)))
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
    onScene([this] {
        for (const int error : {ENOSPC, EIO, EACCES, EINVAL, EXDEV}) {
            for (std::size_t at = 0; at < calls.size(); ++at) {
                // The last two say that the file system does not know a rename's flag, or that no rename leads there.
                if ((error == EINVAL || error == EXDEV) && calls[at] != SYS_renameat2) {
                    continue;
                }
                const TracedRun failed = run([at, error](std::size_t call) { return call == at ? error : 0; });
                const auto where = testing::Message() << at << ", call " << calls[at] << ", error " << error;
                ASSERT_TRUE(failed.code) << where;
                const bool isDone = *failed.code == 0;
                EXPECT_EQ(isWholeInTrash(), isDone) << where;
                EXPECT_TRUE(isDone ? !isThere(item) : isWholeInPlace()) << where;
                EXPECT_EQ(others(), Origins()) << where;
            }
        }
    });
}

TEST_P(TrashInterruption, WhatIsSwappedOnTheWayIsNotTaken) {
    onScene([this] {
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
