#pragma once

#include <chrono>

/// The time without an answer after which a disk is skipped. Servers that are gone and hanging FUSE file systems may
/// never answer, and a thread that waits for them cannot be ended.
inline constexpr std::chrono::milliseconds diskTimeout{2000};
