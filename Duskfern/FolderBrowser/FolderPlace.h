#pragma once

#include "Foundation/FileURL.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QMetaType>

#include <vector>

struct UserFolderPaths;

/// A place to begin from: a row at the side of the folders.
class FolderPlace {
    Q_GADGET
    QML_VALUE_TYPE(folderPlace)

public:
    FileURL url;

    /// For the screens: what it is called, its picture, and what stands above it if a group of places begins with it.
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString heading MEMBER heading)
    QString name;
    QString symbol;
    QString heading;
};

/// The home folder, the folders the user has named for a purpose, the whole computer, and the disks. Looks at none of
/// them: one may lie on a disk that does not answer.
[[nodiscard]] std::vector<FolderPlace> folderPlaces(const UserFolderPaths& folders, const std::vector<FileURL>& disks);
