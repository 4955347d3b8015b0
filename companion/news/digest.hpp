#pragma once

#include <functional>
#include <string>
#include <vector>

#include "companion/news/kind.hpp"

namespace companion::news {

/// An entry that is to be told now.
struct Report {
  std::string kind;
  Entry entry;
};

/// What is to be told, and what counts as told from then on.
struct Digest {
  std::vector<Report> news;
  std::vector<std::string> over;  ///< ids that were told and no longer hold
  std::vector<Told> told;
};

/// Compares the facts with what was told. What is found of a kind for which `isQuiet` says so only
/// counts as told. Of one kind a few entries are told at once; the others have their turn later.
Digest digest(const std::vector<Kind>& kinds, const Facts& facts, const std::vector<Told>& told,
              const std::function<bool(const Kind&)>& isQuiet);

}  // namespace companion::news
