#include "JunkCleaner/ContentSigns.h"

#include "Foundation/Descriptor.h"
#include "Foundation/FileStatus.h"
#include "Foundation/SmallFile.h"
#include "JunkCleaner/NamePattern.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ContentSigns {

namespace {

struct SignRow {
    Place place;
    Test test;
    Owner owner;
    std::string_view names;  ///< Separated by "|", each with at most one "*".
    std::string_view reason;
};

constexpr SignRow signRows[] = {
    {Place::file, Test::none, Owner::somebody,
     "*.odt|*.ods|*.odp|*.odg|*.fodt|*.doc|*.docx|*.xls|*.xlsx|*.ppt|*.pptx|*.lyx|*.gnumeric|*.abw",
     "office documents"},
    {Place::file, Test::none, Owner::somebody,
     "*.xcf|*.kra|*.ora|*.psd|*.xopp|*.rnote|*.blend|*.clip|*.afdesign|*.afphoto|*.cdr|*.drawio|*.dia|*.fcstd|"
     "*.dwg|*.skp|*.kicad_pcb|*.kicad_sch|*.sla",
     "drawings"},
    {Place::file, Test::none, Owner::somebody, "*.cr2|*.cr3|*.nef|*.arw|*.raf|*.orf|*.rw2|*.pef|*.dng",
     "photographs as cameras take them; smaller ones are made from them, never these"},
    {Place::file, Test::none, Owner::somebody,
     "*.aup|*.aup3|*.aup3unsaved|*.ardour|*.rpp|*.flp|*.mmp|*.mmpz|*.mscz|*.mscx|*.h2song|*.qtr|*.bwproject|"
     "*.cpr",
     "sound projects"},
    {Place::file, Test::none, Owner::somebody, "*.kdenlive|*.mlt|*.osp|*.veg|*.prproj|*.flb", "film projects"},
    {Place::file, Test::none, Owner::somebody,
     "*.autosave|*.asd|*.recover|fc_recovery_file.xml|autosave.book|*_autosave.blend", "unsaved work"},
    {Place::hidden, Test::none, Owner::somebody, ".*.swp|.*.swo|.*.kate-swp|.backup", "unsaved work"},
    {Place::file, Test::none, Owner::somebody,
     "id_rsa|id_dsa|id_ecdsa|id_ed25519|id_ecdsa_sk|id_ed25519_sk|secring.gpg|*.ppk|*.p12|*.pfx|*.jks", "private keys"},
    {Place::file, Test::privateKey, Owner::somebody, "*.pem|*.key|*.asc", "private keys, but certificates as well"},
    {Place::file, Test::none, Owner::somebody,
     "*.kdbx|*.kdb|*.psafe3|*.opvault|*.agilekeychain|wallet.dat|*.wallet|credentials.json",
     "password stores, wallets, log-in tokens"},
    {Place::file, Test::none, Owner::somebody, "mbox|*.mbox|*.mbx|*.pst|*.ost", "mailboxes"},
    {Place::hidden, Test::ownCommits, Owner::somebody, ".git", "repositories, but clones as well"},
    {Place::hidden, Test::none, Owner::somebody, ".stfolder|.sync_*.db|.dropbox|.owncloudsync.log", "sync folders"},
    {Place::file, Test::none, Owner::leftover,
     "*.ics|*.vcf|*_history|*.gnucash|*.kmy|*.anki2|*.opml|*.jrnl|*.gpx|*.kml",
     "calendars, contacts, histories, accounts, cards, journeys"},
    {Place::file, Test::none, Owner::leftover, "*.sav|*.save|*.savegame|*.srm|*.gguf|*.safetensors",
     "saves of games, models"},
    {Place::file, Test::none, Owner::leftover,
     "PG_VERSION|ibdata1|dump.rdb|WiredTiger|*.fdb|*.accdb|*.odb|logins.json|key4.db|Login Data",
     "databases, passwords of browsers"},
};

struct MarkRow {
    std::string_view names;
    std::uint8_t marks;
    std::string_view reason;
};

constexpr MarkRow markRows[] = {
    {"autosave|autosaves|auto-save|auto_save|autorecover|autorecovery|sessiondata", unsaved,
     "copies that a program makes of unsaved work"},
    {"recovery|recovered|crash-recovery|unsaved|drafts|stalefiles", unsaved, "what would be lost after a crash"},
    {"saves|savegames|saved games|savedgames|worlds|savestates|memcards", personalData, "saves of games"},
    {"vault|vaults|wallet|wallets|keystore|secrets|passwords|otp", personalData, "secrets"},
    {"notes|journal|journals|diary|mail|maildir|calendars|contacts|addressbook|local-mail", personalData,
     "what a person has written"},
    {"node_modules|site-packages|dist-packages|vendor|third_party|gems", packages, "packages of programming languages"},
    {"yay|paru|pikaur|trizen|aurutils|pre-commit|gnome-builder|flatpak-builder|jhbuild", packages,
     "clones and builds of packages"},
    {"test|tests|testdata|test_data|fixtures|examples|example|samples|certs_test", testData, "keys made for tests"},
    {"uv|pip|pipenv|pdm|yarn|pnpm|npm|bun|deno|node|node-gyp|typescript|corepack|electron|electron-builder", fetched,
     "downloads of package managers"},
    {"go-build|gopls|golangci-lint|bazel|bazelisk|ccache|sccache|mold|zig|zls|nim|composer|coursier|sbt|hex|rebar3",
     fetched, "downloads and results of compilers"},
    {"nix|conan|vcpkg|renv|julia|opam|cabal|stack|helm|trivy|terraform|tldr|ms-playwright|puppeteer|cypress", fetched,
     "downloads of package managers"},
    {"mesa_shader_cache|mesa_shader_cache_db|nvidia|radv_builtin_shaders64|fontconfig|thumbnails|gstreamer-1.0|babl",
     fetched, "made by libraries"},
};

/// The first bytes and the lengths of some folded texts: tells at once of most others that they are none of them.
class TextShapes {
public:
    void add(std::string_view text) { m_lengths.at(indexOf(text.front())) |= lengthBit(text); }
    [[nodiscard]] bool mayContain(std::string_view text) const {
        return !text.empty() && (m_lengths.at(indexOf(text.front())) & lengthBit(text)) != 0;
    }

private:
    static std::size_t indexOf(char byte) { return static_cast<unsigned char>(foldedByte(byte)); }
    static std::uint64_t lengthBit(std::string_view text) { return std::uint64_t{1} << (text.size() % 64); }

    std::array<std::uint64_t, 256> m_lengths{};  ///< By the first byte; a bit for each length modulo 64.
};

/// The rows of one kind, for quick look-ups: every name in a junk scan is looked up, and nearly none is in a table.
template <class Value>
class NameTable {
public:
    void add(std::string_view names, Value value) {
        forEachPart(names, '|', [&](std::string_view name) {
            const std::string folded = foldedName(name);
            if (folded.find('*') == std::string::npos) {
                m_names.emplace(folded, value);
                m_nameShapes.add(folded);
            } else if (folded.starts_with("*.") && folded.find('.', 2) == std::string::npos) {
                m_extensions.emplace(folded.substr(2), value);
                m_extensionShapes.add(std::string_view(folded).substr(2));
            } else {
                m_patterns.emplace_back(folded, value);
            }
        });
    }

    [[nodiscard]] std::optional<Value> find(std::string_view name) const {
        if (name.empty()) {
            return std::nullopt;
        }
        if (m_nameShapes.mayContain(name)) {
            if (const auto found = m_names.find(foldedName(name)); found != m_names.end()) {
                return found->second;
            }
        }
        const std::string_view extension = name.substr(std::min(name.rfind('.'), name.size() - 1) + 1);
        if (m_extensionShapes.mayContain(extension)) {
            if (const auto found = m_extensions.find(foldedName(extension)); found != m_extensions.end()) {
                return found->second;
            }
        }
        for (const auto& [pattern, value] : m_patterns) {
            if (mayMatch(name, pattern) && matchesPattern(foldedName(name), pattern)) {
                return value;
            }
        }
        return std::nullopt;
    }

private:
    /// Whether an end of the pattern that is no "*" is the name's.
    static bool mayMatch(std::string_view name, std::string_view pattern) {
        return pattern.front() == '*' ? foldedByte(name.back()) == pattern.back()
                                      : foldedByte(name.front()) == pattern.front();
    }

    TextShapes m_nameShapes;
    TextShapes m_extensionShapes;
    std::unordered_map<std::string, Value> m_names;
    std::unordered_map<std::string, Value> m_extensions;
    std::vector<std::pair<std::string, Value>> m_patterns;
};

using SignTable = NameTable<std::pair<Test, Owner>>;

const SignTable& signsAt(Place place) {
    static const auto tables = [] {
        std::array<SignTable, 2> made;
        for (const SignRow& row : signRows) {
            made.at(static_cast<std::size_t>(row.place)).add(row.names, {row.test, row.owner});
        }
        return made;
    }();
    return tables.at(static_cast<std::size_t>(place));
}

/// Longer than the history of the repositories that are met in practice.
constexpr std::size_t maximumLog = std::size_t{256} * 1024;
constexpr std::size_t maximumKey = 4096;

/// Whether a folder has entries, or cannot be read.
bool hasEntries(int folder, const char* name) {
    Descriptor descriptor(openat(folder, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW));
    struct CloseFolder {
        void operator()(DIR* stream) const { closedir(stream); }
    };
    const std::unique_ptr<DIR, CloseFolder> stream(descriptor.isOpen() ? fdopendir(descriptor.number()) : nullptr);
    if (stream == nullptr) {
        return mayBeThere(errno);
    }
    (void)descriptor.release();
    while (const dirent* const entry = readdir(stream.get())) {
        if (entry->d_name[0] != '.') {
            return true;
        }
    }
    return false;
}

}  // namespace

std::optional<Test> signOf(Place place, std::string_view name, Owner owner) {
    const auto found = signsAt(place).find(name);
    return found && (found->second == Owner::somebody || owner == Owner::leftover) ? std::optional(found->first)
                                                                                   : std::nullopt;
}

std::uint8_t marksOf(std::string_view folderName) {
    static const auto table = [] {
        NameTable<std::uint8_t> made;
        for (const MarkRow& row : markRows) {
            made.add(row.names, row.marks);
        }
        return made;
    }();
    return table.find(folderName).value_or(0);
}

bool isPrivateKey(std::string_view text) {
    text = text.substr(0, maximumKey);
    const std::size_t begin = text.find("-----BEGIN ");
    return begin != std::string_view::npos &&
           text.substr(begin, text.find('\n', begin) - begin).find("PRIVATE KEY") != std::string_view::npos;
}

bool hasOwnCommits(int repository) {
    const auto log = readSmallFile(repository, "logs/HEAD", maximumLog, FollowLinks::no);
    if (!log && mayBeThere(errno)) {
        return true;
    }
    if (log) {
        // A line ends with what was done: "clone: from …", "pull: Fast-forward", "commit (initial): …".
        bool isCommit = false;
        forEachPart(*log, '\n', [&](std::string_view line) {
            const std::string_view action = line.substr(std::min(line.find('\t'), line.size() - 1) + 1);
            isCommit = isCommit || action.starts_with("commit") || action.starts_with("cherry-pick") ||
                       action.starts_with("am") || action.starts_with("revert");
        });
        return isCommit || fileStatus(repository, "refs/stash").has_value();
    }
    // Without a log, as on servers: what has branches and was not fetched from anywhere.
    const auto config = readSmallFile(repository, "config", maximumLog, FollowLinks::no);
    if (!config) {
        return mayBeThere(errno);
    }
    if (config->find("[remote ") != std::string::npos) {
        return false;
    }
    if (hasEntries(repository, "refs/heads")) {
        return true;
    }
    const auto packed = readSmallFile(repository, "packed-refs", maximumLog, FollowLinks::no);
    return packed ? packed->find("refs/heads/") != std::string::npos : mayBeThere(errno);
}

bool mayBeThere(int error) {
    return isShortage(error) || error == EACCES || error == EIO;
}

}  // namespace ContentSigns
