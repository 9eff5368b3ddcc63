#pragma once

#include "Foundation/FileURL.h"

#include <QtCore/QString>

#include <vector>

/// The games that launchers have installed.
namespace InstalledGames {

/// Their names and the names of their folders, from the manifests of Steam (in all its libraries), the files of Lutris
/// and the lists of Heroic. What cannot be read has none. Reads many small files.
[[nodiscard]] std::vector<QString> names(const std::vector<FileURL>& steam, const std::vector<FileURL>& lutris,
                                         const std::vector<FileURL>& heroic);

}  // namespace InstalledGames
