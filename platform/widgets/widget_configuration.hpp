#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

#include "platform/foundation/json.hpp"
#include "platform/widgets/timeline.hpp"
#include "platform/widgets/widget_drawing.hpp"

namespace platform {

/// An entry as the host sees it: its date, its figures, and what it looks like.
struct HostEntry {
  Instant date;
  Json figures;
  WidgetView view;
};

/// One widget as the host sees it.
struct WidgetConfiguration {
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<WidgetFamily> families;

  std::function<HostEntry(const TimelineProviderContext&)> placeholder;
  std::function<void(const TimelineProviderContext&, std::function<void(HostEntry)>)> getSnapshot;
  std::function<void(const TimelineProviderContext&, std::function<void(Timeline<HostEntry>)>)>
      getTimeline;
};

/// Declares a widget that the user cannot configure. `content` makes the view of an entry;
/// `jsonForm` tells its figures.
template <TimelineProvider Provider, class Content>
WidgetConfiguration staticConfiguration(std::string kind, Provider provider, Content content) {
  using Entry = typename Provider::Entry;
  const auto hosted = [content](const Entry& entry) {
    return HostEntry{entry.date, jsonForm(entry), content(entry)};
  };

  WidgetConfiguration configuration;
  configuration.kind = std::move(kind);
  configuration.placeholder = [=](const TimelineProviderContext& context) {
    return hosted(provider.placeholder(context));
  };
  configuration.getSnapshot = [=](const TimelineProviderContext& context,
                                  std::function<void(HostEntry)> completion) {
    provider.getSnapshot(context, [=](const Entry& entry) { completion(hosted(entry)); });
  };
  configuration.getTimeline = [=](const TimelineProviderContext& context,
                                  std::function<void(Timeline<HostEntry>)> completion) {
    provider.getTimeline(context, [=](const Timeline<Entry>& timeline) {
      Timeline<HostEntry> forHost{{}, timeline.policy};
      for (const auto& entry : timeline.entries) forHost.entries.push_back(hosted(entry));
      completion(forHost);
    });
  };
  return configuration;
}

}  // namespace platform
