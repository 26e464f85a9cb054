#pragma once
// A user who agreed to be counted: the collector's key in the registry, and its ini file in a test's folders. The
// registry is restored at the end.

#include "support/KeptRegistryKey.h"
#include "support/TestFolders.h"

namespace lumenor::tests {

class OptIn {
public:
  explicit OptIn(const TestFolders &folders) : iniFile(folders.Root() + L"\\collector.ini") {
    WriteBytes(iniFile, "[Settings]\r\nTrack=1\r\n");
    key.SetText(L"RuqIniFile", iniFile);
    key.DeleteValue(L"RuqPath");
  }

  const KeptRegistryKey key{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\MirrApp"};
  const std::wstring iniFile;
};

} // namespace lumenor::tests
