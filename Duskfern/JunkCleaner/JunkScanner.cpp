#include "JunkCleaner/JunkScanner.h"

#include "Desktop/InstalledApplications.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/FolderSizes.h"
#include "Foundation/Handover.h"
#include "Foundation/MountTable.h"
#include "Foundation/Packages.h"
#include "JunkCleaner/InstalledAppTokens.h"
#include "JunkCleaner/JunkListing.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <unordered_set>
#include <utility>

namespace JunkScanner {

namespace {

/// What is read from disks before the entries are filtered.
struct DiskAnswers {
    std::optional<InstalledNames> names;  ///< None if they did not answer; leftovers cannot be recognised then.
    std::vector<std::string> personal;    ///< Without links, like all paths below; the home first.
    std::vector<std::string> support;
    std::vector<JunkListing> listings;  ///< One per place.
};

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
    RealPaths personal(places.personal, requests);
    RealPaths support(places.support, requests);
    std::vector<std::shared_ptr<Handover<JunkListing>>> listings;
    for (const JunkPlace& place : places.places) {
        const auto listing = listings.emplace_back(std::make_shared<Handover<JunkListing>>());
        requests.start([place, listing] {
            listJunkPlace(
                place, [&](const std::string& path) { listing->edit([&](JunkListing& given) { given.path = path; }); },
                [&](JunkListing::Entry entry) {
                    listing->edit([&](JunkListing& given) { given.entries.push_back(std::move(entry)); });
                });
        });
    }
    late = requests.wait(stop);
    DiskAnswers answers{names->take(), personal.take(), support.take(), {}};
    std::transform(listings.begin(), listings.end(), std::back_inserter(answers.listings),
                   [](const auto& listing) { return listing->take(); });
    return answers;
}

/// Turns the entries of one place after the other into junk items. Does not access a disk.
class JunkFilter {
public:
    explicit JunkFilter(DiskAnswers answers)
        : m_answers(std::move(answers)), m_tokens(m_answers.names.value_or(InstalledNames())) {
        for (const Mount& mount : currentMounts()) {
            m_mounts.push_back(mount.target);
        }
    }

    void add(const JunkPlace& place, const JunkListing& listing) {
        if (listing.path.empty() || !isPlaceToClean(place, listing.path) ||
            (place.kind == JunkKind::leftover && !(m_answers.names && m_answers.names->isComplete))) {
            return;
        }
        m_visited.push_back(listing.path);
        for (const JunkListing::Entry& entry : listing.entries) {
            const std::string real = FileURL(listing.path).appendingPathComponent(entry.name).path();
            JunkItem item;
            item.url = place.url.appendingPathComponent(entry.name);
            item.identity = entry.status.identity;
            item.kind = place.kind;
            if (!holdsAny(real, m_answers.personal) && !holdsAny(real, m_answers.support) &&
                !holdsAny(real, m_visited) && !holdsAny(real, m_mounts) && describe(place, item)) {
                item.size = entry.status.isRegularFile() ? entry.status.allocated.value_or(0) : 0;
                m_items.push_back(std::move(item));
                m_listed.push_back(real);
            }
        }
    }

    void addAll(const std::vector<JunkPlace>& places) {
        for (std::size_t i = 0; i < places.size(); ++i) {
            add(places[i], m_answers.listings[i]);
        }
    }

    [[nodiscard]] std::vector<JunkItem> takeItems() { return std::move(m_items); }

private:
    /// Sets the item's origin. False if it is not to be listed.
    [[nodiscard]] bool describe(const JunkPlace& place, JunkItem& item) const {
        const QString name = item.name();
        if (place.kind != JunkKind::leftover) {
            item.origin = originName(name, JunkKinds::rawValue(place.kind));
            item.isSafeForBulk = true;
            return true;
        }
        item.origin = QStringLiteral("Aplicación no encontrada: ") + name;
        return place.isFlatpakData ? m_tokens.isOrphanedFlatpak(item.url.lastPathComponent())
                                   : m_tokens.isOrphaned(name);
    }

    static bool holdsAny(const std::string& folder, const std::vector<std::string>& paths) {
        return std::any_of(paths.begin(), paths.end(),
                           [&](const std::string& path) { return isAtOrBelow(path, folder); });
    }

    [[nodiscard]] bool isPlaceToClean(const JunkPlace& place, const std::string& path) const {
        const std::vector<std::string>& personal = m_answers.personal;
        const bool isPersonal = std::find(personal.begin(), personal.end(), path) != personal.end();
        const bool holdsHome = !personal.empty() && isAtOrBelow(personal.front(), path);
        const bool isListed = std::any_of(m_listed.begin(), m_listed.end(),
                                          [&](const std::string& listed) { return isAtOrBelow(path, listed); }) ||
                              std::find(m_visited.begin(), m_visited.end(), path) != m_visited.end();
        return !isPersonal && !holdsHome && !isListed &&
               (place.kind == JunkKind::leftover || !holdsAny(path, m_answers.support));
    }

    const DiskAnswers m_answers;
    const InstalledAppTokens m_tokens;
    std::vector<std::string> m_mounts;
    std::vector<std::string> m_visited;  ///< Paths of the places added so far.
    std::vector<std::string> m_listed;   ///< Paths of the items.
    std::vector<JunkItem> m_items;
};

/// Removes the items that the Trash would refuse, and those whose disk does not answer.
void keepMovable(std::vector<JunkItem>& items, const Movable& isMovable, const std::stop_token& stop,
                 std::shared_ptr<LateAnswer>& late) {
    struct Check {
        std::vector<FileURL> urls;
        std::atomic<std::size_t> next = 0;
        Handover<std::unordered_set<FileURL>> movable;
    };
    const auto check = std::make_shared<Check>();
    std::transform(items.begin(), items.end(), std::back_inserter(check->urls),
                   [](const JunkItem& item) { return item.url; });
    // Few threads are enough, because each check is short.
    constexpr std::size_t threads = 4;
    DiskRequests requests;
    for (std::size_t i = 0; i < std::min(threads, items.size()); ++i) {
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
    const std::unordered_set<FileURL> movable = check->movable.take();
    std::erase_if(items, [&](const JunkItem& item) { return !movable.contains(item.url); });
}

/// Sets the sizes of folders: of the files in them without hidden ones, links and the contents of packages.
void measure(std::vector<JunkItem>& items, const std::stop_token& stop, std::shared_ptr<LateAnswer>& late) {
    std::vector<WalkRoot> roots;
    std::vector<std::int64_t*> sizes;
    for (JunkItem& item : items) {
        if (item.identity.isFolder()) {
            roots.push_back({item.url});
            sizes.push_back(&item.size);
        }
    }
    // An item contains no mount, so no mount table is needed.
    FolderSizes measured =
        folderSizes(std::move(roots), [](std::string_view name) { return !isPackageName(name); }, stop, {});
    for (std::size_t i = 0; i < sizes.size(); ++i) {
        *sizes[i] = measured.bytes[i];
    }
    if (measured.lateAnswer) {
        late = std::move(measured.lateAnswer);
    }
}

}  // namespace

JunkScan scan(const JunkPlaces& places, const std::shared_ptr<const InstalledApplications>& applications,
              const Movable& isMovable, const std::stop_token& stop) {
    JunkScan found;
    JunkFilter filter(readPlaces(places, applications, stop, found.lateAnswer));
    filter.addAll(places.places);
    found.items = filter.takeItems();
    if (isMovable) {
        keepMovable(found.items, isMovable, stop, found.lateAnswer);
    }
    measure(found.items, stop, found.lateAnswer);
    std::erase_if(found.items, [](const JunkItem& item) { return item.size <= 0; });
    std::stable_sort(found.items.begin(), found.items.end(),
                     [](const JunkItem& a, const JunkItem& b) { return a.size > b.size; });
    return found;
}

}  // namespace JunkScanner
