#include "JunkCleaner/JunkMeasurement.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/Handover.h"
#include "Foundation/OpenPath.h"
#include "Foundation/Packages.h"
#include "Foundation/SmallFile.h"
#include "JunkCleaner/ContentSigns.h"

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <numeric>
#include <utility>

namespace {

using ContentSigns::Owner;
using ContentSigns::Test;

/// The maximum number of files and repositories that are opened for one visitor of a walk. Other ones are no signs.
constexpr std::size_t maximumQuestions = 512;

/// What has to be read to tell whether it is a sign.
struct Question {
    std::size_t candidate = 0;
    FileURL url;       ///< The candidate, or the folder that contains it if it is a file.
    std::string path;  ///< Relative to `url`, of the folder that has `name`.
    std::string name;
    Test test = Test::none;
};

/// How a folder of the walk is looked at.
struct Root {
    std::size_t candidate = 0;
    ContentLook look = ContentLook::onlyCopies;
    Owner owner = Owner::somebody;
    std::uint8_t marks = 0;  ///< By the name of the folder itself.
};

/// The marks of a folder as the walk keeps them: a pointer to their value.
void* tagOf(std::uint8_t marks) {
    static auto values = [] {
        std::array<std::uint8_t, 256> all{};
        std::iota(all.begin(), all.end(), std::uint8_t{0});
        return all;
    }();
    return &values.at(marks);
}

/// Adds up sizes and looks for signs. Aligned to a cache line, because each one is written by a thread of its own.
class alignas(64) ContentVisitor final : public WalkVisitor {
public:
    ContentVisitor(const std::vector<Root>& roots, const InstalledAppTokens& installed)
        : m_roots(roots), m_installed(installed), m_sums(roots.size()), m_hasSign(roots.size()) {}

    void beginFolder(const WalkFolder& folder) override {
        m_folder = &folder;
        m_root = folder.root;
        m_look = m_hasSign[m_root] != 0 ? ContentLook::byName : m_roots[m_root].look;
        m_marks = folder.tag == nullptr ? m_roots[m_root].marks : *static_cast<const std::uint8_t*>(folder.tag);
    }

    void file(std::string_view name, const FileStatus& status) override {
        m_sums[m_root] = checkedSum(m_sums[m_root], status.allocated.value_or(0));
        if (m_look == ContentLook::localBuilds) {
            m_isBuiltHere = m_isBuiltHere || name == "maven-metadata-local.xml";
            m_hasArtifact = m_hasArtifact || name.ends_with(".pom") || name.ends_with(".jar");
            m_isFetched = m_isFetched || name == "_remote.repositories" || name == "_maven.repositories";
        } else if (m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            if (name == "HEAD" && ++m_partsOfRepository == 3) {
                found(Test::ownCommits, {});
            }
            if (!has(ContentSigns::packages)) {
                lookAtFile(name);
            }
            lookForApplication(name);
        }
    }

    void subfolder(WalkFolder& folder) override {
        if (m_look != ContentLook::onlyCopies || has(ContentSigns::fetched)) {
            return;
        }
        lookForApplication(folder.name);
        // Only an item as a whole is known to be fetched.
        const std::uint8_t marks = ContentSigns::marksOf(folder.name);
        folder.tag = tagOf(m_marks | (marks == ContentSigns::fetched ? std::uint8_t{0} : marks));
        if ((folder.name == "objects" || folder.name == "refs") && ++m_partsOfRepository == 3) {
            found(Test::ownCommits, {});
        }
        if ((folder.name == "cur" || folder.name == "new" || folder.name == "tmp") && ++m_partsOfMailbox == 3 &&
            !has(ContentSigns::packages)) {
            found(Test::none, {});
        }
    }

    void hiddenEntry(std::string_view name) override {
        if (name.size() > 2 && m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            const auto test = ContentSigns::signOf(ContentSigns::Place::hidden, name, owner());
            if (test && (*test == Test::ownCommits || !has(ContentSigns::packages))) {
                found(*test, name);
            }
        }
    }

    /// It may be what exists only once.
    void unreadable() override {
        if (m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            found(Test::none, {});
        }
    }

    void vanished() override {}

    void endFolder() override {
        if (m_look == ContentLook::localBuilds && (m_isBuiltHere || (m_hasArtifact && !m_isFetched))) {
            found(Test::none, {});
        }
        m_isBuiltHere = m_hasArtifact = m_isFetched = false;
        m_partsOfRepository = m_partsOfMailbox = 0;
    }

    [[nodiscard]] const std::vector<std::int64_t>& sums() const { return m_sums; }
    [[nodiscard]] bool hasSign(std::size_t root) const { return m_hasSign[root] != 0; }
    [[nodiscard]] std::vector<Question> takeQuestions() { return std::move(m_questions); }

private:
    [[nodiscard]] bool has(std::uint8_t marks) const { return (m_marks & marks) != 0; }
    [[nodiscard]] Owner owner() const { return m_roots[m_root].owner; }

    void lookAtFile(std::string_view name) {
        if (has(ContentSigns::unsaved) || (has(ContentSigns::personalData) && owner() == Owner::leftover)) {
            found(Test::none, {});
            return;
        }
        const auto test = ContentSigns::signOf(ContentSigns::Place::file, name, owner());
        if (test && !(*test == Test::privateKey && has(ContentSigns::testData))) {
            found(*test, name);
        }
    }

    /// A maker's folder may be named after none of the maker's applications.
    void lookForApplication(std::string_view name) {
        if (m_folder->parent == nullptr && owner() == Owner::leftover && m_installed.isOfApplication(name)) {
            found(Test::none, {});
        }
    }

    void found(Test test, std::string_view name) {
        if (test == Test::none) {
            m_hasSign[m_root] = 1;
            m_look = ContentLook::byName;
        } else if (m_questions.size() < maximumQuestions) {
            m_questions.push_back({m_root, {}, m_folder->path(), std::string(name), test});
        }
    }

    const std::vector<Root>& m_roots;
    const InstalledAppTokens& m_installed;
    std::vector<std::int64_t> m_sums;  ///< One a root, like the next.
    std::vector<char> m_hasSign;
    std::vector<Question> m_questions;

    // Of the folder that is being listed; it exists until it is listed.
    const WalkFolder* m_folder = nullptr;
    std::size_t m_root = 0;
    ContentLook m_look = ContentLook::byName;
    std::uint8_t m_marks = 0;
    bool m_isBuiltHere = false;
    bool m_hasArtifact = false;
    bool m_isFetched = false;
    int m_partsOfRepository = 0;  ///< How many of the three entries of a bare repository it has.
    int m_partsOfMailbox = 0;     ///< How many of the three folders of a mailbox it has.
};

bool isSign(const Question& question) {
    const Descriptor base = openPath(question.url, O_PATH | O_DIRECTORY | O_NOFOLLOW);
    std::string folder = question.path.empty() ? "." : question.path;
    if (question.test == Test::ownCommits && !question.name.empty()) {
        folder.append("/").append(question.name);
    }
    const Descriptor opened = base.isOpen()
                                  ? openPathAt(base.number(), folder, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_NONBLOCK)
                                  : Descriptor();
    if (!opened.isOpen()) {
        return ContentSigns::mayBeThere(errno);
    }
    if (question.test == Test::ownCommits) {
        return ContentSigns::hasOwnCommits(opened.number());
    }
    const auto text = readSmallFile(opened.number(), question.name.c_str(), 4096, FollowLinks::no);
    return text ? ContentSigns::isPrivateKey(*text) : ContentSigns::mayBeThere(errno);
}

/// Reads what has to be read, on a thread that is not waited for if the disk does not answer.
std::shared_ptr<LateAnswer> answer(std::vector<Question> questions, std::vector<JunkCandidate>& candidates,
                                   const std::stop_token& stop) {
    struct Answers {
        std::vector<std::size_t> signs;
        std::size_t read = 0;
    };
    const auto asked = std::make_shared<const std::vector<Question>>(std::move(questions));
    const auto answers = std::make_shared<Handover<Answers>>();
    DiskRequests requests;
    requests.start([asked, answers] {
        for (const Question& question : *asked) {
            heartbeat();
            const bool sign = isSign(question);
            answers->edit([&](Answers& given) {
                ++given.read;
                if (sign) {
                    given.signs.push_back(question.candidate);
                }
            });
        }
    });
    std::shared_ptr<LateAnswer> late = requests.wait(stop);
    const Answers given = answers->take();
    for (const std::size_t candidate : given.signs) {
        candidates[candidate].hasSign = true;
    }
    for (std::size_t i = given.read; i < asked->size(); ++i) {
        candidates[(*asked)[i].candidate].hasSign = true;
    }
    return late;
}

/// A file tells by its name what it is.
void lookAtFile(std::size_t index, JunkCandidate& candidate, std::vector<Question>& questions) {
    const FileURL& url = candidate.item.url;
    const Owner owner = candidate.item.kind == JunkKind::leftover ? Owner::leftover : Owner::somebody;
    const auto test = candidate.look == ContentLook::onlyCopies
                          ? ContentSigns::signOf(ContentSigns::Place::file, url.lastPathComponent(), owner)
                          : std::nullopt;
    candidate.hasSign = test == Test::none;
    if (test == Test::privateKey) {
        questions.push_back({index, url.deletingLastPathComponent(), {}, std::string(url.lastPathComponent()), *test});
    }
}

}  // namespace

std::shared_ptr<LateAnswer> measureJunk(std::vector<JunkCandidate>& candidates, const InstalledAppTokens& installed,
                                        const std::stop_token& stop) {
    std::vector<WalkRoot> folders;
    std::vector<Root> roots;
    std::vector<Question> questions;
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        JunkCandidate& candidate = candidates[i];
        if (candidate.item.identity.isFolder()) {
            folders.push_back({candidate.item.url});
            roots.push_back({i, candidate.look,
                             candidate.item.kind == JunkKind::leftover ? Owner::leftover : Owner::somebody,
                             ContentSigns::marksOf(candidate.item.url.lastPathComponent())});
        } else {
            lookAtFile(i, candidate, questions);
        }
    }
    std::shared_ptr<LateAnswer> late;
    if (!roots.empty()) {
        std::vector<ContentVisitor> visitors(DirectoryWalk::maximumWorkers(), ContentVisitor(roots, installed));
        std::vector<WalkVisitor*> walkVisitors;
        std::transform(visitors.begin(), visitors.end(), std::back_inserter(walkVisitors),
                       [](ContentVisitor& visitor) { return &visitor; });
        // An item contains no mount, so no mount table is needed.
        DirectoryWalk walk(std::move(folders), [](std::string_view name) { return !isPackageName(name); }, stop, {});
        walk.run(walkVisitors);
        late = walk.lateAnswer();
        for (ContentVisitor& visitor : visitors) {
            for (std::size_t i = 0; i < roots.size(); ++i) {
                JunkCandidate& candidate = candidates[roots[i].candidate];
                candidate.item.size = checkedSum(candidate.item.size, visitor.sums()[i]);
                candidate.hasSign = candidate.hasSign || visitor.hasSign(i);
            }
            for (Question& question : visitor.takeQuestions()) {
                question.candidate = roots[question.candidate].candidate;
                question.url = candidates[question.candidate].item.url;
                questions.push_back(std::move(question));
            }
        }
    }
    std::erase_if(questions, [&](const Question& question) { return candidates[question.candidate].hasSign; });
    if (!questions.empty()) {
        if (auto lateAnswers = answer(std::move(questions), candidates, stop)) {
            late = std::move(lateAnswers);
        }
    }
    return late;
}
