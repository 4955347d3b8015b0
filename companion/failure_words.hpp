#pragma once

#include <string>

#include "companion/failure.hpp"

namespace companion {

/// What a kind of failure is called and what is to be said of it, in the user's language.
struct FailureWords {
  std::string title;
  std::string advice;
};

FailureWords wordsFor(FailureKind kind);

// Where a kind has more than one cause.
FailureWords wordsForMissingClientFile();
FailureWords wordsForMissingPermission();
/// `status` is one of platform::keychain_status.
FailureWords wordsForKeyring(int status);

}  // namespace companion
