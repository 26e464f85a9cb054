#pragma once
// Shortcut files as the shell makes them.

#include <string>

namespace lumenor::e2e {

struct Shortcut {
  std::wstring target;
  std::wstring arguments = {};
  std::wstring workingFolder = {};
  std::wstring description = {};
};

/// Writes the shortcut as the file `path`.
void MakeShortcut(const std::wstring &path, const Shortcut &shortcut);

} // namespace lumenor::e2e
