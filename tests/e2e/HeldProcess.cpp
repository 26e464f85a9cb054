#include "e2e/HeldProcess.h"

#include <tlhelp32.h>

namespace lumenor::e2e {

HeldProcess::HeldProcess(DWORD processId) {
  const FileHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof entry;
  for (BOOL found = ::Thread32First(snapshot.Get(), &entry); found; found = ::Thread32Next(snapshot.Get(), &entry)) {
    if (entry.th32OwnerProcessID != processId)
      continue;
    KernelHandle thread(::OpenThread(THREAD_SUSPEND_RESUME, FALSE, entry.th32ThreadID));
    if (thread && ::SuspendThread(thread.Get()) != static_cast<DWORD>(-1))
      threads.push_back(std::move(thread));
  }
}

HeldProcess::~HeldProcess() {
  for (const KernelHandle &thread : threads)
    ::ResumeThread(thread.Get());
}

} // namespace lumenor::e2e
