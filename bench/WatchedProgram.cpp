#include "WatchedProgram.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "e2e/Screen.h"
#include "system/Handles.h"

namespace lumenor::bench {
namespace {

/// What a file holds that tells no size beforehand, up to 4,000 bytes.
std::string ReadUnsized(const std::wstring &path) {
  std::string bytes(4000, '\0');
  const FileHandle file(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                      OPEN_EXISTING, 0, nullptr));
  DWORD read = 0;
  if (file)
    ::ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr);
  bytes.resize(read);
  return bytes;
}

/// The numbers of the host's processes of that name; the platform's own file system shows them.
std::set<std::wstring> HostProcesses(const std::string &name) {
  std::set<std::wstring> found;
  WIN32_FIND_DATAW entry = {};
  const FindHandle find(::FindFirstFileW(L"Z:\\proc\\*", &entry));
  if (!find)
    return found;
  do {
    const std::wstring number = entry.cFileName;
    if (number.find_first_not_of(L"0123456789") == std::wstring::npos &&
        ReadUnsized(L"Z:\\proc\\" + number + L"\\comm").starts_with(name))
      found.insert(number);
  } while (::FindNextFileW(find.Get(), &entry));
  return found;
}

/// How often the process's first thread has gone to sleep of its own accord.
double Sleeps(const std::wstring &hostProcess) {
  const std::string status = ReadUnsized(L"Z:\\proc\\" + hostProcess + L"\\status");
  constexpr std::string_view name = "\nvoluntary_ctxt_switches:";
  const auto at = status.find(name);
  return at == std::string::npos ? 0 : std::atof(status.c_str() + at + name.size());
}

/// What the process has used of the processors so far; the platform tells it of the own process only. The host counts
/// it in hundredths of a second.
double ProcessorMilliseconds(const std::wstring &hostProcess) {
  const std::string stat = ReadUnsized(L"Z:\\proc\\" + hostProcess + L"\\stat");
  const auto name = stat.rfind(')');
  if (name == std::string::npos)
    return 0;
  long user = 0, kernel = 0;
  std::sscanf(stat.c_str() + name + 1, " %*c %*d %*d %*d %*d %*d %*u %*u %*u %*u %*u %ld %ld", &user, &kernel);
  return static_cast<double>(user + kernel) * 10;
}

} // namespace

WatchedProgram::WatchedProgram(const std::wstring &commandLine, const std::string &hostName)
    : others(HostProcesses(hostName)), program(commandLine) {
  e2e::WaitFor([&] {
    for (const std::wstring &process : HostProcesses(hostName))
      if (!others.contains(process))
        host = process;
    return !host.empty();
  });
}

void WatchedProgram::Begin() {
  processorBefore = ProcessorMilliseconds(host);
  sleepsBefore = Sleeps(host);
}

double WatchedProgram::ProcessorSinceBegin() const { return ProcessorMilliseconds(host) - processorBefore; }

double WatchedProgram::SleepsSinceBegin() const { return Sleeps(host) - sleepsBefore; }

} // namespace lumenor::bench
