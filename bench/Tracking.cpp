#include "Tracking.h"

#include <string>
#include <vector>

#include "dock/bar/MainDlg.h"
#include "dock/flyouts/DockButton.h"
#include "Measure.h"
#include "support/ImportSlot.h"
#include "system/HResultError.h"
#include "tracking/Payload.h"
#include "tracking/UsageTracker.h"

#include <shellapi.h>

// The slot through which the dock starts programs.
extern "C" decltype(&::ShellExecuteW) __imp_ShellExecuteW;

namespace lumenor::bench {
namespace {

constexpr std::size_t records = 19; // one more, and they are written
constexpr int callsARound = 20'000;
constexpr std::size_t trackersARound = 500;
constexpr std::size_t fullPayload = 51'200; // above which a payload is handed over

HINSTANCE WINAPI StartNothing(HWND, LPCWSTR, LPCWSTR, LPCWSTR, LPCWSTR, INT) {
  return reinterpret_cast<HINSTANCE>(static_cast<INT_PTR>(33));
}

/// What a click on a button is told with; all alike up to the last letters, as buttons of one folder are.
Element ButtonElement(const e2e::Installation &installation, std::size_t number) {
  Element element;
  element.Head = L"Program " + std::to_wstring(number);
  element.ActionType = L"exe";
  element.ActionParams = L"\"" + installation.Recorder() + L"\" " + std::to_wstring(number);
  return element;
}

UsageTracker StartedTracker() {
  UsageTracker tracker;
  tracker.ReadOptIn();
  tracker.InitSessionInfo();
  tracker.StartSession();
  tracker.LoadNextTransferTime();
  return tracker;
}

void ClickOn(const e2e::Installation &installation, UsageTracker &tracker, std::size_t first, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i)
    tracker.TrackIconClick(ButtonElement(installation, first + i));
}

/// Microseconds from the button's command until its click has done all of its work.
double MeasureClick(const CMainDlg &dock) {
  const HWND button = dock.GetUserButtons().at(0)->GetHandle();
  return Microseconds([&] { ::SendMessageW(button, WM_COMMAND, 0, reinterpret_cast<LPARAM>(button)); });
}

struct ClickFigures {
  double own;       // with nothing started, the shell's part left out
  double withShell; // until the shell has started the program
};

/// The clicks are counted, too.
ClickFigures MeasureClicks() {
  CMainDlg dock;
  ThrowIfNull(dock.Create(nullptr));
  MeasureClick(dock);
  std::vector<double> own, withShell;
  for (int round = 0; round < 31; ++round) {
    {
      const tests::ImportSlot nothing(&__imp_ShellExecuteW, &StartNothing);
      own.push_back(MeasureClick(dock));
    }
    withShell.push_back(MeasureClick(dock));
  }
  ::DestroyWindow(dock.GetHandle());
  return {Median(own), Median(withShell)};
}

/// Microseconds of one more click on the last of the records that stand.
double MeasureMerge(const e2e::Installation &installation) {
  UsageTracker tracker = StartedTracker();
  ClickOn(installation, tracker, 0, records);
  const Element last = ButtonElement(installation, records - 1);
  return Microseconds([&] {
           for (int i = 0; i < callsARound; ++i)
             tracker.TrackIconClick(last);
         }) /
         callsARound;
}

/// Microseconds of a click that none of the records that stand tells of, which becomes the last before they are
/// written. Each call needs a tracker of its own.
double MeasureNew(const e2e::Installation &installation) {
  UsageTracker standing = StartedTracker();
  ClickOn(installation, standing, 0, records - 2);
  std::vector<UsageTracker> trackers(trackersARound, standing);
  for (UsageTracker &tracker : trackers) // a copied list has no room for more; that it finds some isn't measured
    ClickOn(installation, tracker, records - 2, 1);
  const Element unknown = ButtonElement(installation, records - 1);
  return Microseconds([&] {
           for (UsageTracker &tracker : trackers)
             tracker.TrackIconClick(unknown);
         }) /
         trackersARound;
}

/// Microseconds of a click of a user who didn't agree.
double MeasureUntracked(const e2e::Installation &installation) {
  UsageTracker tracker;
  const Element element = ButtonElement(installation, 0);
  return Microseconds([&] {
           for (int i = 0; i < callsARound; ++i)
             tracker.TrackIconClick(element);
         }) /
         callsARound;
}

template <typename Measure> double MedianOf(int rounds, Measure &&measure) {
  std::vector<double> values;
  for (int i = 0; i < rounds; ++i)
    values.push_back(measure());
  return Median(values);
}

void FillPayload(const e2e::Installation &installation) {
  UsageTracker tracker = StartedTracker();
  std::string before;
  for (std::size_t number = 0; e2e::ReadBytes(PayloadPath()).size() <= fullPayload; ++number) {
    before = e2e::ReadBytes(PayloadPath());
    ClickOn(installation, tracker, number, 1);
    tracker.WritePayload(false);
  }
  e2e::WriteBytes(PayloadPath(), before);
}

/// Microseconds in which as many records as come together at most are written to the payload `before`.
double MeasureWrite(const e2e::Installation &installation, const std::string &before) {
  e2e::WriteBytes(PayloadPath(), before);
  UsageTracker tracker = StartedTracker();
  ClickOn(installation, tracker, 0, records);
  return Microseconds([&] { tracker.WritePayload(false); });
}

/// Both shares are told; the one of a click's own work is held to `limit`, what the shell does is the platform's.
void ReportShare(const std::string &name, double microseconds, const ClickFigures &click, double limit) {
  ReportAtMost(name + " / a click's own time", microseconds / click.own, "x", limit);
  Note(Format("%.2f us; a click %.0f us", microseconds, click.own) +
       Format(", with the shell's part %.0f us, of which it is %.6f", click.withShell, microseconds / click.withShell));
}

} // namespace

void BenchTracking(const e2e::Installation &installation) {
  installation.OptIn();
  usageTracker = StartedTracker();
  const ClickFigures click = MeasureClicks();
  usageTracker = UsageTracker();
  ReportShare("counting a known use", MedianOf(31, [&] { return MeasureMerge(installation); }), click, 0.05);
  ReportShare("noting a new use", MedianOf(31, [&] { return MeasureNew(installation); }), click, 0.1);
  ReportShare("the same without consent", MedianOf(31, [&] { return MeasureUntracked(installation); }), click, 0.02);
  FillPayload(installation);
  const std::string payload = e2e::ReadBytes(PayloadPath());
  const double write = MedianOf(31, [&] { return MeasureWrite(installation, payload); });
  ReportAtMost("writing 19 records to a full payload / a whole click", write / click.withShell, "x", 1);
  Note(Format("%.1f ms; a click with the shell's part %.1f ms", write / 1000, click.withShell / 1000));
  Note(Format("payload of %.0f bytes, %.0f after it", static_cast<double>(payload.size()),
              static_cast<double>(e2e::ReadBytes(PayloadPath()).size())));
  ::DeleteFileW(PayloadPath().c_str());
}

} // namespace lumenor::bench
