#include "dock/dialogs/WelcomeSettings.h"

#include "system/Locale.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Registry.h"

namespace lumenor {

namespace {

constexpr wchar_t startupKey[] = L"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t startupValue[] = L"LumenorDock";
constexpr wchar_t updateValue[] = L"AllowToUpdate";

constexpr wchar_t tutorialFolder[] = L"\\LumenorVideo\\XML\\";
constexpr wchar_t tutorialEnding[] = L"_Tutorials.xml";
constexpr wchar_t defaultTutorialLanguage[] = L"en_us";

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
  const RegistryKey key = OpenRegistryKey(startupKey, KEY_READ | KEY_WRITE);
  if (!key)
    return;
  if (!starts)
    ::RegDeleteValueW(key.Get(), startupValue); // which may not be there
  else if (const std::wstring program = DockExePath(); !program.empty())
    WriteRegistryString(key.Get(), startupValue, program);
}

void AllowToUpdate(bool allowed) {
  if (const RegistryKey key = OpenRegistryKey(product::dockKey, KEY_READ | KEY_WRITE))
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
