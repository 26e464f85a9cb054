#include "system/Log.h"

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "system/LogFiles.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Text.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr wchar_t levelVariable[] = L"LUMENOR_LOGGING";

/// The formatted message with its closing null; no bytes at all when the format call fails, as it does for a wide
/// character that the 8-bit text has no byte for.
std::string FormatMessageBytes(const char *format, va_list arguments) {
  va_list measured;
  va_copy(measured, arguments);
  const int length = ::_vscprintf(format, measured);
  va_end(measured);
  std::string message(static_cast<std::size_t>(length + 1), '\0');
  if (!message.empty())
    ::vsprintf_s(message.data(), message.size(), format, arguments);
  return message;
}

} // namespace

std::int32_t ReadLogLevel() {
  const DWORD size = ::GetEnvironmentVariableW(levelVariable, nullptr, 0);
  std::wstring text(size, L'\0');
  if (size == 0 || ::GetEnvironmentVariableW(levelVariable, text.data(), size) >= size)
    return 0;
  return ::_wtoi(text.c_str());
}

std::int32_t LogLevel = ReadLogLevel();

void EnsureLogFolder() { ::CreateDirectoryW(ExpandPath(product::logFolder).c_str(), nullptr); }

void WriteLogLine(const char *prefix, const char *format, ...) {
  va_list arguments;
  va_start(arguments, format);
  const std::string message = FormatMessageBytes(format, arguments);
  va_end(arguments);
  if (!message.empty())
    AppendLogLine(FormatLogTimestamp(UtcNow()) + prefix + message.c_str() + "\r\n");
}

} // namespace lumenor
