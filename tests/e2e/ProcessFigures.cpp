#include "e2e/ProcessFigures.h"

#include <cstddef>
#include <vector>

#include <psapi.h>
#include <tlhelp32.h>

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

double PrivateMegabytes(DWORD processId) {
  const KernelHandle process(::OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId));
  PROCESS_MEMORY_COUNTERS counters = {};
  if (!process || !::K32GetProcessMemoryInfo(process.Get(), &counters, sizeof(counters)))
    return 0;
  return static_cast<double>(counters.PagefileUsage) / (1024 * 1024);
}

} // namespace lumenor::e2e
