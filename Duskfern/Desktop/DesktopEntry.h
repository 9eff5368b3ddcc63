#pragma once

#include <QtCore/QString>

#include <optional>
#include <string>
#include <vector>

/// What a desktop entry calls its application: its Name, the program it starts (the one behind an `env` too) and the
/// class of its windows. Takes from a malformed entry what can be made out.
[[nodiscard]] std::vector<QString> namesInDesktopEntry(const QByteArray& contents);

/// The `CFBundleIdentifier` in the XML form of an application bundle's property list; none when there is none.
[[nodiscard]] std::optional<QString> bundleIdentifier(const QByteArray& contents);
