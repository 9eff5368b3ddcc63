#pragma once

#include <span>
#include <string_view>

/// Names that are kept for one reason.
struct KeepRow {
    std::string_view names;  ///< Separated by "|"; each with at most one "*", which matches any text.
    std::string_view reason;
};

/// The tables, by kind of folder and of reason.
[[nodiscard]] std::span<const KeepRow> cacheKeepRows();      ///< In folders of caches.
[[nodiscard]] std::span<const KeepRow> temporaryKeepRows();  ///< In folders of temporary files.
[[nodiscard]] std::span<const KeepRow> desktopKeepRows();    ///< Data and settings that programs share.
[[nodiscard]] std::span<const KeepRow> secretKeepRows();    ///< Data and settings: passwords, keys, money, other disks.
[[nodiscard]] std::span<const KeepRow> personalKeepRows();  ///< Data and settings: what people write, read and play.
[[nodiscard]] std::span<const KeepRow> programKeepRows();   ///< Data and settings: unsaved work, languages, machines.
