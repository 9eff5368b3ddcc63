#include "SpaceScan/FileScanner.h"

#include "Foundation/FileStatus.h"
#include "Foundation/Packages.h"
#include "SpaceScan/FileClassifier.h"
#include "SpaceScan/FilteredFiles.h"
#include "support/OrdinaryUser.h"
#include "support/Shortage.h"
#include "support/TemporaryFolder.h"

#include <dirent.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <set>
#include <thread>

namespace {

ScanResult scan(const FileURL& root) {
    return FileScanner::scan(root, [](std::int64_t) {});
}

std::set<std::string> names(const ScanResult& result) {
    std::set<std::string> all;
    for (const FileItem& item : result.files) {
        all.emplace(item.url.lastPathComponent());
    }
    return all;
}

/// What a scan is meant to return, by the simplest walk there is: one thread, one folder after another, whole paths.
void walkInOrder(const FileURL& folder, std::vector<FileItem>& items) {
    DIR* directory = opendir(folder.path().c_str());
    ASSERT_NE(directory, nullptr);
    while (const dirent* entry = readdir(directory)) {
        const std::string name = entry->d_name;
        const FileURL url = folder.appendingPathComponent(name);
        struct stat status {};
        if (name[0] == '.' || lstat(url.path().c_str(), &status) != 0) {
            continue;
        }
        if (S_ISREG(status.st_mode)) {
            items.push_back({url, status.st_blocks * 512, FileClassifier::category(url)});
        } else if (S_ISDIR(status.st_mode) && !isPackageName(name)) {
            walkInOrder(url, items);
        }
    }
    closedir(directory);
}

std::vector<FileItem> reference(const FileURL& root) {
    std::vector<FileItem> items;
    walkInOrder(root, items);
    std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) { return a.size > b.size; });
    return items;
}

TEST(FileScanner, ReturnsWhatASequentialWalkReturnsTiesIncluded) {
    std::mt19937 random(7);
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
    for (int round = 0; round < 150; ++round) {
        const TemporaryFolder tree;
        std::vector<std::string> folders{""};
        for (unsigned i = 0; i < 5 + below(40); ++i) {
            static const char* const endings[] = {"", "", "", "", ".app", ".d", ".key"};
            const std::string name = (below(12) == 0 ? "." : "") + ("f" + std::to_string(i)) + endings[below(7)];
            folders.push_back(folders[below(static_cast<unsigned>(folders.size()))] + name + "/");
            tree.folder(folders.back() + "x");
        }
        for (unsigned i = 0; i < below(120); ++i) {
            const std::string name = folders[below(static_cast<unsigned>(folders.size()))] + std::to_string(i) + ".pdf";
            tree.file(name, static_cast<std::int64_t>(below(3)) * 4096);
        }
        const ScanResult result = scan(tree.url());
        const std::vector<FileItem> found(result.files.begin(), result.files.end());
        const std::vector<FileItem> expected = reference(tree.url());
        ASSERT_EQ(found.size(), expected.size()) << "round " << round;
        ASSERT_TRUE(found == expected) << "round " << round;
        EXPECT_EQ(result.skipped, 0);
    }
}

TEST(FileScanner, ReportsEachMultipleOf250Once) {
    const std::pair<int, std::vector<std::int64_t>> rows[] = {
        {0, {}}, {249, {}}, {250, {250}}, {499, {250}}, {500, {250, 500}}, {1030, {250, 500, 750, 1000}}};
    for (const auto& [count, expected] : rows) {
        const TemporaryFolder tree;
        for (int i = 0; i < count; ++i) {
            tree.text("folder" + std::to_string(i % 7) + "/" + std::to_string(i), "");
        }
        std::vector<std::int64_t> reported;
        const std::thread::id here = std::this_thread::get_id();
        const ScanResult result = FileScanner::scan(tree.url(), [&](std::int64_t files) {
            EXPECT_EQ(std::this_thread::get_id(), here);
            reported.push_back(files);
        });
        EXPECT_EQ(reported, expected);
        EXPECT_EQ(result.files.size(), static_cast<size_t>(count));
    }
}

TEST(FileScanner, LeavesOutWhatIsHiddenOrPackedOrNoFile) {
    const TemporaryFolder tree;
    tree.file("seen.txt", 4096);
    tree.file(".dot", 8192);
    tree.file(".folder/inside", 8192);
    tree.file("Program.App/Contents/binary", 8192);
    tree.file("library.photoslibrary/photo.jpg", 8192);
    tree.file("notes.key", 4096);  // A file with such an ending is a file.
    tree.file("folder.apps/inside.txt", 4096);
    tree.link("link.txt", tree.path("seen.txt"));
    tree.link("link-folder", tree.path());
    tree.link("dangling", "/nowhere");
    tree.fifo("fifo");
    const int socketDescriptor = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    tree.path("s").copy(address.sun_path, sizeof address.sun_path - 1);
    (void)bind(socketDescriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address);  // NOLINT
    close(socketDescriptor);
    (void)mknod(tree.path("device").c_str(), S_IFCHR | 0600, makedev(1, 3));

    tree.text("listed/.hidden", "secret.txt\ncave\n");
    tree.file("listed/secret.txt", 4096);
    tree.file("listed/cave/inside.txt", 4096);
    tree.file("listed/open.txt", 4096);

    const ScanResult result = scan(tree.url());
    EXPECT_EQ(names(result), (std::set<std::string>{"seen.txt", "notes.key", "inside.txt", "open.txt"}));
    EXPECT_EQ(result.files.size(), 4U);
    EXPECT_EQ(result.skipped, 0);
    EXPECT_EQ(result.files.totalSize(), 4 * 4096);
}

TEST(FileScanner, HonoursTheHiddenListOfACrowdedFolder) {
    const TemporaryFolder tree;
    for (int i = 0; i < 4000; ++i) {
        tree.text("a-name-that-is-long-enough-to-fill-the-buffer-" + std::to_string(i), "");
    }
    tree.text(".hidden", "a-name-that-is-long-enough-to-fill-the-buffer-0\n");
    EXPECT_EQ(scan(tree.url()).files.size(), 3999U);
}

TEST(FileScanner, TakesTheRootAsItIs) {
    const TemporaryFolder tree;
    tree.file(".hidden.app/file.txt", 4096);
    tree.link("link", tree.path(".hidden.app"));
    EXPECT_EQ(scan(tree.url(".hidden.app")).files.size(), 1U);
    const ScanResult throughLink = scan(tree.url("link"));
    ASSERT_EQ(throughLink.files.size(), 1U);
    EXPECT_EQ(throughLink.files[0].url, tree.url("link/file.txt"));

    for (const char* bad : {".hidden.app/file.txt", "missing", "missing/deeper"}) {
        const ScanResult result = scan(tree.url(bad));
        EXPECT_TRUE(result.files.isEmpty());
        EXPECT_EQ(result.skipped, 1);
    }
    // The kernel's own folders are walked when chosen, and passed over when met.
    EXPECT_FALSE(scan(FileURL("/proc/self")).files.isEmpty());
}

TEST(FileScanner, GivesAllocatedSizesLargestFirst) {
    const TemporaryFolder tree;
    tree.file("small", 4096);
    tree.file("large", 3 * 4096);
    tree.file("middle", 2 * 4096);
    tree.text("sparse", "");
    ASSERT_EQ(truncate(tree.path("sparse").c_str(), 1 << 30), 0);
    const ScanResult result = scan(tree.url());
    ASSERT_EQ(result.files.size(), 4U);
    EXPECT_EQ(result.files[0].name(), QStringLiteral("large"));
    EXPECT_EQ(result.files[0].size, 3 * 4096);
    EXPECT_EQ(result.files[1].name(), QStringLiteral("middle"));
    EXPECT_EQ(result.files[3].name(), QStringLiteral("sparse"));
    EXPECT_LT(result.files[3].size, 4096);
    EXPECT_EQ(result.files.totalSize(), 6 * 4096 + result.files[3].size);
}

TEST(FileScanner, KeepsAnyNameByteForByte) {
    const TemporaryFolder tree;
    const std::string odd[] = {"\xFF\xFE.mp4",      "two\nlines.pdf",      "quote\"'.zip", "-rf *",
                               "\xE2\x80\xAEx.png", std::string(255, 'n'), "%41 ?#",       "back\\slash"};
    for (const std::string& name : odd) {
        tree.file("folder \xFF/" + name, 4096);
    }
    const ScanResult result = scan(tree.url());
    EXPECT_EQ(names(result), std::set<std::string>(std::begin(odd), std::end(odd)));
    for (const FileItem& item : result.files) {
        EXPECT_EQ(access(item.url.path().c_str(), F_OK), 0);
    }
}

TEST(FileScanner, GoesDeeperThanAPathCanBe) {
    const TemporaryFolder tree;
    constexpr int levels = 2'000;
    const std::string name(60, 'd');
    int descriptor = open(tree.path().c_str(), O_PATH);
    for (int level = 0; level < levels; ++level) {
        ASSERT_EQ(mkdirat(descriptor, name.c_str(), 0755), 0);
        const int next = openat(descriptor, name.c_str(), O_PATH);
        close(descriptor);
        descriptor = next;
    }
    close(openat(descriptor, "treasure.txt", O_CREAT | O_WRONLY, 0644));
    close(descriptor);
    const ScanResult result = scan(tree.url());
    ASSERT_EQ(result.files.size(), 1U);
    EXPECT_EQ(result.files[0].url.path().size(), tree.path().size() + levels * (name.size() + 1) + 13);
    // A root may lie as deep, and a file there be known again.
    const FileURL folder = result.files[0].url.deletingLastPathComponent();
    EXPECT_EQ(scan(folder).files.size(), 1U);
    EXPECT_TRUE(fileStatus(result.files[0].url));
}

TEST(FileScanner, CountsWhatMayNotBeExamined) {
    const TemporaryFolder tree;
    tree.file("open.txt", 4096);
    tree.file("closed/inside.txt", 4096);
    tree.file("listed-only/inside.txt", 4096);
    tree.folder("listed-only/folder");
    tree.link("listed-only/link", "inside.txt");
    tree.link("links-only/link", "nowhere");
    tree.folder("links-listed-only");
    tree.link("links-listed-only/link", "nowhere");
    for (const char* const folder : {"", "closed", "listed-only", "links-only", "links-listed-only"}) {
        OrdinaryUser::own(tree.path(folder));
    }
    ASSERT_EQ(chmod(tree.path().c_str(), 0755), 0);
    ASSERT_EQ(chmod(tree.path("closed").c_str(), 0), 0);
    ASSERT_EQ(chmod(tree.path("listed-only").c_str(), 0400), 0);
    ASSERT_EQ(chmod(tree.path("links-listed-only").c_str(), 0400), 0);
    const OrdinaryUser user;
    const ScanResult all = scan(tree.url());
    EXPECT_EQ(names(all), (std::set<std::string>{"open.txt"}));
    EXPECT_EQ(all.skipped, 4) << "each entry of the two folders that can be listed but not searched";
    EXPECT_EQ(scan(tree.url("listed-only")).skipped, 3) << "also where the scan begins";
    EXPECT_EQ(scan(tree.url("closed")).skipped, 1) << "there is nothing to walk";
    EXPECT_EQ(scan(tree.url("links-only")).skipped, 0);
}

TEST(FileScanner, GoesOnInARootThatWasRenamedOrRemoved) {
    const TemporaryFolder tree;
    for (int i = 0; i < 2000; ++i) {
        tree.text("root/" + std::to_string(i % 200) + "/" + std::to_string(i), "");
    }
    std::int64_t last = 0;
    const ScanResult renamed = FileScanner::scan(tree.url("root"), [&](std::int64_t count) {
        if (std::exchange(last, count) == 0) {
            (void)rename(tree.path("root").c_str(), tree.path("elsewhere").c_str());
        }
    });
    EXPECT_EQ(renamed.files.size(), 2000U);
    EXPECT_EQ(renamed.skipped, 0);
    EXPECT_EQ(scan(tree.url("root")).skipped, 1);
}

TEST(FileScanner, DoesWithFewThreadsAndDescriptors) {
    const TemporaryFolder tree;
    for (int i = 0; i < 300; ++i) {
        tree.text("a/b/c/" + std::to_string(i % 30) + "/d/" + std::to_string(i), "");
    }
    const std::vector<FileItem> expected = reference(tree.url());
    const auto found = [&] {
        const ScanResult result = scan(tree.url());
        EXPECT_EQ(result.skipped, 0);
        return std::vector<FileItem>(result.files.begin(), result.files.end());
    };
    {
        const NoThreads none;
        EXPECT_EQ(found(), expected);
    }
    for (const int count : {3, 4, 6, 9}) {
        const FewDescriptors few(count);
        EXPECT_EQ(found(), expected) << count;
    }
    const FewDescriptors none(0);
    EXPECT_EQ(scan(tree.url()).skipped, 1) << "what cannot be opened is told";
}

TEST(FileScanner, TellsWhatDoesNotFitIntoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers need more memory than any limit leaves";
#endif
    const TemporaryFolder tree;
    constexpr std::size_t count = 20'000;
    for (std::size_t i = 0; i < count; ++i) {
        tree.text(std::to_string(i % 40) + "/" + std::string(200, 'n') + std::to_string(i), "");
    }
    bool wasShort = false;
    for (const unsigned long megabytes : {1, 2, 4, 6, 8, 10, 12, 16}) {
        const LittleMemory little(megabytes << 20);
        const ScanResult result = scan(tree.url());
        EXPECT_LE(result.files.size(), count);
        EXPECT_TRUE(result.files.size() == count || result.skipped > 0) << megabytes << " MiB";
        EXPECT_EQ(FilteredFiles(result.files, FileCategory::all, QStringLiteral("nn")).size(), result.files.size());
        wasShort = wasShort || result.files.size() < count;
    }
    EXPECT_TRUE(wasShort);
    EXPECT_EQ(scan(tree.url()).files.size(), count);
}

TEST(FileScanner, SurvivesATreeThatChangesUnderIt) {
    const TemporaryFolder tree;
    for (int i = 0; i < 3000; ++i) {
        tree.text("folder" + std::to_string(i % 100) + "/" + std::to_string(i), "");
    }
    std::jthread vandal([&](const std::stop_token& stop) {
        for (int i = 0; !stop.stop_requested(); i = (i + 1) % 100) {
            const std::string folder = tree.path("folder" + std::to_string(i));
            (void)rename(folder.c_str(), tree.path("moved").c_str());
            (void)!symlink("/usr", folder.c_str());
            (void)unlink(folder.c_str());
            (void)rename(tree.path("moved").c_str(), folder.c_str());
            (void)unlink((folder + "/" + std::to_string(i)).c_str());
        }
    });
    for (int round = 0; round < 20; ++round) {
        const ScanResult result = scan(tree.url());
        EXPECT_LE(result.files.size(), 3000U) << "never through a link to somewhere else";
    }
}

TEST(FileList, LosesOneFileWithoutTouchingTheRest) {
    const TemporaryFolder tree;
    for (int i = 1; i <= 5; ++i) {
        tree.file("folder/" + std::to_string(i), i * 4096);
    }
    const FileList all = scan(tree.url()).files;
    const FileList without = all.removing(tree.url("folder/3")).removing(tree.url("folder/5"));
    ASSERT_EQ(without.size(), 3U);
    EXPECT_EQ(without[0].url, tree.url("folder/4"));
    EXPECT_EQ(without[1].url, tree.url("folder/2"));
    EXPECT_EQ(without[2].url, tree.url("folder/1"));
    EXPECT_EQ(without.totalSize(), 7 * 4096);
    EXPECT_EQ(without.keyAt(0), all.keyAt(1));
    EXPECT_EQ(all.size(), 5U);
    EXPECT_EQ(all.removing(tree.url("folder/9")).size(), 5U);
    EXPECT_EQ(without.indexOf(tree.url("folder/3")), std::nullopt);
}

}  // namespace
