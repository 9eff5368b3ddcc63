#include "Foundation/DirectoryWalk.h"

#include "Foundation/HiddenPlaces.h"
#include "Foundation/OpenPath.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <set>

namespace {

using Names = std::set<std::string>;

/// Keeps the names of files, and lets a test act when a folder is met but not entered yet.
struct Lister final : WalkVisitor {
    void beginFolder(const WalkFolder& /*folder*/) override {}
    void file(std::string_view name, const FileStatus& /*status*/) override { names.emplace(name); }
    void subfolder(WalkFolder& folder) override { onFolder(folder.name); }
    void unreadable() override {}

    Names walk(WalkRoot root) {
        DirectoryWalk({std::move(root)}, [](std::string_view) { return true; }, {}, {}).run({this});
        return names;
    }

    std::function<void(const std::string&)> onFolder = [](const std::string&) {};
    Names names;
};

TEST(DirectoryWalk, FollowsNoLinkThatTakesTheFoldersPlaceOnTheWay) {
    const TemporaryFolder tree;
    tree.text("elsewhere/secret", "");
    for (const char* const file : {"root/a", "root/swapped/b", "root/removed/c", "root/stays/d"}) {
        tree.text(file, "");
    }
    Lister lister;
    lister.onFolder = [&](const std::string& folder) {
        if (folder != "stays") {
            ASSERT_EQ(rename(tree.path("root/" + folder).c_str(), tree.path("old " + folder).c_str()), 0);
        }
        if (folder == "swapped") {
            tree.link("root/swapped", tree.path("elsewhere"));
        }
    };
    EXPECT_EQ(lister.walk({tree.url("root")}), (Names{"a", "d"}));
}

TEST(DirectoryWalk, HidesBothWhatIsListedAndWhatIsExcepted) {
    const TemporaryFolder tree;
    for (const char* const file : {"seen", "listed", "excepted/a", "open/b", "open/deep/c", "open/d"}) {
        tree.text(file, "");
    }
    tree.text(".hidden", "listed\n");
    tree.text("open/.hidden", "d");
    EXPECT_EQ(Lister().walk({tree.url(), {tree.path("excepted"), tree.path("open/deep")}}), (Names{"b", "seen"}));
}

TEST(HiddenPlaces, AreTheSystemsFoldersAndWhatTheKernelMakesUp) {
    std::vector<Mount> mounts(4);
    const std::pair<const char*, const char*> rows[] = {
        {"/jail/proc", "proc"}, {"/jail/sys", "sysfs"}, {"/jail/disk", "ext4"}, {"/auto", "autofs"}};
    for (std::size_t i = 0; i < mounts.size(); ++i) {
        mounts[i].target = rows[i].first;
        mounts[i].type = rows[i].second;
    }
    const auto isHidden = [&](const char* root, const std::string& folder, std::string_view name) {
        const HiddenPlaces places(root, mounts, {});
        const NameSet* const names = places.namesIn(folder);
        return names != nullptr && places.mayHaveNamesIn(folder.size()) && names->contains(name);
    };
    for (const char* const name : {"dev", "proc", "sys", "run", "media", "mnt", "lost+found", "auto"}) {
        EXPECT_TRUE(isHidden("/", "", name)) << name;
        EXPECT_FALSE(isHidden("/", "home", name)) << name;
        EXPECT_FALSE(isHidden("/home", "", name)) << name;
    }
    EXPECT_TRUE(isHidden("/", "jail", "proc"));
    EXPECT_TRUE(isHidden("/jail", "", "sys"));
    EXPECT_FALSE(isHidden("/jail", "", "disk"));
    EXPECT_FALSE(isHidden("/jail/proc", "", "proc")) << "where the walk begins";
    EXPECT_FALSE(isHidden("/", "", "home"));
}

TEST(OpenPath, FollowsNoLinkAnywhereWhereNoneIsWanted) {
    const TemporaryFolder tree;
    tree.folder("folder/inside");
    tree.link("link", "folder");
    const Descriptor base(open(tree.path().c_str(), O_PATH | O_CLOEXEC));
    const std::string away = "link" + std::string(5000, '/') + "inside";
    for (const std::string& path : {std::string("link"), std::string("link/inside"), away}) {
        EXPECT_TRUE(openPathAt(base.number(), path, O_PATH | O_DIRECTORY).isOpen()) << path.size();
        EXPECT_FALSE(openPathAt(base.number(), path, O_PATH | O_DIRECTORY | O_NOFOLLOW).isOpen()) << path.size();
    }
    EXPECT_TRUE(openPathAt(base.number(), "folder/inside", O_PATH | O_DIRECTORY | O_NOFOLLOW).isOpen());
}

}  // namespace
