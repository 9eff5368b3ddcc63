#pragma once

#include "Foundation/LateAnswer.h"
#include "JunkCleaner/InstalledAppTokens.h"
#include "JunkCleaner/JunkItem.h"
#include "JunkCleaner/JunkPlaces.h"

#include <memory>
#include <stop_token>
#include <vector>

/// An entry of a place, before it is measured.
struct JunkCandidate {
    JunkItem item;
    ContentLook look = ContentLook::onlyCopies;
    std::uint16_t mode = 0;   ///< As in `st_mode`.
    bool isOrdinary = false;  ///< Whether it is neither protected nor a mount point.

    /// Set by `measureJunk`: whether it holds what `look` looks for.
    bool hasSign = false;
};

/// Sets the sizes of folders: of the files in them without hidden ones, links and the contents of packages. Looks into
/// all candidates on the way; what cannot be told in time counts as a sign, and so does, in a leftover, the folder or
/// the settings of an installed application. Returns null unless something was skipped after a timeout.
[[nodiscard]] std::shared_ptr<LateAnswer> measureJunk(std::vector<JunkCandidate>& candidates,
                                                      const InstalledAppTokens& installed, const std::stop_token& stop);
