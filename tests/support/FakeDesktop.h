#pragma once

#include "Desktop/Appearance.h"
#include "Desktop/Dialogs.h"
#include "Desktop/FileManager.h"
#include "Desktop/FolderChooser.h"
#include "Desktop/InstalledApplications.h"
#include "Desktop/MountedVolumes.h"
#include "Desktop/Trash.h"
#include "Desktop/UserFolders.h"

#include <atomic>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

/// Keeps a question until the test answers it.
struct FakeDialogs final : Dialogs {
    void chooseFolder(const QString& prompt, const std::optional<FileURL>& start,
                      std::function<void(std::optional<FileURL>)> answer) override {
        lastPrompt = prompt;
        lastStart = start;
        chosen = std::move(answer);
    }
    void confirm(const Confirmation& question, std::function<void(bool)> answer) override {
        lastQuestion = question;
        confirmed = std::move(answer);
    }

    QString lastPrompt;
    std::optional<FileURL> lastStart;
    std::optional<Confirmation> lastQuestion;
    std::function<void(std::optional<FileURL>)> chosen;
    std::function<void(bool)> confirmed;
};

/// Answers at once with the folder it was told, hands the question on, or keeps it if it was told to wait.
struct FakeFolderChooser final : FolderChooser {
    void choose(const FolderQuestion& question, Answer answer) override {
        lastPrompt = question.prompt;
        ++asked;
        if (next != nullptr) {
            next->choose(question, std::move(answer));
        } else if (waits) {
            waiting = std::move(answer);
        } else {
            answer(folder);
        }
    }
    void cancel() override {
        if (next != nullptr) {
            next->cancel();
        } else if (waiting) {
            std::exchange(waiting, nullptr)(std::nullopt);
        }
    }

    FolderChooser* next = nullptr;
    std::optional<FileURL> folder;
    bool waits = false;
    std::function<void(std::optional<FileURL>)> waiting;
    QString lastPrompt;
    int asked = 0;
};

/// Remembers what was to be shown.
struct FakeFileManager final : FileManager {
    void reveal(const std::vector<FileURL>& urls) override {
        revealed.insert(revealed.end(), urls.begin(), urls.end());
    }

    std::vector<FileURL> revealed;
};

/// Moves nothing; reports what it was told to.
struct FakeTrash final : Trash {
    std::optional<TrashError> move(const FileURL& url, const FileIdentity& item, const Progress&,
                                   const std::stop_token&) override {
        if (onMove) {
            onMove(url);
        }
        if (refused.contains(url)) {
            const auto reason = reasons.find(url);
            return reason == reasons.end() ? TrashError::noPermission : reason->second;
        }
        moved.push_back(url);
        identities.push_back(item);
        return error;
    }
    std::optional<TrashError> refusal(const FileURL& url) override {
        return refused.contains(url) ? std::optional(TrashError::noPermission) : std::nullopt;
    }

    std::optional<TrashError> error;
    std::vector<FileURL> moved;
    std::vector<FileIdentity> identities;
    std::set<FileURL> refused;
    std::map<FileURL, TrashError> reasons;       ///< Why, where it is not a lack of permission.
    std::function<void(const FileURL&)> onMove;  ///< Called first, on the thread that moves.
};

/// Has the volumes that the test says, in its order.
struct FakeVolumes final : MountedVolumes {
    [[nodiscard]] Answers ask(std::function<void(const Answers&)> answerLater) override {
        ++asked;
        later = std::move(answerLater);
        return answers;
    }

    /// One more volume.
    void add(const std::string& path, const VolumeValues& values) { answers.push_back({FileURL(path), values}); }

    Answers answers;
    std::function<void(const Answers&)> later;
    int asked = 0;
};

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
class FakeAppearance final : public Appearance {
public:
    [[nodiscard]] Preference preference() const override { return m_preference; }
    void prefer(Preference preference) {
        m_preference = preference;
        Q_EMIT preferenceChanged();
    }
    [[nodiscard]] bool reducesMotion() const override { return m_reducesMotion; }
    void reduceMotion(bool reduces) {
        m_reducesMotion = reduces;
        Q_EMIT reducesMotionChanged();
    }
    [[nodiscard]] bool raisesContrast() const override { return m_raisesContrast; }
    [[nodiscard]] std::optional<Accent> accent() const override { return m_accent; }
    void wish(bool contrast, std::optional<Accent> accent) {
        m_raisesContrast = contrast;
        m_accent = accent;
        Q_EMIT raisesContrastChanged();
        Q_EMIT accentChanged();
    }

private:
    bool m_raisesContrast = false;
    std::optional<Accent> m_accent;
    Preference m_preference = Preference::light;
    bool m_reducesMotion = false;
};
