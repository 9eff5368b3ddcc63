#include "FolderBrowser/FolderReading.h"
#include "FolderBrowser/TypedPath.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

using Outcome = FolderListing::Outcome;
using Names = std::vector<std::string>;

FolderListing list(const FileURL& url) {
    FolderReading reading(url);
    EXPECT_FALSE(reading.soFar()) << "nothing before it was asked";
    reading.run({});
    return reading.soFar().value_or(FolderListing());
}

Names names(const FolderListing& listing) {
    Names all;
    for (const FolderEntry& folder : listing.folders) {
        all.push_back((folder.isLink ? "-> " : "") + folder.name);
    }
    return all;
}

TEST(FolderListing, ShowsFoldersAndLinksToThemByTheirBytes) {
    const TemporaryFolder tree;
    const std::string longName(255, 'z');
    for (const std::string& folder : Names{"\xff\xfe", "a\nb", longName, "visible"}) {
        tree.folder(folder);
    }
    tree.text("file.txt", "");
    tree.fifo("pipe");
    tree.link("link", tree.path("visible"));
    tree.link("relative", "visible/../visible");
    tree.link("to a file", "file.txt");
    tree.link("nowhere", "gone");
    tree.link("itself", "itself");
    const FolderListing listing = list(tree.url());
    EXPECT_EQ(listing.outcome, Outcome::listed);
    const Names all = names(listing);
    EXPECT_EQ(std::set(all.begin(), all.end()),
              (std::set<std::string>{"-> link", "-> relative", "\xff\xfe", "a\nb", longName, "visible"}));
}

TEST(FolderListing, LeavesOutWhatIsHidden) {
    const TemporaryFolder tree;
    tree.folder(".dot");
    tree.folder("listed");
    tree.folder("shown");
    tree.link("listed link", "shown");
    tree.text(".hidden", "listed\nlisted link\n");
    EXPECT_EQ(names(list(tree.url())), Names{"shown"});
    EXPECT_EQ(list(tree.url(".dot")).outcome, Outcome::listed) << "who asks for it gets it";
}

TEST(FolderListing, SortsAsPeopleDo) {
    const TemporaryFolder tree;
    const Names sorted = {"álbum", "Beta", "Foto 2", "foto 10", "foto 100", "niño", "nube", "ñandú", "Óscar", "zeta"};
    for (const std::string& folder : sorted) {
        tree.folder(folder);
    }
    tree.link("Foto 3", "niño");
    Names expected = sorted;
    expected.insert(expected.begin() + 3, "-> Foto 3");
    // In the alphabet the ñ comes after all of n.
    EXPECT_EQ(names(list(tree.url())), expected);
}

TEST(FolderListing, TellsWhyThereIsNothingToShow) {
    const TemporaryFolder tree;
    tree.text("file", "");
    tree.folder("empty");
    tree.folder("closed");
    tree.link("to a file", "file");
    tree.link("itself", "itself");
    ASSERT_EQ(chmod(tree.path("closed").c_str(), 0100), 0);
    const std::vector<std::pair<const char*, Outcome>> rows = {
        {"empty", Outcome::listed},        {"gone", Outcome::missing},     {"file", Outcome::notFolder},
        {"to a file", Outcome::notFolder}, {"file/x", Outcome::notFolder}, {"itself", Outcome::failed},
    };
    for (const auto& [folder, outcome] : rows) {
        EXPECT_EQ(list(tree.url(folder)).outcome, outcome) << folder;
        EXPECT_TRUE(list(tree.url(folder)).folders.empty()) << folder;
    }
    OrdinaryUser::own(tree.path(""));
    OrdinaryUser::own(tree.path("closed"));
    const OrdinaryUser user;
    EXPECT_EQ(list(tree.url("closed")).outcome, Outcome::notPermitted);
}

TEST(FolderListing, ReadsFoldersOfAnyDepthAndLeavesTheirTimesAlone) {
    const TemporaryFolder tree;
    FileURL deep = tree.url();
    int at = open(deep.path().c_str(), O_PATH | O_DIRECTORY);
    for (int level = 0; level < 25; ++level) {
        const std::string name(200, static_cast<char>('a' + level));
        ASSERT_EQ(mkdirat(at, name.c_str(), 0755), 0);
        const int next = openat(at, name.c_str(), O_PATH | O_DIRECTORY);
        close(at);
        at = next;
        deep = deep.appendingPathComponent(name);
    }
    ASSERT_EQ(mkdirat(at, "end", 0755), 0);
    // Older than the last change: reading it would renew it even where the system is sparing with that.
    const timespec times[] = {{1'000'000, 0}, {2'000'000, 0}};
    ASSERT_EQ(utimensat(at, ".", times, 0), 0);
    EXPECT_EQ(names(list(deep)), Names{"end"});
    struct stat status {};
    ASSERT_EQ(fstatat(at, "", &status, AT_EMPTY_PATH), 0);
    EXPECT_EQ(status.st_atim.tv_sec, 1'000'000);
    close(at);
}

TEST(TypedPath, MeansWhatPeopleTypeAndPaste) {
    const FileURL home("/home/ana");
    const FileURL shown("/srv/datos");
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"/", "/"},
        {"/usr/share/", "/usr/share"},
        {"  /usr/share \n", "/usr/share"},
        {"/usr//./share/../lib", "/usr/lib"},
        {"/../..", "/"},
        {"~", "/home/ana"},
        {"~/Música", "/home/ana/Música"},
        {"~ana", "/srv/datos/~ana"},
        {"fotos/2024", "/srv/datos/fotos/2024"},
        {"..", "/srv"},
        {"file:///home/ana/100%25%20%FF", "/home/ana/100% \xff"},
        {"file://localhost/x/../y", "/y"},
    };
    for (const auto& [text, path] : rows) {
        const std::optional<FileURL> url = typedPath(QString::fromUtf8(text), home, shown);
        ASSERT_TRUE(url) << text;
        EXPECT_EQ(url->path(), path) << text;
    }
    for (const char* text : {"", "   ", "file://elsewhere.example/x", "file:relative"}) {
        EXPECT_FALSE(typedPath(QString::fromUtf8(text), home, shown)) << text;
    }
    EXPECT_FALSE(typedPath(QString(QChar::Null), home, shown));
}

}  // namespace
