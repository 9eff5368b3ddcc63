#pragma once

#include <cstdint>
#include <functional>

/// Called with the number of bytes just processed. Returns false to end the work.
using BytesDone = std::function<bool(std::int64_t bytes)>;

/// How file contents were copied.
enum class CopyMethod { written, reflinked };

/// Copies the first `length` bytes of the open file `from` to the open empty file `to`, keeping holes: by sharing the
/// data if the file system can, else in the kernel, else with read and write. Returns 0 with `method` set, or the error
/// number: ECANCELED when ended by `done`, ESTALE if `from` is shorter.
[[nodiscard]] int copyContents(int from, int to, std::int64_t length, const BytesDone& done, CopyMethod& method);

/// Compares the data of the first `length` bytes of two open files. Returns 0, ESTALE if they differ, or the error
/// number.
[[nodiscard]] int compareContents(int from, int to, std::int64_t length, const BytesDone& done);

/// Bytes of data among the first `length` of an open file, without holes if its file system reports them.
[[nodiscard]] std::int64_t dataBytes(int file, std::int64_t length);
