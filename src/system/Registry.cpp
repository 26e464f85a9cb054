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

/// `length` stays 0 where RegistryStringLength is to give that. Returns the platform's status.
LSTATUS ReadLength(HKEY key, const std::wstring &valueName, DWORD &length) {
  DWORD type = REG_NONE, bytes = 0;
  const LSTATUS status = ::RegQueryValueExW(key, valueName.c_str(), nullptr, &type, nullptr, &bytes);
  if (status == ERROR_SUCCESS && IsText(type))
    length = bytes / sizeof(wchar_t);
  return status;
}

/// `text` stays empty where the value is no well-formed string of at most `length` characters. Returns the platform's
/// status.
LSTATUS ReadText(HKEY key, const std::wstring &valueName, DWORD length, std::optional<std::wstring> &text) {
  std::vector<wchar_t> buffer(length + 1); // one more, so that a text without characters ends in a null too
  DWORD type = REG_NONE, bytes = static_cast<DWORD>(length * sizeof(wchar_t));
  const LSTATUS status =
      ::RegQueryValueExW(key, valueName.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(buffer.data()), &bytes);
  if (status == ERROR_SUCCESS && IsText(type) && IsWellFormed(buffer, bytes))
    text = buffer.data();
  return status;
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
  DWORD length = 0;
  ReadLength(key, valueName, length);
  return length;
}

std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName, DWORD length) {
  std::optional<std::wstring> text;
  ReadText(key, valueName, length, text);
  return text;
}

std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName) {
  LSTATUS status = ERROR_SUCCESS;
  return ReadRegistryString(key, valueName, status);
}

std::optional<std::wstring> ReadRegistryString(HKEY key, const std::wstring &valueName, LSTATUS &status) {
  DWORD length = 0;
  std::optional<std::wstring> text;
  status = ReadLength(key, valueName, length);
  if (length != 0)
    status = ReadText(key, valueName, length, text);
  return text;
}

LSTATUS WriteRegistryString(HKEY key, const std::wstring &valueName, const std::wstring &text) {
  const auto bytes = static_cast<DWORD>(2 * text.size() + 2);
  return ::RegSetValueExW(key, valueName.c_str(), 0, REG_SZ, reinterpret_cast<const BYTE *>(text.c_str()), bytes);
}

} // namespace lumenor
