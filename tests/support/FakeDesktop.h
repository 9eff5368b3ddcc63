#pragma once

#include "Desktop/Appearance.h"
#include "Desktop/Dialogs.h"
#include "Desktop/FileManager.h"
#include "Desktop/FolderChooser.h"
#include "Desktop/InstalledApplications.h"
#include "Desktop/MountedVolumes.h"
#include "Desktop/Trash.h"
#include "Desktop/UserFolders.h"
#include "support/TemporaryFolder.h"

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <semaphore>
#include <utility>
#include <vector>

/// Keeps a question until the test answers it.
struct FakeDialogs final : Dialogs {
    void chooseFolder(const QString& /*prompt*/, const std::optional<FileURL>& /*start*/,
                      std::function<void(std::optional<FileURL>)> answer) override {
        chosen = std::move(answer);
    }
    void confirm(const Confirmation& question, std::function<void(bool)> answer) override {
        lastQuestion = question;
        confirmed = std::move(answer);
    }

    std::optional<Confirmation> lastQuestion;
    std::function<void(std::optional<FileURL>)> chosen;
    std::function<void(bool)> confirmed;
};

/// Answers at once with the folder it was told, or hands the question on.
struct FakeFolderChooser final : FolderChooser {
    void choose(const FolderQuestion& question, Answer answer) override {
        ++asked;
        if (next != nullptr) {
            next->choose(question, std::move(answer));
        } else {
            answer(folder);
        }
    }
    void cancel() override {
        if (next != nullptr) {
            next->cancel();
        }
    }

    FolderChooser* next = nullptr;
    std::optional<FileURL> folder;
    int asked = 0;
};

/// Remembers what was to be shown.
struct FakeFileManager final : FileManager {
    void reveal(const std::vector<FileURL>& urls) override {
        revealed.insert(revealed.end(), urls.begin(), urls.end());
    }

    std::vector<FileURL> revealed;
};

/// Moves nothing; reports what it was told to. Can be told to wait for the test before each answer.
struct FakeTrash final : Trash {
    std::optional<TrashError> move(const FileURL& url, const FileIdentity& item, const Progress& progress,
                                   const std::stop_token&) override {
        if (onMove) {
            onMove(url);
        }
        if (waits) {
            progress(45, 100);
            turns.acquire();
        }
        if (const auto reason = refused.find(url); reason != refused.end()) {
            return reason->second;
        }
        const std::lock_guard lock(m_mutex);
        moved.push_back(url);
        identities.push_back(item);
        return refusesAll ? std::optional(TrashError::readOnly) : std::nullopt;
    }
    std::optional<TrashError> refusal(const FileURL& url) override {
        return refused.contains(url) ? std::optional(TrashError::noPermission) : std::nullopt;
    }

    std::atomic<bool> refusesAll = false;
    std::atomic<bool> waits = false;
    std::counting_semaphore<> turns{0};
    std::vector<FileURL> moved;
    std::vector<FileIdentity> identities;
    std::map<FileURL, TrashError> refused;
    std::function<void(const FileURL&)> onMove;  ///< Called first, on the thread that moves.

private:
    std::mutex m_mutex;  ///< Several files may be moved at the same time.
};

/// Has the volumes that the test says, in its order.
struct FakeVolumes final : MountedVolumes {
    [[nodiscard]] Answers ask(std::function<void(const Answers&)> answerLater) override {
        ++asked;
        later = std::move(answerLater);
        return answers;
    }

    void add(const std::string& path, const VolumeValues& values) { answers.push_back({FileURL(path), values}); }

    Answers answers;
    std::function<void(const Answers&)> later;
    int asked = 0;
};

/// A home and a system in a folder of the test.
inline UserFolderPaths foldersIn(const TemporaryFolder& tree) {
    UserFolderPaths paths;
    paths.home = tree.url("home");
    paths.systemRoot = tree.url("system");
    paths.cacheHome = tree.url("home/.cache");
    paths.stateHome = tree.url("home/.local/state");
    paths.dataHome = tree.url("home/.local/share");
    paths.configHome = tree.url("home/.config");
    paths.temporary = tree.url("tmp");
    return paths;
}

/// A home beside a system without applications.
struct FakeUserFolders final : UserFolders {
    [[nodiscard]] UserFolderPaths fromEnvironment() override { return folders; }
    [[nodiscard]] UserFolderPaths paths() override {
        ++asked;
        return folders;
    }

    UserFolderPaths folders;
    std::atomic<int> asked = 0;  ///< How often the disk was asked.
};

/// Has the names that the test says.
struct FakeApplications final : InstalledApplications {
    [[nodiscard]] InstalledNames names() const override { return installed; }

    InstalledNames installed;
};

/// Prefers what the test says.
struct FakeAppearance final : Appearance {
    [[nodiscard]] Preference preference() const override { return preferred; }
    [[nodiscard]] bool reducesMotion() const override { return isStill; }
    [[nodiscard]] bool raisesContrast() const override { return isStrong; }
    [[nodiscard]] std::optional<Accent> accent() const override { return wished; }

    void prefer(Preference preference) {
        preferred = preference;
        Q_EMIT preferenceChanged();
    }
    void wish(bool contrast, std::optional<Accent> accent) {
        isStrong = contrast;
        wished = accent;
        Q_EMIT raisesContrastChanged();
        Q_EMIT accentChanged();
    }

    Preference preferred = Preference::light;
    std::optional<Accent> wished;
    bool isStill = false;
    bool isStrong = false;
};
