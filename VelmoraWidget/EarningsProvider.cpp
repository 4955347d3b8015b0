#include "VelmoraWidget/EarningsProvider.hpp"

#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "platform/foundation/background_tasks.hpp"
#include "platform/foundation/clock.hpp"

namespace velmora {

namespace {

constexpr double reloadInterval = 1800;  // seconds

using TimelineBox = UncheckedSendableBox<EarningsProvider::TimelineCompletion>;

bool isConnected() {
  try {
    return refreshTokenItem().readString().has_value();
  } catch (const KeychainError&) {
    return false;
  }
}

VelmoraSnapshot figuresAtHand() { return loadCachedSnapshot().value_or(VelmoraSnapshot::sample()); }

std::optional<VelmoraSnapshot> freshFigures() {
  try {
    return fetchSnapshot();
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

EarningsEntry makeEntry(const VelmoraSnapshot& snapshot, bool connected) {
  return {platform::now(), snapshot, loadObjectives(), connected};
}

void buildTimeline(const TimelineBox& completion) {
  const bool connected = isConnected();
  auto snapshot = figuresAtHand();
  if (connected) {
    // After a failure the figures at hand stay on the screen until the next regular reload.
    snapshot = freshFigures().value_or(snapshot);
  }
  const auto entry = makeEntry(snapshot, connected);
  const auto reloadDate = platform::now() + reloadInterval;
  completion.value({{entry}, platform::TimelineReloadPolicy::after(reloadDate)});
}

}  // namespace

EarningsEntry EarningsProvider::placeholder(const Context&) const {
  return {platform::now(), VelmoraSnapshot::sample(), defaultObjectives, true};
}

void EarningsProvider::getSnapshot(const Context&, const EntryCompletion& completion) const {
  const auto snapshot = figuresAtHand();
  const auto date = platform::now();
  const auto objectives = loadObjectives();
  completion({date, snapshot, objectives, isConnected()});
}

void EarningsProvider::getTimeline(const Context&, TimelineCompletion completion) const {
  TimelineBox box{std::move(completion)};
  platform::startBackgroundTask([box = std::move(box)] { buildTimeline(box); });
}

}  // namespace velmora
