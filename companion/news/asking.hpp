#pragma once

#include <chrono>

#include "companion/news/memory.hpp"
#include "companion/news/questions.hpp"

namespace companion::news {

/// Notes that the questions are being asked now, so that even a run that is killed counts.
void noteAsked(Memory& memory, const Questions& questions, platform::Instant now);

/// Asks the provider and notes the answers. Ends at the deadline, whatever the provider does; what
/// could not be asked leaves the answers before as they are. `memory` is as noteAsked left it.
void ask(Memory& memory, const Questions& questions, platform::Instant now,
         std::chrono::steady_clock::time_point deadline);

}  // namespace companion::news
