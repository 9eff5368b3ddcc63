#include "SpaceScan/FileScanner.h"

#include "Foundation/FileStatus.h"
#include "Foundation/Packages.h"
#include "SpaceScan/FileClassifier.h"
#include "SpaceScan/FilteredFiles.h"
#include "SpaceScan/ScanRecorder.h"
#include "support/OrdinaryUser.h"
#include "support/Shortage.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <set>
#include <thread>

namespace {

using Names = std::set<std::string>;
using Items = std::vector<FileItem>;

ScanResult scan(const FileURL& root) {
    return FileScanner::scan(root, [](std::int64_t) {});
}

Items itemsOf(const ScanResult& result) {
    return {result.files.begin(), result.files.end()};
}

Names names(const ScanResult& result) {
    Names all;
    for (const FileItem& item : result.files) {
        all.emplace(item.url.lastPathComponent());
    }
    return all;
}

/// What a scan is meant to return, by the simplest walk there is: one thread, one folder after another, whole paths.
void walkInOrder(const std::filesystem::path& folder, Items& items) {
    for (const std::filesystem::path& path : std::filesystem::directory_iterator(folder)) {
        const std::string name = path.filename();
        const FileURL url(path.string());
        struct stat status {};
        ASSERT_EQ(lstat(path.c_str(), &status), 0);
        if (name[0] != '.' && S_ISREG(status.st_mode)) {
            items.push_back({url, status.st_blocks * 512, FileClassifier::category(url)});
        } else if (name[0] != '.' && S_ISDIR(status.st_mode) && !isPackageName(name)) {
            walkInOrder(path, items);
        }
    }
}

Items reference(const FileURL& root) {
    Items items;
    walkInOrder(root.path(), items);
    std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) { return a.size > b.size; });
    return items;
}

TEST(FileScanner, ReturnsWhatASequentialWalkReturnsTiesIncluded) {
    std::mt19937 random(7);
    const auto below = [&](unsigned bound) { return static_cast<unsigned>(random() % bound); };
    for (int round = 0; round < 60; ++round) {
        const TemporaryFolder tree;
        std::vector<std::string> folders{""};
        for (unsigned i = 0; i < 5 + below(40); ++i) {
            static const char* const endings[] = {"", "", "\xFF", "\n", ".app", ".d", ".key"};
            const std::string name =
                std::string(below(12) == 0 ? ".f" : "f").append(std::to_string(i)).append(endings[below(7)]);
            folders.push_back(folders[below(static_cast<unsigned>(folders.size()))] + name + "/");
            tree.folder(folders.back() + "x");
        }
        for (unsigned i = 0; i < below(120); ++i) {
            static const char* const names[] = {".pdf", "\xFF\xFE.mp4", "two\nlines", "\xE2\x80\xAEx.png", "%41 ?#",
                                                "\\"};
            const std::string name =
                folders[below(static_cast<unsigned>(folders.size()))] + std::to_string(i) + names[below(6)];
            tree.file(name, static_cast<std::int64_t>(below(3)) * 4096);
        }
        tree.text("sparse", "");
        ASSERT_EQ(truncate(tree.path("sparse").c_str(), 1 << 30), 0);
        const ScanResult result = scan(tree.url());
        ASSERT_TRUE(itemsOf(result) == reference(tree.url())) << "round " << round;
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
    const char* const files[] = {"seen.txt",
                                 ".dot",
                                 ".folder/inside",
                                 "Program.App/Contents/binary",
                                 "library.photoslibrary/photo.jpg",
                                 "notes.key",  // A file with such an ending is a file.
                                 "folder.apps/inside.txt",
                                 "listed/secret.txt",
                                 "listed/cave/inside.txt",
                                 "listed/open.txt"};
    for (const char* const file : files) {
        tree.file(file, 4096);
    }
    tree.text("listed/.hidden", "secret.txt\ncave\n");
    tree.link("link.txt", tree.path("seen.txt"));
    tree.link("link-folder", tree.path());
    tree.link("dangling", "/nowhere");
    tree.fifo("fifo");
    EXPECT_EQ(mknod(tree.path("socket").c_str(), S_IFSOCK | 0600, 0), 0);
    (void)mknod(tree.path("device").c_str(), S_IFCHR | 0600, makedev(1, 3));
    const ScanResult result = scan(tree.url());
    EXPECT_EQ(names(result), (Names{"seen.txt", "notes.key", "inside.txt", "open.txt"}));
    EXPECT_EQ(result.files.size(), 4U);
    EXPECT_EQ(result.skipped, 0);
    EXPECT_EQ(result.files.totalSize(), 4 * 4096);
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
    EXPECT_FALSE(scan(FileURL("/proc/self")).files.isEmpty()) << "passed over when met, walked when chosen";
}

TEST(FileScanner, GoesDeeperThanAPathCanBe) {
    const TemporaryFolder tree;
    const FileURL end(tree.deepFolder("deep", 1'000));
    const ScanResult result = scan(tree.url());
    ASSERT_EQ(result.files.size(), 1U);
    EXPECT_EQ(result.files[0].url, end.appendingPathComponent("file"));
    EXPECT_EQ(scan(end).files.size(), 1U) << "a root may lie as deep";
    EXPECT_TRUE(fileStatus(result.files[0].url));
}

TEST(FileScanner, CountsWhatMayNotBeExamined) {
    const TemporaryFolder tree;
    for (const char* const file : {"open.txt", "closed/inside.txt", "listed-only/inside.txt"}) {
        tree.file(file, 4096);
    }
    tree.folder("listed-only/folder");
    for (const char* const link : {"listed-only/link", "links-only/link", "links-listed-only/link"}) {
        tree.link(link, "nowhere");
    }
    const std::pair<const char*, mode_t> modes[] = {
        {"", 0755}, {"closed", 0}, {"listed-only", 0400}, {"links-only", 0755}, {"links-listed-only", 0400}};
    for (const auto& [folder, mode] : modes) {
        OrdinaryUser::own(tree.path(folder));
        ASSERT_EQ(chmod(tree.path(folder).c_str(), mode), 0);
    }
    const OrdinaryUser user;
    const ScanResult all = scan(tree.url());
    EXPECT_EQ(names(all), (Names{"open.txt"}));
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
    const Items expected = reference(tree.url());
    {
        const NoThreads none;
        EXPECT_EQ(itemsOf(scan(tree.url())), expected);
    }
    for (const int count : {3, 4, 6, 9}) {
        const Limit few = Limit::toDescriptors(static_cast<rlim_t>(count));
        const ScanResult result = scan(tree.url());
        EXPECT_EQ(result.skipped, 0);
        EXPECT_EQ(itemsOf(result), expected) << count;
    }
    const Limit none = Limit::toDescriptors(0);
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
    for (const rlim_t megabytes : {1UL, 2UL, 4UL, 6UL, 8UL, 10UL, 12UL, 16UL}) {
        const Limit little = Limit::toMemory(megabytes << 20);
        const ScanResult result = scan(tree.url());
        EXPECT_LE(result.files.size(), count);
        EXPECT_TRUE(result.files.size() == count || result.skipped > 0) << megabytes << " MiB";
        EXPECT_EQ(FilteredFiles(result.files, FileCategory::all, QStringLiteral("nn")).size(), result.files.size());
        wasShort = wasShort || result.files.size() < count;
    }
    EXPECT_TRUE(wasShort);
    EXPECT_EQ(scan(tree.url()).files.size(), count);
}

/// No test makes files of such sizes.
TEST(FileList, KeepsAndSortsSizesOverFourGiB) {
    constexpr std::int64_t gib = std::int64_t{1} << 30;
    const std::vector<std::int64_t> multiples = {3 * gib, 5 * gib, 4 * gib, 4096, 1024 * gib, 5 * gib + 4096};
    for (const std::int64_t odd : {0, 1}) {
        const NameFolding folding{QLocale()};
        ScanRecorder recorder(folding);
        ScanRecorder::Folder top;
        WalkFolder root;
        root.tag = &top;
        recorder.beginFolder(root);
        std::vector<std::int64_t> expected;
        for (const std::int64_t size : multiples) {
            FileStatus status;
            status.allocated = expected.emplace_back(size + odd);
            recorder.file(std::to_string(size), status);
        }
        std::int64_t skipped = 0;
        const FileList all = mergedFiles(FileURL("/"), top, {&recorder}, skipped);
        std::sort(expected.rbegin(), expected.rend());
        std::vector<std::int64_t> sizes;
        for (const FileItem& item : all) {
            sizes.push_back(item.size);
        }
        EXPECT_EQ(sizes, expected);
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
    for (const int number : {4, 2, 1}) {
        EXPECT_TRUE(without.indexOf(tree.url("folder/" + std::to_string(number)))) << number;
    }
    EXPECT_EQ(without[1].url, tree.url("folder/2"));
    EXPECT_EQ(without.totalSize(), 7 * 4096);
    EXPECT_EQ(without.keyAt(0), all.keyAt(1));
    EXPECT_EQ(all.size(), 5U);
    EXPECT_EQ(all.removing(tree.url("folder/9")).size(), 5U);
    EXPECT_EQ(without.indexOf(tree.url("folder/3")), std::nullopt);
}

}  // namespace
