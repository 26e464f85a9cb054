#include "ChildRun.h"

#include <list>

#include <gtest/gtest.h>

#include "support/StartProgram.h"
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

std::wstring CommandLine() { return L"\"" + ThisProgram() + L"\" --gtest_color=no --gtest_filter=" + ThisTest(); }

KernelHandle Start(HANDLE output) {
  const EnvironmentValue isChild(childVariable, L"1");
  StartOptions options = {.inheritsHandles = true};
  options.startup.dwFlags = STARTF_USESTDHANDLES;
  options.startup.hStdOutput = output;
  options.startup.hStdError = output;
  return StartProgram(CommandLine(), options).process;
}

unsigned long WaitForEnd(const KernelHandle &process) {
  DWORD exitCode = ~0UL;
  if (!process)
    return exitCode;
  ::WaitForSingleObject(process.Get(), INFINITE);
  ::GetExitCodeProcess(process.Get(), &exitCode);
  return exitCode;
}

} // namespace

bool IsChildRun() { return ::GetEnvironmentVariableW(childVariable, nullptr, 0) != 0; }

ChildResult RunThisTestAsChild(const std::vector<std::pair<std::wstring, std::wstring>> &environment) {
  const TestFolders folders;
  std::list<EnvironmentValue> values;
  for (const auto &[name, value] : environment)
    values.emplace_back(name, value);
  const std::wstring errorsPath = folders.Root() + L"\\errors.txt";
  FileHandle errors = OpenForChild(errorsPath);
  const unsigned long exitCode = WaitForEnd(Start(errors.Get()));
  errors.Reset();
  return {exitCode, ReadBytes(errorsPath)};
}

KernelHandle StartThisTestAsChild(const std::wstring &outputPath) {
  const FileHandle output = OpenForChild(outputPath);
  return Start(output.Get());
}

} // namespace lumenor::tests
