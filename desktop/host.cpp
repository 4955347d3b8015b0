#include "desktop/host.hpp"

#include "desktop/complain.hpp"
#include "desktop/hidden_amounts.hpp"
#include "desktop/open_companion.hpp"
#include "platform/foundation/files.hpp"
#include "platform/foundation/memory.hpp"

namespace desktop {

Host::Host(const CommandLine& line, const std::string& program, GDBusConnection* bus,
           std::function<void(int)> quit)
    : quit_(std::move(quit)),
      placement_(applied(line, loadPlacement(placementFile()))),
      reader_(bus),
      news_(bus),
      asking_(program, bus, askingEvents()) {}

Asking::Events Host::askingEvents() {
  Asking::Events events;
  events.wanted = [this] { return wanted(); };
  events.isSeen = [this] { return isSeen(); };
  events.answered = [this](RunResult result, const Look& look) {
    answered(std::move(result), look);
  };
  events.timelineAnswered = [this](const WidgetAnswer& answer) { news_.ask(answer.isConnected); };
  events.rests = platform::giveBackMemory;  // half an hour of waiting may follow
  return events;
}

ScreenEvents Host::screenEvents() {
  ScreenEvents events;
  events.changed = [this] { screenChanged(); };
  events.moved = [this](const std::string& monitor, Point position) {
    auto placement = placement_;
    if (!monitor.empty()) placement.monitor = monitor;
    placement.moved = position;
    change(placement);
  };
  events.opened = openCompanion;
  events.menuAsked = [this](const MenuSpot& spot) { openMenu(spot); };
  events.closed = [this] { quit_(0); };
  events.lost = [this] {
    complain("the display has gone");
    quit_(1);
  };
  return events;
}

void Host::openDisplay() {
  screen_ = openScreen(screenEvents(), placement_);
  store();  // the choices of this call
  screenChanged();
}

void Host::openMenu(const MenuSpot& spot) {
  menu_.open(spot, placement_, screen_->kind(),
             [this](const MenuChoice& choice) { choose(choice); });
}

void Host::choose(const MenuChoice& choice) {
  CommandLine line;
  if (choice.command == "family") {
    line.family = offeredFamily(choice.name);
  } else if (choice.command == "corner") {
    line.corner = cornerFromName(choice.name);
  } else if (choice.command == "amounts") {
    line.hidesAmounts = choice.name == "hide";
  } else if (choice.command == "refresh") {
    line.refresh = true;
  } else if (choice.command == "open") {
    openCompanion(choice.name);
  } else if (choice.command == "quit") {
    return quit_(0);
  }
  apply(line);
}

void Host::apply(const CommandLine& line) {
  change(applied(line, placement_));
  if (line.refresh) asking_.refresh();
}

void Host::change(Placement placement) {
  const bool changed = placement != placement_;
  const bool hides = placement.hidesAmounts && !placement_.hidesAmounts;
  placement_ = std::move(placement);
  if (changed) store();
  if (hides) hideAmounts();
  if (screen_) screen_->place(placement_);
  asking_.follow();
}

void Host::store() const {
  try {
    storePlacement(placement_, placementFile());
  } catch (const platform::FileError& error) {
    complain(error.what());
  }
}

/// Keeps the scale, so that the first picture of the next start has the right one at once, and
/// shows what came before the scale was known.
void Host::screenChanged() {
  const auto scale = screen_->scale();
  if (scale && placement_.lastScale != *scale) {
    placement_.lastScale = *scale;
    store();
  }
  if (auto early = scale ? std::exchange(early_, std::nullopt) : std::nullopt)
    if (early->second == wanted()) show(early->first, early->second);
  asking_.follow();
}

Look Host::wanted() const {
  const auto scale = screen_ ? screen_->scale() : std::nullopt;
  return {placement_.family, scale.value_or(placement_.lastScale), placement_.hidesAmounts};
}

bool Host::isSeen() const {
  return (screen_ && screen_->shown() == wanted()) || (early_ && early_->second == wanted());
}

void Host::answered(RunResult result, const Look& look) {
  if (screen_ && screen_->scale()) return show(result, look);
  early_.emplace(std::move(result), look);
}

void Host::show(const RunResult& result, const Look& look) {
  reduced_ = reduced(result.picture.get(), look.scale);
  phrases_ = result.answer->phrases;
  if (look.hidesAmounts) return showHidden(look);
  screen_->show(result.picture, look);
  say();
}

/// From what is left of the picture, so that nothing is seen sharp until the widget program
/// answers.
void Host::showHidden(const Look& look) {
  screen_->show(blurred(reduced_.get(), pictureSize(look), look.scale), look);
  say();
}

void Host::hideAmounts() {
  auto look = screen_ ? screen_->shown() : std::nullopt;
  if (!look || !reduced_) return;
  look->hidesAmounts = true;
  showHidden(*look);
}

void Host::say() {
  if (placement_.hidesAmounts) {
    reader_.sayHidden();
  } else {
    reader_.say(phrases_);
  }
}

}  // namespace desktop
