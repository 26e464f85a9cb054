#include "e2e/OtherProgram.h"

#include <chrono>

#include <gtest/gtest.h>

#include "e2e/Screen.h"
#include "support/StartProgram.h"
#include "system/Handles.h"
#include "system/Paths.h"

namespace lumenor::e2e {
namespace {

bool Runs(const std::wstring &commandLine) {
  const KernelHandle process = tests::StartProgram(commandLine, {.flags = CREATE_NO_WINDOW}).process;
  DWORD code = 1;
  return process && ::WaitForSingleObject(process.Get(), 60000) == WAIT_OBJECT_0 &&
         ::GetExitCodeProcess(process.Get(), &code) && code == 0;
}

/// The dock may be reading the file at that moment, and the interpreter doesn't wait for it.
constexpr auto longestUse = std::chrono::seconds(20);

} // namespace

bool OtherProgramCopies(const std::wstring &from, const std::wstring &to) {
  return WaitFor([&] { return Runs(L"cmd.exe /c copy /y \"" + from + L"\" \"" + to + L"\""); }, longestUse);
}

void Overwrite(const std::wstring &path, const std::string &bytes) {
  ASSERT_TRUE(WaitFor([&] {
    const FileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
    DWORD written = 0;
    return file && ::WriteFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) &&
           written == bytes.size();
  }));
}

bool OtherProgramDeletes(const std::wstring &path) {
  return WaitFor([&] { return Runs(L"cmd.exe /c del /q \"" + path + L"\"") && !PathExists(path); }, longestUse);
}

} // namespace lumenor::e2e
