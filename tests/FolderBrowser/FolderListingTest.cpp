#include "FolderBrowser/FolderReading.h"
#include "FolderBrowser/TypedPath.h"
#include "support/OrdinaryUser.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace Qt::StringLiterals;

using Outcome = FolderListing::Outcome;
using Names = std::vector<std::string>;

FolderListing list(const FileURL& url) {
    FolderReading reading(url);
    EXPECT_FALSE(reading.soFar()) << "nothing before it was asked";
    reading.run({});
    return reading.soFar().value_or(FolderListing());
}

Names names(const FileURL& url) {
    Names all;
    for (const FolderEntry& folder : list(url).folders) {
        all.push_back((folder.isLink ? "-> " : "") + folder.name);
    }
    return all;
}

TEST(FolderListing, ShowsFoldersAndLinksToThemByTheirBytes) {
    const TemporaryFolder tree;
    Names shown{"\xff\xfe", "a\nb", std::string(255, 'z'), "visible"};
    for (const std::string& folder : shown) {
        tree.folder(folder);
    }
    tree.folder(".dot");
    tree.folder("listed");
    tree.text(".hidden", "listed\nlisted link\n");
    tree.fifo("pipe");
    const std::pair<const char*, const char*> links[] = {
        {"link", "visible"},  {"relative", "visible/../visible"}, {"to a file", ".hidden"}, {"nowhere", "gone"},
        {"itself", "itself"}, {"listed link", "visible"},
    };
    for (const auto& [link, target] : links) {
        tree.link(link, target);
    }
    shown.insert(shown.end(), {"-> link", "-> relative"});
    Names all = names(tree.url());
    std::sort(shown.begin(), shown.end());
    std::sort(all.begin(), all.end());
    EXPECT_EQ(all, shown);
    EXPECT_EQ(list(tree.url(".dot")).outcome, Outcome::listed) << "who asks for it gets it";
}

TEST(FolderListing, SortsAsPeopleDo) {
    const TemporaryFolder tree;
    // In the alphabet the ñ comes after all of n.
    const Names sorted = {"álbum", "Beta", "Foto 2", "foto 10", "foto 100", "niño", "nube", "ñandú", "Óscar", "zeta"};
    for (const std::string& folder : sorted) {
        tree.folder(folder);
    }
    EXPECT_EQ(names(tree.url()), sorted);
}

TEST(FolderListing, TellsWhyThereIsNothingToShow) {
    const TemporaryFolder tree;
    tree.text("file", "");
    tree.folder("empty");
    tree.folder("closed");
    tree.link("to a file", "file");
    tree.link("itself", "itself");
    ASSERT_EQ(chmod(tree.path("closed").c_str(), 0100), 0);
    for (const char* const folder : {"", "closed"}) {
        OrdinaryUser::own(tree.path(folder));
    }
    const OrdinaryUser user;
    const std::pair<const char*, Outcome> rows[] = {
        {"empty", Outcome::listed},        {"gone", Outcome::missing},     {"file", Outcome::notFolder},
        {"to a file", Outcome::notFolder}, {"file/x", Outcome::notFolder}, {"itself", Outcome::failed},
        {"closed", Outcome::notPermitted},
    };
    for (const auto& [folder, outcome] : rows) {
        EXPECT_EQ(list(tree.url(folder)).outcome, outcome) << folder;
        EXPECT_TRUE(list(tree.url(folder)).folders.empty()) << folder;
    }
}

TEST(FolderListing, ReadsFoldersOfAnyDepthAndLeavesTheirTimesAlone) {
    const TemporaryFolder tree;
    EXPECT_EQ(names(FileURL(tree.deepFolder("deep")).deletingLastPathComponent()), Names{std::string(200, 'd')});

    // Older than the last change: reading it would renew it even where the system is sparing with that.
    const timespec times[] = {{1'000'000, 0}, {2'000'000, 0}};
    ASSERT_EQ(utimensat(AT_FDCWD, tree.path().c_str(), times, 0), 0);
    EXPECT_EQ(names(tree.url()), Names{"deep"});
    struct stat status {};
    ASSERT_EQ(stat(tree.path().c_str(), &status), 0);
    EXPECT_EQ(status.st_atim.tv_sec, 1'000'000);
}

TEST(TypedPath, MeansWhatPeopleTypeAndPaste) {
    const std::pair<QString, const char*> rows[] = {
        {u"/"_s, "/"},
        {u"  /usr/share/ \n"_s, "/usr/share"},
        {u"/usr//./share/../lib"_s, "/usr/lib"},
        {u"/../.."_s, "/"},
        {u"~"_s, "/home/ana"},
        {u"~/Música"_s, "/home/ana/Música"},
        {u"~ana"_s, "/srv/datos/~ana"},
        {u"fotos/2024"_s, "/srv/datos/fotos/2024"},
        {u".."_s, "/srv"},
        {u"file:///home/ana/100%25%20%FF"_s, "/home/ana/100% \xff"},
        {u"file://localhost/x/../y"_s, "/y"},
        {u"   "_s, nullptr},
        {u"file://elsewhere.example/x"_s, nullptr},
        {u"file:relative"_s, nullptr},
        {QString(QChar::Null), nullptr},
    };
    for (const auto& [text, path] : rows) {
        EXPECT_EQ(typedPath(text, FileURL("/home/ana"), FileURL("/srv/datos")),
                  path == nullptr ? std::nullopt : std::optional(FileURL(path)))
            << qPrintable(text);
    }
}

}  // namespace
