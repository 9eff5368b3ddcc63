#pragma once

#include <QtCore/QProcess>

#include <string>
#include <string_view>

/// A disk in memory, mounted for one test, that behaves as no ordinary one can be made to: names of up to 1024 bytes,
/// entries of unknown kind, errors, no answer at all. A program of its own serves it, which ends with the test program
/// and after 100 seconds at the latest, so that no test waits for it without end. It works as root and, where
/// fusermount3 is allowed to mount, as an ordinary user. Paths given to it are relative to the disk.
class FuseDisk {
public:
    /// What is asked of an entry: what it is, its bytes, the names in it, more of them after the first few; or
    /// anything.
    enum class Operation { any, look, read, list, listRest };

    /// Lists entries without their kind (DT_UNKNOWN); lists three entries at a time; gives an entry another inode
    /// number each time; says of every file that it takes no blocks; knows no rename that replaces nothing.
    enum class Habit { hideKinds, listFew, changeInodes, forgetBlocks, renamePlainly };

    /// Mounts an empty disk at a folder, which is made if need be. Whatever uses the folder's contents ends first.
    explicit FuseDisk(std::string folder);

    /// Takes the disk away: whoever still waits for it gets an error.
    ~FuseDisk();
    FuseDisk(const FuseDisk&) = delete;
    FuseDisk& operator=(const FuseDisk&) = delete;

    /// False where this system lets nobody mount such a disk. Tests that need it are skipped then, with this word.
    [[nodiscard]] bool isMounted() const { return m_isMounted; }
    static constexpr const char* whyNot = "no FUSE disk can be mounted here";

    [[nodiscard]] std::string path(std::string_view relative) const { return m_folder + '/' + std::string(relative); }

    /// What is asked of this entry and all below it is not answered, until `release`. The empty path is the whole disk.
    /// A thread that waits cannot be ended meanwhile, not even with its process.
    void hang(std::string_view path, Operation operation = Operation::any) {
        tell("hang", static_cast<int>(operation), path);
    }

    /// Answers everything that was held back, and all to come.
    void release();

    /// Nothing is answered until `release`, as by `hang`, but a process that waits can be ended: the disk does not even
    /// read what it is asked. No other order but `release` may follow.
    void freeze();

    /// The status of this entry cannot be read: `error` instead, an errno.
    void failStatus(std::string_view path, int error) { tell("fail", error, path); }

    void set(Habit habit) { tell("habit", static_cast<int>(habit)); }

private:
    void signal(int number);
    void tell(const char* order, int value = 0, std::string_view path = {});
    [[nodiscard]] bool isConfirmed();

    std::string m_folder;
    QProcess m_server;
    bool m_isMounted = false;
};
