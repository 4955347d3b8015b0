#include "companion/news/news.hpp"

#include <algorithm>

#include "VelmoraWidget/AccessToken.hpp"
#include "VelmoraWidget/CurrencyFormat.hpp"
#include "VelmoraWidget/OAuthConfig.hpp"
#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "companion/news/asking.hpp"
#include "companion/news/choices.hpp"
#include "companion/news/file_lock.hpp"
#include "companion/news/memory_file.hpp"
#include "companion/sign_in_error.hpp"
#include "companion/user_data.hpp"
#include "platform/foundation/clock.hpp"
#include "platform/foundation/digest.hpp"
#include "platform/foundation/files.hpp"

namespace companion::news {

namespace {

/// For all requests together; reading the keyring may come on top.
constexpr std::chrono::seconds longestConversation{12};

/// Absent when nobody is signed in, or nobody can tell.
std::optional<std::string> signedInToken() {
  try {
    return velmora::refreshTokenItem().readString();
  } catch (const velmora::KeychainError&) {
    return std::nullopt;
  }
}

std::optional<velmora::Objectives> goalsAtHand() {
  try {
    return storedGoals();
  } catch (const SignInError&) {
    return std::nullopt;
  }
}

/// When the figures were fetched. Those that claim to be of the future, since the clock was set
/// back, are as old as our knowledge of them.
platform::Instant fetchedAt(const velmora::VelmoraSnapshot& figures, platform::Instant now,
                            Memory& memory) {
  if (!(figures.updatedAt > now)) {
    memory.futureFigures.reset();
    memory.futureFiguresSeen.reset();
    return figures.updatedAt;
  }
  if (memory.futureFigures != figures.updatedAt) memory.futureFiguresSeen = now;
  memory.futureFigures = figures.updatedAt;
  return memory.futureFiguresSeen.value_or(now);
}

/// What is at hand without a request.
Facts factsAtHand(platform::Instant now, Memory& memory) {
  Facts facts;
  facts.now = now;
  facts.figures = velmora::loadCachedSnapshot();
  if (facts.figures) {
    memory.withoutFiguresSince.reset();
    facts.figuresFrom = fetchedAt(*facts.figures, now, memory);
  } else {
    if (!memory.withoutFiguresSince) memory.withoutFiguresSince = now;
    facts.figuresFrom = *memory.withoutFiguresSince;
  }
  facts.goals = goalsAtHand();
  return facts;
}

void addAnswers(Facts& facts, const Memory& memory) {
  facts.token = memory.token;
  facts.report = memory.report;
  facts.alerts = memory.alerts;
  facts.policyIssues = memory.policyIssues;
}

/// The memory's file, and with `keeps` its lock; without, nothing is written.
class Keeper {
 public:
  explicit Keeper(bool keeps) {
    if (keeps) lock_.emplace(file_.lockFile());
  }

  Memory load(platform::Instant now) { return file_.load(now); }
  void save(const Memory& memory) {
    if (lock_) file_.save(memory);
  }

 private:
  MemoryFile file_;
  std::optional<FileLock> lock_;
};

/// Whom answers are for. Without a usable client file, why that is in `problem`.
std::string identityOf(const std::string& token, std::optional<Failure>& problem) {
  const auto client = velmora::loadOAuthConfig();
  if (client) return platform::sha256Base64Url(client->clientID + "\n" + token);
  problem = describeFailure(velmora::OAuthError::missingConfig());
  return "";
}

/// Asks what is due; false when the user has signed out meanwhile.
bool askWhatIsDue(Facts& facts, Memory& memory, const Choices& choices, Keeper& keeper,
                  std::chrono::steady_clock::time_point deadline) {
  const auto due = dueQuestions(facts, memory, choices);
  if (!due.areAny()) return true;
  noteAsked(memory, due, facts.now);
  keeper.save(memory);
  ask(memory, due, facts.now, deadline);
  return signedInToken().has_value();
}

}  // namespace

bool tellNews(bool keeps, const std::function<bool(const News&)>& tell) {
  const auto deadline = std::chrono::steady_clock::now() + longestConversation;
  const auto token = signedInToken();
  if (!token) return tell({});
  Keeper keeper(keeps);
  const auto now = platform::now();
  const auto choices = loadChoices();
  auto memory = keeper.load(now);
  std::optional<Failure> clientFile;
  const auto identity = identityOf(*token, clientFile);
  if (!clientFile) keepOnlyFor(memory, identity);
  auto facts = factsAtHand(now, memory);
  facts.clientFile = clientFile;
  if (!askWhatIsDue(facts, memory, choices, keeper, deadline)) return tell({});
  addAnswers(facts, memory);

  const auto isQuiet = [&, language = velmora::displayLocale()](const Kind& kind) {
    const bool isOtherLanguage = !memory.language.empty() && memory.language != language;
    return !isOn(choices, kind.id) || (memory.isNew && kind.startsQuietly) ||
           (isOtherLanguage && kind.followsLanguage);
  };
  const auto result = digest(kinds(), facts, memory.told, isQuiet);
  // What cannot be kept is not told: it would be told again and again.
  keeper.save(memory);
  if (!tell({result.news, result.over})) return false;
  memory.told = result.told;
  memory.language = velmora::displayLocale();
  memory.isNew = false;
  keeper.save(memory);
  return true;
}

std::vector<KindOfNews> newsKinds() {
  const auto choices = loadChoices();
  std::vector<KindOfNews> result;
  for (const auto& kind : kinds())
    result.push_back({kind.id, kind.title, kind.explanation, isOn(choices, kind.id)});
  return result;
}

}  // namespace companion::news
