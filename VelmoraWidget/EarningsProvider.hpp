#pragma once

#include <functional>

#include "VelmoraWidget/EarningsEntry.hpp"
#include "platform/widgets/timeline.hpp"

namespace velmora {

/// Answers the host. Every answer is one entry, whatever fails on the way to it.
struct EarningsProvider {
  using Entry = EarningsEntry;
  using Context = platform::TimelineProviderContext;
  using EntryCompletion = std::function<void(EarningsEntry)>;
  using TimelineCompletion = std::function<void(platform::Timeline<EarningsEntry>)>;

  /// The sample figures; reads nothing.
  [[nodiscard]] EarningsEntry placeholder(const Context& context) const;

  /// The cached figures, else the sample; never uses the network.
  void getSnapshot(const Context& context, const EntryCompletion& completion) const;

  /// Returns at once and calls the completion later, once, from a background task: with fresh
  /// figures if they can be had, else with those of getSnapshot. The host is to ask again after
  /// 30 minutes.
  void getTimeline(const Context& context, TimelineCompletion completion) const;
};

/// Carries a value into a task that runs on another thread.
template <class Wrapped>
struct UncheckedSendableBox {
  Wrapped value;
};

}  // namespace velmora
