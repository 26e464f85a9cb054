#include "system/Launch.h"

#include <algorithm>

#include "system/Log.h"
#include "system/Paths.h"
#include "system/Shortcut.h"
#include "system/Windows.h"

#include <shellapi.h>

namespace lumenor {

namespace {

constexpr std::size_t none = std::wstring::npos;

// The platform finds files by paths of up to 260 characters; this leaves room for the names of variables. Without a
// limit, a long text of many words would block the user interface for minutes.
constexpr std::size_t longestProgram = 1024;

// In characters. The buffer has room for 1,024, and the shell adds some of its own.
constexpr std::size_t longestForShell = 900;

std::wstring Resolve(const std::wstring &program) { return ExpandPath(MapProgramFiles(program)); }

/// The first blank before which the text is an existing file. The text's length is the blank's index and not its
/// distance from `begin`: only a command line without leading blanks is split.
std::size_t FindEndOfProgram(const std::wstring &commandLine, std::size_t begin) {
  std::size_t blank = commandLine.find(L' ');
  while (blank <= longestProgram && !FileExists(Resolve(commandLine.substr(begin, blank))))
    blank = commandLine.find(L' ', blank + 1);
  return blank <= longestProgram ? blank : none;
}

std::wstring FromFirstNonBlank(const std::wstring &text, std::size_t from) {
  const std::size_t begin = text.find_first_not_of(L' ', from);
  return begin == none ? std::wstring() : text.substr(begin);
}

} // namespace

CommandLine SplitCommandLine(const std::wstring &commandLine) {
  const std::size_t first = commandLine.find_first_not_of(L' ');
  if (first == none)
    return {commandLine, {}};
  const bool quoted = commandLine[first] == L'"';
  const std::size_t begin = quoted ? first + 1 : first;
  const std::size_t end = quoted ? commandLine.find(L'"', begin) : FindEndOfProgram(commandLine, begin);
  if (end == none)
    return {Resolve(commandLine), {}};
  const std::size_t length = quoted ? end - begin : end;
  return {Resolve(commandLine.substr(begin, length)), FromFirstNonBlank(commandLine, end + 1)};
}

bool FitsShell(const std::wstring &text) { return std::max(text.size(), ExpandPath(text).size()) <= longestForShell; }

void OpenWithShell(const std::wstring &program, const std::wstring &arguments) {
  if (!FitsShell(program)) {
    LogError("Launch: A program's name of %u characters is too long", static_cast<unsigned>(program.size()));
    return;
  }
  if (IsDamagedShortcut(ExpandPath(program)))
    return;
  ::ShellExecuteW(nullptr, L"open", program.c_str(), arguments.empty() ? nullptr : arguments.c_str(), nullptr, SW_SHOW);
}

} // namespace lumenor
