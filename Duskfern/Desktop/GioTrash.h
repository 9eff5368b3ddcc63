#pragma once

#include "Desktop/Trash.h"

/// The Trash by way of GIO, with what `g_file_trash` of GLib 2.74 gets wrong found out and put right: a note of origin
/// that was left empty is written or the item goes back to where it was, and what lies in the Trash without a note is
/// not overwritten. Names of more than 245 bytes and file systems that GIO calls system internal are refused.
class GioTrash final : public Trash {
public:
    [[nodiscard]] std::optional<TrashError> move(const FileURL& url, const FileIdentity& item, const Progress& progress,
                                                 const std::stop_token& stop) override;
    [[nodiscard]] std::optional<TrashError> refusal(const FileURL& url) override;
};
