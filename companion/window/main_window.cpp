#include "companion/window/main_window.hpp"

#include "companion/beside.hpp"
#include "companion/window/about.hpp"
#include "companion/window/shortcuts.hpp"
#include "companion/window/window_size.hpp"
#include "platform/foundation/localized_strings.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

constexpr int leastWidth = 360;
constexpr int leastHeight = 480;
constexpr unsigned messageSeconds = 10;

const char* nameOf(Page page) {
  switch (page) {
    case Page::loading:
      return "loading";
    case Page::locked:
      return "locked";
    case Page::welcome:
      return "welcome";
    case Page::signingIn:
      return "signing-in";
    case Page::signInFailed:
      return "failed";
    case Page::overview:
      return "overview";
  }
  return "";
}

}  // namespace

MainWindow::MainWindow(GtkApplication* application, Session& session, std::function<void()> closed)
    : session_(session),
      closed_(std::move(closed)),
      window_(ADW_APPLICATION_WINDOW(adw_application_window_new(application))) {
  auto* window = GTK_WINDOW(window_);
  gtk_window_set_title(window, "Velmora");
  gtk_widget_set_size_request(GTK_WIDGET(window), leastWidth, leastHeight);
  const auto size = loadWindowSize();
  gtk_window_set_default_size(window, size.width, size.height);
  if (size.isMaximized) gtk_window_maximize(window);
  makeContent();
  makeActions();
  session_.setListener({[this] { update(); }, [this](const std::string& text) { say(text); },
                        [this] { present(); },
                        [this] {
                          if (overview_) overview_->redraw();
                        }});
  connect(window, "notify::is-active", [this] {
    const bool isAtRest = session_.state().isLoaded && session_.state().signIn == SignInPhase::none;
    if (isAtRest && gtk_window_is_active(GTK_WINDOW(window_)) != FALSE) session_.load();
  });
  connect(window, "destroy", [this] { leave(); });
  g_signal_connect_data(window, "close-request",
                        G_CALLBACK(+[](GtkWindow*, gpointer self) -> gboolean {
                          static_cast<MainWindow*>(self)->prepareToClose();
                          return FALSE;
                        }),
                        this, nullptr, static_cast<GConnectFlags>(0));
  update();
}

MainWindow::~MainWindow() = default;

void MainWindow::leave() {
  session_.setListener({});
  session_.cancelSignIn();
  runSoon(closed_);
}

void MainWindow::prepareToClose() {
  if (overview_) overview_->settle();
  WindowSize size;
  gtk_window_get_default_size(GTK_WINDOW(window_), &size.width, &size.height);
  size.isMaximized = gtk_window_is_maximized(GTK_WINDOW(window_)) != FALSE;
  saveWindowSize(size);
}

void MainWindow::present() { gtk_window_present(GTK_WINDOW(window_)); }

void MainWindow::close() { gtk_window_close(GTK_WINDOW(window_)); }

void MainWindow::makeContent() {
  GtkWidget* header = adw_header_bar_new();
  menuButton_ = makeMenuButton();
  adw_header_bar_pack_end(ADW_HEADER_BAR(header), menuButton_);
  stack_ = GTK_STACK(gtk_stack_new());
  gtk_widget_set_vexpand(GTK_WIDGET(stack_), TRUE);
  gtk_stack_set_transition_type(stack_, GTK_STACK_TRANSITION_TYPE_CROSSFADE);
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  gtk_box_append(GTK_BOX(box), header);
  gtk_box_append(GTK_BOX(box), GTK_WIDGET(stack_));
  toasts_ = ADW_TOAST_OVERLAY(adw_toast_overlay_new());
  adw_toast_overlay_set_child(toasts_, box);
  adw_application_window_set_content(window_, GTK_WIDGET(toasts_));
}

GtkWidget* MainWindow::makeMenuButton() {
  const Reference<GMenu> menu(g_menu_new());
  g_menu_append(menu.get(), localizedString("_Refresh Now").c_str(), "win.refresh");
  g_menu_append(menu.get(), localizedString("_Keyboard Shortcuts").c_str(), "win.shortcuts");
  g_menu_append(menu.get(), localizedString("_About Velmora").c_str(), "win.about");
  GtkWidget* button = gtk_menu_button_new();
  gtk_menu_button_set_icon_name(GTK_MENU_BUTTON(button), "open-menu-symbolic");
  gtk_menu_button_set_menu_model(GTK_MENU_BUTTON(button), G_MENU_MODEL(menu.get()));
  gtk_widget_set_tooltip_text(button, localizedString("Main Menu").c_str());
  setAccessibleLabel(button, localizedString("Main Menu"));
  return button;
}

void MainWindow::addAction(const char* name, std::function<void()> activated) {
  const Reference<GSimpleAction> action(g_simple_action_new(name, nullptr));
  connect(action.get(), "activate", std::move(activated));
  g_action_map_add_action(G_ACTION_MAP(window_), G_ACTION(action.get()));
}

void MainWindow::enableAction(const char* name, bool enabled) {
  auto* action = g_action_map_lookup_action(G_ACTION_MAP(window_), name);
  g_simple_action_set_enabled(G_SIMPLE_ACTION(action), enabled ? TRUE : FALSE);
}

void MainWindow::makeActions() {
  addAction("refresh", [this] { session_.refresh(); });
  addAction("choose-file", [this] { welcome_->chooseFile(); });
  addAction("cancel", [this] { session_.cancelSignIn(); });
  addAction("menu", [this] { gtk_menu_button_popup(GTK_MENU_BUTTON(menuButton_)); });
  addAction("shortcuts", [this] { showShortcuts(GTK_WINDOW(window_)); });
  addAction("about", [this] { showAbout(GTK_WINDOW(window_)); });
}

void MainWindow::say(const std::string& message) {
  auto* toast = adw_toast_new(escaped(message).c_str());
  adw_toast_set_timeout(toast, messageSeconds);
  adw_toast_overlay_add_toast(toasts_, toast);
}

void MainWindow::makePage(Page page) {
  if (gtk_stack_get_child_by_name(stack_, nameOf(page)) != nullptr) return;
  GtkWidget* widget = nullptr;
  switch (page) {
    case Page::loading:
      widget = loading_ = gtk_spinner_new();
      gtk_widget_set_size_request(widget, 32, 32);
      gtk_widget_set_halign(widget, GTK_ALIGN_CENTER);
      setAccessibleLabel(widget, localizedString("Loading"));
      break;
    case Page::locked:
      widget = makeLockedPage(session_);
      break;
    case Page::welcome:
      widget = welcome_.emplace(session_).widget();
      break;
    case Page::signingIn:
      widget = signIn_.emplace(session_).widget();
      break;
    case Page::signInFailed:
      widget = failed_.emplace(session_).widget();
      break;
    case Page::overview:
      makeOverview();
      widget = overview_->widget();
  }
  gtk_stack_add_named(stack_, widget, nameOf(page));
}

void MainWindow::makeOverview() {
  host_ = std::make_unique<DesktopHost>(
      DesktopHost::Events{[this] {
                            if (overview_) overview_->updateDesktop();
                          },
                          [this](const std::string& problem) { say(problem); }});
  overview_.emplace(session_, *host_);
}

void MainWindow::update() {
  const auto& state = session_.state();
  const auto page = pageFor(state);
  makePage(page);
  if (welcome_) welcome_->update(state);
  if (signIn_) signIn_->update(state);
  if (failed_) failed_->update(state);
  if (overview_ && page == Page::overview) overview_->update(state);
  if (loading_ != nullptr)
    gtk_spinner_set_spinning(GTK_SPINNER(loading_), page == Page::loading ? TRUE : FALSE);
  enableAction("refresh", page == Page::overview && !state.isRefreshing);
  enableAction("choose-file", page == Page::welcome);
  enableAction("cancel", page == Page::signingIn);
  const bool isOther = g_strcmp0(gtk_stack_get_visible_child_name(stack_), nameOf(page)) != 0;
  gtk_stack_set_visible_child_name(stack_, nameOf(page));
  hideOthers();
  if (isOther) gtk_widget_child_focus(gtk_stack_get_visible_child(stack_), GTK_DIR_TAB_FORWARD);
}

/// Screen readers would read the pages that are not shown as well.
void MainWindow::hideOthers() {
  GtkWidget* shown = gtk_stack_get_visible_child(stack_);
  for (auto* page = gtk_widget_get_first_child(GTK_WIDGET(stack_)); page != nullptr;
       page = gtk_widget_get_next_sibling(page))
    gtk_accessible_update_state(GTK_ACCESSIBLE(page), GTK_ACCESSIBLE_STATE_HIDDEN, page != shown,
                                -1);
}

}  // namespace companion::window
