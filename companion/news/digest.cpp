#include "companion/news/digest.hpp"

#include <algorithm>
#include <set>

namespace companion::news {

namespace {

constexpr int mostAtOnce = 25;  // of one kind

const Kind* kindNamed(const std::vector<Kind>& kinds, const std::string& id) {
  const auto found =
      std::find_if(kinds.begin(), kinds.end(), [&id](const Kind& kind) { return kind.id == id; });
  return found == kinds.end() ? nullptr : &*found;
}

/// Keeps what still holds, and notes what is over. A kind that this version does not know stays.
void sortOut(const std::vector<Kind>& kinds, const Facts& facts, const std::vector<Told>& told,
             Digest& result) {
  for (const auto& entry : told) {
    const auto* kind = kindNamed(kinds, entry.kind);
    const auto standing = kind == nullptr ? Standing::holds : kind->standing(entry, facts);
    if (standing == Standing::holds) result.told.push_back(entry);
    if (standing == Standing::over && !entry.isQuiet) result.over.push_back(entry.id);
  }
}

void add(const Kind& kind, const Facts& facts, bool isQuiet, std::set<std::string>& known,
         Digest& result) {
  int count = 0;
  for (auto& entry : kind.find(facts)) {
    if (!isQuiet && count == mostAtOnce) return;
    if (!known.insert(entry.id).second) continue;
    result.told.push_back({entry.id, kind.id, facts.now, isQuiet});
    // What is over and happens again is told anew, and that is all there is to say of it.
    std::erase(result.over, entry.id);
    if (isQuiet) continue;
    result.news.push_back({kind.id, std::move(entry)});
    ++count;
  }
}

}  // namespace

Digest digest(const std::vector<Kind>& kinds, const Facts& facts, const std::vector<Told>& told,
              const std::function<bool(const Kind&)>& isQuiet) {
  Digest result;
  sortOut(kinds, facts, told, result);
  std::set<std::string> known;
  for (const auto& entry : result.told) known.insert(entry.id);
  for (const auto& kind : kinds) add(kind, facts, isQuiet(kind), known, result);
  return result;
}

}  // namespace companion::news
