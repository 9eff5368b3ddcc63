#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

/// While it lives, a test that runs as root is held to permissions as anybody else is. Without effect for other users.
/// Folders that the test is to reach must be open to everybody or handed over by `own`.
class OrdinaryUser {
public:
    OrdinaryUser() {
        if (m_wasRoot) {
            EXPECT_EQ(setegid(somebody), 0);
            EXPECT_EQ(seteuid(somebody), 0);
        }
    }
    ~OrdinaryUser() {
        if (m_wasRoot) {
            EXPECT_EQ(seteuid(0), 0);
            EXPECT_EQ(setegid(0), 0);
        }
    }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

    /// Gives a path to that user. To be called before.
    static void own(const std::string& path) {
        if (geteuid() == 0) {
            EXPECT_EQ(lchown(path.c_str(), somebody, somebody), 0) << path;
        }
    }

private:
    static constexpr unsigned somebody = 65534;

    const bool m_wasRoot = geteuid() == 0;
};
