#pragma once
// Shortcut files as the shell makes them.

#include <string>

namespace lumenor::tests {

struct Shortcut {
  std::wstring target;
  std::wstring arguments = {};
  std::wstring workingFolder = {};
  std::wstring description = {};
  std::wstring iconFile = {}; // that of the target without one
};

/// Writes the shortcut as the file `path`.
void MakeShortcut(const std::wstring &path, const Shortcut &shortcut);

} // namespace lumenor::tests
