#pragma once

#include <QtCore/QString>

#include <compare>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// The absolute location of a file or folder, kept as the bytes the kernel uses: a name on Linux need not be valid
/// UTF-8, and only the bytes find the file again.
class FileURL {
public:
    FileURL() = default;

    /// `path` is absolute. Trailing slashes are dropped, except that of "/" itself; nothing else is normalised.
    explicit FileURL(std::string path);

    /// The path as the bytes to hand to a system call.
    [[nodiscard]] const std::string& path() const { return m_path; }

    /// The name after the last slash; "/" for the root.
    [[nodiscard]] std::string_view lastPathComponent() const;

    /// The location without its last component; "/" for what lies in the root and for the root itself.
    [[nodiscard]] FileURL deletingLastPathComponent() const;

    [[nodiscard]] FileURL appendingPathComponent(std::string_view name) const;

    // clang-tidy 14 takes the zero in the generated comparison for a null pointer.
    auto operator<=>(const FileURL&) const = default;  // NOLINT(modernize-use-nullptr)

private:
    std::string m_path = "/";
};

/// The location with links and dots resolved; nothing if it does not exist. Accesses the disk.
[[nodiscard]] std::optional<std::string> realPath(const FileURL& url);

/// Whether the absolute `path` is that of `folder` or of something below it.
[[nodiscard]] bool isAtOrBelow(std::string_view path, std::string_view folder);

/// The text shown for the bytes of a file name: UTF-8, with U+FFFD in place of bytes that are not UTF-8, control
/// characters (a line break would break a row) and characters that change the direction of text (with them a name could
/// look like another one).
[[nodiscard]] QString displayText(std::string_view bytes);

/// `name` shortened for use in a sentence: in a name of more than 60 UTF-16 units the middle is replaced by "…", so
/// that the extension stays. Never cuts a character in two.
[[nodiscard]] QString elidedName(const QString& name);

template <>
struct std::hash<FileURL> {
    size_t operator()(const FileURL& url) const noexcept { return std::hash<std::string>{}(url.path()); }
};
