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

/// The path of a folder relative to its root.
std::string pathOf(const WalkFolder& folder) {
    std::string path(folder.pathLength, '/');
    std::size_t end = path.size();
    for (const WalkFolder* at = &folder; at->parent != nullptr; at = at->parent) {
        end -= at->nameLength;
        std::copy_n(at->name, at->nameLength, path.begin() + static_cast<std::ptrdiff_t>(end));
        end -= end > 0 ? 1 : 0;
    }
    return path;
}

/// Adds up sizes and looks for signs. Aligned to a cache line, because each one is written by a thread of its own.
class alignas(64) ContentVisitor final : public WalkVisitor {
public:
    explicit ContentVisitor(const std::vector<Root>& roots)
        : m_roots(roots), m_sums(roots.size()), m_hasSign(roots.size()) {}

    void beginFolder(WalkFolder& folder) override {
        finishFolder();
        m_folder = &folder;
        const Root& root = m_roots[folder.root];
        m_look = m_hasSign[folder.root] != 0 ? ContentLook::byName : root.look;
        m_marks = root.marks;
        for (const WalkFolder* at = &folder; m_look == ContentLook::onlyCopies && at->parent != nullptr;
             at = at->parent) {
            // Only an item as a whole is known to be fetched.
            const std::uint8_t marks = ContentSigns::marksOf({at->name, at->nameLength});
            m_marks |= marks == ContentSigns::fetched ? 0 : marks;
        }
    }

    void file(std::string_view name, const FileStatus& status) override {
        std::int64_t& sum = m_sums[m_folder->root];
        sum = checkedSum(sum, status.allocated.value_or(0));
        if (m_look == ContentLook::localBuilds) {
            m_isBuiltHere = m_isBuiltHere || name == "maven-metadata-local.xml";
            m_hasArtifact = m_hasArtifact || name.ends_with(".pom") || name.ends_with(".jar");
            m_isFetched = m_isFetched || name == "_remote.repositories" || name == "_maven.repositories";
        } else if (m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            m_isRepository += name == "HEAD" ? 1 : 0;
            if (!has(ContentSigns::packages)) {
                lookAtFile(name);
            }
        }
    }

    void subfolder(const WalkFolder& folder) override {
        const std::string_view name(folder.name, folder.nameLength);
        m_isRepository += name == "objects" || name == "refs" ? 1 : 0;
        m_isMailbox += name == "cur" || name == "new" || name == "tmp" ? 1 : 0;
    }

    void hiddenEntry(std::string_view name) override {
        if (name.size() > 2 && m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            const auto test = ContentSigns::signOf(ContentSigns::Place::hidden, name, owner());
            if (test && (*test == Test::ownCommits || !has(ContentSigns::packages))) {
                found(*test, name);
            }
        }
    }

    void unreadable() override {}

    /// To be called after the walk.
    void finishFolder() {
        if (m_folder != nullptr && m_look == ContentLook::localBuilds &&
            (m_isBuiltHere || (m_hasArtifact && !m_isFetched))) {
            found(Test::none, {});
        } else if (m_folder != nullptr && m_look == ContentLook::onlyCopies && !has(ContentSigns::fetched)) {
            if (m_isRepository == 3) {
                found(Test::ownCommits, {});
            }
            if (m_isMailbox == 3 && !has(ContentSigns::packages)) {
                found(Test::none, {});
            }
        }
        m_isBuiltHere = m_hasArtifact = m_isFetched = false;
        m_isRepository = m_isMailbox = 0;
    }

    [[nodiscard]] const std::vector<std::int64_t>& sums() const { return m_sums; }
    [[nodiscard]] bool hasSign(std::size_t root) const { return m_hasSign[root] != 0; }
    [[nodiscard]] std::vector<Question> takeQuestions() { return std::move(m_questions); }

private:
    [[nodiscard]] bool has(std::uint8_t marks) const { return (m_marks & marks) != 0; }
    [[nodiscard]] Owner owner() const { return m_roots[m_folder->root].owner; }

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

    void found(Test test, std::string_view name) {
        if (test == Test::none) {
            m_hasSign[m_folder->root] = 1;
            m_look = ContentLook::byName;
        } else if (m_questions.size() < maximumQuestions) {
            m_questions.push_back({m_folder->root, {}, pathOf(*m_folder), std::string(name), test});
        }
    }

    const std::vector<Root>& m_roots;
    std::vector<std::int64_t> m_sums;  ///< One a root, like the next.
    std::vector<char> m_hasSign;
    std::vector<Question> m_questions;

    // Of the folder that is being listed.
    const WalkFolder* m_folder = nullptr;
    ContentLook m_look = ContentLook::byName;
    std::uint8_t m_marks = 0;
    bool m_isBuiltHere = false;
    bool m_hasArtifact = false;
    bool m_isFetched = false;
    int m_isRepository = 0;  ///< How many of the three entries of a bare repository it has.
    int m_isMailbox = 0;     ///< How many of the three folders of a mailbox it has.
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
        return false;
    }
    if (question.test == Test::ownCommits) {
        return ContentSigns::hasOwnCommits(opened.number());
    }
    const auto text = readSmallFile(opened.number(), question.name.c_str(), 4096, FollowLinks::no);
    return text && ContentSigns::isPrivateKey(*text);
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

std::shared_ptr<LateAnswer> measureJunk(std::vector<JunkCandidate>& candidates, const std::stop_token& stop) {
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
        std::vector<ContentVisitor> visitors(DirectoryWalk::recommendedThreads(), ContentVisitor(roots));
        std::vector<WalkVisitor*> walkVisitors;
        std::transform(visitors.begin(), visitors.end(), std::back_inserter(walkVisitors),
                       [](ContentVisitor& visitor) { return &visitor; });
        // An item contains no mount, so no mount table is needed.
        DirectoryWalk walk(std::move(folders), [](std::string_view name) { return !isPackageName(name); }, stop, {});
        walk.run(walkVisitors);
        late = walk.lateAnswer();
        for (ContentVisitor& visitor : visitors) {
            visitor.finishFolder();
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
