#pragma once

#include <optional>
#include <string>
#include <vector>

#include "VelmoraWidget/Objectives.hpp"
#include "VelmoraWidget/VelmoraSnapshot.hpp"
#include "companion/failure.hpp"
#include "companion/news/service_notices.hpp"
#include "platform/foundation/instant.hpp"

namespace companion::news {

/// What a request for figures, or its first half, met last.
struct Answer {
  platform::Instant at;
  std::optional<Failure> failure;  ///< nothing: all was well
};

/// Everything at hand that can be news.
struct Facts {
  platform::Instant now;
  std::optional<velmora::VelmoraSnapshot> figures;  ///< of the last refresh
  /// When they were fetched; without figures, since when there are none.
  platform::Instant figuresFrom;
  std::optional<velmora::Objectives> goals;  ///< absent when the keyring does not tell
  std::optional<Failure> clientFile;         ///< why there is no usable one
  std::optional<Answer> token;               ///< of the token endpoint
  std::optional<Answer> report;              ///< of the service
  std::optional<std::vector<ServiceAlert>> alerts;
  std::optional<std::vector<PolicyIssue>> policyIssues;
};

/// The UTC day of an instant, "2026-11-23"; its first seven characters are the month.
std::string dayText(platform::Instant instant);

/// The figures when they were fetched in this UTC day.
const velmora::VelmoraSnapshot* figuresOfToday(const Facts& facts);

/// Whether there are figures newer than that instant.
bool isRefreshedSince(const Facts& facts, platform::Instant instant);

/// A failure of the token endpoint that no newer figures have disproved, if it is of that kind.
const Failure* tokenFailure(const Facts& facts, FailureKind kind);

}  // namespace companion::news
