#pragma once

#include "Foundation/FileURL.h"

#include <QtQml/qqmlregistration.h>
#include <QtCore/QMetaType>

#include <vector>

struct UserFolderPaths;

/// A shortcut to a folder, shown beside the folder list.
class FolderPlace {
    Q_GADGET
    QML_VALUE_TYPE(folderPlace)

public:
    FileURL url;

    /// For QML: its name, its symbol, and the heading above it if it is the first of a group.
    Q_PROPERTY(QString name MEMBER name)
    Q_PROPERTY(QString symbol MEMBER symbol)
    Q_PROPERTY(QString heading MEMBER heading)
    QString name;
    QString symbol;
    QString heading;
};

/// The home folder, the user's folders, "/", and the disks. Accesses none of them, because a disk may not answer.
[[nodiscard]] std::vector<FolderPlace> folderPlaces(const UserFolderPaths& folders, const std::vector<FileURL>& disks);
