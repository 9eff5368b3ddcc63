#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Strong signs that a folder holds what exists only once, by the names in it. A table, each row with its reason.
namespace ContentSigns {

/// What has to be read before a name counts as a sign.
enum class Test : unsigned char {
    none,        ///< Nothing, the name is enough.
    privateKey,  ///< Whether the file is a private key, and not a certificate.
    ownCommits   ///< Whether the repository has commits that were made here.
};

/// Where the names are looked for.
enum class Place : unsigned char { file, hidden };

/// Whose the contents are.
enum class Owner : unsigned char {
    somebody,
    leftover  ///< A program that is not installed: what is a person's counts too, though programs store it themselves.
};

/// Marks of a folder, which hold for everything below it.
enum Mark : std::uint8_t {
    unsaved = 1,       ///< Each file is a sign.
    packages = 2,      ///< Other people's packages: only repositories are signs.
    testData = 4,      ///< Keys are for tests only.
    fetched = 8,       ///< Nothing is a sign: a program has fetched it all.
    personalData = 16  ///< Each file is a sign in a leftover.
};

/// The sign that a name is, if any.
[[nodiscard]] std::optional<Test> signOf(Place place, std::string_view name, Owner owner);

/// The marks that a folder has by its name, a combination of `Mark`.
[[nodiscard]] std::uint8_t marksOf(std::string_view folderName);

/// Whether the contents of a file are those of a private key; of `text` the beginning is enough.
[[nodiscard]] bool isPrivateKey(std::string_view text);

/// Whether the repository whose folder of data is open has commits that were made here, or cannot be read. Reads few
/// small files.
[[nodiscard]] bool hasOwnCommits(int repository);

/// Whether something that could not be opened, with this errno, may be there all the same.
[[nodiscard]] bool mayBeThere(int error);

}  // namespace ContentSigns
