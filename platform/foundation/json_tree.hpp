#pragma once

#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <variant>

namespace platform {

struct JsonNode;

/// A text that lies in the document's memory behind its length. A pointer is all that a node holds
/// of it: there are many nodes.
class JsonText {
 public:
  JsonText() = default;
  explicit JsonText(std::string_view text, std::pmr::polymorphic_allocator<>& memory);

  [[nodiscard]] std::string_view view() const;

 private:
  const char* start_ = nullptr;  ///< of the length; null for the empty text
};

/// The elements of an array or the members of an object, linked through their `next`.
struct JsonList {
  const JsonNode* first = nullptr;
};
struct JsonArray : JsonList {};
struct JsonObject : JsonList {};

/// One value of a parsed document. It knows where it stands, so that nobody has to keep its path.
struct JsonNode {
  const JsonNode* parent = nullptr;  ///< null for the whole document
  const JsonNode* next = nullptr;    ///< in the same array or object
  JsonText key;                      ///< of a member
  std::variant<std::nullptr_t, bool, std::int64_t, std::uint64_t, double, JsonText, JsonArray,
               JsonObject>
      value;
};
static_assert(sizeof(JsonNode) <= 5 * sizeof(void*));

/// A parsed document. Its nodes and texts lie in few large pieces of memory and go with it.
class JsonTree {
 public:
  /// Parses as JsonDecoder says; throws JsonDecodingError.
  explicit JsonTree(std::string_view text);

  [[nodiscard]] const JsonNode& root() const { return *root_; }

 private:
  std::pmr::monotonic_buffer_resource memory_;
  const JsonNode* root_;
};

/// "payments[2].date"; empty for the whole document.
std::string jsonPath(const JsonNode& node);

/// A member's path, whether there is such a member or not.
std::string jsonPath(const JsonNode& object, std::string_view key);

}  // namespace platform
