#include "e2e/ProcessFigures.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include <psapi.h>
#include <tlhelp32.h>

#include "support/HandleCounts.h"
#include "system/Handles.h"

namespace lumenor::e2e {
namespace {

constexpr ULONG extendedHandleInformation = 64;
constexpr LONG bufferTooSmall = static_cast<LONG>(0xC0000004);

/// The platform's information on every handle of every process; no header declares it.
struct HandleEntry {
  void *object;
  ULONG_PTR processId;
  ULONG_PTR handle;
  ULONG access;
  USHORT backTrace;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};
struct HandleTable {
  ULONG_PTR count;
  ULONG_PTR reserved;
  HandleEntry entries[1];
};

using QuerySystemInformation = LONG(WINAPI *)(ULONG, void *, ULONG, ULONG *);

std::vector<std::byte> ReadHandleTable() {
  const auto query = reinterpret_cast<QuerySystemInformation>(
      reinterpret_cast<void *>(::GetProcAddress(::GetModuleHandleW(L"ntdll.dll"), "NtQuerySystemInformation")));
  std::vector<std::byte> bytes(1 << 20);
  ULONG needed = 0;
  while (query(extendedHandleInformation, bytes.data(), static_cast<ULONG>(bytes.size()), &needed) == bufferTooSmall)
    bytes.resize(bytes.size() * 2);
  return bytes;
}

KernelHandle OpenForReading(DWORD processId) {
  return KernelHandle(::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
}

/// Zeros when the platform refuses to tell.
PROCESS_MEMORY_COUNTERS CountersOf(DWORD processId) {
  const KernelHandle process = OpenForReading(processId);
  PROCESS_MEMORY_COUNTERS counters = {};
  if (process)
    ::K32GetProcessMemoryInfo(process.Get(), &counters, sizeof(counters));
  return counters;
}

double Megabytes(SIZE_T bytes) { return static_cast<double>(bytes) / (1024 * 1024); }

} // namespace

int ThreadCount(DWORD processId) {
  const FileHandle snapshot(::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry = {};
  entry.dwSize = sizeof(entry);
  int count = 0;
  for (BOOL more = ::Thread32First(snapshot.Get(), &entry); more; more = ::Thread32Next(snapshot.Get(), &entry))
    count += entry.th32OwnerProcessID == processId;
  return count;
}

int HandleCount(DWORD processId) {
  const auto bytes = ReadHandleTable();
  const auto *table = reinterpret_cast<const HandleTable *>(bytes.data());
  int count = 0;
  for (ULONG_PTR i = 0; i < table->count; ++i)
    count += table->entries[i].processId == processId;
  return count;
}

double PrivateMegabytes(DWORD processId) { return Megabytes(CountersOf(processId).PagefileUsage); }

double WorkingSetMegabytes(DWORD processId) { return Megabytes(CountersOf(processId).WorkingSetSize); }

int GdiObjectCount(DWORD processId) {
  const KernelHandle process = OpenForReading(processId);
  const auto told = static_cast<int>(::GetGuiResources(process.Get(), GR_GDIOBJECTS));
  return told != 0 ? told : tests::CountGdiObjects(process.Get()); // the test platform tells nothing
}

int WindowCount(DWORD processId) {
  std::vector<HWND> windows;
  ::EnumChildWindows(
      ::GetDesktopWindow(),
      [](HWND window, LPARAM parameter) -> BOOL {
        reinterpret_cast<std::vector<HWND> *>(parameter)->push_back(window);
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&windows));
  for (HWND window = nullptr; (window = ::FindWindowExW(HWND_MESSAGE, window, nullptr, nullptr)) != nullptr;)
    windows.push_back(window);
  return static_cast<int>(std::count_if(windows.begin(), windows.end(), [&](HWND window) {
    DWORD owner = 0;
    ::GetWindowThreadProcessId(window, &owner);
    return owner == processId;
  }));
}

} // namespace lumenor::e2e
