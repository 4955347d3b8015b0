#pragma once

#include <map>
#include <string>
#include <vector>

namespace companion::news {

/// Which kinds of news the user wants to be told, by their ids; those that are missing are on.
using Choices = std::map<std::string, bool>;

bool isOn(const Choices& choices, const std::string& kind);

/// The stored choices; a file that is missing or damaged holds none.
Choices loadChoices();

/// Changes the choices for these kinds and leaves the others as they are, whoever changes them at
/// the same time. Throws platform::FileError.
void storeChoices(const Choices& changed);

}  // namespace companion::news
