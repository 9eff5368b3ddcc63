#include "Desktop/GioTrash.h"
#include "Desktop/PrivateMounts.h"
#include "Desktop/TrashedItem.h"
#include "support/TemporaryFolder.h"

#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace fs = std::filesystem;

namespace {

std::string contentOf(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string decoded(const std::string& text) {
    std::string bytes;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%') {
            bytes += static_cast<char>(std::stoi(text.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            bytes += text[i];
        }
    }
    return bytes;
}

bool isThere(const fs::path& path) {
    return fs::symlink_status(path).type() != fs::file_type::not_found;
}

/// Where the notes in a Trash folder say that the items came from, as a program that restores them would read it. An
/// item without a note, a note without an item and a note that lacks something count as "broken".
std::multiset<std::string> originsIn(const fs::path& trash) {
    std::multiset<std::string> origins;
    const fs::path files = trash / "files";
    for (const fs::directory_entry& item : fs::directory_iterator(files)) {
        if (!isThere(trash / "info" / (item.path().filename().string() + ".trashinfo"))) {
            origins.insert("broken");
        }
    }
    for (const fs::directory_entry& entry : fs::directory_iterator(trash / "info")) {
        const std::string note = contentOf(entry.path());
        const size_t path = note.find("\nPath=");
        const size_t date = note.find("\nDeletionDate=20");
        const bool complete = note.starts_with("[Trash Info]\n") && path != std::string::npos &&
                              date != std::string::npos && isThere(files / entry.path().stem());
        origins.insert(complete ? decoded(note.substr(path + 6, note.find('\n', path + 1) - path - 6)) : "broken");
    }
    return origins;
}

class TrashTest : public testing::Test {
protected:
    static void SetUpTestSuite() { setenv("GIO_USE_VFS", "local", 1); }

    TrashTest() : home(getenv("HOME")), trash(fs::path(getenv("XDG_DATA_HOME")) / "Trash") {
        fs::remove_all(trash);
        fs::remove_all(home / "folder");
        fs::create_directories(home / "folder");
    }

    FileURL make(const std::string& name, std::string_view content = "content") {
        std::ofstream(home / "folder" / name, std::ios::binary) << content;
        return FileURL((home / "folder" / name).string());
    }

    /// Moves what lies at `url` now.
    std::optional<TrashError> move(const FileURL& url) {
        return adapter.move(url, fileStatus(url).value_or(FileStatus()).identity, {}, {});
    }

    fs::path home;
    fs::path trash;
    GioTrash adapter;
};

using Origins = std::multiset<std::string>;

}  // namespace

TEST_F(TrashTest, KeepsOddNamesToTheByte) {
    const std::array names = {"con espacio y acción",
                              "not utf-8 \xff\xfe\xe9.bin",
                              "line\nbreak",
                              "\"a\" 'b' “c”",
                              "100%.zip",
                              "%41%2F",
                              "?q#f&;",
                              "-rf",
                              " blanks ",
                              "back\\slash",
                              "...",
                              ".hidden",
                              "*[glob]?",
                              "Path=x\n[Trash Info]",
                              "😀 e\u0301"};
    Origins expected;
    for (const std::string name : names) {
        const FileURL url = make(name, name);
        ASSERT_EQ(move(url), std::nullopt) << name;
        EXPECT_FALSE(isThere(url.path())) << name;
        EXPECT_EQ(contentOf(trash / "files" / name), name);
        expected.insert(url.path());
    }
    EXPECT_EQ(originsIn(trash), expected);
}

TEST_F(TrashTest, MovesWholeFoldersAndSeveralItemsOfOneName) {
    Origins expected;
    for (int i = 0; i < 3; ++i) {
        fs::create_directories(home / "folder" / "cache.d" / "inner");
        const FileURL url = make("cache.d");
        const FileURL inside = make("cache.d/inner/file", std::to_string(i));
        ASSERT_EQ(move(url), std::nullopt);
        EXPECT_FALSE(isThere(inside.path()));
        expected.insert(url.path());
    }
    EXPECT_EQ(originsIn(trash), expected);
    EXPECT_EQ(contentOf(trash / "files" / "cache.d" / "inner" / "file"), "0");
}

TEST_F(TrashTest, MovesALinkItselfAndFollowsLinksOnTheWay) {
    const FileURL target = make("target");
    for (const char* content : {"target", "nowhere"}) {
        const fs::path link = home / "folder" / (std::string("link to ") + content);
        fs::create_symlink(content, link);
        EXPECT_EQ(move(FileURL(link.string())), std::nullopt);
        EXPECT_EQ(fs::read_symlink(trash / "files" / link.filename()), content);
    }
    EXPECT_TRUE(isThere(target.path()));

    fs::create_directory_symlink("folder", home / "way");
    const FileURL behindLink((home / "way" / "target").string());
    EXPECT_EQ(move(behindLink), std::nullopt);
    EXPECT_EQ(originsIn(trash).count(behindLink.path()), 1U);
    fs::remove(home / "way");
}

TEST_F(TrashTest, TellsHardLinksApart) {
    const FileURL first = make("first");
    const FileURL second(first.deletingLastPathComponent().appendingPathComponent("second"));
    fs::create_hard_link(first.path(), second.path());
    EXPECT_EQ(move(first), std::nullopt);
    EXPECT_TRUE(isThere(second.path()));
    EXPECT_EQ(move(second), std::nullopt);
    EXPECT_EQ(originsIn(trash), (Origins{first.path(), second.path()}));
}

TEST_F(TrashTest, WritesTheNoteOfLongNamesOrRefusesThem) {
    for (const size_t length : {238U, 239U, 245U}) {
        const FileURL url = make("%41\n\xff" + std::string(length - 5, 'n'));
        EXPECT_EQ(move(url), std::nullopt) << length;
        EXPECT_EQ(originsIn(trash).count(url.path()), 1U) << length;
    }
    // Its second one would be called ".2" more than the Trash can note.
    const FileURL again = make("%41\n\xff" + std::string(240, 'n'), "second");
    EXPECT_EQ(move(again), TrashError::nameTooLong);
    EXPECT_EQ(contentOf(again.path()), "second");
    EXPECT_EQ(originsIn(trash).count("broken"), 0U);
    for (const size_t length : {246U, 255U}) {
        const FileURL url = make(std::string(length, 'n'));
        EXPECT_EQ(move(url), TrashError::nameTooLong) << length;
        EXPECT_TRUE(isThere(url.path())) << length;
    }
}

TEST_F(TrashTest, DoesNotOverwriteWhatLiesInTheTrashWithoutANote) {
    fs::create_directories(trash / "files");
    fs::create_directories(trash / "info");
    for (const char* orphan : {"a.txt", "a.2.txt"}) {
        std::ofstream(trash / "files" / orphan) << "orphan";
    }
    const FileURL url = make("a.txt", "new");
    EXPECT_EQ(move(url), std::nullopt);
    EXPECT_EQ(contentOf(trash / "files" / "a.txt"), "orphan");
    EXPECT_EQ(contentOf(trash / "files" / "a.2.txt"), "orphan");
    EXPECT_EQ(contentOf(trash / "files" / "a.3.txt"), "new");
    EXPECT_EQ(originsIn(trash), (Origins{"broken", "broken", url.path()}));
    EXPECT_EQ(std::distance(fs::directory_iterator(trash / "info"), fs::directory_iterator()), 1);
}

TEST_F(TrashTest, TakesNoBrokenNoteForOneAndWritesItAnew) {
    const FileURL url = make("50% é");
    ASSERT_EQ(move(url), std::nullopt);
    const fs::path note = trash / "info" / "50% é.trashinfo";
    const std::string whole = contentOf(note);
    const std::optional<TrashedItem> item = TrashedItem::at((trash / "files" / "50% é").string());
    ASSERT_TRUE(item);
    EXPECT_TRUE(item->hasNoteOf(url.path()));
    EXPECT_FALSE(item->hasNoteOf(url.path() + "x"));
    const size_t date = whole.find("DeletionDate");
    const std::array<std::string, 6> broken = {
        "",
        "[Trash Info]\n",
        whole.substr(0, date),
        whole.substr(0, date) + "DeletionDate=2023-13-01T\n",
        "[Trash Info]\n" + whole.substr(date),
        "[Other]\n" + whole.substr(whole.find("Path=")),
    };
    for (const std::string& text : broken) {
        std::ofstream(note, std::ios::binary) << text;
        EXPECT_FALSE(item->hasNoteOf(url.path())) << text;
        EXPECT_TRUE(item->writeNote(url.path()));
        EXPECT_TRUE(item->hasNoteOf(url.path()));
        EXPECT_EQ(originsIn(trash), Origins{url.path()});
        EXPECT_EQ(contentOf(note).substr(0, date), whole.substr(0, date)) << "as GIO escapes it";
    }
    EXPECT_FALSE(TrashedItem::at(url.path())) << "not in a Trash folder";
}

TEST_F(TrashTest, PutsBackOnlyWhereNothingIs) {
    const FileURL url = make("file", "trashed");
    fs::create_directories(home / "folder" / "sub");
    const FileURL folder((home / "folder" / "sub").string());
    make("sub/inside", "trashed");
    for (const FileURL& each : {url, folder}) {
        ASSERT_EQ(move(each), std::nullopt);
        const fs::path file = trash / "files" / each.lastPathComponent();
        const std::optional<TrashedItem> item = TrashedItem::at(file.string());
        ASSERT_TRUE(item);
        fs::create_directories(each.path());
        EXPECT_FALSE(item->putBack(each.path())) << "not even an empty folder is replaced";
        fs::remove(each.path());
        make(std::string(each.lastPathComponent()), "newcomer");
        EXPECT_FALSE(item->putBack(each.path()));
        EXPECT_EQ(contentOf(each.path()), "newcomer");
        EXPECT_TRUE(isThere(file));
        EXPECT_TRUE(item->hasNoteOf(each.path()));

        fs::remove(each.path());
        EXPECT_TRUE(item->putBack(each.path()));
        EXPECT_FALSE(isThere(file));
    }
    EXPECT_EQ(contentOf(url.path()), "trashed");
    EXPECT_EQ(contentOf(folder.path() + "/inside"), "trashed");
    EXPECT_EQ(originsIn(trash), Origins{}) << "the notes went too";
}

TEST_F(TrashTest, RefusesWhatIsGoneOrHasNoPlaceToGoBackTo) {
    const FileURL file = make("file");
    fs::create_directories(home / "elsewhere" / "below");
    std::ofstream(home / "elsewhere" / "file") << "another";
    fs::create_directory_symlink(home / "elsewhere" / "below", home / "folder" / "way");
    const std::array<std::pair<FileURL, TrashError>, 5> cases = {{
        {file.deletingLastPathComponent().appendingPathComponent("missing"), TrashError::gone},
        {file.appendingPathComponent("below a file"), TrashError::gone},
        {FileURL("/"), TrashError::other},
        {file.deletingLastPathComponent().appendingPathComponent(".."), TrashError::other},
        // By the letter this is the file in "folder", on the disk the one in "elsewhere".
        {FileURL((home / "folder" / "way" / ".." / "file").string()), TrashError::other},
    }};
    for (const auto& [url, error] : cases) {
        EXPECT_EQ(move(url), error) << url.path();
    }
    EXPECT_TRUE(isThere(file.path()));
    EXPECT_TRUE(isThere(home / "elsewhere" / "file"));
}

TEST_F(TrashTest, RefusesWhatMayNotBeTakenAway) {
    if (geteuid() == 0) {
        const FileURL url = make("immutable");
        const int file = open(url.path().c_str(), O_RDONLY | O_CLOEXEC);
        int flags = 0;
        ioctl(file, FS_IOC_GETFLAGS, &flags);
        int fixed = flags | FS_IMMUTABLE_FL;
        const bool possible = ioctl(file, FS_IOC_SETFLAGS, &fixed) == 0;
        const std::optional<TrashError> result = possible ? move(url) : TrashError::noPermission;
        ioctl(file, FS_IOC_SETFLAGS, &flags);
        close(file);
        EXPECT_EQ(result, TrashError::noPermission);
        GTEST_SKIP() << "root may take anything else";
    }
    fs::create_directories(home / "folder" / "closed folder");
    const FileURL folder((home / "folder" / "closed folder").string());
    const FileURL inside = make("closed folder/file");
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(move(inside), TrashError::noPermission);
    EXPECT_EQ(move(folder), TrashError::noPermission);
    fs::permissions(folder.path(), fs::perms::none);
    EXPECT_EQ(move(inside), TrashError::noPermission);
    fs::permissions(folder.path(), fs::perms::owner_all);
    EXPECT_TRUE(isThere(inside.path()));

    const FileURL free = make("free");
    ASSERT_EQ(move(make("first")), std::nullopt);
    fs::permissions(trash / "info", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_EQ(move(free), TrashError::noTrash);
    fs::permissions(trash / "info", fs::perms::owner_all);
    EXPECT_TRUE(isThere(free.path()));
}

TEST_F(TrashTest, PutsBackWhatAFullVolumeHasNoNoteFor) {
    const std::optional<bool> passed = withPrivateMounts([this] {
        ASSERT_EQ(mount("disk", home.c_str(), "tmpfs", 0, "size=128k"), 0);
        fs::create_directories(home / "folder");
        const FileURL url = make("file", "precious");
        fs::create_directories(home / "folder" / "sub");
        make("sub/inside", "precious too");
        const FileURL folder((home / "folder" / "sub").string());
        std::ofstream(home / "filling") << std::string(1U << 20U, 'x');

        EXPECT_EQ(move(url), TrashError::full);
        EXPECT_EQ(move(folder), TrashError::full);
        EXPECT_EQ(contentOf(url.path()), "precious");
        EXPECT_EQ(contentOf(folder.path() + "/inside"), "precious too");
        EXPECT_EQ(originsIn(trash), Origins{});

        fs::remove(home / "filling");
        EXPECT_EQ(move(url), std::nullopt);
        EXPECT_EQ(originsIn(trash), Origins{url.path()});
    });
    if (!passed) {
        GTEST_SKIP() << "nothing can be mounted here";
    }
    EXPECT_TRUE(*passed);
}

TEST_F(TrashTest, MindsWhereTheItemIsMounted) {
    const std::optional<bool> passed = withPrivateMounts([this] {
        const fs::path disk = home / "folder" / "disk";
        fs::create_directories(disk);
        ASSERT_EQ(mount("memory", disk.c_str(), "tmpfs", 0, "size=1m"), 0);
        const FileURL url = make("disk/file");
        EXPECT_EQ(move(url), TrashError::noTrash) << "GIO has no Trash in memory";
        EXPECT_EQ(move(FileURL(disk.string())), TrashError::other) << "a mount point";
        EXPECT_EQ(move(FileURL((home / "folder").string())), TrashError::other) << "a folder with one inside";
        ASSERT_EQ(mount(nullptr, disk.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr), 0);
        EXPECT_EQ(move(url), TrashError::readOnly);
        EXPECT_EQ(contentOf(url.path()), "content");
    });
    if (!passed) {
        GTEST_SKIP() << "nothing can be mounted here";
    }
    EXPECT_TRUE(*passed);
}

TEST_F(TrashTest, UsesTheTrashOfTheVolumeTheItemLiesOn) {
    const std::optional<bool> passed = withPrivateMounts([this] {
        const fs::path disk = home / "folder" / "disk";
        const std::string user = std::to_string(geteuid());
        fs::create_directories(disk);
        // The one file system made of nothing that GIO takes for a disk.
        ASSERT_EQ(mount("disk", disk.c_str(), "ramfs", 0, nullptr), 0);
        fs::create_directories(disk / "sub");

        EXPECT_EQ(move(make("disk/sub/50% é")), std::nullopt);
        EXPECT_EQ(originsIn(disk / (".Trash-" + user)), Origins{"sub/50% é"});
        // The note of so long a name has to be written afterwards, here with a path relative to the volume.
        const std::string name(245, 'n');
        EXPECT_EQ(move(make("disk/sub/" + name)), std::nullopt);
        EXPECT_EQ(originsIn(disk / (".Trash-" + user)), (Origins{"sub/50% é", "sub/" + name}));

        fs::create_directories(disk / ".Trash");
        fs::permissions(disk / ".Trash", fs::perms::all | fs::perms::sticky_bit);
        EXPECT_EQ(move(make("disk/" + name)), std::nullopt);
        EXPECT_EQ(originsIn(disk / ".Trash" / user), Origins{name});
    });
    if (!passed) {
        GTEST_SKIP() << "nothing can be mounted here";
    }
    EXPECT_TRUE(*passed);
}

TEST(TrashErrorText, NamesTheFileAndDiffersByReason) {
    const std::array errors = {TrashError::gone,    TrashError::noPermission, TrashError::readOnly, TrashError::full,
                               TrashError::noTrash, TrashError::nameTooLong,  TrashError::other};
    std::set<QString> texts;
    for (const TrashError error : errors) {
        const QString text = trashErrorText(error, FileURL("/home/ana/100%1 a\xff\nb"));
        EXPECT_TRUE(text.contains(QStringLiteral("“100%1 a\uFFFD\uFFFDb”"))) << qPrintable(text);
        EXPECT_TRUE(text.endsWith(QLatin1Char('.'))) << qPrintable(text);
        texts.insert(text);
    }
    EXPECT_EQ(texts.size(), errors.size());
}
