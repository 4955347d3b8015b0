#include "platform/foundation/json.hpp"

#include <nlohmann/json.hpp>

#include <cmath>
#include <utility>

#include "platform/foundation/json_tree.hpp"

namespace platform {

namespace {

bool holdsNonFiniteNumber(const Json& value) {
  if (value.is_number_float()) return !std::isfinite(value.get<double>());
  if (!value.is_structured()) return false;
  for (const auto& element : value) {
    if (holdsNonFiniteNumber(element)) return true;
  }
  return false;
}

template <class Value>
const Value* valueIn(const JsonNode& node) {
  return std::get_if<Value>(&node.value);
}

}  // namespace

JsonDecoder::JsonDecoder(std::string_view document)
    : tree_(std::make_shared<JsonTree>(document)), node_(&tree_->root()) {}

JsonDecoder::JsonDecoder(std::shared_ptr<const JsonTree> tree, const JsonNode* node)
    : tree_(std::move(tree)), node_(node) {}

void JsonDecoder::fail(std::string_view expected) const {
  const auto path = jsonPath(*node_);
  throw JsonDecodingError((path.empty() ? "the document" : path) + ": expected " +
                          std::string(expected));
}

/// The last member of that name, as every reader of JSON takes it.
const JsonNode* JsonDecoder::member(std::string_view key) const {
  const auto* object = valueIn<JsonObject>(*node_);
  if (object == nullptr) fail("an object");
  const JsonNode* found = nullptr;
  for (const auto* node = object->first; node != nullptr; node = node->next) {
    if (node->key.view() == key) found = node;
  }
  return found;
}

bool JsonDecoder::contains(std::string_view key) const {
  return valueIn<JsonObject>(*node_) != nullptr && member(key) != nullptr;
}

JsonDecoder JsonDecoder::at(std::string_view key) const {
  const auto* found = member(key);
  if (found == nullptr) throw JsonDecodingError(jsonPath(*node_, key) + ": missing");
  return {tree_, found};
}

std::optional<JsonDecoder> JsonDecoder::optionalAt(std::string_view key) const {
  const auto* found = member(key);
  if (found == nullptr || valueIn<std::nullptr_t>(*found) != nullptr) return std::nullopt;
  return JsonDecoder(tree_, found);
}

std::string JsonDecoder::string() const {
  const auto* text = valueIn<JsonText>(*node_);
  if (text == nullptr) fail("a string");
  return std::string(text->view());
}

double JsonDecoder::number() const {
  if (const auto* number = valueIn<double>(*node_)) return *number;
  if (const auto* number = valueIn<std::int64_t>(*node_)) return static_cast<double>(*number);
  if (const auto* number = valueIn<std::uint64_t>(*node_)) return static_cast<double>(*number);
  fail("a number");
}

std::int64_t JsonDecoder::integer() const {
  if (const auto* integer = valueIn<std::uint64_t>(*node_)) {
    if (std::in_range<std::int64_t>(*integer)) return static_cast<std::int64_t>(*integer);
  } else if (const auto* negative = valueIn<std::int64_t>(*node_)) {
    return *negative;
  } else if (const auto* number = valueIn<double>(*node_)) {
    const bool fits = *number > -0x1p63 && *number < 0x1p63;
    if (fits && *number == std::trunc(*number)) return static_cast<std::int64_t>(*number);
  }
  fail("a 64-bit integer");
}

bool JsonDecoder::boolean() const {
  const auto* value = valueIn<bool>(*node_);
  if (value == nullptr) fail("true or false");
  return *value;
}

std::vector<JsonDecoder> JsonDecoder::array() const {
  const auto* list = valueIn<JsonArray>(*node_);
  if (list == nullptr) fail("an array");
  std::vector<JsonDecoder> elements;
  for (const auto* node = list->first; node != nullptr; node = node->next)
    elements.push_back(JsonDecoder(tree_, node));
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
