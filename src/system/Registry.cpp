#include "system/Registry.h"

#include <utility>
#include <vector>

#include "system/HResultError.h"

namespace lumenor {

namespace {

const std::pair<const wchar_t *, HKEY> rootKeys[] = {{L"HKEY_LOCAL_MACHINE", HKEY_LOCAL_MACHINE},
                                                     {L"HKEY_CURRENT_USER", HKEY_CURRENT_USER},
                                                     {L"HKEY_USERS", HKEY_USERS},
                                                     {L"HKEY_CURRENT_CONFIG", HKEY_CURRENT_CONFIG},
                                                     {L"HKEY_CLASSES_ROOT", HKEY_CLASSES_ROOT}};

constexpr REGSAM viewMask = KEY_WOW64_32KEY | KEY_WOW64_64KEY;

bool IsText(DWORD type) { return type == REG_SZ || type == REG_EXPAND_SZ; }

/// Whether `bytes` of `buffer` are whole characters that end in a null; no bytes at all are an empty text.
bool IsWellFormed(const std::vector<wchar_t> &buffer, DWORD bytes) {
  if (bytes == 0)
    return true;
  return bytes % sizeof(wchar_t) == 0 && buffer[bytes / sizeof(wchar_t) - 1] == L'\0';
}

/// False, with `holder` as it was, when there is no key.
bool Take(RegistryKey key, REGSAM access, RegistryKeyHolder &holder) {
  if (!key)
    return false;
  holder = {std::move(key), access & viewMask};
  return true;
}

} // namespace

HKEY ParseRootKey(const std::wstring &name) {
  for (const auto &[rootName, key] : rootKeys)
    if (name == rootName)
      return key;
  return nullptr;
}

RegistryPath SplitRegistryPath(const std::wstring &path) {
  const std::size_t delimiter = path.find(L'\\');
  if (path.empty() || delimiter == path.size() - 1)
    throw HResultError(E_INVALIDARG);
  if (delimiter == std::wstring::npos)
    return {nullptr, path};
  return {ParseRootKey(path.substr(0, delimiter)), path.substr(delimiter + 1)};
}

RegistryKey OpenRegistryKey(const std::wstring &path, REGSAM access) {
  const RegistryPath split = SplitRegistryPath(path);
  RegistryKey key;
  ::RegOpenKeyExW(split.root, split.subkey.c_str(), 0, access, key.Put());
  return key;
}

bool OpenRegistryPath(const std::wstring &path, RegistryKeyHolder &holder, REGSAM access) {
  return Take(OpenRegistryKey(path, access), access, holder);
}

bool OpenOrCreateRegistryPath(const std::wstring &path, RegistryKeyHolder &holder, REGSAM access) {
  if (OpenRegistryPath(path, holder, access))
    return true;
  const RegistryPath split = SplitRegistryPath(path);
  RegistryKey key;
  ::RegCreateKeyExW(split.root, split.subkey.c_str(), 0, nullptr, REG_OPTION_NON_VOLATILE, access, nullptr, key.Put(),
                    nullptr);
  return Take(std::move(key), access, holder);
}

DWORD RegistryStringLength(HKEY key, const std::wstring &valueName) {
  DWORD type = REG_NONE, bytes = 0;
  const LSTATUS status = ::RegQueryValueExW(key, valueName.c_str(), nullptr, &type, nullptr, &bytes);
  return status == ERROR_SUCCESS && IsText(type) ? bytes / sizeof(wchar_t) : 0;
}

std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName, DWORD length) {
  std::vector<wchar_t> buffer(length + 1); // one more, so that a text without characters ends in a null too
  DWORD type = REG_NONE, bytes = static_cast<DWORD>(length * sizeof(wchar_t));
  const LSTATUS status =
      ::RegQueryValueExW(key, valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(buffer.data()), &bytes);
  if (status != ERROR_SUCCESS || !IsText(type) || !IsWellFormed(buffer, bytes))
    return std::nullopt;
  return buffer.data();
}

std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName) {
  const DWORD length = RegistryStringLength(key, valueName);
  return length == 0 ? std::nullopt : ReadRegistryString(key, valueName, length);
}

LSTATUS WriteRegistryString(HKEY key, const std::wstring &valueName, const std::wstring &text) {
  const auto bytes = static_cast<DWORD>(2 * text.size() + 2);
  return ::RegSetValueExW(key, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(text.c_str()), bytes);
}

} // namespace lumenor
