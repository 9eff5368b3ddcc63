// Every system call of a move: killed before each, each failed in several ways, and races run in between.

#include "Desktop/SystemCalls.h"
#include "Desktop/TrashFixture.h"
#include "support/NamedCase.h"

#include <sys/stat.h>
#include <sys/syscall.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <map>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

/// Something to move, and where.
struct Scene {
    const char* what;
    bool isFolder;
    bool isCopied;    ///< From another file system.
    bool isFirst;     ///< There is no Trash yet.
    bool isDiskFull;  ///< No note can be written.
    std::size_t nameLength;
};

constexpr std::array scenes{
    Scene{"a file", false, false, false, false, 8},
    Scene{"the first file", false, false, true, false, 8},
    Scene{"a folder", true, false, false, false, 8},
    Scene{"a long name", false, false, false, false, 255},
    Scene{"a copied file", false, true, false, false, 8},
    Scene{"a copied folder", true, true, false, false, 8},
    Scene{"a file of a full disk", false, false, false, true, 8},
};

std::ostream& operator<<(std::ostream& out, const Scene& scene) {
    return out << scene.what;
}

class TrashInterruption : public TrashTest, public testing::WithParamInterface<Scene> {
protected:
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

    /// As before any move.
    void arrange() {
        for (const fs::path& top : {home, disk}) {
            for (const fs::directory_entry& entry : fs::directory_iterator(top)) {
                fs::remove_all(entry.path());
            }
        }
        fs::create_directories(folder);
        const Scene& scene = GetParam();
        if (!scene.isFirst) {
            fs::create_directories(trash / "files");
            fs::create_directories(trash / "info");
        }
        item = (scene.isCopied ? disk : folder) / std::string(scene.nameLength, 'n');
        if (scene.isFolder) {
            fs::create_directories(item / "sub" / "empty");
            std::ofstream(item / "one") << "one";
            std::ofstream(item / "sub" / "two") << "two";
            fs::create_hard_link(item / "one", item / "sub" / "again");
            fs::create_symlink("one", item / "link");
        } else {
            std::ofstream(item) << "content";
        }
        if (scene.isDiskFull) {
            std::ofstream(home / "filling") << std::string(std::size_t{8} << 20U, 'x');
        }
        before = portraitOf(item);
    }

    TracedRun run(const std::function<Interruption(std::size_t, int)>& decide) const {
        const FileURL url(item.string());
        const FileIdentity identity = fileStatus(url)->identity;
        return runTraced(
            [&] {
                FreedesktopTrash program({FileURL(home.string()), FileURL((home / ".local/share").string())});
                const std::optional<TrashError> error = program.move(url, identity);
                return error ? static_cast<int>(*error) + 1 : 0;
            },
            decide);
    }

    /// Fails each system call about files in its turn, or each of the kind `only`.
    void failEachCall(int error, std::optional<int> only = {}) {
        arrange();
        const std::vector<int> calls = run([](std::size_t, int) { return Interruption(); }).calls;
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (only && calls[at] != *only) {
                continue;
            }
            arrange();
            const TracedRun failed = run([at, error](std::size_t call, int) {
                return Interruption{false, call == at ? error : 0};
            });
            const std::string where = std::to_string(at) + ", call " + std::to_string(calls[at]);
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
        const Origins origins = isThere(trash) ? originsIn(trash) : Origins();
        return origins.count(item.string()) == 1 && portraitOf(onlyItemIn(trash)) == before;
    }

    /// What else lies in the Trash.
    [[nodiscard]] Origins others() const {
        Origins origins = isThere(trash) ? originsIn(trash) : Origins();
        origins.erase(item.string());
        return origins;
    }

    fs::path disk = root.path("disk");
    fs::path item;
    std::string before;
};

}  // namespace

INSTANTIATE_TEST_SUITE_P(Scenes, TrashInterruption, testing::ValuesIn(scenes), caseName<Scene>);

TEST_P(TrashInterruption, KilledAtAnyCallNothingIsLostOrHalf) {
    onScene([this] {
        const Scene& scene = GetParam();
        arrange();
        const std::size_t calls = run([](std::size_t, int) { return Interruption(); }).calls.size();
        ASSERT_GT(calls, 20U);
        EXPECT_EQ(isWholeInTrash(), !scene.isDiskFull);
        for (std::size_t kill = 0; kill < calls; ++kill) {
            arrange();
            const TracedRun killed = run([kill](std::size_t call, int) { return Interruption{call == kill, 0}; });
            if (killed.code) {
                // One that runs later has less to find out.
                EXPECT_GT(kill, calls * 3 / 4);
                break;
            }
            const std::string at = std::to_string(kill) + ", call " + std::to_string(killed.calls.back());
            EXPECT_TRUE(isWholeInPlace() || isWholeInTrash()) << at;
            for (const std::string& other : others()) {
                // A whole note may lie there already; a copy, or a list of sizes, may be unfinished beside.
                EXPECT_TRUE(other == "no item: " + item.string() ||
                            (other == "litter" && (scene.isCopied || scene.isFolder)))
                    << other << ' ' << at;
            }
            if (isWholeInPlace() && !isWholeInTrash() && !scene.isDiskFull) {
                EXPECT_EQ(move(item), std::nullopt) << at;
                EXPECT_TRUE(isWholeInTrash()) << at;
                EXPECT_FALSE(isThere(item)) << at;
            }
            if (!scene.isDiskFull) {
                FreedesktopTrash later({FileURL(home.string()), FileURL((home / ".local/share").string())});
                const FileURL url = make("later");
                EXPECT_EQ(later.move(url, fileStatus(url)->identity), std::nullopt);
                EXPECT_EQ(originsIn(trash).count("litter"), 0U) << at;
            }
        }
    });
}

TEST_P(TrashInterruption, WithoutSpaceAnywhereTheAnswerIsTrue) {
    onScene([this] { failEachCall(ENOSPC); });
}

TEST_P(TrashInterruption, OnABrokenDiskTheAnswerIsTrue) {
    onScene([this] { failEachCall(EIO); });
}

TEST_P(TrashInterruption, WhereAnythingIsForbiddenTheAnswerIsTrue) {
    onScene([this] { failEachCall(EACCES); });
}

TEST_P(TrashInterruption, WhereRenamesAreNotWhatTheyWereTheAnswerIsTrue) {
    onScene([this] {
        // The file system does not know the flag, or no rename leads there.
        failEachCall(EINVAL, SYS_renameat2);
        failEachCall(EXDEV, SYS_renameat2);
    });
}

TEST_P(TrashInterruption, WhatIsSwappedOnTheWayIsNotTaken) {
    onScene([this] {
        // At each rename and each removal from the item's folder another item gets its name.
        arrange();
        const std::vector<int> calls = run([](std::size_t, int) { return Interruption(); }).calls;
        for (std::size_t at = 0; at < calls.size(); ++at) {
            if (calls[at] != SYS_renameat2 && calls[at] != SYS_linkat && calls[at] != SYS_fsync) {
                continue;
            }
            arrange();
            const fs::path aside = item.parent_path() / "aside";
            const TracedRun swapped = run([&](std::size_t call, int) {
                if (call == at && isThere(item)) {
                    fs::rename(item, aside);
                    std::ofstream(item) << "another";
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
