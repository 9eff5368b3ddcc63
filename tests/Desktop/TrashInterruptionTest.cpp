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
    bool isCopied = false;    ///< From another file system.
    bool isFirst = false;     ///< There is no Trash yet.
    bool isDiskFull = false;  ///< No note can be written.
    std::size_t nameLength = 8;
};

const Scene scenes[] = {
    {.what = "File"},
    {.what = "FirstFile", .isFirst = true},
    {.what = "Folder", .isFolder = true},
    {.what = "LongName", .nameLength = 255},
    {.what = "CopiedFile", .isCopied = true},
    {.what = "CopiedFolder", .isFolder = true, .isCopied = true},
    {.what = "FileOfAFullDisk", .isDiskFull = true},
};

class TrashInterruption : public TrashTest, public testing::WithParamInterface<Scene> {
protected:
    using Decide = std::function<Interruption(std::size_t, int)>;

    /// Runs the body with a home and another file system in memory, where nothing is slow.
    void onScene(const std::function<void()>& body) {
        if (!canTraceSystemCalls()) {
            GTEST_SKIP() << "no process can be traced here";
        }
        inPrivateMounts([&] {
            fs::create_directories(disk);
            ASSERT_EQ(mount("home", home.c_str(), "tmpfs", 0, "size=4m"), 0);
            ASSERT_EQ(mount("disk", disk.c_str(), "tmpfs", 0, "size=4m"), 0);
            body();
        });
    }

    /// Moves the scene's item, as before any move, in a process of its own.
    TracedRun run(const Decide& decide) {
        for (const fs::path& top : {home, disk}) {
            for (const fs::path& entry : entriesOf(top)) {
                fs::remove_all(entry);
            }
        }
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
        if (scene.isDiskFull) {
            write(home / "filling", std::string(std::size_t{8} << 20U, 'x'));
        }
        before = portraitOf(item);
        const FileURL url(item.string());
        const FileIdentity identity = fileStatus(url)->identity;
        return runTraced(
            [&] {
                const std::optional<TrashError> error = nextMover().move(url, identity);
                return error ? static_cast<int>(*error) + 1 : 0;
            },
            decide);
    }

    /// The calls of a move that nothing interrupts.
    std::vector<int> callsOfMove() {
        return run([](std::size_t, int) { return Interruption(); }).calls;
    }

    /// Fails each system call about files in its turn, or each of the kind `only`.
    void failEachCall(int error, std::optional<int> only = {}) {
        const std::vector<int> calls = callsOfMove();
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (only && calls[at] != *only) {
                continue;
            }
            const TracedRun failed = run([at, error](std::size_t call, int) {
                return Interruption{false, call == at ? error : 0};
            });
            const auto where = testing::Message() << at << ", call " << calls[at] << ", error " << error;
            ASSERT_TRUE(failed.code) << where;
            if (*failed.code == 0) {
                EXPECT_TRUE(isWholeInTrash() && !isThere(item)) << "not moved: " << where;
            } else {
                EXPECT_TRUE(isWholeInPlace()) << "lost: " << where;
                EXPECT_FALSE(isWholeInTrash()) << "moved all the same: " << where;
            }
            EXPECT_EQ(others(), Origins()) << where;
        }
    }

    [[nodiscard]] bool isWholeInPlace() const { return isThere(item) && portraitOf(item) == before; }

    [[nodiscard]] bool isWholeInTrash() const {
        return originsIn(trash).count(item) == 1 && portraitOf(onlyItemIn(trash)) == before;
    }

    /// What else lies in the Trash.
    [[nodiscard]] Origins others() const {
        Origins origins = originsIn(trash);
        origins.erase(item);
        return origins;
    }

    const Scene& scene = GetParam();
    const fs::path item = (scene.isCopied ? disk : folder) / std::string(scene.nameLength, 'n');
    std::string before;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Scenes, TrashInterruption, testing::ValuesIn(scenes),
                         [](const auto& scene) { return std::string(scene.param.what); });

TEST_P(TrashInterruption, KilledAtAnyCallNothingIsLostOrHalf) {
    onScene([this] {
        const std::size_t calls = callsOfMove().size();
        ASSERT_GT(calls, 20U);
        EXPECT_EQ(isWholeInTrash(), !scene.isDiskFull);
        for (std::size_t kill = 0; kill < calls; ++kill) {
            const TracedRun killed = run([kill](std::size_t call, int) { return Interruption{call == kill, 0}; });
            if (killed.code) {
                // One that runs later has less to find out.
                EXPECT_GT(kill, calls * 3 / 4);
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
            if (scene.isDiskFull) {
                continue;
            }
            if (isWholeInPlace() && !isWholeInTrash()) {
                EXPECT_EQ(move(item), std::nullopt) << at;
                EXPECT_TRUE(isWholeInTrash()) << at;
                EXPECT_FALSE(isThere(item)) << at;
            }
            const FileURL later(make("later").string());
            EXPECT_EQ(nextMover().move(later, fileStatus(later)->identity), std::nullopt);
            EXPECT_EQ(originsIn(trash).count("litter"), 0U) << at;
        }
    });
}

TEST_P(TrashInterruption, WhicheverCallFailsTheAnswerIsTrue) {
    onScene([this] {
        for (const int error : {ENOSPC, EIO, EACCES}) {
            failEachCall(error);
        }
        // The file system does not know the flag, or no rename leads there.
        failEachCall(EINVAL, SYS_renameat2);
        failEachCall(EXDEV, SYS_renameat2);
    });
}

TEST_P(TrashInterruption, WhatIsSwappedOnTheWayIsNotTaken) {
    onScene([this] {
        // At each rename and each removal from the item's folder another item gets its name.
        const std::vector<int> calls = callsOfMove();
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (calls[at] != SYS_renameat2 && calls[at] != SYS_linkat && calls[at] != SYS_fsync) {
                continue;
            }
            const fs::path aside = item.parent_path() / "aside";
            const TracedRun swapped = run([&](std::size_t call, int) {
                if (call == at && isThere(item)) {
                    fs::rename(item, aside);
                    write(item, "another");
                }
                return Interruption();
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
