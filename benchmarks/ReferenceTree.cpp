#include "ReferenceTree.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>
#include <vector>

namespace {

void check(bool succeeded, const std::string& path) {
    if (!succeeded) {
        std::perror(path.c_str());
        std::exit(1);
    }
}

class TreeMaker {
public:
    TreeMaker(std::string root, std::int64_t files, std::uint64_t seed)
        : m_root(std::move(root)), m_files(files), m_random(seed) {}

    void make() {
        makeFolders();
        const std::int64_t crowded = m_files / 10;
        constexpr std::int64_t perCrowdedFolder = 20'000;
        for (std::int64_t made = 0; made < m_files; ++made) {
            const std::size_t folder =
                made < crowded ? static_cast<std::size_t>(1 + made / perCrowdedFolder) : below(m_folders.size());
            makeFile((m_folders[folder] + '/' + name(made)).append(extension()), made);
        }
    }

private:
    std::size_t below(std::size_t bound) { return static_cast<std::size_t>(m_random() % bound); }

    /// Unique by `number`; 5 to 40 bytes.
    std::string name(std::int64_t number) {
        static constexpr std::array<std::string_view, 12> words{
            "informe", "vacaciones", "año", "niño", "copia", "Mapa", "canción", "foto", "data", "x", "IMG_", "índice"};
        std::string text = below(25) == 0 ? "." : "";
        text += words.at(below(words.size()));
        if (below(2) == 0) {
            text.append("-").append(words.at(below(words.size())));
        }
        return text.append("-").append(std::to_string(number));
    }

    std::string_view extension() {
        static constexpr std::array<std::string_view, 10> extensions{".txt", ".jpg",    ".mp4", ".pdf", ".c",
                                                                     ".h",   ".tar.gz", "",     ".png", ".json"};
        return extensions.at(below(extensions.size()));
    }

    void makeFolders() {
        const auto count = static_cast<std::size_t>(static_cast<double>(m_files) * 0.082) + 10;
        m_folders.push_back(m_root);
        for (std::size_t i = 1; i < count; ++i) {
            // Prefers older folders as parents, which gives the depth of real homes.
            const double u = static_cast<double>(m_random() >> 11) / static_cast<double>(1ULL << 53);
            const auto parent = static_cast<std::size_t>(static_cast<double>(i) * std::pow(u, 1.28));
            std::string path = m_folders[parent] + "/d" + name(static_cast<std::int64_t>(i));
            path += below(200) == 0 ? ".app" : "";
            check(mkdir(path.c_str(), 0755) == 0, path);
            m_folders.push_back(std::move(path));
        }
    }

    void makeFile(const std::string& path, std::int64_t number) {
        if (below(50) == 0) {
            check(symlink("/etc/hostname", path.c_str()) == 0, path);
            return;
        }
        const int file = open(path.c_str(), O_CREAT | O_WRONLY | O_EXCL | O_CLOEXEC, 0644);
        check(file >= 0, path);
        if (number % 2 == 0) {
            check(posix_fallocate(file, 0, static_cast<off_t>(1 + below(4)) * 4096) == 0, path);
        }
        close(file);
    }

    std::string m_root;
    std::int64_t m_files;
    std::mt19937_64 m_random;
    std::vector<std::string> m_folders;
};

}  // namespace

void makeReferenceTree(const std::string& root, std::int64_t files, std::uint64_t seed) {
    const std::string complete = root + "/.complete";
    if (access(complete.c_str(), F_OK) == 0) {
        return;
    }
    check(mkdir(root.c_str(), 0755) == 0, root);
    TreeMaker(root, files, seed).make();
    close(open(complete.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
}

void makeChain(const std::string& root, int depth) {
    if (mkdir(root.c_str(), 0755) != 0) {
        check(errno == EEXIST, root);
        return;
    }
    int folder = open(root.c_str(), O_PATH | O_CLOEXEC);
    for (int level = 1; level < depth; ++level) {
        check(mkdirat(folder, "folder", 0755) == 0, root);
        const int next = openat(folder, "folder", O_PATH | O_CLOEXEC);
        close(folder);
        folder = next;
    }
    close(openat(folder, "file", O_CREAT | O_WRONLY | O_CLOEXEC, 0644));
    close(folder);
}
