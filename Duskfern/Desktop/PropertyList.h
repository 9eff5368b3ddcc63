#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

#include <optional>

/// The `CFBundleIdentifier` in an application bundle's property list (XML); none if it has none.
[[nodiscard]] std::optional<QString> bundleIdentifier(const QByteArray& contents);
