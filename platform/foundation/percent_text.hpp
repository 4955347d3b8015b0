#pragma once

#include <string>

namespace platform {

/// A number of percent as the locale writes it ("61%" in English, "61 %" in French), with exactly
/// that many fraction digits, rounded half to even.
std::string percentText(double percent, int fractionDigits, const std::string& locale);

/// The same with its sign, "+23%"; without one when it rounds to 0.
std::string changeText(double percent, const std::string& locale);

}  // namespace platform
