#include "Growth.h"

#include <chrono>
#include <string>
#include <vector>

#include "content/Stubs.h"
#include "dock/DockMessages.h"
#include "e2e/Screen.h"
#include "Measure.h"
#include "Start.h"
#include "Started.h"
#include "system/Xml.h"

namespace lumenor::bench {
namespace {

constexpr int mostUserButtons = 30;

// On every bar, however many buttons it has: it stands in the middle of the screen's upper edge.
constexpr POINT barSpot = {640, 40};

void WriteStubs(const e2e::Installation &installation, const wchar_t *document, int count) {
  for (int i = 0; i < count; ++i)
    installation.WriteStub(L"xx_xx", document, i, ProgramEntry(installation, i));
}

/// Microseconds from the message by which the user's yes resets the dock to the next bar's first picture.
double MeasureReset(const std::wstring &commandLine) {
  const COLORREF bare = WaitForBareScreen(barSpot);
  const Started dock(commandLine);
  const auto isShown = [&] { return BarWindow() != nullptr && PixelAt(barSpot) != bare; };
  e2e::WaitFor(isShown);
  const HWND bar = BarWindow();
  ::SendMessageW(bar, WM_NULL, 0, 0);
  return Microseconds([&] {
    ::PostMessageW(bar, ResetDockMessage, 0, 0);
    e2e::WaitFor([&] { return BarWindow() != bar && isShown(); });
  });
}

void BenchReset() {
  const e2e::Installation installation;
  WriteStubs(installation, e2e::userDocument, 1000);
  std::vector<double> times;
  for (int round = 0; round < 15; ++round)
    times.push_back(MeasureReset(DockCommandLine(installation)));
  ReportAtMost("a reset with 1,000 stubs", Median(times) / 1e6, "s", 1);
}

void BenchUserButtons() {
  const e2e::Installation installation;
  const auto measure = [&](int count) {
    std::vector<e2e::Entry> entries;
    for (int i = 0; i < count; ++i)
      entries.push_back(ProgramEntry(installation, i));
    installation.WriteDocument(e2e::userDocument, entries);
    return MeasureStart(DockCommandLine(installation), barSpot).microseconds;
  };
  measure(mostUserButtons); // makes the shaded pictures
  const Pair start = MedianOfTurns(
      15, [&] { return measure(mostUserButtons); }, [&] { return measure(5); });
  ReportAtMost("start with 30 user buttons / with 5", start.subject / start.floor, "x", 1.5);
  Note(Format("30 buttons %.0f ms, 5 buttons %.0f ms", start.subject / 1000, start.floor / 1000));
}

/// Thirty buttons that each open a list of so many rows. What grows faster than the rows shows in the ratio.
void BenchLists() {
  const e2e::Installation installation;
  std::vector<e2e::Entry> buttons;
  for (int list = 0; list < mostUserButtons; ++list)
    buttons.push_back({.head = L"List",
                       .actionType = L"xml",
                       .actionParams = L"Bench.List" + std::to_wstring(list),
                       .position = list});
  installation.WriteDocument(e2e::userDocument, buttons);
  const auto measure = [&](int rowCount) {
    std::vector<e2e::Entry> rows;
    for (int row = 0; row < rowCount; ++row)
      rows.push_back(ProgramEntry(installation, row));
    for (const e2e::Entry &button : buttons)
      installation.WriteDocument(button.actionParams, rows);
    return MeasureStart(DockCommandLine(installation), barSpot);
  };
  measure(30);
  std::vector<double> shown;
  const Pair whole = MedianOfTurns(
      5,
      [&] {
        const StartFigures figures = measure(30);
        shown.push_back(figures.microseconds);
        return figures.answerMicroseconds;
      },
      [&] { return measure(10).answerMicroseconds; });
  ReportAtMost("30 lists of 30 rows / of 10, until all rows are made", whole.subject / whole.floor, "x", 3);
  Note(Format("30 rows %.0f ms, 10 rows %.0f ms", whole.subject / 1000, whole.floor / 1000));
  Note(Format("the bar of 30 lists of 30 rows is shown after %.0f ms", Median(shown) / 1000));
}

} // namespace

void BenchStubs(const e2e::Installation &installation) {
  WriteStubs(installation, L"Bench.Thousand", 1000);
  WriteStubs(installation, L"Bench.Hundred", 100);
  const XmlParserHold parser; // as the dock has one
  const Pair rebuild = MedianOfTurns(
      11, [] { return Microseconds([] { ApplyStubs(L"Bench.Thousand"); }); },
      [] { return Microseconds([] { ApplyStubs(L"Bench.Hundred"); }); });
  ReportAtMost("rebuilding a document from 1,000 stubs / from 100", rebuild.subject / rebuild.floor, "x", 10.5);
  Note(Format("1,000 stubs %.0f ms, 100 stubs %.1f ms", rebuild.subject / 1000, rebuild.floor / 1000));
}

void BenchGrowth() {
  const DockWindows version(withoutJumpList);
  BenchUserButtons();
  BenchLists();
  BenchReset();
}

} // namespace lumenor::bench
