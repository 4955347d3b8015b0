#pragma once

#include <memory>
#include <optional>
#include <string>

#include "companion/window/overview_page.hpp"
#include "companion/window/session.hpp"
#include "companion/window/sign_in_page.hpp"
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
  void makeActions();
  void addAction(const char* name, std::function<void()> activated);
  void enableAction(const char* name, bool enabled);
  GtkWidget* makeMenuButton();
  void update();
  void makePage(Page page);
  void makeOverview();
  void hideOthers();
  void say(const std::string& message);
  void prepareToClose();
  void leave();

  Session& session_;
  std::function<void()> closed_;
  AdwApplicationWindow* window_;
  AdwToastOverlay* toasts_ = nullptr;
  GtkStack* stack_ = nullptr;
  GtkWidget* loading_ = nullptr;
  GtkWidget* menuButton_ = nullptr;
  std::optional<WelcomePage> welcome_;
  std::optional<SignInPage> signIn_;
  std::optional<SignInFailedPage> failed_;
  std::unique_ptr<DesktopHost> host_;
  std::optional<OverviewPage> overview_;
};

}  // namespace companion::window
