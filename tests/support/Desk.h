#pragma once
// What tests of windows need of the desktop: a message pump, the real cursor and keys, the pixels of the real screen,
// and the reports to the event log.

#include <cstdint>
#include <string>
#include <vector>

#include "support/MessagePump.h"
#include "system/Windows.h"

namespace lumenor::desk {

using tests::PumpUntil;

/// Pumps until the queue is empty, paint messages included.
void PumpAll();

/// Moves the cursor to `point` (screen pixels), and pumps until it is there.
void MoveCursor(POINT point);
void PressLeftButton();
void ReleaseLeftButton();
void PressKey(WORD virtualKey);
void ReleaseKey(WORD virtualKey);

/// The middle of `window` on the screen.
POINT MiddleOf(HWND window);

/// 0x00RRGGBB of what the user sees at `point`.
std::uint32_t PixelAt(POINT point);

/// The tool tip windows of this thread.
std::vector<HWND> ToolTips();

/// A plain, opaque, topmost window of one colour, behind or beside a window under test. It is on the screen once made.
class Backdrop {
public:
  Backdrop(const RECT &area, COLORREF color);
  ~Backdrop();
  Backdrop(const Backdrop &) = delete;
  Backdrop &operator=(const Backdrop &) = delete;

  HWND Get() const { return window; }

private:
  HBRUSH brush;
  HWND window;
};

/// Records the reports to the event log while it lives, and passes them on.
class EventLogSpy {
public:
  EventLogSpy();
  ~EventLogSpy();
  EventLogSpy(const EventLogSpy &) = delete;
  EventLogSpy &operator=(const EventLogSpy &) = delete;

  /// The texts, in the order of their report.
  static const std::vector<std::wstring> &Reports();
};

} // namespace lumenor::desk
