#pragma once
// Folders and environment variables of a test. A test has one of these as a local or as a member of its fixture; the
// destructor restores everything.

#include <string>
#include <vector>

#include "system/Windows.h"

namespace lumenor::tests {

/// Sets an environment variable and restores what it held.
class EnvironmentValue {
public:
  EnvironmentValue(const std::wstring &name, const std::wstring &value);
  ~EnvironmentValue();
  EnvironmentValue(const EnvironmentValue &) = delete;
  EnvironmentValue &operator=(const EnvironmentValue &) = delete;

  /// Sets another value; the former one is still what is restored.
  void Set(const std::wstring &value) const;
  void Remove() const;

private:
  std::wstring name;
  std::wstring former;
  bool existed;
};

/// Redirects %APPDATA%, %PROGRAMDATA%, %ProgramFiles% and %ProgramFiles(x86)% to a fresh folder below the temp folder,
/// which is deleted with all its content in the end. The four folders exist, nothing below them does.
class TestFolders {
public:
  TestFolders();
  ~TestFolders();
  TestFolders(const TestFolders &) = delete;
  TestFolders &operator=(const TestFolders &) = delete;

  /// The fresh folder itself, to put other files of the test into.
  std::wstring Root() const { return root; }

  std::wstring AppData() const { return root + L"\\A"; }
  std::wstring ProgramData() const { return root + L"\\D"; }
  std::wstring ProgramFiles() const { return root + L"\\P"; }
  std::wstring ProgramFilesX86() const { return root + L"\\X"; }

  /// The product's folders in there; not made.
  std::wstring UserFolder() const { return AppData() + L"\\Tarnwick\\Lumenor"; }
  std::wstring CommonFolder() const { return ProgramData() + L"\\Tarnwick\\Lumenor"; }
  std::wstring InstallFolder() const { return ProgramFiles() + L"\\Tarnwick\\Lumenor"; }
  std::wstring InstallFolderX86() const { return ProgramFilesX86() + L"\\Tarnwick\\Lumenor"; }

private:
  std::wstring root; // short: some paths have small buffers
  EnvironmentValue appData;
  EnvironmentValue programData;
  EnvironmentValue programFiles;
  EnvironmentValue programFilesX86;
};

/// Makes a folder and makes it current, as the dock does with the one of its executable; restores the former one.
class CurrentFolder {
public:
  explicit CurrentFolder(const std::wstring &folder);
  ~CurrentFolder();
  CurrentFolder(const CurrentFolder &) = delete;
  CurrentFolder &operator=(const CurrentFolder &) = delete;

private:
  std::wstring former;
};

/// Makes the folder and all its parents.
void MakeFolders(const std::wstring &path);

/// Writes the bytes as the file's whole content, making its folder.
void WriteBytes(const std::wstring &path, const std::string &bytes);

/// The same with `text` as UTF-8.
void WriteText(const std::wstring &path, const std::wstring &text);

/// Writes one byte over the first of a file that is there: a change of one event, unlike making a file anew.
void TouchFile(const std::wstring &path);

/// The file's bytes; empty when it can't be read.
std::string ReadBytes(const std::wstring &path);

/// The names in the folder, sorted; without "." and "..".
std::vector<std::wstring> ListFolder(const std::wstring &folder);

/// Deletes the folder with all below it, read-only files too.
void DeleteTree(const std::wstring &folder);

bool Exists(const std::wstring &path);

/// The path of a file that is built beside this program.
std::wstring BesideThisProgram(const std::wstring &name);

std::string Utf8(const std::wstring &text);
std::wstring FromUtf8(const std::string &bytes);

} // namespace lumenor::tests
