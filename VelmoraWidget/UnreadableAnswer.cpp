#include "VelmoraWidget/UnreadableAnswer.hpp"

namespace velmora {

namespace {

bool isDocument(std::string_view body) {
  try {
    const platform::JsonDecoder document(body);
    return true;
  } catch (const platform::JsonDecodingError&) {
    return false;
  }
}

}  // namespace

UnreadableAnswer::UnreadableAnswer(const platform::JsonDecodingError& error, std::string_view body,
                                   int status)
    : JsonDecodingError(error), httpStatus(status), isJson(isDocument(body)) {}

}  // namespace velmora
