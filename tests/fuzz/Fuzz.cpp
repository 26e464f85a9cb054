// Hands inputs that others could write to what reads them, and tells which of them the product doesn't survive.
//
//   fuzz run SECONDS COUNT SEED FOLDER   as many inputs as fit into the time, at most COUNT; the bad ones are written
//   to
//                                        FOLDER; ends with 1 when there are any
//   fuzz files FOLDER                    the inputs in the folder, named TARGET-ANYTHING
//
// The inputs are taken by another process of this program, which is started anew when it is gone.

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <thread>

#include "fuzz/Targets.h"
#include "support/Arguments.h"
#include "support/ChildProcess.h"
#include "support/ComApartment.h"
#include "support/HandleCounts.h"
#include "support/ProcessorTime.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Paths.h"
#include "system/Product.h"

#include <psapi.h>
#include <shlobj.h>

namespace lumenor::fuzz {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::uint64_t inputsOfAProcess = 20'000;
constexpr auto longestSilence = std::chrono::seconds(60);
constexpr ULONGLONG mostProcessorMs = 5'000; // of one input
constexpr SIZE_T mostMemory = SIZE_T{1} << 30;
constexpr int mostHandles = 100; // more than after the first inputs

/// What the two processes know of each other.
struct Shared {
  std::atomic<std::uint64_t> index; // of the input that is being taken
  std::atomic<std::uint64_t> end;   // before which input to end
};

SIZE_T PeakMemory() {
  PROCESS_MEMORY_COUNTERS counters{};
  ::GetProcessMemoryInfo(::GetCurrentProcess(), &counters, sizeof counters);
  return std::max(counters.PeakPagefileUsage, counters.PeakWorkingSetSize);
}

/// Takes an input; what is wrong with that, or nothing.
std::string Take(const Target &target, const std::string &bytes) {
  const SIZE_T memory = PeakMemory();
  const ULONGLONG spent = tests::ProcessorMs();
  try {
    target.take(bytes);
  } catch (const HResultError &error) {
    char text[100];
    std::snprintf(text, sizeof text, "raised %08lx at %s:%u", static_cast<unsigned long>(error.Result()), error.File(),
                  error.Line());
    return text;
  } catch (const std::exception &error) {
    return error.what();
  }
  if (tests::ProcessorMs() - spent > mostProcessorMs)
    return "took too long";
  return memory < mostMemory && PeakMemory() >= mostMemory ? "took too much memory" : "";
}

/// The folders and the apartment in which inputs are taken.
class Scene {
public:
  Scene() {
    tests::EndOnCrash();
    ::SHCreateDirectoryExW(nullptr, ExpandPath(product::userFolder).c_str(), nullptr);
  }

private:
  const tests::TestFolders folders;
  const tests::ComApartment apartment;
};

/// The process that takes the inputs. It ends at the first that went wrong.
int TakeInputs(std::uint64_t seed, Shared &shared) {
  const Scene scene;
  int handles = 0;
  for (std::uint64_t taken = 0; shared.index < shared.end; ++shared.index, ++taken) {
    const std::uint64_t index = shared.index;
    const Target &target = Targets()[index % Targets().size()];
    if (const std::string wrong = Take(target, MakeInput(seed, index)); !wrong.empty()) {
      std::printf("%s\n", wrong.c_str());
      return 1;
    }
    if (taken == 2'000)
      handles = tests::CountKernelHandles();
  }
  if (handles != 0 && tests::CountKernelHandles() > handles + mostHandles) {
    std::printf("left handles behind\n");
    return 1;
  }
  return 0;
}

int TakeFiles(const std::wstring &folder) {
  const Scene scene;
  int taken = 0, findings = 0;
  WIN32_FIND_DATAW found = {};
  const FindHandle find(::FindFirstFileW((folder + L"\\*-*").c_str(), &found));
  if (find)
    do {
      const std::wstring name = found.cFileName;
      const std::string kind(name.begin(), name.begin() + static_cast<std::ptrdiff_t>(name.find(L'-')));
      const auto target = std::ranges::find(Targets(), kind, [](const Target &each) { return std::string(each.name); });
      std::printf("%ls\n", name.c_str()); // first: it may end the process
      std::fflush(stdout);
      const std::string wrong =
          target == Targets().end() ? "no such target" : Take(*target, tests::ReadBytes(folder + L"\\" + name));
      if (!wrong.empty())
        std::printf("%s\n", wrong.c_str());
      findings += wrong.empty() ? 0 : 1;
      ++taken;
    } while (::FindNextFileW(find.Get(), &found));
  std::printf("fuzz: %d files, %d findings\n", taken, findings);
  return findings == 0 && taken > 0 ? 0 : 1;
}

void Keep(std::uint64_t seed, std::uint64_t index, const std::wstring &folder) {
  const Scene scene;
  ::SHCreateDirectoryExW(nullptr, folder.c_str(), nullptr);
  const Target &target = Targets()[index % Targets().size()];
  const std::string name = std::string(target.name) + "-" + std::to_string(seed) + "-" + std::to_string(index);
  tests::WriteBytes(folder + L"\\" + std::wstring(name.begin(), name.end()) + L"." + target.extension,
                    MakeInput(seed, index));
  std::printf("  by input %s\n", name.c_str());
}

int Run(std::chrono::seconds time, std::uint64_t count, std::uint64_t seed, const std::wstring &folder) {
  const std::wstring name = L"LumenorFuzz" + std::to_wstring(::GetCurrentProcessId());
  const tests::SharedMemory<Shared> memory(name);
  Shared &shared = memory.Get();
  const Clock::time_point end = Clock::now() + time;
  int findings = 0;
  while (shared.index < count && Clock::now() < end) {
    const std::uint64_t first = shared.index;
    shared.end = std::min(count, first + inputsOfAProcess);
    const KernelHandle process = tests::StartAgain(L"take " + std::to_wstring(seed) + L" " + name);
    std::thread stop([&, handle = process.Get()] { // no more inputs when the time is over
      const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
      if (::WaitForSingleObject(handle, static_cast<DWORD>(std::max<long long>(left, 0))) == WAIT_TIMEOUT)
        shared.end = 0;
    });
    const DWORD status = tests::WaitForChild(process.Get(), shared.index, longestSilence);
    stop.join();
    if (status == 0)
      continue;
    ++findings;
    Keep(seed, shared.index, folder);
    std::fflush(stdout);
    ++shared.index;
  }
  std::printf("fuzz: %llu inputs of seed %llu, %d findings\n", static_cast<unsigned long long>(shared.index),
              static_cast<unsigned long long>(seed), findings);
  return findings == 0 ? 0 : 1;
}

} // namespace
} // namespace lumenor::fuzz

int wmain(int count, wchar_t **words) {
  using namespace lumenor::fuzz;
  using lumenor::tests::NumberOf;
  using lumenor::tests::PathOf;
  const std::wstring task = count > 1 ? words[1] : L"";
  if (task == L"run" && count == 6)
    return Run(std::chrono::seconds(NumberOf(words[2])), NumberOf(words[3]), NumberOf(words[4]), PathOf(words[5]));
  if (task == L"files" && count == 3)
    return TakeFiles(PathOf(words[2]));
  if (task == L"take" && count == 4)
    return TakeInputs(NumberOf(words[2]), lumenor::tests::SharedMemory<Shared>(words[3]).Get());
  std::printf("fuzz run SECONDS COUNT SEED FOLDER | fuzz files FOLDER\n");
  return 2;
}
