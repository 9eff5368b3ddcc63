#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

/// What the name of a note of origin has beyond the name of the item it belongs to.
inline constexpr std::string_view trashNoteSuffix = ".trashinfo";

/// The name that an item called `name` gets in a Trash whose file system takes names of `longest` bytes: its own, with
/// `number` before the extension, and shortened at its end where the name of the note would be too long. Cuts no UTF-8
/// character in two.
[[nodiscard]] std::string nameInTrash(std::string_view name, std::optional<std::uint32_t> number, std::size_t longest);

/// The beginning of `name` with at most `size` bytes. Where the cut would fall into a UTF-8 character that one is left
/// out; bytes that belong to no character are cut anywhere.
[[nodiscard]] std::string_view cutName(std::string_view name, std::size_t size);

/// `name` with "_" in place of all that some file system might not take.
[[nodiscard]] std::string plainName(std::string_view name);

/// `bytes` as a URI has them: all but letters, digits, "-", ".", "_", "~" and "/" as a percent sign and two digits.
[[nodiscard]] std::string percentEncoded(std::string_view bytes);

/// The note of an item that came from `path` (absolute, or relative to the top folder of its file system) at `moment`.
[[nodiscard]] std::string trashNote(std::string_view path, std::time_t moment);
