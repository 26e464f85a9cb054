#include "support/JumpLists.h"

#include <algorithm>
#include <charconv>
#include <ostream>
#include <string_view>
#include <utility>

#include "support/TestFolders.h"
#include "system/Windows.h"

namespace lumenor::tests {

namespace {

std::wstring AppData() {
  std::wstring folder(32767, L'\0');
  folder.resize(::GetEnvironmentVariableW(L"APPDATA", folder.data(), static_cast<DWORD>(folder.size())));
  return folder;
}

/// Characters that a file's name can't have become %XX.
std::wstring FileName(const std::wstring &applicationId) {
  std::wstring name;
  for (const wchar_t letter : applicationId) {
    if (letter >= L' ' && std::wstring_view(L"<>:\"/\\|?*%").find(letter) == std::wstring_view::npos) {
      name += letter;
      continue;
    }
    wchar_t escaped[4] = {};
    ::wsprintfW(escaped, L"%%%02X", static_cast<unsigned>(letter));
    name += escaped;
  }
  return name + L".txt";
}

/// The bytes that an escaped value stands for.
std::string Unescaped(std::string_view value) {
  std::string bytes;
  for (std::size_t at = 0; at < value.size(); ++at) {
    unsigned char byte = static_cast<unsigned char>(value[at]);
    if (byte == '%' && at + 2 < value.size()) {
      std::from_chars(value.data() + at + 1, value.data() + at + 3, byte, 16);
      at += 2;
    }
    bytes += static_cast<char>(byte);
  }
  return bytes;
}

void SetProperty(JumpTask &task, std::string_view name, std::string_view value) {
  constexpr std::pair<std::string_view, std::wstring JumpTask::*> texts[] = {
      {"title", &JumpTask::title},
      {"path", &JumpTask::path},
      {"arguments", &JumpTask::arguments},
      {"workingFolder", &JumpTask::workingFolder},
      {"description", &JumpTask::description},
      {"icon", &JumpTask::icon},
  };
  for (const auto &[textName, text] : texts)
    if (name == textName)
      task.*text = FromUtf8(Unescaped(value));
  if (name == "iconIndex")
    std::from_chars(value.data(), value.data() + value.size(), task.iconIndex);
}

std::vector<JumpTask> ParseTasks(std::string_view file) {
  std::vector<JumpTask> tasks;
  bool isInTask = false;
  while (!file.empty()) {
    const std::string_view line = file.substr(0, file.find('\n'));
    file.remove_prefix(std::min(line.size() + 1, file.size()));
    const std::size_t equals = line.find('=');
    if (line.starts_with('[')) {
      isInTask = line == "[task]";
      if (isInTask)
        tasks.emplace_back();
    } else if (isInTask && equals != std::string_view::npos) {
      SetProperty(tasks.back(), line.substr(0, equals), line.substr(equals + 1));
    }
  }
  return tasks;
}

} // namespace

void PrintTo(const JumpTask &task, std::ostream *stream) {
  *stream << "{title \"" << Utf8(task.title) << "\", path \"" << Utf8(task.path) << "\", arguments \""
          << Utf8(task.arguments) << "\", workingFolder \"" << Utf8(task.workingFolder) << "\", description \""
          << Utf8(task.description) << "\", icon \"" << Utf8(task.icon) << "\", iconIndex " << task.iconIndex << "}";
}

std::wstring JumpListPath(const std::wstring &applicationId) {
  return AppData() + L"\\Microsoft\\Windows\\Recent\\CustomDestinations\\" + FileName(applicationId);
}

std::optional<std::vector<JumpTask>> ReadJumpList(const std::wstring &applicationId) {
  const std::wstring path = JumpListPath(applicationId);
  if (!Exists(path))
    return std::nullopt;
  return ParseTasks(ReadBytes(path));
}

} // namespace lumenor::tests
