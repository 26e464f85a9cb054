#include "dock/watch/FirstRun.h"

#include <optional>
#include <string>

#include "system/Product.h"
#include "system/Registry.h"

namespace lumenor {

namespace {

constexpr wchar_t welcomeValue[] = L"ShowWelcomePage";

RegistryKey OpenDockKey() { return OpenRegistryKey(product::dockKey, KEY_READ | KEY_WRITE); }

void WriteShown(HKEY key) { WriteRegistryString(key, welcomeValue, L"0"); }

/// Whether the value asks for the welcome screen: by being "1", by being no text, or by being missing. A text that
/// can't be read well doesn't.
bool AsksForWelcome(HKEY key) {
  DWORD type = REG_NONE, bytes = 0;
  const LSTATUS status = ::RegQueryValueExW(key, welcomeValue, nullptr, &type, nullptr, &bytes);
  if (status == ERROR_FILE_NOT_FOUND)
    return true;
  if (status != ERROR_SUCCESS)
    return false;
  if (type != REG_SZ && type != REG_EXPAND_SZ)
    return true;
  return ReadRegistryString(key, welcomeValue, bytes / sizeof(wchar_t)) == L"1";
}

} // namespace

bool CheckFirstRun() {
  const RegistryKey key = OpenDockKey();
  if (!key || !AsksForWelcome(key.Get()))
    return false;
  WriteShown(key.Get()); // ahead of the showing
  return true;
}

void ClearFirstRun() {
  if (const RegistryKey key = OpenDockKey(); key)
    WriteShown(key.Get());
}

} // namespace lumenor
