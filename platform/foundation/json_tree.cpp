#include "platform/foundation/json_tree.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <vector>

#include "platform/foundation/json.hpp"

namespace platform {

namespace {

constexpr std::size_t deepestNesting = 512;

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
  bool string(std::string& text) override { return append(kept(text)); }
  bool binary(binary_t&) override { return false; }
  bool start_array(std::size_t) override { return open<JsonArray>(); }
  bool end_array() override { return close(); }
  bool start_object(std::size_t) override { return open<JsonObject>(); }
  bool end_object() override { return close(); }
  bool key(std::string& text) override {
    key_ = kept(text);
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

  std::string_view kept(std::string_view text) {
    auto* copy = memory_.allocate_object<char>(text.size());
    std::copy(text.begin(), text.end(), copy);
    return {copy, text.size()};
  }

  template <class Value>
  JsonNode* add(const Value& value) {
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
  std::string_view key_;
  std::vector<Open> open_;
};

std::size_t positionInList(const JsonNode& node, const JsonArray& list) {
  std::size_t position = 0;
  for (const auto* other = list.first; other != &node; other = other->next) ++position;
  return position;
}

}  // namespace

JsonTree::JsonTree(std::string_view text) {
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
  return jsonPath(*node.parent, node.key);
}

std::string jsonPath(const JsonNode& object, std::string_view key) {
  const auto path = jsonPath(object);
  return path.empty() ? std::string(key) : path + "." + std::string(key);
}

}  // namespace platform
