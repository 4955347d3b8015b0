#pragma once

#include <functional>
#include <string>
#include <vector>

#include "companion/news/digest.hpp"

namespace companion::news {

/// What `velmora news` tells.
struct News {
  std::vector<Report> news;
  std::vector<std::string> over;
};

/// Finds out what is news for the user, asking the provider where that can matter, and hands it to
/// `tell`. What was told is kept once `tell` returns true, and only with `keeps`. Signed out, there
/// is none. Ends within 20 seconds, whatever the provider does. Returns what `tell` returned;
/// throws SignInError (stateNotWritable) and tells nothing when it could not be kept.
bool tellNews(bool keeps, const std::function<bool(const News&)>& tell);

/// A kind of news as its switch shows it.
struct KindOfNews {
  std::string id;
  std::string title;
  std::string explanation;
  bool isOn = true;
};

/// Every kind, in the order of the switches, with the user's choice. See storeChoices to change it.
std::vector<KindOfNews> newsKinds();

}  // namespace companion::news
