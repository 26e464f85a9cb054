#include "app/SingleInstance.h"

#include <gtest/gtest.h>

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
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = input.Get();
    PROCESS_INFORMATION started = {};
    std::wstring commandLine = L"\"" + path + L"\"";
    EXPECT_TRUE(::CreateProcessW(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                                 nullptr, &start, &started));
    process.Reset(started.hProcess);
    thread.Reset(started.hThread);
  }

  ~NamedProcess() {
    ::TerminateProcess(process.Get(), 0);
    ::WaitForSingleObject(process.Get(), INFINITE);
  }

private:
  KernelHandle input, writer, process, thread;
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
