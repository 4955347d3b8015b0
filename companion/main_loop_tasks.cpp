#include "companion/main_loop_tasks.hpp"

#include <glib.h>

#include <memory>

#include "platform/foundation/background_tasks.hpp"

namespace companion {

void runBeside(std::function<void()> work, std::function<void()> done) {
  platform::startBackgroundTask([work = std::move(work), done = std::move(done)]() mutable {
    work();
    runSoon(std::move(done));
  });
}

void runSoon(std::function<void()> callback) {
  g_idle_add_full(
      G_PRIORITY_DEFAULT,
      [](gpointer call) {
        (*static_cast<std::function<void()>*>(call))();
        return gboolean{G_SOURCE_REMOVE};
      },
      std::make_unique<std::function<void()>>(std::move(callback)).release(),
      [](gpointer call) { delete static_cast<std::function<void()>*>(call); });
}

}  // namespace companion
