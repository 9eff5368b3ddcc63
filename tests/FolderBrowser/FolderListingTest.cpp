#include "FolderBrowser/FolderReading.h"
#include "FolderBrowser/TypedPath.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using namespace Qt::StringLiterals;

using Outcome = FolderListing::Outcome;
using Names = std::vector<std::string>;

FolderListing list(const FileURL& url) {
    FolderReading reading(url);
    reading.run({});
    return reading.soFar().value();
}

Names names(const FileURL& url) {
    Names all;
    for (const FolderEntry& folder : list(url).folders) {
        all.push_back((folder.isLink ? "-> " : "") + folder.name);
    }
    return all;
}

TEST(FolderListing, ShowsFoldersAndLinksToThemInTheOrderOfTheAlphabet) {
    const TemporaryFolder tree;
    // The ñ comes after all of n.
    Names shown = {"álbum", "Beta", "Foto 2", "foto 10", "foto 100", "niño", "nube", "ñandú", "Óscar"};
    shown.emplace_back(255, 'z');
    for (const std::string& folder : shown) {
        tree.folder(folder);
    }
    tree.folder(".dot");
    tree.folder("listed");
    tree.text(".hidden", "listed\nlisted link\n");
    tree.fifo("pipe");
    for (const auto& [link, target] :
         {std::pair("link", "Beta"), {"listed link", "Beta"}, {"to a file", ".hidden"}, {"nowhere", "gone"}}) {
        tree.link(link, target);
    }
    shown.insert(shown.begin() + 5, "-> link");
    EXPECT_EQ(names(tree.url()), shown);
}

TEST(FolderListing, TellsWhyThereIsNothingToShow) {
    const TemporaryFolder tree;
    tree.text("file", "");
    tree.folder("empty");
    tree.link("itself", "itself");
    const std::pair<const char*, Outcome> rows[] = {
        {"empty", Outcome::listed}, {"file", Outcome::notFolder}, {"itself", Outcome::failed}};
    for (const auto& [folder, outcome] : rows) {
        EXPECT_EQ(list(tree.url(folder)).outcome, outcome) << folder;
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
    const std::pair<const char*, const char*> rows[] = {
        {"  /usr/share/ \n", "/usr/share"},
        {"/usr//./share/../lib", "/usr/lib"},
        {"/../..", "/"},
        {"~", "/home/ana"},
        {"~/Música", "/home/ana/Música"},
        {"~ana", "/srv/datos/~ana"},
        {"fotos/2024", "/srv/datos/fotos/2024"},
        {"file:///home/ana/100%25%20%FF", "/home/ana/100% \xff"},
        {"file://localhost/x/../y", "/y"},
    };
    const FileURL home("/home/ana");
    const FileURL shown("/srv/datos");
    for (const auto& [text, path] : rows) {
        EXPECT_EQ(typedPath(QString::fromUtf8(text), home, shown), FileURL(path)) << text;
    }
    for (const QString& text : {u"   "_s, u"file:relative"_s, u"file://elsewhere.example/x"_s, QString(QChar::Null)}) {
        EXPECT_EQ(typedPath(text, home, shown), std::nullopt) << qPrintable(text);
    }
}

}  // namespace
