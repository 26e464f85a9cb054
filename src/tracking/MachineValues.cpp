#include "tracking/MachineValues.h"

#include "system/Log.h"
#include "system/Product.h"
#include "system/Registry.h"

namespace lumenor {

namespace {

/// The machine's key, from the second of its places when the first doesn't have it. The log names them without their
/// root.
RegistryKey OpenMachineKey() {
  const std::wstring first = SplitRegistryPath(product::machineKey).subkey;
  const std::wstring second = SplitRegistryPath(product::machineKey32).subkey;
  if (RegistryKey key = OpenRegistryKey(product::machineKey, KEY_READ))
    return key;
  LogInfo("RUQMENT: unable to open reg key %S falling back to %S", first.c_str(), second.c_str());
  RegistryKey key = OpenRegistryKey(product::machineKey32, KEY_READ);
  if (!key)
    LogError("RUQMENT: unable to open reg key %S", second.c_str());
  return key;
}

} // namespace

std::optional<std::wstring> ReadMachineValue(const std::wstring &name) {
  const RegistryKey key = OpenMachineKey();
  return key ? ReadRegistryString(key.Get(), name) : std::nullopt;
}

} // namespace lumenor
