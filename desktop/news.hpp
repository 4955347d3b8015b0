#pragma once

#include <gio/gio.h>

#include <string>
#include <vector>

#include "desktop/notifications.hpp"
#include "platform/processes/process.hpp"

namespace desktop {

/// What `velmora news` printed.
struct NewsAnswer {
  std::vector<Notification> news;
  std::vector<std::string> over;  ///< ids
};

/// Reads it. Throws platform::JsonDecodingError.
NewsAnswer parseNews(const std::string& output);

/// Asks the companion for what the user has not been told yet, and posts it. Knows nothing of what
/// it may be about.
class News {
 public:
  explicit News(GDBusConnection* bus) : notifications_(bus) {}

  /// A widget answered, and found its user signed in or not. While nobody can be told, the
  /// companion is not asked, so that nothing counts as told.
  void ask(bool isConnected);

 private:
  void run();
  void tell(const platform::ProcessEnd& end);

  Notifications notifications_;
  platform::Process process_;
};

}  // namespace desktop
