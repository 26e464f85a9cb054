#include "dock/Commands.h"

#include "system/Windows.h"

#include <shellapi.h>

#include "system/Paths.h"

namespace lumenor {

namespace {

struct CommandRow {
  Command command;
  const wchar_t *name;
};

constexpr CommandRow commandRows[] = {
    {Command::Flyout, L"flyout"},
    {Command::ForYou, L"foryou"},
    {Command::ResetConfirmation, L"resetConfirmation"},
    {Command::SearchProvider, L"searchProvider"},
    {Command::Search, L"search"},
    {Command::Close, L"close"},
};

} // namespace

const wchar_t *CommandName(Command command) {
  for (const CommandRow &row : commandRows)
    if (row.command == command)
      return row.name;
  return L"";
}

std::optional<Command> FindCommand(const std::wstring &program) {
  for (const CommandRow &row : commandRows)
    if (program == row.name)
      return row.command;
  return std::nullopt;
}

void StartMainApplication(const wchar_t *arguments) {
  ::ShellExecuteW(nullptr, L"open", MainAppPath().c_str(), arguments, nullptr, SW_HIDE);
}

} // namespace lumenor
