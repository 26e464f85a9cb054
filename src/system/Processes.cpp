#include "system/Processes.h"

#include "system/Handles.h"
#include "system/Text.h"
#include "system/Windows.h"

#include <tlhelp32.h>

namespace lumenor {

namespace {

constexpr wchar_t dockProcessName[] = L"LumenorPanel.exe";

} // namespace

bool IsDockProcessRunning() {
  const FileHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot)
    return false;
  PROCESSENTRY32W process = {};
  process.dwSize = sizeof process;
  for (BOOL more = ::Process32FirstW(snapshot.Get(), &process); more; more = ::Process32NextW(snapshot.Get(), &process))
    if (EqualsIgnoringCase(process.szExeFile, dockProcessName))
      return true;
  return false;
}

} // namespace lumenor
