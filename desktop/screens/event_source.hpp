#pragma once

#include <glib.h>

#include <functional>

namespace desktop {

/// The connection to a display in the main loop. Both libraries read events while they wait for
/// something else, so that the descriptor alone does not tell whether any are there.
class EventSource {
 public:
  /// `pending` sends what is due and tells whether events are queued; `dispatch` handles all
  /// events, reading when `readable`.
  EventSource(int descriptor, std::function<bool()> pending,
              std::function<void(bool readable)> dispatch);
  ~EventSource();
  EventSource(const EventSource&) = delete;
  EventSource& operator=(const EventSource&) = delete;

 private:
  struct Source;
  static gboolean prepare(GSource* source, gint* timeout);
  static gboolean check(GSource* source);
  static gboolean handle(GSource* source, GSourceFunc, gpointer);

  static GSourceFuncs functions;
  std::function<bool()> pending_;
  std::function<void(bool)> dispatch_;
  Source* source_;
};

}  // namespace desktop
