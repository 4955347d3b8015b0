#include "platform/foundation/json.hpp"

#include <nlohmann/json.hpp>

#include <cmath>

namespace platform {

namespace {

constexpr int deepestNesting = 512;

const nlohmann::json& asValue(const void* value) {
  return *static_cast<const nlohmann::json*>(value);
}

bool holdsNonFiniteNumber(const Json& value) {
  if (value.is_number_float()) return !std::isfinite(value.get<double>());
  if (!value.is_structured()) return false;
  for (const auto& element : value) {
    if (holdsNonFiniteNumber(element)) return true;
  }
  return false;
}

nlohmann::json parseDocument(std::string_view text) {
  const auto limitDepth = [](int depth, nlohmann::json::parse_event_t, nlohmann::json&) {
    if (depth > deepestNesting) throw JsonDecodingError("nested too deeply");
    return true;
  };
  try {
    return nlohmann::json::parse(text.begin(), text.end(), limitDepth);
  } catch (const nlohmann::json::exception&) {
    // The library's message quotes the input, which may hold a secret.
    throw JsonDecodingError("not a JSON document");
  }
}

}  // namespace

struct JsonDecoder::Document {
  nlohmann::json root;
};

JsonDecoder::JsonDecoder(std::string_view document)
    : document_(std::make_shared<Document>(Document{parseDocument(document)})),
      value_(&document_->root) {}

JsonDecoder::JsonDecoder(std::shared_ptr<const Document> document, const void* value,
                         std::string path)
    : document_(std::move(document)), value_(value), path_(std::move(path)) {}

void JsonDecoder::fail(std::string_view expected) const {
  const std::string where = path_.empty() ? "the document" : path_;
  throw JsonDecodingError(where + ": expected " + std::string(expected));
}

bool JsonDecoder::contains(std::string_view key) const {
  return asValue(value_).is_object() && asValue(value_).contains(key);
}

JsonDecoder JsonDecoder::at(std::string_view key) const {
  const auto& value = asValue(value_);
  if (!value.is_object()) fail("an object");
  const auto path = path_.empty() ? std::string(key) : path_ + "." + std::string(key);
  const auto found = value.find(key);
  if (found == value.end()) throw JsonDecodingError(path + ": missing");
  return {document_, &*found, path};
}

std::optional<JsonDecoder> JsonDecoder::optionalAt(std::string_view key) const {
  const auto& value = asValue(value_);
  if (!value.is_object()) fail("an object");
  const auto found = value.find(key);
  if (found == value.end() || found->is_null()) return std::nullopt;
  return at(key);
}

std::string JsonDecoder::string() const {
  const auto* text = asValue(value_).get_ptr<const std::string*>();
  if (text == nullptr) fail("a string");
  return *text;
}

double JsonDecoder::number() const {
  if (!asValue(value_).is_number()) fail("a number");
  return asValue(value_).get<double>();
}

std::int64_t JsonDecoder::integer() const {
  const auto& value = asValue(value_);
  if (value.is_number_unsigned()) {
    const auto integer = value.get<std::uint64_t>();
    if (integer <= static_cast<std::uint64_t>(INT64_MAX)) return static_cast<std::int64_t>(integer);
  } else if (value.is_number_integer()) {
    return value.get<std::int64_t>();
  } else if (value.is_number_float()) {
    const auto number = value.get<double>();
    const bool fits = number > -0x1p63 && number < 0x1p63;
    if (fits && number == std::trunc(number)) return static_cast<std::int64_t>(number);
  }
  fail("a 64-bit integer");
}

std::vector<JsonDecoder> JsonDecoder::array() const {
  const auto& value = asValue(value_);
  if (!value.is_array()) fail("an array");
  std::vector<JsonDecoder> elements;
  elements.reserve(value.size());
  for (const auto& element : value) {
    const auto path = path_ + "[" + std::to_string(elements.size()) + "]";
    elements.push_back(JsonDecoder{document_, &element, path});
  }
  return elements;
}

std::optional<std::string> JsonDecoder::optionalString(std::string_view key) const {
  const auto value = optionalAt(key);
  return value ? std::optional(value->string()) : std::nullopt;
}

std::optional<std::int64_t> JsonDecoder::optionalInteger(std::string_view key) const {
  const auto value = optionalAt(key);
  return value ? std::optional(value->integer()) : std::nullopt;
}

Json jsonNumber(double value) {
  constexpr double exactIntegers = 0x1p53;
  const bool whole = std::abs(value) < exactIntegers && value == std::trunc(value);
  const bool negativeZero = value == 0 && std::signbit(value);
  if (whole && !negativeZero) return static_cast<std::int64_t>(value);
  return value;
}

std::string encodeJson(const Json& value) {
  if (holdsNonFiniteNumber(value)) throw JsonEncodingError("a number is not finite");
  try {
    return value.dump();
  } catch (const nlohmann::json::exception&) {
    throw JsonEncodingError("a text is not UTF-8");
  }
}

std::string printJson(const Json& value) {
  return value.dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

}  // namespace platform
