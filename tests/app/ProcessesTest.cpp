#include "app/SingleInstance.h"

#include <gtest/gtest.h>

#include "support/StartProgram.h"
#include "support/TestFolders.h"
#include "system/Handles.h"

namespace lumenor {
namespace {

/// A process of the given file name that runs until this goes.
class NamedProcess {
public:
  NamedProcess(const tests::TestFolders &folders, const std::wstring &fileName) {
    // The command processor waits for input that doesn't come.
    const std::wstring path = folders.Root() + L"\\" + fileName;
    EXPECT_TRUE(::CopyFileW(L"C:\\windows\\system32\\cmd.exe", path.c_str(), FALSE));
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    EXPECT_TRUE(::CreatePipe(input.Put(), writer.Put(), &inherited, 0));
    tests::StartOptions options = {.flags = CREATE_NO_WINDOW, .inheritsHandles = true};
    options.startup.dwFlags = STARTF_USESTDHANDLES;
    options.startup.hStdInput = input.Get();
    process = tests::StartProgram(L"\"" + path + L"\"", options).process;
    EXPECT_TRUE(process);
  }

  ~NamedProcess() {
    ::TerminateProcess(process.Get(), 0);
    ::WaitForSingleObject(process.Get(), INFINITE);
  }

private:
  KernelHandle input, writer, process;
};

TEST(IsDockProcessRunning, IsFalseWithoutSuchAProcess) { EXPECT_FALSE(IsDockProcessRunning()); }

TEST(IsDockProcessRunning, FindsTheNameInAnyCase) {
  const tests::TestFolders folders;
  const NamedProcess process(folders, L"lumenorPANEL.exe");
  EXPECT_TRUE(IsDockProcessRunning());
}

TEST(IsDockProcessRunning, TheInstalledDocksNameIsAnother) {
  const tests::TestFolders folders;
  const NamedProcess process(folders, L"LumenorDock.exe");
  EXPECT_FALSE(IsDockProcessRunning());
}

} // namespace
} // namespace lumenor
