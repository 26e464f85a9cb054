#pragma once
// Answers for the icons of the shell, so that tests have some where the test platform finds none, and the other way.

#include <string>
#include <vector>

#include "support/ImportSlot.h"
#include "system/Windows.h"

#include <shellapi.h>

extern "C" decltype(&::ExtractIconW) __imp_ExtractIconW;
extern "C" decltype(&::ExtractAssociatedIconW) __imp_ExtractAssociatedIconW;
extern "C" decltype(&::DestroyIcon) __imp_DestroyIcon;

namespace lumenor::tests {

/// Answers for the shell's icons as long as it lives. Each answer is a copy of a stock icon, which the product has to
/// destroy.
class IconSpy {
public:
  /// What the shell has for any file; by default nothing.
  explicit IconSpy(bool hasOwn = false, bool hasAssociated = false) {
    own = hasOwn ? MakeIcon() : nullptr;
    associated = hasAssociated ? MakeIcon() : nullptr;
    ownAsked.clear();
    associatedAsked.clear();
    ownIndex = 99;
    destroyed.clear();
    formerDestroy = destroySlot.Former();
  }

  static HICON MakeIcon() { return ::CopyIcon(::LoadIconW(nullptr, IDI_APPLICATION)); }

  static inline HICON own = nullptr;
  static inline HICON associated = nullptr;
  static inline std::vector<std::wstring> ownAsked, associatedAsked;
  static inline UINT ownIndex = 0; // that was asked for last
  static inline std::vector<HICON> destroyed;

private:
  static HICON WINAPI Own(HINSTANCE, LPCWSTR path, UINT index) {
    ownAsked.emplace_back(path);
    ownIndex = index;
    return own;
  }

  static HICON WINAPI Associated(HINSTANCE, LPWSTR path, LPWORD index) {
    associatedAsked.emplace_back(path);
    ::lstrcpyW(path, L"C:\\windows\\system32\\shell32.dll"); // where the icon was found
    *index = 7;
    return associated;
  }

  static BOOL WINAPI Destroy(HICON icon) {
    destroyed.push_back(icon);
    return formerDestroy(icon);
  }

  static inline decltype(&::DestroyIcon) formerDestroy = nullptr;

  const ImportSlot<decltype(__imp_ExtractIconW)> ownSlot{&__imp_ExtractIconW, &Own};
  const ImportSlot<decltype(__imp_ExtractAssociatedIconW)> associatedSlot{&__imp_ExtractAssociatedIconW, &Associated};
  const ImportSlot<decltype(__imp_DestroyIcon)> destroySlot{&__imp_DestroyIcon, &Destroy};
};

} // namespace lumenor::tests
