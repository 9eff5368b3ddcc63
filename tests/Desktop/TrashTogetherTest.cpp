// Other programs at the same Trash: at the same time, and to bring things back.

#include "Desktop/TrashFixture.h"
#include "Trash/TrashNames.h"

#include <sys/wait.h>

#include <array>
#include <cstdlib>
#include <fstream>
#include <map>

using namespace trashtest;  // NOLINT(google-build-using-namespace)

namespace {

std::string inShell(const std::string& text) {
    std::string result = "'";
    for (const char c : text) {
        result += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return result + '\'';
}

int run(const std::string& command) {
    return std::system(command.c_str());  // NOLINT(cert-env33-c)
}

bool isInstalled(const std::string& program) {
    return run("command -v " + program + " >/dev/null 2>&1") == 0;
}

class TrashTogether : public TrashTest {
protected:
    /// Lets the command that follows use this home.
    [[nodiscard]] std::string inHome() const {
        return "env -u GIO_USE_VFS HOME=" + inShell(home.string()) +
               " XDG_DATA_HOME=" + inShell((home / ".local/share").string()) + ' ';
    }
};

}  // namespace

TEST_F(TrashTogether, SharesNamesWithOtherProgramsAtTheSameTime) {
    constexpr int programs = 3;
    constexpr int each = 40;
    const bool hasGio = isInstalled("gio");
    Origins expected;
    std::array<pid_t, programs> children{};
    for (int program = 0; program < programs; ++program) {
        for (int i = 0; i < each; ++i) {
            const std::string name = std::to_string(program) + '.' + std::to_string(i);
            fs::create_directories(folder / name);
            expected.insert(make(name + "/foto.jpg", name).path());
        }
    }
    for (int program = 0; program < programs; ++program) {
        children.at(static_cast<size_t>(program)) = fork();
        if (children.at(static_cast<size_t>(program)) != 0) {
            continue;
        }
        int failures = 0;
        for (int i = 0; i < each; ++i) {
            const fs::path path = folder / (std::to_string(program) + '.' + std::to_string(i)) / "foto.jpg";
            const bool byGio = program == 2 && hasGio;
            failures += byGio ? run(inHome() + "GIO_USE_VFS=local gio trash " + inShell(path.string())) != 0
                              : move(path).has_value();
        }
        _exit(failures);
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    EXPECT_EQ(originsIn(trash), expected);
    for (const fs::directory_entry& item : fs::directory_iterator(trash / "files")) {
        const std::string note = contentOf(trash / "info" / (item.path().filename().string() + ".trashinfo"));
        EXPECT_NE(note.find('/' + contentOf(item.path()) + "/foto.jpg\n"), std::string::npos) << "a note of another";
    }
}

TEST_F(TrashTogether, IsRestoredByTheDesktop) {
    const std::string bus = inHome() + "dbus-run-session -- sh -c ";
    fs::create_directories(folder / "árbol" / "sub");
    make("árbol/sub/file");
    fs::create_hard_link(folder / "árbol" / "sub" / "file", folder / "árbol" / "again");
    fs::create_symlink("nowhere", folder / "árbol" / "link");
    std::map<std::string, std::string> portraits;
    for (const std::string& name :
         {std::string("árbol"), std::string("50% é\n\xff.txt"), std::string("-rf %41"), std::string(255, 'n')}) {
        if (!isThere(folder / name)) {
            make(name, name);
        }
        portraits[name] = portraitOf(folder / name);
        ASSERT_EQ(move(folder / name), std::nullopt);
    }
    if (!isInstalled("gio") || !isInstalled("dbus-run-session") ||
        run(bus + inShell("gio list trash:/// 2>/dev/null | grep -q rbol") + " 2>/dev/null") != 0) {
        GTEST_SKIP() << "no desktop that restores is installed";
    }
    std::string command;
    for (const auto& [name, portrait] : portraits) {
        const std::string trashed = nameInTrash(name, std::nullopt, 255);
        command += "gio move " + inShell("trash:///" + percentEncoded(trashed)) + ' ' +
                   inShell((folder / name).string()) + " || exit 1; ";
    }
    ASSERT_EQ(run(bus + inShell(command) + " 2>/dev/null"), 0);
    for (const auto& [name, portrait] : portraits) {
        EXPECT_EQ(portraitOf(folder / name), portrait);
    }
    EXPECT_EQ(originsIn(trash), Origins());
}
