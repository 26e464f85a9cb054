#include "support/KeptRegistryKey.h"

#include "system/Handles.h"

namespace lumenor::tests {

namespace {

constexpr wchar_t backupsPath[] = L"Software\\LumenorTests\\Kept";

RegistryKey CreateKey(HKEY root, const std::wstring &path) {
  RegistryKey key;
  ::RegCreateKeyExW(root, path.c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, key.Put(), nullptr);
  return key;
}

void CopyKey(HKEY fromRoot, const std::wstring &from, HKEY toRoot, const std::wstring &to) {
  ::RegCopyTreeW(fromRoot, from.c_str(), CreateKey(toRoot, to).Get());
}

bool KeyExists(HKEY root, const std::wstring &path) {
  RegistryKey key;
  return ::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

std::wstring NextBackupPath() {
  static int count = 0;
  return std::wstring(backupsPath) + std::to_wstring(++count);
}

} // namespace

KeptRegistryKey::KeptRegistryKey(HKEY root, const std::wstring &subkey) : root(root), subkey(subkey) {
  if (!KeyExists(root, subkey))
    return;
  backup = NextBackupPath();
  CopyKey(root, subkey, HKEY_CURRENT_USER, backup);
}

KeptRegistryKey::~KeptRegistryKey() {
  Delete();
  if (backup.empty())
    return;
  CopyKey(HKEY_CURRENT_USER, backup, root, subkey);
  ::RegDeleteTreeW(HKEY_CURRENT_USER, backup.c_str());
}

void KeptRegistryKey::Create() const { CreateKey(root, subkey); }

void KeptRegistryKey::Delete() const { ::RegDeleteTreeW(root, subkey.c_str()); }

void KeptRegistryKey::SetText(const std::wstring &name, const std::wstring &text, DWORD type) const {
  SetBytes(name, type, std::string(reinterpret_cast<const char *>(text.c_str()), (text.size() + 1) * sizeof(wchar_t)));
}

void KeptRegistryKey::SetNumber(const std::wstring &name, std::uint32_t number) const {
  SetBytes(name, REG_DWORD, std::string(reinterpret_cast<const char *>(&number), sizeof number));
}

void KeptRegistryKey::SetLongNumber(const std::wstring &name, std::uint64_t number) const {
  SetBytes(name, REG_QWORD, std::string(reinterpret_cast<const char *>(&number), sizeof number));
}

void KeptRegistryKey::SetBytes(const std::wstring &name, DWORD type, const std::string &bytes) const {
  const RegistryKey key = CreateKey(root, subkey);
  // The platform looks behind the data of a string for a null that it then takes for the string's end.
  const std::string data = bytes + "\xFF\xFF\xFF\xFF";
  ::RegSetValueExW(key.Get(), name.c_str(), 0, type, reinterpret_cast<const BYTE *>(data.data()),
                   static_cast<DWORD>(bytes.size()));
}

void KeptRegistryKey::DeleteValue(const std::wstring &name) const {
  ::RegDeleteValueW(CreateKey(root, subkey).Get(), name.c_str());
}

std::optional<std::wstring> KeptRegistryKey::Text(const std::wstring &name) const {
  wchar_t text[1024] = {};
  DWORD bytes = sizeof text;
  if (::RegGetValueW(root, subkey.c_str(), name.c_str(), RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS)
    return std::nullopt;
  return text;
}

} // namespace lumenor::tests
