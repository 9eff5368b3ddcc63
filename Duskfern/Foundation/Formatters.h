#pragma once

#include "Foundation/ByteCountFormatter.h"

/// The text of numbers on all screens.
namespace Formatters {

/// The formatter of the user's locale, created on first use. Any thread may call it.
[[nodiscard]] const ByteCountFormatter& bytes();

/// A byte count as "1,5 MB".
[[nodiscard]] QString size(std::int64_t count);

/// A count of things as "1.204".
[[nodiscard]] QString grouped(std::int64_t number);

}  // namespace Formatters
