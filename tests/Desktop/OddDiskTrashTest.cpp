#include "Desktop/TrashFixture.h"
#include "support/FuseDisk.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cerrno>

namespace {

using namespace trashtest;

class OddDiskTrash : public TrashTest {
protected:
    void SetUp() override {
        if (!disk.isMounted()) {
            GTEST_SKIP() << FuseDisk::whyNot;
        }
        root.text("disk/otra", "content");
    }

    FileURL put(const std::string& name) const {
        root.text("disk/" + name, name);
        return root.url("disk/" + name);
    }

    /// Everything on the disk outside its Trash.
    [[nodiscard]] std::set<std::string> rest() const {
        std::set<std::string> names;
        for (const fs::directory_entry& entry : fs::directory_iterator(disk.path(""))) {
            if (entry.path() != ofDisk) {
                names.insert(entry.path().filename().string());
            }
        }
        return names;
    }

    FuseDisk disk{root.path("disk")};
    const fs::path ofDisk = disk.path(".Trash-" + std::to_string(geteuid()));
};

TEST_F(OddDiskTrash, TakesNamesOfAnyLengthAndGivesThemBack) {
    const std::string start(31, 's');
    const std::string euros = QStringLiteral("€").repeated(255).toStdString();
    const std::string names[] = {std::string(256, 'a'), start + std::string(256, 's'), euros, std::string(1000, 'x')};
    put(start);
    for (const std::string& name : names) {
        const FileURL url = put(name);
        EXPECT_EQ(move(url), std::nullopt) << name.size();
        EXPECT_TRUE(rest() == (std::set<std::string>{"otra", start})) << name.size();
        EXPECT_EQ(originsIn(ofDisk), Origins{name});
        const fs::path item = onlyItemIn(ofDisk);
        EXPECT_EQ(contentOf(item), name);
        fs::rename(item, url.path());
        EXPECT_EQ(contentOf(url.path()), name);
        fs::remove(url.path());
        fs::remove_all(ofDisk);
    }
    EXPECT_EQ(originsIn(trash), Origins{});
}

TEST_F(OddDiskTrash, RefusesWhatItCannotKnow) {
    const FileURL silent = put("ilegible");
    const std::optional<FileStatus> status = fileStatus(silent);
    ASSERT_TRUE(status);
    disk.failStatus("ilegible", EIO);
    EXPECT_EQ(mover.move(silent, status->identity), TrashError::diskError);
    EXPECT_EQ(mover.refusal(silent), TrashError::diskError);

    // Nobody can say whether it is still the same.
    const FileURL changing = put("cambiante");
    disk.set(FuseDisk::Habit::changeInodes);
    EXPECT_EQ(move(changing), TrashError::changed);
    EXPECT_EQ(rest(), (std::set<std::string>{"otra", "ilegible", "cambiante"}));
    EXPECT_EQ(originsIn(ofDisk), Origins{});
    EXPECT_EQ(originsIn(trash), Origins{});
}

TEST_F(OddDiskTrash, LeavesNoHalfWrittenNote) {
    const FileURL url = put("corto");
    EXPECT_TRUE(moveWithShortWrites(url)) << "there are no files without a name on this disk";
    EXPECT_EQ(contentOf(url.path()), "corto");
    EXPECT_EQ(originsIn(ofDisk), Origins{});
}

}  // namespace
