#pragma once

#include <nlohmann/json_fwd.hpp>

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// A JSON value to be written; objects keep the order of their keys.
using Json = nlohmann::ordered_json;

/// The bytes are no JSON document, or a value is missing or of the wrong type; the message names
/// the field ("payments[2].date.day: expected an integer"), never its content.
class JsonDecodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// JSON cannot hold the value: a number that is not finite, or a text that is no UTF-8.
class JsonEncodingError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

struct JsonNode;
class JsonTree;

/// A strict view of one value of a parsed document. Copies share the document.
class JsonDecoder {
 public:
  /// Parses a whole document (RFC 8259, UTF-8). Anything after the value, numbers beyond a
  /// double, nesting deeper than 512 levels, and more than 4,000,000 values are errors.
  explicit JsonDecoder(std::string_view document);

  /// The value under a key. Throws when this is no object, or when the key is missing.
  [[nodiscard]] JsonDecoder at(std::string_view key) const;
  /// The value under a key; absent when the key is missing or holds null.
  [[nodiscard]] std::optional<JsonDecoder> optionalAt(std::string_view key) const;
  /// Whether this is an object with that key, whatever the key holds.
  [[nodiscard]] bool contains(std::string_view key) const;

  [[nodiscard]] std::string string() const;
  [[nodiscard]] double number() const;
  /// A signed 64-bit integer; 5.0 is 5, while 5.5 and true are errors.
  [[nodiscard]] std::int64_t integer() const;
  [[nodiscard]] bool boolean() const;
  [[nodiscard]] std::vector<JsonDecoder> array() const;

  [[nodiscard]] std::optional<std::string> optionalString(std::string_view key) const;
  [[nodiscard]] std::optional<std::int64_t> optionalInteger(std::string_view key) const;

 private:
  JsonDecoder(std::shared_ptr<const JsonTree> tree, const JsonNode* node);
  [[noreturn]] void fail(std::string_view expected) const;
  [[nodiscard]] const JsonNode* member(std::string_view key) const;

  std::shared_ptr<const JsonTree> tree_;
  const JsonNode* node_;
};

/// A double as a JSON number; whole numbers are written without a fraction (96, not 96.0).
Json jsonNumber(double value);

/// Compact UTF-8 text; throws JsonEncodingError for what JSON cannot hold.
std::string encodeJson(const Json& value);

/// Compact UTF-8 text for display: numbers that JSON cannot hold become null, ill-formed text is
/// repaired.
std::string printJson(const Json& value);

}  // namespace platform
