#include "system/Paths.h"

#include <cwchar>
#include <string_view>

#include "system/FileInUse.h"
#include "system/Handles.h"
#include "system/Log.h"
#include "system/Product.h"

namespace lumenor {

namespace {

constexpr std::wstring_view programFiles = L"%programfiles%";
constexpr wchar_t programFilesX86[] = L"%programfiles(x86)%";

/// The expanded path of `place` below the program folder that has it; the first one when neither does.
std::wstring FindInstalled(const wchar_t *place) {
  const std::wstring first = ExpandPath(std::wstring(programFiles) + place);
  if (PathExists(first))
    return first;
  const std::wstring second = ExpandPath(std::wstring(programFilesX86) + place);
  return PathExists(second) ? second : first;
}

/// INVALID_FILE_ATTRIBUTES, with the last error set, where nothing is. No path of the platform is longer than this, but
/// it takes seconds to find that out of a long one with many parts "..".
DWORD AttributesOf(const std::wstring &path) {
  constexpr std::size_t longestPath = 32767;
  if (path.size() <= longestPath)
    return ::GetFileAttributesW(path.c_str());
  ::SetLastError(ERROR_FILENAME_EXCED_RANGE);
  return INVALID_FILE_ATTRIBUTES;
}

bool IsBelowProgramFiles(const std::wstring &path) {
  return path.size() > programFiles.size() && path[programFiles.size()] == L'\\' &&
         ::_wcsnicmp(path.c_str(), programFiles.data(), programFiles.size()) == 0;
}

} // namespace

std::wstring ExpandPath(const std::wstring &text) {
  try {
    const DWORD size = ::ExpandEnvironmentStringsW(text.c_str(), nullptr, 0);
    std::wstring expansion(size, L'\0');
    if (size == 0 || ::ExpandEnvironmentStringsW(text.c_str(), expansion.data(), size) != size)
      return text;
    expansion.resize(size - 1); // without the closing null
    return expansion;
  } catch (...) {
    return text; // callers have nothing better
  }
}

bool PathExists(const std::wstring &path) { return AttributesOf(path) != INVALID_FILE_ATTRIBUTES; }

bool PathIsMissing(const std::wstring &path) {
  if (PathExists(path))
    return false;
  const DWORD error = ::GetLastError();
  // A path that could not be expanded is another one than that of the file.
  return !path.starts_with(L'%') && (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND);
}

bool FileExists(const std::wstring &path) {
  const DWORD attributes = AttributesOf(path);
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

std::wstring FileNamePart(const std::wstring &path) {
  if (const std::size_t last = path.find_last_of(L'\\'); last != std::wstring::npos)
    return path.substr(last + 1);
  std::wstring front = FolderPart(path);
  if (!front.empty())
    front.pop_back();
  return front;
}

std::wstring FolderPart(const std::wstring &path) {
  std::size_t last = path.find_last_of(L'\\');
  if (last == std::wstring::npos)
    last = path.find_last_of(L'/');
  return last == std::wstring::npos ? std::wstring() : path.substr(0, last);
}

FILETIME LastWriteTime(const std::wstring &path) {
  LogInfo("Getting last modified time for %S", path.c_str());
  FILETIME time = {};
  FileHandle file;
  const auto open = [&] {
    file.Reset(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                             FILE_ATTRIBUTE_NORMAL, nullptr));
    return static_cast<bool>(file);
  };
  if (TryWhileInUse(open)) // its writer may not have closed it yet
    ::GetFileTime(file.Get(), nullptr, nullptr, &time);
  return time;
}

std::wstring MainAppPath() { return FindInstalled(product::mainAppFile); }

std::wstring InstallFolder() { return FindInstalled(product::installFolder); }

std::wstring DockExePath() { return FindInstalled(product::dockFile); }

std::wstring MapProgramFiles(const std::wstring &path) {
  if (PathExists(ExpandPath(path)) || !IsBelowProgramFiles(path))
    return path;
  const std::wstring mapped = programFilesX86 + path.substr(path.find(L'\\'));
  return PathExists(ExpandPath(mapped)) ? mapped : path;
}

} // namespace lumenor
