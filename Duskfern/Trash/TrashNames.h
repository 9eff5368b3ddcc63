#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

/// The suffix of the file that records an item's origin.
inline constexpr std::string_view trashInfoSuffix = ".trashinfo";

/// The name for an item called `name` in a Trash on a file system that allows `longest` bytes: with `number` before the
/// extension, if given, and shortened if the name of its .trashinfo file would be too long. Never cuts a UTF-8
/// character.
[[nodiscard]] std::string nameInTrash(std::string_view name, std::optional<std::uint32_t> number, std::size_t longest);

/// The first `size` bytes of `name`, without a UTF-8 character that would be cut. Invalid bytes are cut anywhere.
[[nodiscard]] std::string_view cutName(std::string_view name, std::size_t size);

/// `name` with "_" for every character that some file system might reject.
[[nodiscard]] std::string plainName(std::string_view name);

/// `bytes` percent-encoded as in a URI: all but letters, digits, "-", ".", "_", "~" and "/".
[[nodiscard]] std::string percentEncoded(std::string_view bytes);

/// The contents of a .trashinfo file: `path` is absolute, or relative to the top folder of its file system.
[[nodiscard]] std::string trashInfoText(std::string_view path, std::time_t moment);
