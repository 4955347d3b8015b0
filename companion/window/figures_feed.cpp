#include "companion/window/figures_feed.hpp"

#include "VelmoraWidget/SharedKeychain.hpp"
#include "VelmoraWidget/SnapshotCache.hpp"
#include "VelmoraWidget/SnapshotFetch.hpp"
#include "companion/main_loop_tasks.hpp"
#include "platform/foundation/clock.hpp"

namespace companion::window {

/// What came of one refresh.
struct FiguresFeed::Fetched {
  std::optional<Failure> failure;
  std::optional<velmora::VelmoraSnapshot> snapshot;
  bool isStored = true;
};

FiguresFeed::FiguresFeed(State& state, std::function<void()> changed,
                         std::function<void()> refreshed)
    : state_(state), changed_(std::move(changed)), refreshed_(std::move(refreshed)) {}

void FiguresFeed::refresh() {
  if (state_.isRefreshing || !state_.status.isSignedIn) return;
  state_.isRefreshing = true;
  state_.triedAt = platform::now();
  changed_();
  auto fetched = std::make_shared<Fetched>();
  runBeside(
      [fetched] {
        try {
          fetched->snapshot = velmora::fetchSnapshot();
          const auto stored = velmora::loadCachedSnapshot();
          fetched->isStored = stored && stored->updatedAt >= fetched->snapshot->updatedAt;
        } catch (const std::exception& error) {
          fetched->failure = describeFailure(error);
        }
      },
      [this, fetched, user = user_] {
        if (user == user_) take(*fetched);
      });
}

void FiguresFeed::forget() {
  ++user_;
  state_.isRefreshing = false;
  state_.failure.reset();
  state_.unstored.reset();
  state_.triedAt.reset();
}

void FiguresFeed::take(const Fetched& fetched) {
  state_.isRefreshing = false;
  state_.failure = fetched.failure;
  if (fetched.snapshot) state_.unstored.reset();
  if (!fetched.isStored) state_.unstored = fetched.snapshot;
  refreshed_();
}

}  // namespace companion::window
