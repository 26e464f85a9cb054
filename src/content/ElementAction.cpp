#include "content/ElementAction.h"

#include <cstdlib>

#include "system/Paths.h"
#include "system/WebAddress.h"

namespace lumenor {

namespace {

constexpr wchar_t pillarArguments[] = L"welcome=false splash=false view=standard pillar=";
constexpr wchar_t categoryArguments[] = L"welcome=false splash=false view=standard pillar=ECENTER category=";

} // namespace

std::wstring PillarName(int index) {
  switch (index) {
  case 0:
    return L"PC_HEALTH_SECURITY";
  case 1:
    return L"PC_ACTION_CENTER";
  case 2:
    return L"ECENTER";
  default:
    return {};
  }
}

std::wstring PillarArguments(const std::wstring &text) { return pillarArguments + PillarName(::_wtoi(text.c_str())); }

std::wstring CategoryArguments(const std::wstring &text) { return categoryArguments + text; }

void RunElementAction(const Element &element) {
  const bool isSplit = element.ActionType == programAction;
  RunElementAction(element, isSplit ? SplitCommandLine(element.ActionParams) : CommandLine());
}

void RunElementAction(const Element &element, const CommandLine &command) {
  if (element.ActionType == urlAction)
    OpenAddress(nullptr, element.ActionParams, nullptr);
  else if (element.ActionType == programAction)
    OpenWithShell(MapProgramFiles(command.program), command.arguments);
  else if (element.ActionType == categoryAction)
    OpenWithShell(MainAppPath(), CategoryArguments(element.ActionParams));
  else if (element.ActionType == pillarAction)
    OpenWithShell(MainAppPath(), PillarArguments(element.ActionParams));
}

} // namespace lumenor
