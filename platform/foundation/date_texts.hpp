#pragma once

#include <functional>
#include <string>

#include "platform/foundation/instant.hpp"

namespace platform {

// Days in the words and the order of a locale, by the fields that are asked for (a skeleton of
// UTS #35, such as "EEEdMMM"). Days are UTC days of the Gregorian calendar, whatever calendar the
// locale prefers.

/// Writes any number of days; making it takes longer than using it.
std::function<std::string(Instant)> dateWriter(const std::string& locale,
                                               const std::string& skeleton);

/// "20 Oct – 23 Nov 2026", saying once what both days share.
std::string dateRangeText(Instant first, Instant last, const std::string& locale,
                          const std::string& skeleton);

}  // namespace platform
