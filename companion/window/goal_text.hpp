#pragma once

#include <optional>
#include <string>

namespace companion::window {

/// What a text typed as a goal says: an amount above zero, or else why it is none, in the user's
/// language.
struct GoalReading {
  std::optional<double> amount;
  std::string problem;
};

/// Reads an amount as the user's locale writes it, with or without the sign or code of that
/// currency (ISO 4217, empty while it is not known), and with the other decimal mark where only
/// one reading makes sense.
GoalReading readGoal(const std::string& text, const std::string& currency);

/// The amount as it is stored, in the user's locale: whole numbers without a fraction, else with at
/// least the currency's fraction digits and as many more as there are.
std::string goalText(double amount, const std::string& currency);

/// What stands beside the entry: the currency's sign in the user's locale.
std::string currencySign(const std::string& currency);

}  // namespace companion::window
