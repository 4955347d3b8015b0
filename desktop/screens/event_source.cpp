#include "desktop/screens/event_source.hpp"

#include "platform/processes/guarded.hpp"

namespace desktop {

struct EventSource::Source {
  GSource base;
  EventSource* owner;
  gpointer tag;
};

GSourceFuncs EventSource::functions = {prepare, check, handle, nullptr, nullptr, nullptr};

EventSource::EventSource(int descriptor, std::function<bool()> pending,
                         std::function<void(bool)> dispatch)
    : pending_(std::move(pending)),
      dispatch_(std::move(dispatch)),
      source_(reinterpret_cast<Source*>(g_source_new(&functions, sizeof(Source)))) {
  source_->owner = this;
  source_->tag = g_source_add_unix_fd(&source_->base, descriptor,
                                      static_cast<GIOCondition>(G_IO_IN | G_IO_ERR | G_IO_HUP));
  g_source_attach(&source_->base, nullptr);
}

EventSource::~EventSource() {
  g_source_destroy(&source_->base);
  g_source_unref(&source_->base);
}

gboolean EventSource::prepare(GSource* source, gint* timeout) {
  *timeout = -1;
  bool pending = false;
  platform::guarded([&] { pending = reinterpret_cast<Source*>(source)->owner->pending_(); });
  return pending ? TRUE : FALSE;
}

gboolean EventSource::check(GSource* source) {
  const auto* self = reinterpret_cast<Source*>(source);
  return g_source_query_unix_fd(source, self->tag) != 0 ? TRUE : FALSE;
}

gboolean EventSource::handle(GSource* source, GSourceFunc, gpointer) {
  auto* self = reinterpret_cast<Source*>(source);
  const bool readable = g_source_query_unix_fd(source, self->tag) != 0;
  platform::guarded([&] { self->owner->dispatch_(readable); });
  return G_SOURCE_CONTINUE;
}

}  // namespace desktop
