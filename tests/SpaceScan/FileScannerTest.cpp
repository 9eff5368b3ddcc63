#include "Foundation/FileStatus.h"
#include "Foundation/Packages.h"
#include "SpaceScan/FileClassifier.h"
#include "SpaceScan/ScanFixture.h"
#include "SpaceScan/ScanRecorder.h"
#include "support/OrdinaryUser.h"
#include "support/Shortage.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <random>

namespace {

using FileScannerTest = ScanFixture;
using Items = std::vector<FileItem>;

Items itemsOf(const FileList& files) {
    return {files.begin(), files.end()};
}

/// What a scan is meant to return, by the simplest walk there is: one thread, one folder after another, whole paths.
Items reference(const TemporaryFolder& tree) {
    Items items;
    const std::filesystem::recursive_directory_iterator end{};
    for (std::filesystem::recursive_directory_iterator at(tree.path()); at != end; ++at) {
        const FileURL url(at->path().string());
        const std::string_view name = url.lastPathComponent();
        if (at->is_directory() && (name[0] == '.' || isPackageName(name))) {
            at.disable_recursion_pending();
        } else if (!at->is_directory() && name[0] != '.') {
            struct stat status {};
            EXPECT_EQ(lstat(url.path().c_str(), &status), 0);
            items.push_back({url, status.st_blocks * 512, FileClassifier::category(url)});
        }
    }
    std::stable_sort(items.begin(), items.end(), [](const auto& a, const auto& b) { return a.size > b.size; });
    return items;
}

TEST(FileScanner, ReturnsWhatASequentialWalkReturnsTiesIncluded) {
    static const char* const endings[] = {"", "", "\xFF", "\n", ".app", ".d", ".key"};
    static const char* const names[] = {".pdf", "\xFF\xFE.mp4", "two\nlines", "\xE2\x80\xAEx.png", "%41 ?#", "\\"};
    std::mt19937 random(7);
    const auto anyOf = [&](const auto& choices) { return choices[random() % std::size(choices)]; };
    for (int round = 0; round < 60; ++round) {
        const TemporaryFolder tree;
        std::vector<std::string> folders{""};
        for (auto left = 5 + random() % 40; left > 0; --left) {
            const std::string name = std::to_string(left) + anyOf(endings);
            folders.push_back(anyOf(folders).append(random() % 12 == 0 ? ".f" : "f").append(name).append("/"));
            tree.folder(folders.back());
        }
        for (auto left = random() % 120; left > 0; --left) {
            const auto blocks = static_cast<std::int64_t>(random() % 3);
            tree.file(anyOf(folders) + std::to_string(left) + anyOf(names), blocks * 4096);
        }
        tree.text("sparse", "");
        ASSERT_EQ(truncate(tree.path("sparse").c_str(), 1 << 30), 0);
        const auto [files, skipped, late] = FileScanner::scan(tree.url(), [](std::int64_t) {});
        Items expected = reference(tree);
        ASSERT_TRUE(itemsOf(files) == expected) << "round " << round;
        EXPECT_EQ(skipped, 0);

        // Without a file, which is removed once however often that is asked for, the rest stays as it is.
        FileList rest = files;
        for (int gone = 0; gone < 3 && !expected.empty(); ++gone) {
            const FileURL url = anyOf(expected).url;
            rest = rest.removing(url).removing(url);
            EXPECT_EQ(rest.indexOf(url), std::nullopt);
            std::erase_if(expected, [&](const FileItem& item) { return item.url == url; });
        }
        ASSERT_TRUE(itemsOf(rest) == expected) << "round " << round;
        for (std::size_t index = 0; index < expected.size(); ++index) {
            EXPECT_EQ(rest.indexOf(expected[index].url), index);
        }
    }
}

TEST_F(FileScannerTest, LeavesOutWhatIsHiddenOrPackedOrNoFileUnlessItBeginsThere) {
    // A file with the ending of a package is a file.
    files({"seen.txt", ".dot", ".folder/inside", "Program.App/Contents/binary", "notes.key", "folder.apps/inside.txt",
           "listed/secret.txt", "listed/cave/inside.txt", "listed/open.txt"});
    tree.text("listed/.hidden", "secret.txt\ncave\n");
    tree.link("link.txt", tree.path("seen.txt"));
    tree.link("link-folder", tree.path());
    tree.fifo("fifo");
    expect({"seen.txt", "notes.key", "folder.apps/inside.txt", "listed/open.txt"}, 0);
    for (const char* const root : {".folder", "Program.App"}) {
        EXPECT_EQ(scan(root).files.size(), 1U) << root;
    }
    EXPECT_TRUE(scan("link-folder").files.indexOf(tree.url("link-folder/seen.txt")));
    for (const char* const bad : {"seen.txt", "missing"}) {
        EXPECT_EQ(scan(bad).skipped, 1) << bad;
    }
    EXPECT_FALSE(FileScanner::scan(FileURL("/proc/self"), [](std::int64_t) {}).files.isEmpty());
}

TEST_F(FileScannerTest, GoesDeeperThanAPathCanBe) {
    const FileURL end(tree.deepFolder("deep", 1'000));
    const ScanResult result = scan();
    ASSERT_EQ(result.files.size(), 1U);
    EXPECT_EQ(result.files[0].url, end.appendingPathComponent("file"));
    EXPECT_EQ(FileScanner::scan(end, [](std::int64_t) {}).files.size(), 1U) << "a root may lie as deep";
    EXPECT_TRUE(fileStatus(result.files[0].url));
}

TEST_F(FileScannerTest, CountsWhatMayNotBeExamined) {
    files({"open.txt", "closed/inside.txt", "listed-only/inside.txt", "listed-only/folder/inside.txt"});
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
    expect({"open.txt"}, 4, "each entry of the two folders that can be listed but not searched");
    EXPECT_EQ(scan("listed-only").skipped, 3) << "also where the scan begins";
    EXPECT_EQ(scan("closed").skipped, 1) << "there is nothing to walk";
}

TEST_F(FileScannerTest, DoesWithFewThreadsAndDescriptors) {
    for (int i = 0; i < 300; ++i) {
        tree.text("a/b/c/" + std::to_string(i % 30) + "/d/" + std::to_string(i), "");
    }
    const Items expected = reference(tree);
    {
        const NoThreads none;
        EXPECT_EQ(itemsOf(scan().files), expected);
    }
    for (const int count : {3, 4, 6, 9}) {
        const Limit few = Limit::toDescriptors(static_cast<rlim_t>(count));
        const ScanResult result = scan();
        EXPECT_EQ(result.skipped, 0);
        EXPECT_EQ(itemsOf(result.files), expected) << count;
    }
    const Limit none = Limit::toDescriptors(0);
    EXPECT_EQ(scan().skipped, 1) << "what cannot be opened is told";
}

TEST_F(FileScannerTest, TellsWhatDoesNotFitIntoMemory) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "sanitizers need more memory than any limit leaves";
#endif
    constexpr std::size_t count = 20'000;
    for (std::size_t i = 0; i < count; ++i) {
        tree.text(std::to_string(i % 40) + "/" + std::string(200, 'n') + std::to_string(i), "");
    }
    bool wasShort = false;
    for (const rlim_t megabytes : {1UL, 2UL, 4UL, 6UL, 8UL, 10UL, 12UL, 16UL}) {
        const Limit little = Limit::toMemory(megabytes << 20);
        const ScanResult result = scan();
        EXPECT_TRUE(result.files.size() == count || result.skipped > 0) << megabytes << " MiB";
        EXPECT_EQ(FilteredFiles(result.files, FileCategory::all, QStringLiteral("nn")).size(), result.files.size());
        wasShort = wasShort || result.files.size() < count;
    }
    EXPECT_TRUE(wasShort);
}

/// No test makes files of such sizes. With an odd one they are not multiples of a block, and sorted in another way.
TEST(FileList, KeepsAndSortsSizesOverFourGiB) {
    constexpr std::int64_t gib = std::int64_t{1} << 30;
    for (const std::int64_t odd : {0, 1}) {
        const NameFolding folding{QLocale()};
        ScanRecorder recorder(folding);
        ScanRecorder::Folder top;
        WalkFolder root;
        root.tag = &top;
        recorder.beginFolder(root);
        std::vector<std::int64_t> sizes = {3 * gib, 5 * gib, 4 * gib, 4096, 1024 * gib + odd, 5 * gib + 4096};
        for (const std::int64_t size : sizes) {
            FileStatus status;
            status.allocated = size;
            recorder.file(std::to_string(size), status);
        }
        std::int64_t skipped = 0;
        const FileList all = mergedFiles(FileURL("/"), top, {&recorder}, skipped);
        std::sort(sizes.rbegin(), sizes.rend());
        for (std::size_t index = 0; index < sizes.size(); ++index) {
            EXPECT_EQ(all.sizeAt(index), sizes[index]);
            EXPECT_EQ(all.urlAt(index), FileURL("/").appendingPathComponent(std::to_string(sizes[index])));
        }
    }
}

}  // namespace
