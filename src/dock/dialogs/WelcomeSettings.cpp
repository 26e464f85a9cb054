#include "dock/dialogs/WelcomeSettings.h"

#include "system/Handles.h"
#include "system/Locale.h"
#include "system/Paths.h"
#include "system/Registry.h"
#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr wchar_t startupKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t startupValue[] = L"LumenorDock";
constexpr wchar_t dockKey[] = L"Software\\Tarnwick\\Lumenor";
constexpr wchar_t updateValue[] = L"AllowToUpdate";

constexpr wchar_t tutorialFolder[] = L"\\LumenorVideo\\XML\\";
constexpr wchar_t tutorialEnding[] = L"_Tutorials.xml";
constexpr wchar_t defaultTutorialLanguage[] = L"en_us";

RegistryKey OpenUserKey(const wchar_t *subkey) {
  RegistryKey key;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, subkey, 0, KEY_READ | KEY_WRITE, key.Put());
  return key;
}

/// `locale`, or else its language alone, when there are tutorials for it; empty when there are none.
std::wstring FindTutorials(const std::wstring &folder, const std::wstring &locale) {
  const std::wstring language = locale.substr(0, locale.find(L'_'));
  for (const std::wstring &code : {locale, language})
    if (PathExists(ExpandPath(folder + code + tutorialEnding)))
      return code;
  return {};
}

} // namespace

void StartWithSession(bool starts) {
  const RegistryKey key = OpenUserKey(startupKey);
  if (!key)
    return;
  if (!starts)
    ::RegDeleteValueW(key.Get(), startupValue); // which may not be there
  else if (const std::wstring program = DockExePath(); !program.empty())
    WriteRegistryString(key.Get(), startupValue, program);
}

void AllowToUpdate(bool allowed) {
  if (const RegistryKey key = OpenUserKey(dockKey); key)
    WriteRegistryString(key.Get(), updateValue, allowed ? L"true" : L"false");
}

std::wstring GetTutorialLanguage() {
  const std::wstring folder = InstallFolder() + tutorialFolder;
  std::wstring code = FindTutorials(folder, LanguageCountryKey());
  if (code.empty())
    code = FindTutorials(folder, Rfc1766Key());
  return code.empty() ? defaultTutorialLanguage : code;
}

} // namespace lumenor
