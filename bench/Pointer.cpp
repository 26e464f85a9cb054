#include "Pointer.h"

#include <chrono>
#include <thread>
#include <utility>
#include <vector>

#include "e2e/Input.h"
#include "e2e/Screen.h"
#include "Measure.h"
#include "ShownBar.h"
#include "Start.h"
#include "support/Desk.h"
#include "support/MessagePump.h"
#include "WatchedProgram.h"

namespace lumenor::bench {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using tests::PumpUntil;

// The sweep: to the bar's right end and back.
constexpr int movesASecond = 60;
constexpr int sweepSeconds = 5;
constexpr int moves = movesASecond * sweepSeconds;

POINT SweepPlace(const RECT &bar, int move) {
  constexpr int margin = 10;
  const LONG way = bar.right - bar.left - 2 * margin;
  const LONG step = move < moves / 2 ? move : moves - move;
  return {bar.left + margin + way * step / (moves / 2), bar.top + 32};
}

Clock::time_point TimeOfMove(Clock::time_point begin, int move) {
  return begin + std::chrono::microseconds(1'000'000LL * move / movesASecond);
}

/// The button at that place of the screen; null where there is none.
HWND ButtonAt(POINT place) {
  const HWND window = ::WindowFromPoint(place);
  return ::SendMessageW(window, WM_GETDLGCODE, 0, 0) & DLGC_BUTTON ? window : nullptr;
}

void BenchSweepRepaints(ShownBar &bar, const FrameRecord &record) {
  int changes = 0;
  HWND under = nullptr;
  record.Clear();
  const auto begin = Clock::now();
  for (int move = 0; move <= moves; ++move) {
    const POINT place = SweepPlace(bar.Bounds(), move);
    desk::MoveCursor(place);
    changes += std::exchange(under, ButtonAt(place)) != under;
    PumpUntil([&] { return Clock::now() >= TimeOfMove(begin, move); });
  }
  desk::MoveCursor(bar.Rest());
  changes += under != nullptr;
  PumpUntil([] { return false; }, milliseconds(300));
  const auto repaints = static_cast<double>(record.Frames().size());
  ReportAtMost("repaints of a sweep for each change of the button under it", repaints / changes, "", 1);
  Note(Format("%.0f repaints for %.0f changes", repaints, changes) + Format(", %.0f moves", moves));
}

/// The share of one core that a dock in a process of its own takes during the sweep.
double MeasureSweep(const e2e::Installation &installation) {
  const COLORREF bare = PixelAt({640, 40});
  WatchedProgram dock(DockCommandLine(installation), "LumenorDock");
  e2e::WaitFor([&] { return PixelAt({640, 40}) != bare && BarWindow() != nullptr; });
  RECT bar = {};
  ::GetWindowRect(BarWindow(), &bar);
  e2e::MoveCursor(SweepPlace(bar, 0));
  std::this_thread::sleep_for(seconds(2)); // up, and settled
  dock.Begin();
  const auto begin = Clock::now();
  for (int move = 0; move <= moves; ++move) {
    e2e::MoveCursor(SweepPlace(bar, move));
    std::this_thread::sleep_until(TimeOfMove(begin, move));
  }
  const double share = dock.ProcessorSinceBegin() / (1000 * sweepSeconds);
  e2e::MoveCursor({640, 600});
  return share;
}

/// From the move of the real cursor on to a button until the screen shows the button lit, the way of the move through
/// the platform included.
void BenchHover(ShownBar &bar, const FrameRecord &record) {
  const POINT button = desk::MiddleOf(bar.Dock().GetUserButtons().at(0)->GetHandle());
  const auto moveTo = [&](POINT place) {
    record.Clear();
    const auto begin = Clock::now();
    desk::MoveCursor(place);
    PumpUntil([&] { return !record.Frames().empty(); });
    return std::chrono::duration<double, std::micro>(record.Frames().at(0).time - begin).count();
  };
  const auto hover = [&] {
    const double time = moveTo(button);
    moveTo(bar.Rest()); // the platform takes a moment to tell a button that the cursor has left
    return time;
  };
  const Pair figures = MedianOfTurns(31, hover, [&] { return Microseconds([&] { bar.Dock().Render(); }); });
  ReportAtMost("hover to changed pixel / a repaint", figures.subject / figures.floor, "x", 1.2);
  Note(Format("hover %.2f ms, repaint %.2f ms", figures.subject / 1000, figures.floor / 1000));
}

/// The pictures of bar and list from the press of the mouse's button until all stands still.
double CountClick(const FrameRecord &record) {
  PumpUntil([] { return false; }, milliseconds(600)); // two clicks sooner than that are a double click
  record.Clear();
  desk::PressLeftButton();
  desk::ReleaseLeftButton();
  PumpUntil([] { return false; }, milliseconds(500));
  return static_cast<double>(record.Frames().size());
}

void BenchFlyout(ShownBar &bar, const FrameRecord &record) {
  desk::MoveCursor(bar.Place(34, 44)); // the For You button
  std::vector<double> opens, closes;
  for (int round = 0; round < 5; ++round) {
    opens.push_back(CountClick(record));
    closes.push_back(CountClick(record));
  }
  ReportAtMost("repaints of bar and list of a click that opens the list", Median(opens), "", 3);
  ReportAtMost("the same as a click closes it", Median(closes), "", 3);
  desk::MoveCursor(bar.Rest());
}

} // namespace

void BenchPointer(const e2e::Installation &installation) {
  const double share = MeasureSweep(installation);
  ShownBar bar;
  const FrameRecord record(bar.Row());
  BenchSweepRepaints(bar, record);
  Note(Format("%.0f %% of one core in a dock of its own", share * 100));
  BenchHover(bar, record);
  BenchFlyout(bar, record);
}

} // namespace lumenor::bench
