#pragma once

#include <string>

#include "companion/history/history.hpp"

namespace companion {

/// The days as comma-separated values (RFC 4180): a line of names, then one for each day, oldest
/// first. Numbers are plain, with a point.
std::string csvForm(const History& history);

/// A number without an exponent, with at most the 15 digits that a report's own decimals survive.
std::string plainNumber(double number);

}  // namespace companion
