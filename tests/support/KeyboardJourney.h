#pragma once

#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtCore/QSemaphore>
#include <QtGui/QGuiApplication>

#include <atomic>
#include <string>

/// Reports what it is given as moved, unless the test says otherwise. Can be told to wait for the test before each
/// answer.
struct WaitingTrash final : Trash {
    std::optional<TrashError> move(const FileURL& /*url*/, const FileIdentity&, const Progress& progress,
                                   const std::stop_token&) override {
        if (waits) {
            if (progress) {
                progress(45, 100);
            }
            turns.acquire();
        }
        return refusesAll ? std::optional(TrashError::readOnly) : std::nullopt;
    }
    std::optional<TrashError> refusal(const FileURL& /*url*/) override { return std::nullopt; }

    std::atomic<bool> refusesAll = false;
    std::atomic<bool> waits = false;
    QSemaphore turns;
};

/// A home with junk and a folder with files, and a person who only has a keyboard.
class KeyboardJourney : public Journey<WaitingTrash> {
protected:
    void SetUp() override {
        QGuiApplication::setQuitOnLastWindowClosed(false);
        tree.file("home/.config/org.ejemplo.Pintura/a", 4096);
        chooser.folder = tree.url("files");
        for (int i = 0; i < 40; ++i) {
            tree.file("files/f" + std::to_string(10 + i) + (i % 2 == 0 ? ".mov" : ".zip"), (60 - i) * 4096);
        }
        volumes.add("/", VolumeValues{QString(), 494'000'000'000, {}, 374'000'000'000});
    }

    /// Shows the window on the junk screen, with so many caches.
    void showJunk(int count) {
        for (int i = 0; i < count; ++i) {
            tree.file("home/.cache/app" + std::to_string(i) + "/a", 2 * 4096);
        }
        showWindow();
        press("Ctrl+3");
        ASSERT_TRUE(waitUntil([&] { return app.screens().junk()->safeCount() == count; }));
    }

    /// Shows the window on the map of the folder.
    void showMap() {
        showWindow();
        press("Ctrl+2 Ctrl+O");
        ASSERT_TRUE(driver.waitFor("f10.mov", list));
        ASSERT_TRUE(waitUntil([this] { return !app.store().isScanning(); }));
    }

    /// Presses keys and sees that there is something for the next one to act on, each time.
    void press(const char* keys) {
        for (const QByteArray& key : QByteArray(keys).split(' ')) {
            const std::string before = driver.focused();
            driver.key(key);
            EXPECT_FALSE(driver.focused().empty()) << before << ", then " << key.constData();
        }
    }

    /// The name of the dialog that is open; empty without one.
    [[nodiscard]] std::string openDialog() const {
        const std::vector<std::string> names = driver.names(dialog);
        return names.empty() ? std::string() : names.front();
    }

    [[nodiscard]] bool waitForDialog(const char* name) const {
        return waitUntil([&] { return openDialog() == name; });
    }
};
