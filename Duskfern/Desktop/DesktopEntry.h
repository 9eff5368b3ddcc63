#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <vector>

/// The names in a desktop entry: its Name, StartupWMClass and the programs in Exec. Reads what it can of a malformed
/// entry.
[[nodiscard]] std::vector<QString> namesInDesktopEntry(const QByteArray& contents);

/// The base names of the programs that a command line starts, without wrappers ("env", "flatpak run", "sh -c") and
/// interpreters; for a Flatpak its identifier.
[[nodiscard]] QStringList programsOf(const QString& commandLine);

/// The pieces of a desktop entry's identifier that can be the name of a program or of its maker: of at least four
/// letters, and not of the kind that many identifiers share.
[[nodiscard]] QStringList piecesOfIdentifier(const QString& identifier);
