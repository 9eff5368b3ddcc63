#pragma once

#include "Desktop/XdgUserFolders.h"
#include "Shell/DuskfernApp.h"

#include <atomic>
#include <string>

/// The user's folders, of which a given one holds the music and the caches. Without one, the real folders.
class MeasuredFolders final : public UserFolders {
public:
    explicit MeasuredFolders(std::string folder) : m_folder(std::move(folder)) {}

    [[nodiscard]] UserFolderPaths fromEnvironment() override { return m_real.fromEnvironment(); }

    /// Waits while it is held.
    [[nodiscard]] UserFolderPaths paths() override;

    /// Makes whoever needs the folders wait, so that a screen shows its progress bar while nothing else is done.
    void hold(bool isHeld) { m_isHeld = isHeld; }

private:
    XdgUserFolders m_real;
    std::string m_folder;
    std::atomic<bool> m_isHeld = false;
};

/// Measures one run of the window and prints its values, in milliseconds where nothing else is said:
///     scan      how long the event loop was blocked while the folder was scanned and shown, the time to draw a frame
///               meanwhile, and from a keystroke to list and count, and to the rows; each the longest
///     home      how long the event loop was blocked while the home screen measured the folder as a category
///     junk      the same while the screen that cleans looked for junk in it
///     rescan    the scan of a folder that was scanned before, from its start to the frame that shows it, and the scan
///               alone; medians
///     bar       the share of a core, in percent, that the window needs while it shows a moving progress bar
///     rest      megabytes of the process when nothing happens, shared ones in proportion
/// False for any other name.
[[nodiscard]] bool measureRun(const std::string& run, DuskfernApp& app, MeasuredFolders& folders,
                              const std::string& folder);
