#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <vector>

/// The names in a desktop entry: its Name, the program in Exec (skipping `env`) and StartupWMClass. Reads what it can
/// of a malformed entry.
[[nodiscard]] std::vector<QString> namesInDesktopEntry(const QByteArray& contents);
