#pragma once

#include <wayland-server-core.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "desktop/geometry.hpp"

namespace tests {

/// What a client wants of a layer surface. Lengths are in points.
struct StandInSurface {
  wl_resource* surface = nullptr;
  wl_resource* layer = nullptr;
  bool takesInput = true;
  bool isConfigured = false;
  unsigned anchors = 0;
  std::vector<int> size{0, 0};
  std::vector<int> margins{0, 0, 0, 0};  ///< top, right, bottom, left
  wl_resource* attached = nullptr;       ///< a buffer
  wl_resource* shown = nullptr;          ///< the one of the last commit
  int bufferScale = 1;
  std::vector<wl_resource*> frames;  ///< asked for with the next commit
};

/// A Wayland compositor that shows nothing and does as it is told, in a thread of its own. It makes
/// the objects that are asked for and notes each request by its name.
class StandInCompositor {
 public:
  /// Offers globals of these names in these versions, and has WAYLAND_SOCKET lead to it.
  explicit StandInCompositor(const std::map<std::string, int>& globals);
  ~StandInCompositor();
  StandInCompositor(const StandInCompositor&) = delete;
  StandInCompositor& operator=(const StandInCompositor&) = delete;

  /// Does something while the compositor waits, and sends what comes of it at once. All that
  /// follows is for `work` alone.
  void run(const std::function<void()>& work);

  void offer(const std::string& global, int version);
  void withdraw(const std::string& global);
  /// Sends an event to the object of that kind that was made last.
  template <class... Arguments>
  void tell(const std::string& kind, const std::string& event, Arguments... arguments) {
    send(latest.at(kind), event, arguments...);
  }
  template <class... Arguments>
  void send(wl_resource* object, const std::string& event, Arguments... arguments) {
    wl_resource_post_event(object, numberOf(object, event), arguments...);
  }
  void tellOutput();
  /// Gives a surface its own size, or that of the free area.
  void configure(StandInSurface& surface);
  /// The surface whose input, as the pointer goes through it or not, and anchors are like that; the
  /// one that was made last, null without one.
  StandInSurface* probe();
  StandInSurface* widget();
  StandInSurface* shadow();
  /// A buffer's, in device pixels.
  desktop::Extent sizeOf(wl_resource* buffer);
  std::uint32_t serial() { return wl_display_next_serial(display_); }

  desktop::Extent mode{1024, 768};
  int scale = 1;
  desktop::Extent freeArea{1024, 768};
  std::map<std::string, wl_resource*> latest;  ///< by kind
  std::map<std::string, int> requests;         ///< how often, by "kind.name"
  std::list<StandInSurface> surfaces;
  std::vector<std::string> wrongs;  ///< what no compositor need put up with
  /// Called for each surface that has just been configured.
  std::function<void(StandInSurface&)> configured = [](StandInSurface&) {};

 private:
  using Arguments = const wl_argument*;
  static int dispatch(const void*, void* target, std::uint32_t, const wl_message* message,
                      wl_argument* arguments);
  static void bind(wl_client* client, void* global, std::uint32_t version, std::uint32_t id);
  static void forget(wl_resource* object);
  static std::uint32_t numberOf(wl_resource* object, const std::string& event);
  wl_resource* make(wl_client* client, const wl_interface* kind, int version, std::uint32_t id);
  void greet(wl_resource* global);
  void take(wl_resource* object, const std::string& kind, const std::string& name, Arguments made);
  void takeOfSurface(StandInSurface& surface, const std::string& name, Arguments arguments);
  void takeOfLayer(StandInSurface& surface, const std::string& name, Arguments arguments);
  void commit(StandInSurface& surface);
  StandInSurface* find(const std::function<bool(const StandInSurface&)>& matches);
  void serve();

  wl_display* display_;
  std::vector<std::shared_ptr<void>> kinds_;  // of the globals that were ever offered
  std::map<std::string, wl_global*> globals_;
  std::map<wl_resource*, desktop::Extent> buffers_;
  std::mutex mutex_;
  std::atomic<bool> isOver_ = false;
  std::thread thread_;
};

}  // namespace tests
