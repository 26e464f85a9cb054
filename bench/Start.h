#pragma once
// The benchmarks of the start, as processes.

#include <string>

#include "e2e/Installation.h"
#include "support/KeptRegistryKey.h"
#include "system/Windows.h"

namespace lumenor::bench {

struct StartFigures {
  double microseconds; // until the first picture is on the screen
  double peakMegabytes;
  double answerMicroseconds; // until the bar answers a message, which is when all of its windows are there; else 0
};

/// Starts the program, and waits until `spot` shows it and it has settled. Ends it.
StartFigures MeasureStart(const std::wstring &commandLine, POINT spot);

/// The version of Windows that the dock is told while it lives. On Windows 7 only the dock publishes a jump list, ahead
/// of its bar.
class DockWindows {
public:
  explicit DockWindows(const wchar_t *version);

private:
  tests::KeptRegistryKey settings;
};

inline constexpr const wchar_t *withJumpList = L"win7";
inline constexpr const wchar_t *withoutJumpList = L"win10";

/// What the screen shows there.
COLORREF PixelAt(POINT point);

/// Waits until no window of the round before stands there; what the screen shows then.
COLORREF WaitForBareScreen(POINT spot);

/// The dock's bar, in whatever process; null without one.
HWND BarWindow();

/// The command line that starts the installed dock.
std::wstring DockCommandLine(const e2e::Installation &installation);

/// The one that starts the floor where the bar of ten buttons has its place.
std::wstring FloorCommandLine(const e2e::Installation &installation, const std::wstring &floorProgram);

/// A button with the picture that the floor shows, which starts a recorder.
e2e::Entry ProgramEntry(const e2e::Installation &installation, int position);

/// Three fixed and seven user buttons, all with the same picture: ten icons, as the floor has.
void WriteTenButtons(const e2e::Installation &installation);

/// The start with the ten buttons that are installed, against the floor's.
void BenchTenButtonsStart(const e2e::Installation &installation, const std::wstring &floorCommandLine);

/// The same with what a user starts with, without a jump list and with one. Installs the dock anew.
void BenchFactoryStart(const std::wstring &floorProgram);

/// Starts what script/bench counts the requests of, in this order: the floor, the dock with ten buttons, the dock with
/// the factory content. A dock that builds its documents and pictures is started ahead of each and isn't counted.
/// Installs the dock anew.
void StartTraced(const std::wstring &floorProgram);

} // namespace lumenor::bench
