#pragma once

#include <optional>
#include <string>
#include <vector>

#include "companion/news/facts.hpp"
#include "companion/news/kind.hpp"

namespace companion::news {

/// When something was asked last and whether an answer came.
struct Asked {
  platform::Instant at;
  bool isAnswered = false;

  bool operator==(const Asked&) const = default;
};

/// What is kept between two runs: what was told, and what was asked and answered.
struct Memory {
  bool isNew = true;  ///< nothing was ever told: this is the very first run
  std::vector<Told> told;
  std::string language;  ///< that the user had then
  /// Which client and user the answers are for; not to be traced back to either.
  std::string identity;
  std::optional<Asked> tokenAsked;
  std::optional<Asked> reportAsked;
  std::optional<Asked> alertsAsked;
  std::optional<Asked> policyAsked;
  std::optional<Answer> token;  ///< the last one, whatever it was; so the others
  std::optional<Answer> report;
  std::optional<std::vector<ServiceAlert>> alerts;
  std::optional<std::vector<PolicyIssue>> policyIssues;
  std::optional<platform::Instant> withoutFiguresSince;
  /// Figures that claim to be of the future, and when they were seen first.
  std::optional<platform::Instant> futureFigures;
  std::optional<platform::Instant> futureFiguresSeen;
};

/// The memory as JSON text, and back. Instants after `now` become `now`: a clock was set back. A
/// text that is none gives an empty memory.
std::string encodeMemory(const Memory& memory);
Memory decodeMemory(const std::string& text, platform::Instant now);

/// Forgets what is only right for another client or user than that one.
void keepOnlyFor(Memory& memory, const std::string& identity);

}  // namespace companion::news
