#pragma once

#include "companion/news/kind.hpp"

namespace companion::news {

Kind signInEndedKind();
Kind clientRefusedKind();
Kind refreshFailsKind();
Kind dailyGoalKind();
Kind monthlyGoalKind();
Kind dropKind();
Kind paymentKind();
Kind alertKind();
Kind policyKind();

}  // namespace companion::news
