#include "system/LogFiles.h"

#include <cstdio>
#include <cwchar>

#include "system/Handles.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Text.h"

namespace lumenor {

namespace {

constexpr wchar_t currentLog[] = L"RollingDock.log";
constexpr wchar_t rolledLogFormat[] = L"RollingDock.%d-%d-%d.%d.%d.%d.log";
constexpr wchar_t rolledLogPattern[] = L"RollingDock.*.log";

constexpr LONGLONG rollAboveBytes = 102400;
constexpr std::size_t keptRolledLogs = 10;
constexpr int timestampSize = 50;
constexpr int rolledPathSize = 100;
constexpr int rolledPathFields = 6;

/// The unexpanded path of a file in the log's folder.
std::wstring InLogFolder(const std::wstring &fileName) { return product::logFolder + fileName; }

FileHandle OpenLog(const std::wstring &path, DWORD access, DWORD disposition) {
  return FileHandle(::CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, disposition,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
}

LONGLONG LogSize(const std::wstring &path) {
  const FileHandle file = OpenLog(path, GENERIC_READ, OPEN_EXISTING);
  LARGE_INTEGER size = {};
  return file && ::GetFileSizeEx(file.Get(), &size) ? size.QuadPart : 0;
}

/// Whether `format` has conversions of numbers only, and no more of them than there are. The folder's name is part of
/// the format and may contain others, which would read arguments that don't exist.
bool AsksForNumbersOnly(const std::wstring &format) {
  int fields = 0;
  for (std::size_t at = format.find(L'%'); at != std::wstring::npos; at = format.find(L'%', at + 1)) {
    at = format.find_first_not_of(L"-+ #0123456789", at + 1);
    if (at == std::wstring::npos)
      return false;
    if (format[at] == L'%')
      continue;
    if (std::wstring_view(L"diouxX").find(format[at]) == std::wstring_view::npos)
      return false;
    ++fields;
  }
  return fields <= rolledPathFields;
}

/// The path that the log rolls to at `time`; empty when it would be too long or the folder's name can't be formatted.
std::wstring RolledLogPath(const SYSTEMTIME &time) {
  const std::wstring format = ExpandPath(InLogFolder(rolledLogFormat));
  if (!AsksForNumbersOnly(format))
    return {};
  wchar_t path[rolledPathSize] = {};
  const int length = ::_snwprintf(path, rolledPathSize, format.c_str(), time.wYear, time.wMonth, time.wDay, time.wHour,
                                  time.wMinute, time.wSecond);
  return length < 0 || length >= rolledPathSize ? std::wstring() : path;
}

} // namespace

std::string FormatLogTimestamp(const SYSTEMTIME &time) {
  char text[timestampSize] = {};
  ::_snprintf(text, timestampSize - 1, "%2d.%2d.%2d-%2d:%2d:%2d.%d UTC\t", time.wYear, time.wMonth, time.wDay,
              time.wHour, time.wMinute, time.wSecond, time.wMilliseconds);
  return text;
}

void AppendLogLine(const std::string &line) {
  const std::wstring path = ExpandPath(InLogFolder(currentLog));
  if (LogSize(path) > rollAboveBytes) {
    RollLogFile(InLogFolder(currentLog));
    PruneLogFiles();
  }
  const FileHandle file = OpenLog(path, GENERIC_WRITE, OPEN_ALWAYS);
  if (!file || ::SetFilePointer(file.Get(), 0, nullptr, FILE_END) == INVALID_SET_FILE_POINTER)
    return;
  DWORD written = 0;
  ::WriteFile(file.Get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
}

void RollLogFile(const std::wstring &path) {
  if (const std::wstring rolled = RolledLogPath(UtcNow()); !rolled.empty())
    ::MoveFileW(ExpandPath(path).c_str(), rolled.c_str());
}

std::vector<std::wstring> ListRolledLogs() {
  std::vector<std::wstring> paths;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW(ExpandPath(InLogFolder(rolledLogPattern)).c_str(), &found));
  for (bool more(find); more; more = ::FindNextFileW(find.Get(), &found) != FALSE)
    paths.push_back(InLogFolder(found.cFileName));
  return paths;
}

void PruneLogFiles() {
  // The order of the listing decides which logs are the oldest; it isn't sorted.
  const std::vector<std::wstring> paths = ListRolledLogs();
  for (std::size_t left = paths.size(), i = 0; left > keptRolledLogs; --left, ++i)
    ::DeleteFileW(ExpandPath(paths[i]).c_str());
}

} // namespace lumenor
