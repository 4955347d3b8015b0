#pragma once

#include <concepts>
#include <functional>
#include <vector>

#include "platform/foundation/instant.hpp"
#include "platform/widgets/widget_family.hpp"

namespace platform {

/// What the host says of the place that it asks for.
struct TimelineProviderContext {
  WidgetFamily family = WidgetFamily::systemSmall;
  bool isPreview = false;
};

/// When the host asks for the next timeline.
struct TimelineReloadPolicy {
  Instant date;

  /// Once that instant has passed.
  static TimelineReloadPolicy after(Instant date) { return {date}; }
};

/// Entries, each shown from its date on, and when to ask again.
template <class Entry>
struct Timeline {
  std::vector<Entry> entries;
  TimelineReloadPolicy policy;
};

/// The answers that a widget gives its host. `placeholder` returns at once. `getSnapshot` calls
/// its completion before it returns. `getTimeline` may call it later, from any thread, exactly
/// once.
template <class Provider>
concept TimelineProvider =
    requires(const Provider& provider, const TimelineProviderContext& context,
             std::function<void(typename Provider::Entry)> useEntry,
             std::function<void(Timeline<typename Provider::Entry>)> useTimeline,
             const typename Provider::Entry& entry) {
      { entry.date } -> std::convertible_to<Instant>;
      { provider.placeholder(context) } -> std::same_as<typename Provider::Entry>;
      provider.getSnapshot(context, useEntry);
      provider.getTimeline(context, useTimeline);
    };

}  // namespace platform
