#pragma once

#include <string>

namespace companion::news {

/// The words of a text that may hold HTML, on one line: no tags, entities decoded, of a link its
/// words alone. A very long text is cut.
std::string plainText(const std::string& html);

}  // namespace companion::news
