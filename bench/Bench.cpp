// The benchmarks of the dock, each a ratio against a floor measured in the same run. Run by script/bench on a display
// and in a prefix of its own.

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "dock/bar/MainDlg.h"
#include "e2e/Installation.h"
#include "FloorWindow.h"
#include "Growth.h"
#include "Measure.h"
#include "Motion.h"
#include "Pointer.h"
#include "Start.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "toolkit/drawing/BitmapShader.h"
#include "toolkit/drawing/WICHelper.h"
#include "Tracking.h"

namespace lumenor::bench {
namespace {

void BenchRepaint(const e2e::Installation &installation) {
  CMainDlg dock;
  ThrowIfNull(dock.Create(nullptr));
  RECT bar = {};
  ::GetWindowRect(dock.GetHandle(), &bar);
  ::OffsetRect(&bar, 0, 200);
  FloorWindow floor(bar, installation.ResourcesFolder() + L"\\test.png");
  ::ShowWindow(floor.Handle(), SW_SHOW);
  const Pair repaint = MedianOfTurns(
      200, [&] { return Microseconds([&] { dock.Render(); }); }, [&] { return Microseconds([&] { floor.Render(); }); });
  ReportAtMost("one full repaint of the bar / floor", repaint.subject / repaint.floor, "x", 1.1);
  Note(Format("bar %.2f ms, floor %.2f ms", repaint.subject / 1000, repaint.floor / 1000));
  ::DestroyWindow(dock.GetHandle());
}

/// The halo by its definition, a power and a square root for every pixel of every disc.
void LiteralGlow(const std::vector<unsigned char> &source, int width, int height, std::vector<unsigned char> &result) {
  constexpr int radius = 4;
  constexpr float falloff = 0.6f;
  const int rowBytes = width * 4, resultRowBytes = (width + 2 * radius) * 4;
  for (int a = 3; a < rowBytes * height; a += 4) {
    if (source[a] == 0)
      continue;
    const int row = a / rowBytes + radius, column = a % rowBytes + 4 * radius;
    for (int y = row - radius; y <= row + radius; ++y)
      for (int x = column - 4 * radius; x <= column + 4 * radius; x += 4) {
        const int dy = y - row, dx = (x - column) / 4;
        const float d = ::sqrtf(static_cast<float>(dx * dx + dy * dy));
        if (static_cast<float>(radius) < d)
          continue;
        unsigned char *pixel = &result[y * resultRowBytes + x];
        const unsigned char old = *pixel;
        const float strength = static_cast<float>(source[a]) * ::powf(falloff, d);
        const auto now = static_cast<unsigned char>(std::floor(static_cast<double>(strength) + 0.5));
        if (now <= old)
          continue;
        *pixel = now;
        if (old == 0)
          pixel[-1] = pixel[-2] = pixel[-3] = 224;
      }
  }
}

void BenchGlow() {
  constexpr int side = 48;
  const BitmapHandle opaque = CreateDib(side, side);
  const std::vector<unsigned char> bytes(side * side * 4, 255);
  ::SetBitmapBits(opaque.Get(), static_cast<DWORD>(bytes.size()), bytes.data());
  const COuterGlowShader shader(224, 224, 224, 4, 0.6f);
  const Pair glow = MedianOfTurns(
      50, [&] { return Microseconds([&] { shader.Shade(opaque.Get()); }); },
      [&] {
        std::vector<unsigned char> result((side + 8) * (side + 8) * 4);
        return Microseconds([&] { LiteralGlow(bytes, side, side, result); });
      });
  ReportAtLeast("glow of an opaque 48-pixel icon, literal arithmetic / ours", glow.floor / glow.subject, "x", 20);
  Note(Format("ours %.0f us, literal %.0f us", glow.subject, glow.floor));
}

volatile int comparedNumber = 0;

__attribute__((noinline)) void LogOnce(int i) { LogInfo("a line that is not written, %d", i); }

__attribute__((noinline)) void CompareOnce(int i) {
  if (comparedNumber > 0)
    comparedNumber = i;
}

void BenchLog() {
  constexpr int calls = 2'000'000;
  const auto perCall = [](auto &&body) {
    return Microseconds([&] {
             for (int i = 0; i < calls; ++i)
               body(i);
           }) *
           1000 / calls;
  };
  const std::int32_t level = std::exchange(LogLevel, 0);
  const Pair log = MedianOfTurns(
      31, [&] { return perCall(LogOnce); }, [&] { return perCall(CompareOnce); });
  LogLevel = level;
  ReportAtMost("a log call with the log off, beyond an integer compare", log.subject - log.floor, "ns", 2);
  Note(Format("log call %.2f ns, compare %.2f ns", log.subject, log.floor));
}

void BenchSize(const std::wstring &dockProgram) {
  WIN32_FILE_ATTRIBUTE_DATA data = {};
  ThrowIfFalse(::GetFileAttributesExW(dockProgram.c_str(), GetFileExInfoStandard, &data));
  ReportAtMost("the executable, stripped", data.nFileSizeLow / 1e6, "MB", 1);
}

/// Runs the parts that are named, all of them when none is.
void Run(const std::wstring &floorProgram, const std::vector<std::wstring> &parts) {
  const auto wants = [&](const wchar_t *part) {
    return parts.empty() || std::find(parts.begin(), parts.end(), part) != parts.end();
  };
  if (parts == std::vector<std::wstring>{L"traced"}) // not among all of them: script/bench starts it by itself
    return StartTraced(floorProgram);
  if (wants(L"start"))
    BenchFactoryStart(floorProgram);
  if (wants(L"growth"))
    BenchGrowth();
  const e2e::Installation installation;
  WriteTenButtons(installation);
  if (wants(L"size"))
    BenchSize(installation.DockExe());
  if (wants(L"log"))
    BenchLog();
  if (wants(L"glow"))
    BenchGlow();
  const std::wstring floor = FloorCommandLine(installation, floorProgram);
  if (wants(L"start"))
    BenchTenButtonsStart(installation, floor);
  if (wants(L"rest"))
    BenchRest(installation, floor);
  // From here on the bar stands in this process, which looks for pictures from the folder of the dock.
  ::SetCurrentDirectoryW(installation.DockExe().substr(0, installation.DockExe().rfind(L'\\')).c_str());
  if (wants(L"repaint"))
    BenchRepaint(installation);
  if (wants(L"tracking"))
    BenchTracking(installation);
  if (wants(L"stubs"))
    BenchStubs(installation);
  if (wants(L"pointer"))
    BenchPointer(installation);
  if (wants(L"motion"))
    BenchMotion(installation);
}

} // namespace
} // namespace lumenor::bench

/// The first argument is the path of the floor program, those behind it name the parts to run; the other paths come by
/// environment as for the tests.
int wmain(int count, wchar_t **arguments) {
  if (count < 2)
    return 2;
  lumenor::ThrowIfFailed(::CoInitialize(nullptr));
  try {
    lumenor::bench::Run(arguments[1], {arguments + 2, arguments + count});
  } catch (const lumenor::HResultError &error) {
    std::printf("failed with %08lx\n", static_cast<unsigned long>(error.Result()));
    return 1;
  }
  const int shortfalls = lumenor::bench::Shortfalls();
  std::printf("%d of the figures fall short\n", shortfalls);
  return shortfalls == 0 ? 0 : 3;
}
