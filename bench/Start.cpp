#include "Start.h"

#include <algorithm>
#include <chrono>
#include <vector>

#include "e2e/Screen.h"
#include "Measure.h"
#include "Started.h"
#include "system/Handles.h"

namespace lumenor::bench {
namespace {

// Where the bar of ten buttons stands, and the floor with it; and the middle of the first picture in both.
constexpr RECT barPlace = {190, 1, 1090, 78};
constexpr POINT firstIcon = {barPlace.left + 38, barPlace.top + 32};

double MicrosecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double, std::micro>(Clock::now() - begin).count();
}

/// From the start of the process to the first picture of the bar, and the memory.
void BenchStart(const e2e::Installation &installation, const std::wstring &floor, const wchar_t *windows,
                const std::string &content, double limit) {
  const DockWindows version(windows);
  std::vector<double> dockMemory, floorMemory;
  const auto measure = [&](const std::wstring &commandLine, std::vector<double> &memory) {
    const StartFigures figures = MeasureStart(commandLine, firstIcon);
    memory.push_back(figures.peakMegabytes);
    return figures.microseconds;
  };
  const std::wstring dock = DockCommandLine(installation);
  MeasureStart(dock, firstIcon); // builds the documents and the shaded pictures, as the first start on a machine
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

} // namespace

COLORREF PixelAt(POINT point) {
  const WindowDeviceContext screen(nullptr);
  return ::GetPixel(screen.Get(), point.x, point.y);
}

COLORREF WaitForBareScreen(POINT spot) {
  e2e::WaitFor([&] { return PixelAt(spot) == PixelAt({5, 1000}); });
  return PixelAt(spot);
}

HWND BarWindow() { return ::FindWindowW(nullptr, L"Lumenor Dock"); }

DockWindows::DockWindows(const wchar_t *version)
    : settings(HKEY_CURRENT_USER, L"Software\\Wine\\AppDefaults\\LumenorDock.exe") {
  settings.SetText(L"Version", version);
}

StartFigures MeasureStart(const std::wstring &commandLine, POINT spot) {
  const COLORREF before = WaitForBareScreen(spot);
  StartFigures figures = {};
  const auto begin = Clock::now();
  const Started program(commandLine);
  // Looked at once a millisecond: a look without a pause is work for the display, and the program would wait for that.
  while (PixelAt(spot) == before && Clock::now() - begin < std::chrono::seconds(30))
    ::Sleep(1);
  figures.microseconds = MicrosecondsSince(begin);
  if (const HWND bar = BarWindow(); bar != nullptr) {
    ::SendMessageW(bar, WM_NULL, 0, 0);
    figures.answerMicroseconds = MicrosecondsSince(begin);
  }
  e2e::CaptureSettled(barPlace);
  figures.peakMegabytes = program.PeakPrivateMegabytes();
  return figures;
}

std::wstring DockCommandLine(const e2e::Installation &installation) { return L"\"" + installation.DockExe() + L"\""; }

std::wstring FloorCommandLine(const e2e::Installation &installation, const std::wstring &floorProgram) {
  return L"\"" + floorProgram + L"\" \"" + installation.ResourcesFolder() + L"\\test.png\" 190 1 1090 78";
}

e2e::Entry ProgramEntry(const e2e::Installation &installation, int position) {
  return {.head = L"Program", .actionType = L"exe", .actionParams = installation.Recorder(), .position = position};
}

void WriteTenButtons(const e2e::Installation &installation) {
  for (int i = 0; i < 10; ++i)
    installation.WriteStub(L"enu_us", i < 3 ? e2e::mainDocument : e2e::userDocument, i, ProgramEntry(installation, i));
}

void BenchTenButtonsStart(const e2e::Installation &installation, const std::wstring &floorCommandLine) {
  BenchStart(installation, floorCommandLine, withoutJumpList, "ten buttons", 1.1);
}

void BenchFactoryStart(const std::wstring &floorProgram) {
  const e2e::Installation installation;
  UseFactoryContent(installation);
  const std::wstring floor = FloorCommandLine(installation, floorProgram);
  BenchStart(installation, floor, withoutJumpList, "factory content", 1.2);
  BenchStart(installation, floor, withJumpList, "factory content and jump list", 1.2);
}

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

} // namespace lumenor::bench
