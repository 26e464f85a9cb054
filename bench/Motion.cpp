#include "Motion.h"

#include <algorithm>
#include <cstdlib>
#include <set>
#include <thread>
#include <vector>

#include "dock/DockMessages.h"
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

constexpr POINT farAway = {640, 600};
constexpr int fadeFrom = 255, fadeTo = 190;
constexpr long scrollStep = 77;

struct Rate {
  double pictures; // in a second
  double places;   // of different values, in a second
};

/// From the first picture that isn't at `from` to the first one at `to`, as `value` reads it of a picture; 0 when there
/// is no such way.
template <typename Value> Rate RateOf(const std::vector<Frame> &frames, long from, long to, Value value) {
  const auto first =
      std::find_if(frames.begin(), frames.end(), [&](const Frame &frame) { return value(frame) != from; });
  const auto last = std::find_if(first, frames.end(), [&](const Frame &frame) { return value(frame) == to; });
  if (last == frames.end() || last == first)
    return {};
  std::set<long> values;
  for (auto frame = first; frame != last; ++frame)
    values.insert(value(*frame));
  const double span = std::chrono::duration<double>(last->time - first->time).count();
  return {static_cast<double>(last - first) / span, static_cast<double>(values.size()) / span};
}

void ReportRate(const char *name, const std::vector<Rate> &rates) {
  std::vector<double> pictures, places;
  for (const Rate &rate : rates) {
    pictures.push_back(rate.pictures);
    places.push_back(rate.places);
  }
  ReportAtLeast(name, Median(places), "/s", 30);
  Note(Format("%.1f different pictures of %.1f in all a second", Median(places), Median(pictures)));
}

/// Thirty buttons of the user's: more than the row has room for.
void WriteThirtyButtons(const e2e::Installation &installation) {
  std::vector<e2e::Entry> entries;
  for (int i = 0; i < 30; ++i)
    entries.push_back(
        {.head = L"Program", .actionType = L"exe", .actionParams = installation.Recorder(), .position = i});
  installation.WriteDocument(e2e::userDocument, entries);
}

void ReportEnd(const char *name, long end, long target) {
  ReportAtMost(name, static_cast<double>(std::abs(end - target)), "", 0);
}

void BenchFade(ShownBar &bar, const FrameRecord &record) {
  std::vector<Rate> rates;
  for (int round = 0; round < 3; ++round) {
    record.Clear();
    desk::MoveCursor(farAway);
    PumpUntil([&] { return bar.Dock().Opacity.Get() == fadeTo; }, seconds(12));
    PumpUntil([] { return false; }, milliseconds(300));
    rates.push_back(RateOf(record.Frames(), fadeFrom, fadeTo, [](const Frame &f) { return f.opacity; }));
    if (round == 0)
      ReportEnd("the fade's end, off 190", record.Frames().empty() ? 0 : record.Frames().back().opacity, fadeTo);
    desk::MoveCursor(bar.Rest());
    PumpUntil([&] { return bar.Dock().Opacity.Get() == fadeFrom; });
    PumpUntil([] { return false; }, milliseconds(300));
  }
  ReportEnd("its end on the way back, off 255", record.Frames().back().opacity, fadeFrom);
  ReportRate("different pictures a second of the fade", rates);
}

void BenchSlide(ShownBar &bar, const FrameRecord &record) {
  std::vector<Rate> rates;
  for (int round = 0; round < 5; ++round) {
    record.Clear();
    bar.ClickAt(bar.Place(204 + 2 + 12, round % 2 == 0 ? 28 : 48)); // two clicks on one spot are a double click
    const long from = -scrollStep * round, to = from - scrollStep;
    PumpUntil([&] { return !record.Frames().empty() && record.Frames().back().rowLeft == to; }, seconds(3));
    PumpUntil([] { return false; }, milliseconds(300));
    rates.push_back(RateOf(record.Frames(), from, to, [](const Frame &f) { return f.rowLeft; }));
    if (round == 4)
      ReportEnd("the slide's end, off five steps", record.Frames().back().rowLeft, to);
  }
  ReportRate("different pictures a second of the slide", rates);
}

/// A file that is dragged along the whole row: what the drop target tells the bar at each move of the mouse.
void BenchDrag(ShownBar &bar, const FrameRecord &record) {
  const HWND dock = bar.Dock().GetHandle();
  const auto tell = [&](UINT code, POINT place) {
    NMHDR header = {dock, static_cast<UINT_PTR>(MAKELONG(place.x, place.y)), code};
    ::SendMessageW(dock, WM_NOTIFY, reinterpret_cast<WPARAM>(dock), reinterpret_cast<LPARAM>(&header));
  };
  constexpr int moves = 200, rowWidth = 500;
  int move = 0;
  record.Clear();
  const Pair drag = MedianOfTurns(
      moves,
      [&] {
        const POINT place = bar.Place(204 + 20 + move++ * rowWidth / moves, 40);
        return Microseconds([&] { tell(DragOverNotification, place); });
      },
      [&] { return Microseconds([&] { bar.Dock().Render(); }); });
  const double repaints = static_cast<double>(record.Frames().size()) - moves; // without the plain ones
  tell(DragLeaveNotification, farAway);
  ReportAtMost("repaints a mouse move of a drag over 30 buttons", repaints / moves, "", 1);
  ReportAtMost("one repaint of a drag / a plain one", drag.subject / drag.floor, "x", 1.2);
  Note(Format("drag %.2f ms, plain %.2f ms", drag.subject / 1000, drag.floor / 1000));
}

void BenchTyping(ShownBar &bar, const FrameRecord &record) {
  bar.ClickAt(bar.Place(144, 43));
  const HWND field = ::GetFocus();
  std::vector<double> repaints;
  for (int length = 1; length <= 10; ++length) {
    desk::PumpAll();
    const e2e::Picture before = e2e::Capture(bar.FieldRect());
    record.Clear();
    desk::PressKey('M');
    PumpUntil([&] { return ::GetWindowTextLengthW(field) == length; });
    PumpUntil([&] { return e2e::Capture(bar.FieldRect()).Differences(before) > 10; }, seconds(2));
    repaints.push_back(static_cast<double>(record.Frames().size()));
    desk::ReleaseKey('M');
  }
  ReportAtMost("repaints from a key press to its letter on the screen", Median(repaints), "", 2);
  if (::GetWindowTextLengthW(field) != 10)
    ReportAtLeast("letters of ten that arrived", ::GetWindowTextLengthW(field), "", 10);
}

/// How often the message loop comes round while nobody does anything and the bar is dimmed.
void BenchWakeUps(ShownBar &bar) {
  ::SetFocus(bar.Dock().GetHandle()); // a caret blinks
  desk::MoveCursor(farAway);
  PumpUntil([&] { return bar.Dock().Opacity.Get() == fadeTo; }, seconds(12));
  PumpUntil([] { return false; }, seconds(1));
  ::SetTimer(nullptr, 0, 10'000, nullptr); // ends the count; not counted itself
  int rounds = 0;
  const auto begin = Clock::now();
  MSG message = {};
  while (::GetMessageW(&message, nullptr, 0, 0) > 0 && (message.hwnd != nullptr || message.message != WM_TIMER)) {
    ++rounds;
    if (!::IsDialogMessageW(bar.Dock().GetHandle(), &message)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  }
  ::KillTimer(nullptr, message.wParam);
  ReportAtMost("rounds of the message loop, dimmed and alone",
               rounds / std::chrono::duration<double>(Clock::now() - begin).count(), "/s", 6);
}

} // namespace

void BenchMotion(const e2e::Installation &installation) {
  WriteThirtyButtons(installation);
  ShownBar bar;
  const FrameRecord record(bar.Row());
  BenchFade(bar, record);
  BenchSlide(bar, record);
  BenchDrag(bar, record);
  BenchTyping(bar, record);
  BenchWakeUps(bar);
}

void BenchRest(const e2e::Installation &installation, const std::wstring &floorCommandLine) {
  constexpr double span = 30;
  e2e::MoveCursor(farAway);
  WatchedProgram floor(floorCommandLine, "lumenor_floor");
  WatchedProgram dock(DockCommandLine(installation), "LumenorDock");
  std::this_thread::sleep_for(seconds(10)); // up, dimmed, and settled
  floor.Begin();
  dock.Begin();
  std::this_thread::sleep_for(milliseconds(static_cast<int>(span * 1000)));
  ReportAtMost("processor time of the dimmed bar beyond the floor's",
               (dock.ProcessorSinceBegin() - floor.ProcessorSinceBegin()) / span, "ms/s", 10);
  Note(Format("dock %.0f ms, floor %.0f ms, both in 30 s", dock.ProcessorSinceBegin(), floor.ProcessorSinceBegin()));
  ReportAtMost("sleeps of the dimmed bar's first thread", dock.SleepsSinceBegin() / span, "/s", 10);
}

} // namespace lumenor::bench
