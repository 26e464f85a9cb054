#pragma once
// A registry key that a test may change, delete or create: its former content is restored at the end.

#include <cstdint>
#include <optional>
#include <string>

#include "system/Windows.h"

namespace lumenor::tests {

class KeptRegistryKey {
public:
  /// Keeps what is at `subkey` below `root` now, with all below it.
  KeptRegistryKey(HKEY root, const std::wstring &subkey);
  ~KeptRegistryKey();
  KeptRegistryKey(const KeptRegistryKey &) = delete;
  KeptRegistryKey &operator=(const KeptRegistryKey &) = delete;

  /// Makes the key when it is missing, and nothing more.
  void Create() const;

  /// Deletes the key with all below it.
  void Delete() const;

  /// Each of these makes the key when it is missing.
  void SetText(const std::wstring &name, const std::wstring &text, DWORD type = REG_SZ) const;
  void SetNumber(const std::wstring &name, std::uint32_t number) const;
  void SetLongNumber(const std::wstring &name, std::uint64_t number) const;
  /// Any bytes as any type, well-formed or not.
  void SetBytes(const std::wstring &name, DWORD type, const std::string &bytes) const;

  void DeleteValue(const std::wstring &name) const;

  /// The text of a REG_SZ value; nothing when it is missing or of another type.
  std::optional<std::wstring> Text(const std::wstring &name) const;

private:
  HKEY root;
  std::wstring subkey;
  std::wstring backup; // empty when the key was missing
};

} // namespace lumenor::tests
