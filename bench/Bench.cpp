// The benchmarks of the dock, each a ratio against a floor measured in the same run. Run by script/bench on a display
// and in a prefix of its own.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "content/Stubs.h"
#include "dock/bar/MainDlg.h"
#include "e2e/DockProcess.h"
#include "e2e/Installation.h"
#include "e2e/Screen.h"
#include "FloorWindow.h"
#include "Measure.h"
#include "Motion.h"
#include "Started.h"
#include "support/KeptRegistryKey.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Log.h"
#include "toolkit/drawing/BitmapShader.h"
#include "toolkit/drawing/WICHelper.h"
#include "Tracking.h"

namespace lumenor::bench {
namespace {

constexpr wchar_t icon[] = L"..\\resources\\test.png";
constexpr POINT iconSpot = {38, 32}; // the middle of the first picture, from the bar's corner, in both programs

/// Three fixed and seven user buttons, all with the same picture: ten icons, as the floor has.
void WriteTenButtons(const e2e::Installation &installation) {
  for (int i = 0; i < 10; ++i)
    installation.WriteStub(L"enu_us", i < 3 ? e2e::mainDocument : e2e::userDocument, i,
                           {.head = L"Program",
                            .actionType = L"exe",
                            .actionParams = installation.Recorder(),
                            .image = icon,
                            .position = i});
}

// --- processes ---------------------------------------------------------------------------------------------------

COLORREF PixelAt(POINT point) {
  const WindowDeviceContext screen(nullptr);
  return ::GetPixel(screen.Get(), point.x, point.y);
}

struct StartFigures {
  double microseconds;
  double peakMegabytes;
};

/// Starts the program and waits until its first icon stands on the screen, then until it has settled for the memory.
StartFigures MeasureStart(const std::wstring &commandLine, POINT spot, const RECT &area) {
  e2e::WaitFor([&] { return PixelAt(spot) == PixelAt({5, 1000}); }); // nothing there from the round before
  const COLORREF before = PixelAt(spot);
  StartFigures figures = {};
  const auto begin = Clock::now();
  const Started program(commandLine);
  // Looked at once a millisecond: a look without a pause is work for the display, and the program would wait for that.
  while (PixelAt(spot) == before && Clock::now() - begin < std::chrono::seconds(30))
    ::Sleep(1);
  figures.microseconds = std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
  e2e::CaptureSettled(area);
  figures.peakMegabytes = program.PeakPrivateMegabytes();
  return figures;
}

/// Starts the floor where the bar has its place.
std::wstring FloorCommandLine(const e2e::Installation &installation, const std::wstring &floorProgram) {
  return L"\"" + floorProgram + L"\" \"" + installation.ResourcesFolder() + L"\\test.png\" 190 1 1090 78";
}

constexpr RECT barPlace = {190, 1, 1090, 78};

/// The version of Windows that the dock is told. It publishes a jump list on Windows 7 only, ahead of its bar.
class DockWindows {
public:
  explicit DockWindows(const wchar_t *version)
      : settings(HKEY_CURRENT_USER, L"Software\\Wine\\AppDefaults\\LumenorDock.exe") {
    settings.SetText(L"Version", version);
  }

private:
  tests::KeptRegistryKey settings;
};

constexpr const wchar_t *withJumpList = L"win7";
constexpr const wchar_t *withoutJumpList = L"win10";

std::wstring DockCommandLine(const e2e::Installation &installation) { return L"\"" + installation.DockExe() + L"\""; }

/// From the start of the process to the first picture of the bar, and the memory.
void BenchStart(const e2e::Installation &installation, const std::wstring &floor, const wchar_t *windows,
                const std::string &content, double limit) {
  const DockWindows version(windows);
  const POINT spot = {barPlace.left + iconSpot.x, barPlace.top + iconSpot.y};
  std::vector<double> dockMemory, floorMemory;
  const auto measure = [&](const std::wstring &commandLine, std::vector<double> &memory) {
    const StartFigures figures = MeasureStart(commandLine, spot, barPlace);
    memory.push_back(figures.peakMegabytes);
    return figures.microseconds;
  };
  const std::wstring dock = DockCommandLine(installation);
  MeasureStart(dock, spot, barPlace); // builds the documents and the shaded pictures, as the first start on a machine
  const Pair start = MedianOfTurns(
      15, [&] { return measure(dock, dockMemory); }, [&] { return measure(floor, floorMemory); });
  ReportAtMost("start of process to painted bar / floor, " + content, start.subject / start.floor, "x", limit);
  Note(Format("dock %.0f ms, floor %.0f ms", start.subject / 1000, start.floor / 1000));
  ReportAtMost("peak private memory / floor, " + content, Median(dockMemory) / Median(floorMemory), "x", 1.05);
  Note(Format("dock %.1f MB, floor %.1f MB", Median(dockMemory), Median(floorMemory)));
}

/// What a user starts with.
void UseFactoryContent(const e2e::Installation &installation) {
  installation.UseFactoryContent();
  installation.UseFactorySearchProviders();
}

void BenchFactoryStart(const std::wstring &floorProgram) {
  const e2e::Installation installation;
  UseFactoryContent(installation);
  const std::wstring floor = FloorCommandLine(installation, floorProgram);
  BenchStart(installation, floor, withoutJumpList, "factory content", 1.2);
  BenchStart(installation, floor, withJumpList, "factory content and jump list", 1.2);
}

/// Starts what script/bench counts the requests of, in this order: the floor, the dock with ten buttons, the dock with
/// the factory content. A dock that builds its documents and pictures is started ahead of each and isn't counted.
void StartTraced(const std::wstring &floorProgram) {
  const DockWindows version(withoutJumpList);
  const auto run = [](const std::wstring &commandLine) {
    const Started program(commandLine);
    ::Sleep(10'000);
  };
  const auto runDock = [&](const e2e::Installation &installation) {
    run(DockCommandLine(installation));
    run(DockCommandLine(installation));
  };
  {
    const e2e::Installation installation;
    run(FloorCommandLine(installation, floorProgram));
    WriteTenButtons(installation);
    runDock(installation);
  }
  const e2e::Installation installation;
  UseFactoryContent(installation);
  runDock(installation);
}

// --- inside one process ------------------------------------------------------------------------------------------

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

void BenchStubs(const e2e::Installation &installation) {
  const auto write = [&](const wchar_t *document, int count) {
    for (int i = 0; i < count; ++i)
      installation.WriteStub(L"xx_xx", document, i,
                             {.head = L"Program",
                              .actionType = L"exe",
                              .actionParams = installation.Recorder(),
                              .image = icon,
                              .position = i});
  };
  write(L"Bench.Thousand", 1000);
  write(L"Bench.Hundred", 100);
  const Pair rebuild = MedianOfTurns(
      11, [] { return Microseconds([] { ApplyStubs(L"Bench.Thousand"); }); },
      [] { return Microseconds([] { ApplyStubs(L"Bench.Hundred"); }); });
  ReportAtMost("rebuilding a document from 1,000 stubs / from 100", rebuild.subject / rebuild.floor, "x", 10.5);
  Note(Format("1,000 stubs %.0f ms, 100 stubs %.1f ms", rebuild.subject / 1000, rebuild.floor / 1000));
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
    BenchStart(installation, floor, withoutJumpList, "ten buttons", 1.1);
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
