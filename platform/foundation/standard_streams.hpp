#pragma once

#include <string>

namespace platform {

/// Occupies those of the descriptors 0 to 2 that the caller closed, so that no file or connection
/// gets their number and is written to by mistake; what is written there fails, as it should. To be
/// called before anything is opened.
void occupyStandardStreams();

/// From now on a write that nobody reads, or that goes beyond the size that a file may have
/// (RLIMIT_FSIZE), fails with an error instead of ending the process. Programs that this one starts
/// are not affected.
void surviveFailedWrites();

/// Writes a line to standard output, at once. Returns whether it could be written.
bool printLine(const std::string& line);

}  // namespace platform
