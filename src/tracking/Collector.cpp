#include "tracking/Collector.h"

#include <string_view>

#include "system/FileReading.h"
#include "system/Launch.h"
#include "system/Log.h"
#include "system/Paths.h"
#include "system/Product.h"
#include "system/Registry.h"

#include <shellapi.h>

namespace lumenor {

namespace {

constexpr std::string_view agreement = "\nTrack=1";

/// What its installer wrote; empty when there is nothing, which isn't logged: most machines have no collector.
std::wstring ReadCollectorValue(const std::wstring &name) {
  for (const wchar_t *path : {product::collectorKey, product::collectorKey32})
    if (const RegistryKey key = OpenRegistryKey(path, KEY_READ))
      return ReadRegistryString(key.Get(), name).value_or(std::wstring());
  return {};
}

} // namespace

std::wstring CollectorIniFile() { return ExpandPath(ReadCollectorValue(L"RuqIniFile")); }

bool SaysThatUserAgreed(const std::wstring &path) {
  const FileHandle file = OpenForReading(path);
  if (!file)
    return false;
  // Of what was read before, only as much is kept as may be the beginning of the text: another program writes the file,
  // which may have any size.
  std::string tail, buffer;
  for (std::string_view piece = ReadPiece(file.Get(), buffer); !piece.empty(); piece = ReadPiece(file.Get(), buffer)) {
    tail += piece;
    if (tail.find(agreement) != std::string::npos)
      return true;
    if (tail.size() >= agreement.size())
      tail.erase(0, tail.size() - (agreement.size() - 1));
  }
  return false;
}

void StartCollector() {
  LogInfo("RUQMENT: running TWRuq.exe");
  const std::wstring program = ExpandPath(ReadCollectorValue(L"RuqPath"));
  if (!FitsShell(program)) {
    LogError("RUQMENT: A path of %u characters is too long", static_cast<unsigned>(program.size()));
    return;
  }
  // The collector gets the folder unexpanded, with the variable's name in it.
  ::ShellExecuteW(nullptr, L"open", program.c_str(), trackedApplication, product::payloadFolder, SW_HIDE);
}

} // namespace lumenor
