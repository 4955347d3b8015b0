#include "desktop/screens/xsettings.hpp"

#include <charconv>

namespace desktop {

namespace {

/// Reads a property from its start; after its end every number is zero and `failed` is set.
struct Reader {
  std::span<const std::uint8_t> rest;
  bool bigEndian = false;
  bool failed = false;

  std::span<const std::uint8_t> take(std::size_t count) {
    if (count > rest.size()) failed = true;
    if (failed) return {};
    const auto taken = rest.first(count);
    rest = rest.subspan(count);
    return taken;
  }

  std::uint32_t number(std::size_t bytes) {
    const auto taken = take(bytes);
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < taken.size(); ++i)
      value = value << 8U | taken[bigEndian ? i : taken.size() - 1 - i];
    return value;
  }

  /// Bytes that are filled up to a multiple of four.
  std::string_view text(std::size_t length) {
    const auto taken = take(length);
    take((4 - length % 4) % 4);
    return {reinterpret_cast<const char*>(taken.data()), taken.size()};
  }
};

enum : std::uint32_t { integerType = 0, textType = 1, colorType = 2 };

}  // namespace

std::optional<std::int32_t> xsettingsInteger(std::span<const std::uint8_t> property,
                                             std::string_view name) {
  Reader reader{property};
  reader.bigEndian = reader.number(1) == 1;
  reader.take(3 + 4);  // padding, serial number
  const auto count = reader.number(4);
  for (std::uint32_t i = 0; i < count && !reader.failed; ++i) {
    const auto type = reader.number(1);
    reader.take(1);
    const auto key = reader.text(reader.number(2));
    reader.take(4);  // serial number
    if (type == integerType) {
      const auto value = static_cast<std::int32_t>(reader.number(4));
      if (key == name && !reader.failed) return value;
    } else if (type == textType) {
      reader.text(reader.number(4));
    } else if (type == colorType) {
      reader.take(8);
    } else {
      return std::nullopt;  // of unknown length
    }
  }
  return std::nullopt;
}

std::optional<double> resourceDpi(std::string_view resources) {
  constexpr std::string_view name = "Xft.dpi:";
  while (!resources.empty()) {
    const auto line = resources.substr(0, resources.find('\n'));
    resources.remove_prefix(std::min(resources.size(), line.size() + 1));
    if (!line.starts_with(name)) continue;
    const auto text =
        line.substr(std::min(line.size(), line.find_first_not_of(" \t", name.size())));
    double value = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (read.ec == std::errc() && value > 0) return value;
  }
  return std::nullopt;
}

}  // namespace desktop
