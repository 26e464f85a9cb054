#include "JumpListFile.h"

#include "system/Handles.h"
#include "Text.h"

namespace lumenor::services {

namespace {

HRESULT LastFailure() { return HRESULT_FROM_WIN32(::GetLastError()); }

void AppendEscaped(std::string &text, unsigned char byte) {
  constexpr char digits[] = "0123456789ABCDEF";
  text += {'%', digits[byte >> 4], digits[byte & 15]};
}

std::string Escaped(const std::wstring &value) {
  std::string text;
  for (const char letter : Utf8(value)) {
    const auto byte = static_cast<unsigned char>(letter);
    if (byte < ' ' || byte == 0x7F || byte == '%')
      AppendEscaped(text, byte);
    else
      text += letter;
  }
  return text;
}

std::wstring FileName(const std::wstring &applicationId) {
  std::wstring name;
  for (const wchar_t letter : applicationId) {
    if (letter >= L' ' && std::wstring_view(L"<>:\"/\\|?*%").find(letter) == std::wstring_view::npos) {
      name += letter;
      continue;
    }
    std::string escaped;
    AppendEscaped(escaped, static_cast<unsigned char>(letter));
    name.append(escaped.begin(), escaped.end());
  }
  return name + L".txt";
}

std::string Format(const JumpListBlock &block) {
  std::string text = std::string("[") + block.kind + "]\n";
  for (const JumpListProperty &property : block.properties)
    text += std::string(property.name) + "=" + Escaped(property.value) + "\n";
  return text;
}

/// Where the lists are; empty where the user has no folder for the data of programs.
std::wstring Folder() {
  const std::wstring appData = EnvironmentText(L"APPDATA");
  return appData.empty() ? appData : appData + L"\\Microsoft\\Windows\\Recent\\CustomDestinations\\";
}

/// Makes the folders that a file at `path` lies in; what fails here fails the file.
void MakeFoldersOf(const std::wstring &path) {
  for (std::size_t end = path.find(L'\\', 3); end != std::wstring::npos; end = path.find(L'\\', end + 1))
    ::CreateDirectoryW(path.substr(0, end).c_str(), nullptr);
}

HRESULT WriteNew(const std::wstring &path, const std::string &text) {
  const FileHandle file(
      ::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file)
    return LastFailure();
  DWORD written = 0;
  return ::WriteFile(file.Get(), text.data(), static_cast<DWORD>(text.size()), &written, nullptr) ? S_OK
                                                                                                  : LastFailure();
}

/// Beside `path`, where nobody else writes.
std::wstring AsidePath(const std::wstring &path) {
  wchar_t ending[32] = {};
  ::wsprintfW(ending, L".%lu.%lu.new", ::GetCurrentProcessId(), ::GetCurrentThreadId());
  return path + ending;
}

/// Puts the new file in the place of the former one, so that a reader sees the one or the other.
HRESULT Replace(const std::wstring &path, const std::string &text) {
  const std::wstring aside = AsidePath(path);
  HRESULT result = WriteNew(aside, text);
  if (SUCCEEDED(result) && !::MoveFileExW(aside.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
    result = LastFailure();
  if (FAILED(result))
    ::DeleteFileW(aside.c_str());
  return result;
}

} // namespace

HRESULT WriteJumpList(const std::wstring &applicationId, const JumpListBlocks &blocks) {
  const std::wstring folder = Folder();
  if (folder.empty())
    return HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND);
  std::string text = Format({"list", {{"application", applicationId}}});
  for (const JumpListBlock &block : blocks)
    text += "\n" + Format(block);
  MakeFoldersOf(folder);
  return Replace(folder + FileName(applicationId), text);
}

HRESULT DeleteJumpList(const std::wstring &applicationId) {
  const std::wstring folder = Folder();
  if (folder.empty() || ::DeleteFileW((folder + FileName(applicationId)).c_str()))
    return S_OK;
  const DWORD error = ::GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ? S_OK : HRESULT_FROM_WIN32(error);
}

} // namespace lumenor::services
