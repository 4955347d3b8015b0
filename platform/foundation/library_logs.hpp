#pragma once

namespace platform {

/// For programs of the terminal, which print what their callers read: keeps the messages of the
/// libraries on GLib to itself. Where such a library can only end the process, for want of a thread
/// or of memory, that is one line on standard error and exit status 1 instead of a trap. `program`
/// names the program in that line and has to stay.
void silenceLibraryLogs(const char* program);

}  // namespace platform
