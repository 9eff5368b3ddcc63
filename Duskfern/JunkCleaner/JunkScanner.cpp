#include "JunkCleaner/JunkScanner.h"

#include "Desktop/InstalledApplications.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/Handover.h"
#include "JunkCleaner/JunkFilter.h"
#include "JunkCleaner/JunkMeasurement.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <map>
#include <unordered_set>
#include <utility>

namespace JunkScanner {

namespace {

/// The paths of folders without links. Folders that do not exist are left out; for those whose disk does not answer,
/// the path as given.
class RealPaths {
public:
    RealPaths(const std::vector<FileURL>& urls, DiskRequests& requests) : m_urls(urls), m_answers(urls.size()) {
        for (std::size_t i = 0; i < urls.size(); ++i) {
            m_answers[i] = std::make_shared<Handover<Answer>>();
            requests.start([url = urls[i], answer = m_answers[i]] {
                const std::optional<std::string> path = realPath(url);
                answer->edit([&](Answer& given) { given = {true, path}; });
            });
        }
    }

    [[nodiscard]] std::vector<std::string> take() {
        std::vector<std::string> paths;
        for (std::size_t i = 0; i < m_urls.size(); ++i) {
            const Answer answer = m_answers[i]->take();
            if (!answer.hasAnswered || answer.path) {
                paths.push_back(answer.path.value_or(m_urls[i].path()));
            }
        }
        return paths;
    }

private:
    struct Answer {
        bool hasAnswered = false;
        std::optional<std::string> path;
    };

    const std::vector<FileURL>& m_urls;
    std::vector<std::shared_ptr<Handover<Answer>>> m_answers;
};

DiskAnswers readPlaces(const JunkPlaces& places, const std::shared_ptr<const InstalledApplications>& applications,
                       const std::stop_token& stop, std::shared_ptr<LateAnswer>& late) {
    DiskRequests requests;
    const auto names = std::make_shared<Handover<std::optional<InstalledNames>>>();
    requests.start([names, applications] {
        auto found = applications->names();
        names->edit([&](std::optional<InstalledNames>& given) { given = std::move(found); });
    });
    const auto running = std::make_shared<Handover<std::optional<RunningPrograms>>>();
    requests.start([running, proc = places.processes] {
        auto found = RunningPrograms::read(proc);
        running->edit([&](std::optional<RunningPrograms>& given) { given = std::move(found); });
    });
    RealPaths personal(places.personal, requests);
    RealPaths support(places.support, requests);
    std::vector<std::shared_ptr<Handover<PlaceListing>>> listings;
    for (const JunkPlace& place : places.places) {
        const auto listing = listings.emplace_back(std::make_shared<Handover<PlaceListing>>());
        requests.start([place, listing] { listJunkPlace(place, [&](const auto& change) { listing->edit(change); }); });
    }
    late = requests.wait(stop);
    DiskAnswers answers{names->take(), running->take(), personal.take(), support.take(), {}};
    std::transform(listings.begin(), listings.end(), std::back_inserter(answers.listings),
                   [](const auto& listing) { return listing->take(); });
    return answers;
}

/// Those of `urls` that are movable. One whose disk does not answer is not.
std::unordered_set<FileURL> movableOf(std::vector<FileURL> urls, const Movable& isMovable, const std::stop_token& stop,
                                      std::shared_ptr<LateAnswer>& late) {
    struct Check {
        std::vector<FileURL> urls;
        std::atomic<std::size_t> next = 0;
        Handover<std::unordered_set<FileURL>> movable;
    };
    const auto check = std::make_shared<Check>();
    check->urls = std::move(urls);
    // Few threads are enough, because each check is short.
    constexpr std::size_t threads = 4;
    DiskRequests requests;
    for (std::size_t i = 0; i < std::min(threads, check->urls.size()); ++i) {
        requests.start([check, isMovable] {
            for (std::size_t at = check->next++; at < check->urls.size(); at = check->next++) {
                heartbeat();
                const FileURL& url = check->urls[at];
                if (isMovable(url)) {
                    check->movable.edit([&](std::unordered_set<FileURL>& given) { given.insert(url); });
                }
            }
        });
    }
    if (auto lateChecks = requests.wait(stop)) {
        late = std::move(lateChecks);
    }
    return check->movable.take();
}

/// Removes the candidates that the Trash would refuse, and those whose disk does not answer. Of ordinary entries of one
/// folder that have the same mode it takes all or none, so one is asked about; about the others only if that is
/// refused.
void keepMovable(std::vector<JunkCandidate>& candidates, const Movable& isMovable, const std::stop_token& stop,
                 std::shared_ptr<LateAnswer>& late) {
    std::map<std::pair<std::string, std::uint16_t>, FileURL> firsts;
    std::vector<FileURL> asked;
    const auto firstLike = [&](const JunkCandidate& candidate) -> const FileURL& {
        const FileURL& url = candidate.item.url;
        return candidate.isOrdinary
                   ? firsts.try_emplace({url.deletingLastPathComponent().path(), candidate.mode}, url).first->second
                   : url;
    };
    for (const JunkCandidate& candidate : candidates) {
        if (firstLike(candidate) == candidate.item.url) {
            asked.push_back(candidate.item.url);
        }
    }
    const std::unordered_set<FileURL> movable = movableOf(std::move(asked), isMovable, stop, late);
    std::vector<FileURL> others;
    for (const JunkCandidate& candidate : candidates) {
        const FileURL& first = firstLike(candidate);
        if (first != candidate.item.url && !movable.contains(first)) {
            others.push_back(candidate.item.url);
        }
    }
    const std::unordered_set<FileURL> alone = movableOf(std::move(others), isMovable, stop, late);
    std::erase_if(candidates, [&](const JunkCandidate& candidate) {
        return !movable.contains(firstLike(candidate)) && !alone.contains(candidate.item.url);
    });
}

/// What is left to list of the candidates, and whether it is safe, by what was found in them.
std::vector<JunkItem> judged(std::vector<JunkCandidate> candidates) {
    std::vector<JunkItem> items;
    for (JunkCandidate& candidate : candidates) {
        JunkItem& item = candidate.item;
        const bool isListed =
            !candidate.hasSign || (candidate.look == ContentLook::onlyCopies && item.kind != JunkKind::leftover);
        if (item.size > 0 && isListed) {
            item.isSafeForBulk = item.isSafeForBulk && !candidate.hasSign;
            items.push_back(std::move(item));
        }
    }
    std::stable_sort(items.begin(), items.end(), [](const JunkItem& a, const JunkItem& b) { return a.size > b.size; });
    return items;
}

}  // namespace

JunkScan scan(const JunkPlaces& places, const std::shared_ptr<const InstalledApplications>& applications,
              const Movable& isMovable, const std::stop_token& stop) {
    JunkScan found;
    const DiskAnswers answers = readPlaces(places, applications, stop, found.lateAnswer);
    JunkFilter filter(answers);
    filter.addAll(places.places);
    std::vector<JunkCandidate> candidates = filter.takeCandidates();
    if (isMovable) {
        keepMovable(candidates, isMovable, stop, found.lateAnswer);
    }
    if (auto late = measureJunk(candidates, filter.tokens(), stop)) {
        found.lateAnswer = std::move(late);
    }
    found.items = judged(std::move(candidates));
    return found;
}

}  // namespace JunkScanner
