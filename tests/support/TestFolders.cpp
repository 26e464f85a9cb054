#include "support/TestFolders.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "system/Handles.h"

namespace lumenor::tests {

namespace {

std::wstring Variable(const std::wstring &name) {
  const DWORD size = ::GetEnvironmentVariableW(name.c_str(), nullptr, 0);
  std::wstring text(size, L'\0');
  text.resize(::GetEnvironmentVariableW(name.c_str(), text.data(), size));
  return text;
}

bool HasVariable(const std::wstring &name) {
  ::SetLastError(ERROR_SUCCESS);
  return ::GetEnvironmentVariableW(name.c_str(), nullptr, 0) != 0 || ::GetLastError() != ERROR_ENVVAR_NOT_FOUND;
}

std::wstring TempFolder() {
  wchar_t folder[MAX_PATH + 1] = {};
  ::GetTempPathW(MAX_PATH + 1, folder);
  return folder;
}

/// Makes a folder that nobody else has, with a short name.
std::wstring MakeFreshFolder() {
  const std::wstring temp = TempFolder();
  wchar_t name[16] = {};
  for (DWORD number = ::GetCurrentProcessId() * 8;; ++number) {
    ::wsprintfW(name, L"%x", static_cast<unsigned>(number & 0xFFFF));
    if (::CreateDirectoryW((temp + name).c_str(), nullptr))
      return temp + name;
    if (::GetLastError() != ERROR_ALREADY_EXISTS)
      std::abort(); // no test can run without its folder
  }
}

std::vector<WIN32_FIND_DATAW> List(const std::wstring &folder) {
  std::vector<WIN32_FIND_DATAW> entries;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((folder + L"\\*").c_str(), &found));
  if (!find)
    return entries;
  do {
    const std::wstring name = found.cFileName;
    if (name != L"." && name != L"..")
      entries.push_back(found);
  } while (::FindNextFileW(find.Get(), &found));
  return entries;
}

} // namespace

EnvironmentValue::EnvironmentValue(const std::wstring &name, const std::wstring &value)
    : name(name), former(Variable(name)), existed(HasVariable(name)) {
  Set(value);
}

EnvironmentValue::~EnvironmentValue() { ::SetEnvironmentVariableW(name.c_str(), existed ? former.c_str() : nullptr); }

void EnvironmentValue::Set(const std::wstring &value) const { ::SetEnvironmentVariableW(name.c_str(), value.c_str()); }

void EnvironmentValue::Remove() const { ::SetEnvironmentVariableW(name.c_str(), nullptr); }

TestFolders::TestFolders()
    : root(MakeFreshFolder()), appData(L"APPDATA", AppData()), programData(L"ProgramData", ProgramData()),
      programFiles(L"ProgramFiles", ProgramFiles()), programFilesX86(L"ProgramFiles(x86)", ProgramFilesX86()) {
  for (const auto &folder : {AppData(), ProgramData(), ProgramFiles(), ProgramFilesX86()})
    ::CreateDirectoryW(folder.c_str(), nullptr);
}

TestFolders::~TestFolders() { DeleteTree(root); }

CurrentFolder::CurrentFolder(const std::wstring &folder) {
  wchar_t buffer[MAX_PATH] = {};
  ::GetCurrentDirectoryW(MAX_PATH, buffer);
  former = buffer;
  MakeFolders(folder);
  ::SetCurrentDirectoryW(folder.c_str());
}

CurrentFolder::~CurrentFolder() { ::SetCurrentDirectoryW(former.c_str()); }

void MakeFolders(const std::wstring &path) {
  for (std::size_t end = path.find(L'\\', 3); end != std::wstring::npos; end = path.find(L'\\', end + 1))
    ::CreateDirectoryW(path.substr(0, end).c_str(), nullptr);
  ::CreateDirectoryW(path.c_str(), nullptr);
}

void WriteBytes(const std::wstring &path, const std::string &bytes) {
  MakeFolders(path.substr(0, path.find_last_of(L'\\')));
  const FileHandle file(
      ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
  if (written != bytes.size())
    throw std::runtime_error("a file of the test can't be written: " + Utf8(path));
}

void WriteText(const std::wstring &path, const std::wstring &text) { WriteBytes(path, Utf8(text)); }

void TouchFile(const std::wstring &path) {
  const FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  if (!::WriteFile(file.Get(), "x", 1, &written, nullptr))
    std::abort();
}

std::string ReadBytes(const std::wstring &path) {
  const FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file)
    return {};
  std::string bytes(::GetFileSize(file.Get(), nullptr), '\0');
  DWORD read = 0;
  ::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  bytes.resize(read);
  return bytes;
}

std::vector<std::wstring> ListFolder(const std::wstring &folder) {
  std::vector<std::wstring> names;
  for (const auto &entry : List(folder))
    names.emplace_back(entry.cFileName);
  std::sort(names.begin(), names.end());
  return names;
}

void DeleteTree(const std::wstring &folder) {
  for (const auto &entry : List(folder)) {
    const std::wstring path = folder + L"\\" + entry.cFileName;
    ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL);
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
      DeleteTree(path);
    else
      ::DeleteFileW(path.c_str());
  }
  ::SetFileAttributesW(folder.c_str(), FILE_ATTRIBUTE_NORMAL);
  ::RemoveDirectoryW(folder.c_str());
}

bool Exists(const std::wstring &path) { return ::GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES; }

std::wstring BesideThisProgram(const std::wstring &name) {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring program = path;
  return program.substr(0, program.find_last_of(L'\\') + 1) + name;
}

std::string Utf8(const std::wstring &text) {
  const int length = static_cast<int>(text.size());
  const int size = ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  ::WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
  return bytes;
}

std::wstring FromUtf8(const std::string &bytes) {
  const int length = static_cast<int>(bytes.size());
  const int size = ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, nullptr, 0);
  std::wstring text(static_cast<std::size_t>(size), L'\0');
  ::MultiByteToWideChar(CP_UTF8, 0, bytes.data(), length, text.data(), size);
  return text;
}

} // namespace lumenor::tests
