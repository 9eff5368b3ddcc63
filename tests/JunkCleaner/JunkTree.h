#pragma once

#include "Desktop/UserFolders.h"
#include "support/TemporaryFolder.h"

/// A tree with the folders that a junk scan reads.
struct JunkTree {
    JunkTree() {
        paths.home = tree.url("home");
        paths.systemRoot = tree.url("system");
        paths.cacheHome = tree.url("home/.cache");
        paths.stateHome = tree.url("home/.local/state");
        paths.dataHome = tree.url("home/.local/share");
        paths.configHome = tree.url("home/.config");
        paths.temporary = tree.url("tmp");
    }

    TemporaryFolder tree;
    UserFolderPaths paths;
};
