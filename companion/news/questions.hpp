#pragma once

#include "companion/news/choices.hpp"
#include "companion/news/memory.hpp"

namespace companion::news {

/// What is to be asked in one run.
struct Questions {
  bool token = false;   ///< the token endpoint, for its own answer
  bool report = false;  ///< a request as a refresh makes it
  bool alerts = false;
  bool policyIssues = false;

  [[nodiscard]] bool areAny() const { return token || report || alerts || policyIssues; }
};

/// What can matter now and was not asked a short while ago.
Questions dueQuestions(const Facts& facts, const Memory& memory, const Choices& choices);

}  // namespace companion::news
