#pragma once

#include <string_view>

#include "platform/foundation/json.hpp"

namespace velmora {

/// An answer that came and cannot be read; `what()` names the field, never its content.
class UnreadableAnswer : public platform::JsonDecodingError {
 public:
  UnreadableAnswer(const platform::JsonDecodingError& error, std::string_view body, int status);

  int httpStatus;
  bool isJson;  ///< else it is a page, a text or nothing at all
};

/// Decodes the body of an answer. Throws UnreadableAnswer.
template <class Record>
Record decodeAnswer(std::string_view body, int httpStatus, Record (*decode)(std::string_view)) {
  try {
    return decode(body);
  } catch (const platform::JsonDecodingError& error) {
    throw UnreadableAnswer(error, body, httpStatus);
  }
}

}  // namespace velmora
