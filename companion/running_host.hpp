#pragma once

namespace companion {

/// Tells a running velmora-desktop to fetch and show fresh figures; nothing happens when none
/// runs. Does not wait for it.
void refreshRunningHost();

}  // namespace companion
