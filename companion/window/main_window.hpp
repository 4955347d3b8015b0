#pragma once

#include <memory>
#include <optional>
#include <string>

#include "companion/window/overview_page.hpp"
#include "companion/window/session.hpp"
#include "companion/window/sign_in_page.hpp"
#include "companion/window/timer.hpp"
#include "companion/window/waiting_pages.hpp"
#include "companion/window/welcome_page.hpp"

namespace companion::window {

/// The one window. Its pages are made when they are first shown.
class MainWindow {
 public:
  /// `closed` is called when it is gone.
  MainWindow(GtkApplication* application, Session& session, std::function<void()> closed);
  ~MainWindow();
  MainWindow(const MainWindow&) = delete;
  MainWindow& operator=(const MainWindow&) = delete;

  void present();
  void close();

 private:
  void makeContent();
  GtkWidget* makeHeader();
  GtkWidget* makeRefreshButton();
  GtkWidget* makeMenuButton();
  void makeActions();
  void addAction(const char* name, std::function<void()> activated);
  void enableAction(const char* name, bool enabled);
  void followState();
  void update();
  void updateActions(Page page);
  void makePage(Page page);
  GtkWidget* widgetFor(Page page);
  GtkWidget* makeOverview();
  void showView(const char* name);
  void focusPage(Page page);
  void prepareToClose();
  void leave();

  Session& session_;
  std::function<void()> closed_;
  AdwApplicationWindow* window_;
  GtkStack* stack_ = nullptr;
  AdwViewSwitcherTitle* switcher_ = nullptr;
  AdwViewSwitcherBar* bottomSwitcher_ = nullptr;
  GtkWidget* refreshButton_ = nullptr;
  GtkWidget* refreshSpinner_ = nullptr;
  GtkWidget* menuButton_ = nullptr;
  std::optional<BusyPage> loading_;
  std::optional<BusyPage> signingOut_;
  std::optional<WelcomePage> welcome_;
  std::optional<SignInPage> signIn_;
  std::optional<SignInFailedPage> failed_;
  std::unique_ptr<DesktopHost> host_;
  std::optional<OverviewPage> overview_;
  Timer rest_;  // after a change, until memory is given back
};

}  // namespace companion::window
