#include "ChildRun.h"

#include <list>

#include <gtest/gtest.h>

#include "support/TestFolders.h"
#include "system/Handles.h"

namespace lumenor::tests {

namespace {

constexpr wchar_t childVariable[] = L"LUMENOR_TEST_CHILD";

std::wstring ThisProgram() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

std::wstring ThisTest() {
  const testing::TestInfo *test = testing::UnitTest::GetInstance()->current_test_info();
  const std::string name = std::string(test->test_suite_name()) + "." + test->name();
  return std::wstring(name.begin(), name.end());
}

/// A file that a child may write to.
FileHandle OpenForChild(const std::wstring &path) {
  SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
  return FileHandle(::CreateFileW(path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, &inherited,
                                  CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

unsigned long RunToEnd(std::wstring commandLine, HANDLE errors) {
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdOutput = errors;
  start.hStdError = errors;
  PROCESS_INFORMATION started = {};
  if (!::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &started))
    return ~0UL;
  const KernelHandle process(started.hProcess), thread(started.hThread);
  ::WaitForSingleObject(process.Get(), INFINITE);
  DWORD exitCode = ~0UL;
  ::GetExitCodeProcess(process.Get(), &exitCode);
  return exitCode;
}

} // namespace

bool IsChildRun() { return ::GetEnvironmentVariableW(childVariable, nullptr, 0) != 0; }

ChildResult RunThisTestAsChild(const std::vector<std::pair<std::wstring, std::wstring>> &environment) {
  const TestFolders folders;
  std::list<EnvironmentValue> values;
  values.emplace_back(childVariable, L"1");
  for (const auto &[name, value] : environment)
    values.emplace_back(name, value);
  const std::wstring errorsPath = folders.Root() + L"\\errors.txt";
  FileHandle errors = OpenForChild(errorsPath);
  const auto exitCode =
      RunToEnd(L"\"" + ThisProgram() + L"\" --gtest_color=no --gtest_filter=" + ThisTest(), errors.Get());
  errors.Reset();
  return {exitCode, ReadBytes(errorsPath)};
}

} // namespace lumenor::tests
