#pragma once
// The rolling diagnostic log, off unless the environment variable LUMENOR_LOGGING turns it on. Any thread may log; a
// line that can't be written is lost and the caller never learns of it.
//
// With the level below a call's threshold the call is one integer compare: it may stand on hot paths.

#include <cstdint>
#include <type_traits>

#include "system/LogFormat.h"

namespace lumenor {

/// What the log writes: above 0 info lines, above 1 errors too, above 2 fatal lines too. Read from LUMENOR_LOGGING
/// while the process initialises, before the entry function, and not changed afterwards.
extern std::int32_t LogLevel;

/// The number that LUMENOR_LOGGING holds; 0 when it is missing, empty or no number.
std::int32_t ReadLogLevel();

/// Makes the log's folder when it is missing, its parent folders not; called once, before the first line.
void EnsureLogFolder();

/// Formats one line and appends it to the log whatever the level is. `format` and the arguments are printf's, "%S"
/// standing for a wide string.
void WriteLogLine(const char *prefix, const char *format, ...);

/// Writes "INFO: " and the formatted message when the level is above 0.
template <typename... Args> void LogInfo(LogFormat<std::type_identity_t<Args>...> format, Args... args) {
  if (LogLevel > 0)
    WriteLogLine("INFO: ", format.text, args...);
}

/// Writes "ERROR: " and the formatted message when the level is above 1.
template <typename... Args> void LogError(LogFormat<std::type_identity_t<Args>...> format, Args... args) {
  if (LogLevel > 1)
    WriteLogLine("ERROR: ", format.text, args...);
}

/// Writes "FATAL: " and the formatted message when the level is above 2.
template <typename... Args> void LogFatal(LogFormat<std::type_identity_t<Args>...> format, Args... args) {
  if (LogLevel > 2)
    WriteLogLine("FATAL: ", format.text, args...);
}

} // namespace lumenor
