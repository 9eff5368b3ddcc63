#include "FolderBrowser/FolderBrowser.h"

#include "Desktop/UserFolders.h"
#include "FolderBrowser/TypedPath.h"
#include "Foundation/DiskTimeout.h"
#include "Foundation/Dispatch.h"

#include <QtCore/QPointer>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

using Outcome = FolderListing::Outcome;

/// How long to wait before showing folders whose links are not resolved yet.
constexpr std::chrono::milliseconds updateDelay{250};

/// The maximum number of folders being listed at a time. Each that never answers keeps a thread.
constexpr std::size_t maximumReadings = 6;

/// Letters typed within this interval belong to one text.

QString notResponding() {
    return QStringLiteral("Esta carpeta no responde.");
}

/// Why a folder that was opened from a list cannot be shown.
QString messageFor(Outcome outcome) {
    switch (outcome) {
        case Outcome::listed:
            return {};
        case Outcome::missing:
            return QStringLiteral("Esta carpeta ya no existe.");
        case Outcome::notFolder:
            return QStringLiteral("Esto ya no es una carpeta.");
        case Outcome::notPermitted:
            return QStringLiteral("No tienes permiso para ver esta carpeta.");
        case Outcome::failed:
            return QStringLiteral("Esta carpeta no se puede abrir.");
    }
    return {};
}

/// Why a typed path cannot be shown.
QString typedMessageFor(Outcome outcome) {
    switch (outcome) {
        case Outcome::missing:
            return QStringLiteral("No existe ninguna carpeta con esa ruta.");
        case Outcome::notFolder:
            return QStringLiteral("Esa ruta no es de una carpeta.");
        default:
            return messageFor(outcome);
    }
}

}  // namespace

FolderBrowser::FolderBrowser(UserFolders& userFolders, Disks disks, QObject* parent)
    : QObject(parent), m_userFolders(userFolders), m_disks(std::move(disks)) {
    m_updateTimer.setSingleShot(true);
    m_updateTimer.setInterval(updateDelay);
    connect(&m_updateTimer, &QTimer::timeout, this, [this] {
        updateShown();
        if (m_shown && m_state == State::waiting) {
            showMessage(State::waiting, QStringLiteral("Abriendo…"));
        }
    });
    m_timeout.setSingleShot(true);
    m_timeout.setInterval(diskTimeout);
    connect(&m_timeout, &QTimer::timeout, this, &FolderBrowser::timeOut);
}

FolderBrowser::~FolderBrowser() = default;

void FolderBrowser::choose(const FolderQuestion& question, Answer answer) {
    m_answer = std::move(answer);
    m_prompt = question.prompt;
    setPlaces(m_userFolders.fromEnvironment());
    findPlaces();
    m_history.clear();
    m_isStart = true;
    const FileURL start = question.start.value_or(m_home);
    show(start, {}, read(start));
    Q_EMIT isOpenChanged();
}

/// Reads in the background which folders are assigned to a purpose, and adds them to the places.
void FolderBrowser::findPlaces() {
    Dispatch::background([self = QPointer(this), &userFolders = m_userFolders](const std::stop_token&) {
        Dispatch::main([self, folders = userFolders.paths()] {
            if (self != nullptr && self->isOpen()) {
                self->setPlaces(folders);
            }
        });
    });
}

void FolderBrowser::setPlaces(const UserFolderPaths& folders) {
    m_home = folders.home;
    m_places = folderPlaces(folders, m_disks());
    Q_EMIT placesChanged();
    Q_EMIT shownChanged();
}

void FolderBrowser::cancel() {
    close(std::nullopt);
}

void FolderBrowser::close(const std::optional<FileURL>& answer) {
    if (!isOpen()) {
        return;
    }
    const Answer answered = std::exchange(m_answer, nullptr);
    m_updateTimer.stop();
    m_timeout.stop();
    m_shown.reset();
    m_typed.reset();
    m_folders.setFolders({});
    setSelectedRow(-1);
    Q_EMIT isOpenChanged();
    answered(answer);
}

QVariantList FolderBrowser::placeRows() const {
    QVariantList rows;
    for (const FolderPlace& place : m_places) {
        rows.append(QVariant::fromValue(place));
    }
    return rows;
}

int FolderBrowser::currentPlace() const {
    const auto found = std::find_if(m_places.begin(), m_places.end(),
                                    [this](const FolderPlace& place) { return place.url == m_location; });
    return found == m_places.end() ? -1 : static_cast<int>(found - m_places.begin());
}

QString FolderBrowser::choice() const {
    if (m_selectedRow >= 0) {
        return displayText(m_folders.folders()[static_cast<std::size_t>(m_selectedRow)].name);
    }
    if (m_state != State::shown) {
        return {};
    }
    const int place = currentPlace();
    return place >= 0 ? m_places[static_cast<std::size_t>(place)].name : displayText(m_location.lastPathComponent());
}

void FolderBrowser::select(int row) {
    if (m_folders.rowCount() > 0) {
        setSelectedRow(std::clamp(row, 0, m_folders.rowCount() - 1));
    }
}

bool FolderBrowser::typeAhead(const QString& text) {
    const std::optional<int> row = m_typeAhead.type(text, m_selectedRow, m_folders.rowCount(), [this](int candidate) {
        return m_folders.folders()[static_cast<std::size_t>(candidate)].name;
    });
    if (row && *row >= 0) {
        setSelectedRow(*row);
    }
    return row.has_value();
}

void FolderBrowser::enter() {
    if (m_selectedRow < 0) {
        accept();
        return;
    }
    navigateTo(m_location.appendingPathComponent(m_folders.folders()[static_cast<std::size_t>(m_selectedRow)].name));
}

void FolderBrowser::goUp() {
    if (canGoUp()) {
        navigateTo(m_location.deletingLastPathComponent(), std::string(m_location.lastPathComponent()));
    }
}

void FolderBrowser::goBack() {
    if (canGoBack()) {
        const Visit last = std::move(m_history.back());
        m_history.pop_back();
        show(last.url, last.selected, read(last.url));
    }
}

void FolderBrowser::goToPlace(int row) {
    if (row >= 0 && row < static_cast<int>(m_places.size())) {
        navigateTo(m_places[static_cast<std::size_t>(row)].url);
    }
}

void FolderBrowser::goTo(const QString& text) {
    m_typed.reset();
    setTypedError({});
    // The displayed text may differ from the folder's bytes, so it is not parsed.
    if (text == locationText()) {
        Q_EMIT navigated();
        return;
    }
    const std::optional<FileURL> url = typedPath(text, m_home, m_location);
    if (!url) {
        setTypedError(typedMessageFor(Outcome::missing));
        return;
    }
    m_typed = read(*url);
    if (!m_typed) {
        setTypedError(notResponding());
    }
}

void FolderBrowser::accept() {
    if (!choice().isEmpty()) {
        close(m_selectedRow < 0 ? m_location
                                : m_location.appendingPathComponent(
                                      m_folders.folders()[static_cast<std::size_t>(m_selectedRow)].name));
    }
}

FolderBrowser::Visit FolderBrowser::visit() const {
    return {m_location,
            m_selectedRow < 0 ? std::string() : m_folders.folders()[static_cast<std::size_t>(m_selectedRow)].name};
}

/// Shows another folder, or lists the current one again.
void FolderBrowser::navigateTo(const FileURL& url, const std::string& selected) {
    remember(url);
    show(url, selected, read(url));
}

void FolderBrowser::remember(const FileURL& next) {
    if (next != m_location) {
        m_history.push_back(visit());
    }
    m_isStart = false;
}

void FolderBrowser::show(const FileURL& url, const std::string& selected, std::shared_ptr<FolderReading> reading) {
    m_typed.reset();
    setTypedError({});
    m_typeAhead.reset();
    m_location = url;
    m_pendingSelection = selected;
    setSelectedRow(-1);
    m_folders.setFolders({});
    m_shown = std::move(reading);
    if (m_shown) {
        showMessage(State::waiting, {});
    } else {
        showMessage(State::failed, notResponding());
    }
    Q_EMIT navigated();
}

/// Starts listing a folder, or returns the listing in progress. Null while too many folders do not answer.
std::shared_ptr<FolderReading> FolderBrowser::read(const FileURL& url) {
    m_updateTimer.start();
    m_timeout.start();
    const auto known = m_readings.find(url.path());
    if (known != m_readings.end()) {
        return known->second;
    }
    if (m_readings.size() >= maximumReadings) {
        return nullptr;
    }
    auto reading = std::make_shared<FolderReading>(url);
    m_readings.emplace(url.path(), reading);
    Dispatch::background([reading, self = QPointer(this)](const std::stop_token& stop) {
        reading->run(stop);
        Dispatch::main([reading, self] {
            if (self != nullptr) {
                self->finished(reading);
            }
        });
    });
    return reading;
}

void FolderBrowser::finished(const std::shared_ptr<FolderReading>& reading) {
    m_readings.erase(reading->url().path());
    updateShown();
}

/// Shows what has been listed so far.
void FolderBrowser::updateShown() {
    if (m_typed) {
        if (const std::optional<FolderListing> listing = m_typed->soFar()) {
            const std::shared_ptr<FolderReading> typed = std::exchange(m_typed, nullptr);
            if (listing->outcome != Outcome::listed) {
                setTypedError(typedMessageFor(listing->outcome));
            } else {
                remember(typed->url());
                show(typed->url(), {}, typed);
            }
        }
    }
    if (m_shown) {
        if (std::optional<FolderListing> listing = m_shown->soFar()) {
            if (!m_readings.contains(m_shown->url().path())) {
                m_shown.reset();
            }
            showListing(std::move(*listing));
        }
    }
}

void FolderBrowser::timeOut() {
    updateShown();
    if (std::exchange(m_typed, nullptr)) {
        setTypedError(notResponding());
    }
    if (m_shown && m_state == State::waiting) {
        showMessage(State::failed, notResponding());
    }
}

void FolderBrowser::showListing(FolderListing listing) {
    const bool isGone = listing.outcome == Outcome::missing || listing.outcome == Outcome::notFolder;
    if (std::exchange(m_isStart, false) && isGone && m_location != m_home) {
        show(m_home, {}, read(m_home));
        return;
    }
    if (listing.outcome != Outcome::listed) {
        showMessage(State::failed, messageFor(listing.outcome));
        return;
    }
    const std::string selected = m_selectedRow < 0 ? std::exchange(m_pendingSelection, {}) : visit().selected;
    setSelectedRow(-1);
    m_folders.setFolders(std::move(listing.folders));
    setSelectedRow(selected.empty() ? -1 : m_folders.rowOf(selected));
    const bool isEmpty = m_folders.rowCount() == 0;
    showMessage(State::shown, isEmpty ? QStringLiteral("No hay carpetas dentro de esta.") : QString());
}

void FolderBrowser::showMessage(State state, const QString& message) {
    m_state = state;
    m_message = message;
    Q_EMIT shownChanged();
    Q_EMIT selectionChanged();
}

void FolderBrowser::setTypedError(const QString& error) {
    if (std::exchange(m_typedError, error) != error) {
        Q_EMIT typedErrorChanged();
    }
}

void FolderBrowser::setSelectedRow(int row) {
    if (std::exchange(m_selectedRow, row) != row) {
        Q_EMIT selectionChanged();
    }
}
