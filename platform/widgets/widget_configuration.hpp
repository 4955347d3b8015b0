#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <string>
#include <vector>

#include "platform/foundation/json.hpp"
#include "platform/widgets/timeline.hpp"

namespace platform {

/// An entry as the host sees it: its date and its figures.
struct HostEntry {
  Instant date;
  Json content;
};

/// One widget as the host sees it. The content of its entries is what `jsonForm` says of them.
class WidgetConfiguration {
 public:
  std::string kind;
  std::string displayName;
  std::string description;
  std::vector<WidgetFamily> families;

  std::function<HostEntry(const TimelineProviderContext&)> placeholder;
  std::function<void(const TimelineProviderContext&, std::function<void(HostEntry)>)> getSnapshot;
  std::function<void(const TimelineProviderContext&, std::function<void(Timeline<HostEntry>)>)>
      getTimeline;
};

/// Declares a widget that the user cannot configure.
template <TimelineProvider Provider>
WidgetConfiguration staticConfiguration(std::string kind, Provider provider) {
  using Entry = typename Provider::Entry;
  const auto hosted = [](const Entry& entry) { return HostEntry{entry.date, jsonForm(entry)}; };

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
