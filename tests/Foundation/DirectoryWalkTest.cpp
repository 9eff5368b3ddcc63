#include "Foundation/DirectoryWalk.h"

#include "Foundation/HiddenPlaces.h"
#include "Foundation/OpenPath.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

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

TEST(DirectoryWalk, StaysInItsFolderWhateverTakesThePlaceOfThatOrOfOneBelow) {
    const TemporaryFolder tree;
    for (const char* const file : {"elsewhere/secret", "root/a", "root/swapped/b", "root/removed/c", "root/stays/d"}) {
        tree.text(file, "");
    }
    const auto move = [&](const std::string& from, const std::string& to) {
        return rename(tree.path(from).c_str(), tree.path(to).c_str()) == 0;
    };
    Lister lister;
    lister.onFolder = [&](const std::string& folder) {
        (void)move("root", "renamed");  // When the first one is met.
        EXPECT_TRUE(folder == "stays" || move("renamed/" + folder, "old " + folder));
        if (folder == "swapped") {
            tree.link("renamed/swapped", tree.path("elsewhere"));
        }
    };
    EXPECT_EQ(lister.walk({tree.url("root")}), (Names{"a", "d"}));
}

TEST(DirectoryWalk, HidesBothWhatIsListedAndWhatIsExcepted) {
    const TemporaryFolder tree;
    for (const char* const file : {"seen", "listed", "excepted/a", "open/b", "open/deep/c"}) {
        tree.text(file, "");
    }
    tree.text(".hidden", "listed");
    EXPECT_EQ(Lister().walk({tree.url(), {tree.path("excepted"), tree.path("open/deep")}}), (Names{"b", "seen"}));
}

TEST(HiddenPlaces, AreTheSystemsFoldersAndWhatTheKernelMakesUp) {
    std::vector<Mount> mounts;
    for (const auto& [target, type] : {std::pair("/jail/proc", "proc"), {"/jail/disk", "ext4"}, {"/auto", "autofs"}}) {
        mounts.emplace_back().target = target;
        mounts.back().type = type;
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
    EXPECT_TRUE(isHidden("/jail", "", "proc"));
    EXPECT_FALSE(isHidden("/jail", "", "disk"));
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
