#include "companion/window/main_window.hpp"

#include "companion/main_loop_tasks.hpp"
#include "companion/window/about.hpp"
#include "companion/window/client_file_input.hpp"
#include "companion/window/shortcuts.hpp"
#include "companion/window/window_size.hpp"
#include "platform/foundation/localized_strings.hpp"
#include "platform/foundation/memory.hpp"

namespace companion::window {

using platform::localizedString;

namespace {

constexpr int leastWidth = 360;
constexpr int leastHeight = 480;

const char* nameOf(Page page) {
  switch (page) {
    case Page::loading:
      return "loading";
    case Page::locked:
      return "locked";
    case Page::noKeyring:
      return "no-keyring";
    case Page::welcome:
      return "welcome";
    case Page::signingIn:
      return "signing-in";
    case Page::signInFailed:
      return "failed";
    case Page::signingOut:
      return "signing-out";
    case Page::overview:
      return "overview";
  }
  return "";
}

bool offersClientFile(Page page) {
  return page == Page::welcome || page == Page::overview || page == Page::signInFailed;
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
  followState();
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

void MainWindow::followState() {
  session_.setListener({[this] { update(); }, [this] { present(); },
                        [this] {
                          if (overview_) overview_->redraw();
                        }});
  connect(window_, "notify::is-active", [this] {
    const auto& state = session_.state();
    const bool isAtRest =
        state.isLoaded && state.signIn == SignInPhase::none && !state.isSigningOut;
    if (isAtRest && gtk_window_is_active(GTK_WINDOW(window_)) != FALSE) session_.load();
  });
}

/// The widgets are gone now, and with them whatever still meant to call them.
void MainWindow::leave() {
  session_.setListener({});
  session_.cancelSignIn();
  overview_.reset();
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
  stack_ = GTK_STACK(gtk_stack_new());
  gtk_widget_set_vexpand(GTK_WIDGET(stack_), TRUE);
  gtk_stack_set_transition_type(stack_, GTK_STACK_TRANSITION_TYPE_CROSSFADE);
  bottomSwitcher_ = ADW_VIEW_SWITCHER_BAR(adw_view_switcher_bar_new());
  GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
  for (auto* part : {makeHeader(), GTK_WIDGET(stack_), GTK_WIDGET(bottomSwitcher_)})
    gtk_box_append(GTK_BOX(box), part);
  g_object_bind_property(switcher_, "title-visible", bottomSwitcher_, "reveal",
                         G_BINDING_SYNC_CREATE);
  adw_application_window_set_content(window_, box);
}

GtkWidget* MainWindow::makeHeader() {
  GtkWidget* header = adw_header_bar_new();
  switcher_ = ADW_VIEW_SWITCHER_TITLE(adw_view_switcher_title_new());
  adw_view_switcher_title_set_title(switcher_, "Velmora");
  refreshButton_ = makeRefreshButton();
  menuButton_ = makeMenuButton();
  adw_header_bar_set_centering_policy(ADW_HEADER_BAR(header), ADW_CENTERING_POLICY_LOOSE);
  adw_header_bar_set_title_widget(ADW_HEADER_BAR(header), GTK_WIDGET(switcher_));
  adw_header_bar_pack_start(ADW_HEADER_BAR(header), refreshButton_);
  adw_header_bar_pack_end(ADW_HEADER_BAR(header), menuButton_);
  return header;
}

/// A spinner takes the place of its sign while figures are fetched.
GtkWidget* MainWindow::makeRefreshButton() {
  GtkWidget* signs = gtk_stack_new();
  gtk_stack_add_named(GTK_STACK(signs), gtk_image_new_from_icon_name("view-refresh-symbolic"),
                      "sign");
  refreshSpinner_ = gtk_spinner_new();
  gtk_stack_add_named(GTK_STACK(signs), refreshSpinner_, "spinner");
  setAccessibleLabel(refreshSpinner_, localizedString("Refreshing"));
  GtkWidget* button = gtk_button_new();
  gtk_button_set_child(GTK_BUTTON(button), signs);
  gtk_actionable_set_action_name(GTK_ACTIONABLE(button), "win.refresh");
  const auto name = withoutMnemonic(localizedString("_Refresh Now"));
  gtk_widget_set_tooltip_text(button, name.c_str());
  setAccessibleLabel(button, name);
  return button;
}

GtkWidget* MainWindow::makeMenuButton() {
  const Reference<GMenu> menu(g_menu_new());
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
  addAction("choose-file", [this] { chooseClientFile(GTK_WINDOW(window_), session_); });
  addAction("cancel", [this] { session_.cancelSignIn(); });
  addAction("show-earnings", [this] { showView("earnings"); });
  addAction("show-widget", [this] { showView("widget"); });
  addAction("show-account", [this] { showView("account"); });
  addAction("menu", [this] { gtk_menu_button_popup(GTK_MENU_BUTTON(menuButton_)); });
  addAction("shortcuts", [this] { showShortcuts(GTK_WINDOW(window_)); });
  addAction("about", [this] { showAbout(GTK_WINDOW(window_)); });
}

void MainWindow::showView(const char* name) {
  if (overview_) adw_view_stack_set_visible_child_name(overview_->stack(), name);
}

GtkWidget* MainWindow::widgetFor(Page page) {
  switch (page) {
    case Page::loading:
      return loading_.emplace(page, "").widget();
    case Page::signingOut:
      return signingOut_.emplace(page, localizedString("Signing out…")).widget();
    case Page::locked:
      return makeLockedPage(session_);
    case Page::noKeyring:
      return makeNoKeyringPage(session_);
    case Page::welcome:
      return welcome_.emplace(session_).widget();
    case Page::signingIn:
      return signIn_.emplace(session_).widget();
    case Page::signInFailed:
      return failed_.emplace(session_).widget();
    case Page::overview:
      break;
  }
  return makeOverview();
}

void MainWindow::makePage(Page page) {
  if (gtk_stack_get_child_by_name(stack_, nameOf(page)) == nullptr)
    gtk_stack_add_named(stack_, widgetFor(page), nameOf(page));
}

GtkWidget* MainWindow::makeOverview() {
  host_ = std::make_unique<DesktopHost>([this] {
    if (overview_) overview_->updateHost();
  });
  overview_.emplace(session_, *host_);
  adw_view_switcher_title_set_stack(switcher_, overview_->stack());
  adw_view_switcher_bar_set_stack(bottomSwitcher_, overview_->stack());
  return overview_->widget();
}

void MainWindow::updateActions(Page page) {
  const auto& state = session_.state();
  const bool isOverview = page == Page::overview;
  for (const char* name : {"show-earnings", "show-widget", "show-account"})
    enableAction(name, isOverview);
  enableAction("refresh", isOverview && !state.isRefreshing);
  enableAction("choose-file", offersClientFile(page));
  enableAction("cancel", page == Page::signingIn);
  gtk_widget_set_visible(refreshButton_, isOverview ? TRUE : FALSE);
  gtk_spinner_set_spinning(GTK_SPINNER(refreshSpinner_), isOverview && state.isRefreshing);
  gtk_stack_set_visible_child_name(GTK_STACK(gtk_button_get_child(GTK_BUTTON(refreshButton_))),
                                   state.isRefreshing ? "spinner" : "sign");
  adw_view_switcher_title_set_view_switcher_enabled(switcher_, isOverview ? TRUE : FALSE);
  gtk_widget_set_visible(GTK_WIDGET(bottomSwitcher_), isOverview ? TRUE : FALSE);
}

void MainWindow::update() {
  const auto& state = session_.state();
  const auto page = pageFor(state);
  makePage(page);
  for (auto* busy : {&loading_, &signingOut_})
    if (*busy) (*busy)->update(state);
  if (welcome_) welcome_->update(state);
  if (signIn_) signIn_->update(state);
  if (failed_) failed_->update(state);
  if (overview_ && page == Page::overview) overview_->update(state);
  updateActions(page);
  const bool isOther = g_strcmp0(gtk_stack_get_visible_child_name(stack_), nameOf(page)) != 0;
  gtk_stack_set_visible_child_name(stack_, nameOf(page));
  hideOthers(GTK_WIDGET(stack_), gtk_stack_get_visible_child(stack_));
  if (isOther) focusPage(page);
  constexpr std::chrono::seconds untilItRests{3};
  rest_.start(untilItRests, platform::giveBackMemory);
}

void MainWindow::focusPage(Page page) {
  if (page == Page::welcome) return welcome_->focus();
  GtkWidget* shown = gtk_stack_get_visible_child(stack_);
  if (page == Page::signingIn) {
    gtk_widget_grab_focus(shown);
  } else {
    gtk_widget_child_focus(shown, GTK_DIR_TAB_FORWARD);
  }
}

}  // namespace companion::window
