#pragma once

#include <cstdint>
#include <functional>

/// Told how many bytes are done; false when the work is to end.
using BytesDone = std::function<bool(std::int64_t bytes)>;

/// How the contents of a file came to another one.
enum class CopyWay { copied, shared };

/// Gives the open empty file `to` the first `length` bytes of the open file `from`, holes as holes: shared where the
/// file system can, copied by the kernel otherwise, by hand where that fails. 0 with `way` set, or the error number:
/// ECANCELED when ended, ESTALE when `from` turned out shorter.
[[nodiscard]] int copyContents(int from, int to, std::int64_t length, const BytesDone& done, CopyWay& way);

/// Compares the data of the first `length` bytes of two open files. 0, ESTALE where they differ, or the error number.
[[nodiscard]] int compareContents(int from, int to, std::int64_t length, const BytesDone& done);

/// Bytes of data among the first `length` of the open file `file`, holes left out as far as its file system tells.
[[nodiscard]] std::int64_t dataBytes(int file, std::int64_t length);
