#include "platform/foundation/json_tree.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstring>
#include <limits>
#include <vector>

#include "platform/foundation/json.hpp"

namespace platform {

namespace {

constexpr std::size_t deepestNesting = 512;

// Twice what a report of 100,000 rows holds. The shortest values, two bytes of the document each,
// take twenty times as much as nodes.
constexpr std::size_t mostValues = 4'000'000;

/// Makes nodes of the parser's events.
class TreeBuilder : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit TreeBuilder(std::pmr::memory_resource& memory) : memory_(&memory) {}

  [[nodiscard]] const JsonNode* root() const { return root_; }

  bool null() override { return append(nullptr); }
  bool boolean(bool value) override { return append(value); }
  bool number_integer(std::int64_t value) override { return append(value); }
  bool number_unsigned(std::uint64_t value) override { return append(value); }
  bool number_float(double value, const std::string&) override { return append(value); }
  bool string(std::string& text) override { return append(JsonText(text, memory_)); }
  bool binary(binary_t&) override { return false; }
  bool start_array(std::size_t) override { return open<JsonArray>(); }
  bool end_array() override { return close(); }
  bool start_object(std::size_t) override { return open<JsonObject>(); }
  bool end_object() override { return close(); }
  bool key(std::string& text) override {
    key_ = JsonText(text, memory_);
    return true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override {
    return false;
  }

 private:
  /// An array or object that is being read, and the link to its next element.
  struct Open {
    const JsonNode* list;
    const JsonNode** end;
  };

  template <class Value>
  JsonNode* add(const Value& value) {
    if (++values_ > mostValues) throw JsonDecodingError("too many values");
    auto* node = memory_.new_object<JsonNode>();
    node->value = value;
    node->key = key_;
    key_ = {};
    if (open_.empty()) {
      root_ = node;
    } else {
      node->parent = open_.back().list;
      *open_.back().end = node;
      open_.back().end = &node->next;
    }
    return node;
  }

  template <class Value>
  bool append(const Value& value) {
    add(value);
    return true;
  }

  template <class List>
  bool open() {
    if (open_.size() == deepestNesting) throw JsonDecodingError("nested too deeply");
    auto* node = add(List{});
    open_.push_back({node, &std::get<List>(node->value).first});
    return true;
  }

  bool close() {
    open_.pop_back();
    return true;
  }

  std::pmr::polymorphic_allocator<> memory_;
  const JsonNode* root_ = nullptr;
  std::size_t values_ = 0;
  JsonText key_;
  std::vector<Open> open_;
};

std::size_t positionInList(const JsonNode& node, const JsonArray& list) {
  std::size_t position = 0;
  for (const auto* other = list.first; other != &node; other = other->next) ++position;
  return position;
}

}  // namespace

JsonText::JsonText(std::string_view text, std::pmr::polymorphic_allocator<>& memory) {
  if (text.empty()) return;
  const auto length = static_cast<std::uint32_t>(text.size());
  char* start = memory.allocate_object<char>(sizeof length + text.size());
  std::memcpy(start, &length, sizeof length);
  std::copy(text.begin(), text.end(), start + sizeof length);
  start_ = start;
}

std::string_view JsonText::view() const {
  if (start_ == nullptr) return {};
  std::uint32_t length = 0;
  std::memcpy(&length, start_, sizeof length);
  return {start_ + sizeof length, length};
}

JsonTree::JsonTree(std::string_view text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max())
    throw JsonDecodingError("too large a document");
  TreeBuilder builder(memory_);
  // The parser's own messages quote the input, which may hold a secret.
  if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder))
    throw JsonDecodingError("not a JSON document");
  root_ = builder.root();
}

std::string jsonPath(const JsonNode& node) {
  if (node.parent == nullptr) return "";
  if (const auto* array = std::get_if<JsonArray>(&node.parent->value))
    return jsonPath(*node.parent) + "[" + std::to_string(positionInList(node, *array)) + "]";
  return jsonPath(*node.parent, node.key.view());
}

std::string jsonPath(const JsonNode& object, std::string_view key) {
  const auto path = jsonPath(object);
  return path.empty() ? std::string(key) : path + "." + std::string(key);
}

}  // namespace platform
