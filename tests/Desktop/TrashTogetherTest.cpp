// Other programs at the same Trash: at the same time, and to bring things back.

#include "Desktop/TrashFixture.h"
#include "Trash/TrashNames.h"

#include <map>
#include <thread>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

std::string quoted(const std::string& text) {
    const QByteArray escaped = QByteArray::fromStdString(text).replace("'", "'\\''");
    return ('\'' + escaped + '\'').toStdString();
}

class TrashTogether : public TrashTest {
protected:
    /// Lets the command that follows use this home.
    const std::string inHome = "env -u GIO_USE_VFS HOME=" + quoted(home.string()) +
                               " XDG_DATA_HOME=" + quoted((home / ".local/share").string()) + ' ';
};

}  // namespace

TEST_F(TrashTogether, SharesNamesWithOtherProgramsAtTheSameTime) {
    Origins expected;
    const auto nameOf = [](int program, int i) { return std::to_string(program) + '.' + std::to_string(i); };
    std::vector<std::jthread> programs;
    programs.reserve(3);
    for (int program = 0; program < 3; ++program) {
        for (int i = 0; i < 40; ++i) {
            expected.insert(make(nameOf(program, i) + "/foto.jpg", nameOf(program, i)));
        }
    }
    for (int program = 0; program < 3; ++program) {
        programs.emplace_back([this, program, nameOf] {
            FreedesktopTrash own = nextMover();
            for (int i = 0; i < 40; ++i) {
                const FileURL url((folder / nameOf(program, i) / "foto.jpg").string());
                EXPECT_EQ(own.move(url, fileStatus(url)->identity), std::nullopt);
            }
        });
    }
    programs.clear();
    EXPECT_EQ(originsIn(trash), expected);
    for (const fs::path& item : entriesOf(trash / "files")) {
        const std::string note = contentOf(trash / "info" / (item.filename().string() + ".trashinfo"));
        EXPECT_NE(note.find('/' + contentOf(item) + "/foto.jpg\n"), std::string::npos) << "a note of another";
    }
}

TEST_F(TrashTogether, IsRestoredByTheDesktop) {
    make("árbol/sub/file");
    fs::create_hard_link(folder / "árbol/sub/file", folder / "árbol/again");
    fs::create_symlink("nowhere", folder / "árbol/link");
    std::map<std::string, std::string> portraits{{"árbol", {}}};
    for (const std::string& name : {std::string("50% é\n\xff.txt"), std::string("-rf %41"), std::string(255, 'n')}) {
        make(name, name);
        portraits[name];
    }
    std::string command;
    for (auto& [name, portrait] : portraits) {
        portrait = portraitOf(folder / name);
        ASSERT_EQ(move(folder / name), std::nullopt);
        const std::string trashed = nameInTrash(name, std::nullopt, 255);
        command += "gio move " + quoted("trash:///" + percentEncoded(trashed)) + ' ' +
                   quoted((folder / name).string()) + " || exit 1; ";
    }
    const auto onBus = [&](const std::string& text) {
        return runInShell(inHome + "dbus-run-session -- sh -c " + quoted(text) + " 2>/dev/null");
    };
    if (!onBus("gio list trash:/// 2>/dev/null | grep -q rbol")) {
        GTEST_SKIP() << "no desktop that restores is installed";
    }
    ASSERT_TRUE(onBus(command));
    for (const auto& [name, portrait] : portraits) {
        EXPECT_EQ(portraitOf(folder / name), portrait);
    }
    EXPECT_EQ(originsIn(trash), Origins());
}
