#pragma once

#include "support/Journey.h"

#include <gtest/gtest.h>
#include <QtCore/QSemaphore>
#include <QtGui/QGuiApplication>

#include <atomic>
#include <set>
#include <string>

/// Reports what it is given as moved, except what the test says. Can be told to wait for the test before each answer.
struct WaitingTrash final : Trash {
    std::optional<TrashError> move(const FileURL& url, const FileIdentity&, const Progress& progress,
                                   const std::stop_token&) override {
        if (waits) {
            if (progress) {
                progress(45, 100);
            }
            turns.acquire();
        }
        return refusesAll || refused.contains(url) ? std::optional(TrashError::readOnly) : std::nullopt;
    }
    std::optional<TrashError> refusal(const FileURL& /*url*/) override { return std::nullopt; }

    std::set<FileURL> refused;
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
        press(Qt::Key_3, Qt::ControlModifier);
        ASSERT_TRUE(waitUntil([&] { return app.screens().junk()->safeCount() == count; }));
    }

    /// Shows the window on the map of the folder.
    void showMap() {
        showWindow();
        press(Qt::Key_2, Qt::ControlModifier);
        press(Qt::Key_O, Qt::ControlModifier);
        ASSERT_TRUE(driver.waitFor("f10.mov", list));
        ASSERT_TRUE(waitUntil([this] { return !app.store().isScanning(); }));
    }

    /// Presses a key and sees that the next one will find something to act on.
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const std::string before = driver.focused();
        driver.key(key, modifiers);
        EXPECT_FALSE(driver.focused().empty()) << before << ", then " << modifiers << " and key " << key;
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
