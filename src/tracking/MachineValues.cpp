#include "tracking/MachineValues.h"

#include "system/Log.h"
#include "system/Registry.h"

namespace lumenor {

namespace {

constexpr wchar_t machineKey[] = L"SOFTWARE\\Tarnwick\\System Properties";
constexpr wchar_t machineKey32[] = L"SOFTWARE\\Wow6432Node\\Tarnwick\\System Properties";
constexpr wchar_t collectorKey[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Tarnwick\\MirrApp";
constexpr wchar_t collectorKey32[] = L"HKEY_LOCAL_MACHINE\\SOFTWARE\\Wow6432Node\\Tarnwick\\MirrApp";

bool OpenMachineKey(const wchar_t *subkey, RegistryKeyHolder &holder) {
  return OpenRegistryPath(std::wstring(L"HKEY_LOCAL_MACHINE\\") + subkey, holder, KEY_READ);
}

} // namespace

std::optional<std::wstring> ReadMachineValue(const std::wstring &name) {
  RegistryKeyHolder holder;
  if (!OpenMachineKey(machineKey, holder)) {
    LogInfo("RUQMENT: unable to open reg key %S falling back to %S", machineKey, machineKey32);
    if (!OpenMachineKey(machineKey32, holder)) {
      LogError("RUQMENT: unable to open reg key %S", machineKey32);
      return std::nullopt;
    }
  }
  return ReadRegistryString(holder.key.Get(), name);
}

std::wstring ReadCollectorValue(const std::wstring &name) {
  RegistryKeyHolder holder;
  if (!OpenRegistryPath(collectorKey, holder, KEY_READ) && !OpenRegistryPath(collectorKey32, holder, KEY_READ))
    return {};
  return ReadRegistryString(holder.key.Get(), name).value_or(std::wstring());
}

} // namespace lumenor
