#pragma once
// Registry keys given by one string, and the one two-step read of a string value. Stateless; any thread.

#include <optional>
#include <string>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor {

/// The predefined key of that name, compared with its case; null for any other name.
HKEY ParseRootKey(const std::wstring &name);

/// The parts of a registry path.
struct RegistryPath {
  HKEY root = nullptr; // null when the path names no known root
  std::wstring subkey;
};

/// Splits at the first "\"; without one the whole path is the subkey, of a null root. Raises HResultError with
/// E_INVALIDARG for an empty path and for one whose first "\" is its last character.
RegistryPath SplitRegistryPath(const std::wstring &path);

/// An open key together with the registry view that it was opened in.
struct RegistryKeyHolder {
  RegistryKey key;
  REGSAM view = 0; // KEY_WOW64_32KEY, KEY_WOW64_64KEY or neither
};

/// The key at `path`; empty when the platform can't open it. Raises as SplitRegistryPath does.
RegistryKey OpenRegistryKey(const std::wstring &path, REGSAM access);

/// Opens the key at `path` into `holder`, which closes the key it had. False when the platform can't open it; `holder`
/// then stays as it is. Raises as SplitRegistryPath does.
bool OpenRegistryPath(const std::wstring &path, RegistryKeyHolder &holder, REGSAM access);

/// The same, making the key when the platform can't open it.
bool OpenOrCreateRegistryPath(const std::wstring &path, RegistryKeyHolder &holder, REGSAM access);

/// First step of reading a string: the characters that the value holds, its closing null counted; 0 when it is missing,
/// has no data or is neither REG_SZ nor REG_EXPAND_SZ.
DWORD RegistryStringLength(HKEY key, const std::wstring &valueName);

/// Second step: reads the value into a buffer of `length` characters. Nothing when it isn't a string of an even byte
/// count that fits and ends in a null. The text ends at its first null.
std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName, DWORD length);

/// Both steps at once; nothing when the first gives 0 or the second fails.
std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName);

/// The same. `status` becomes what the platform answered last: ERROR_FILE_NOT_FOUND where the value is missing, and
/// ERROR_SUCCESS also for one that is there without being a well-formed string.
std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName, LSTATUS &status);

/// Writes `text` as REG_SZ, its closing null included. Returns the platform's status.
LSTATUS WriteRegistryString(HKEY key, const std::wstring &valueName, const std::wstring &text);

} // namespace lumenor
