#pragma once
// The bar in the benchmarks' own process, and the pictures that reach the screen from there.

#include <vector>

#include "dock/bar/MainDlg.h"
#include "Measure.h"
#include "support/ImportSlot.h"
#include "system/Windows.h"

namespace lumenor::bench {

struct Frame {
  Clock::time_point time; // when it was on the screen
  int opacity;
  long rowLeft;
};

/// Every picture that a window of this process puts on the screen while it lives.
class FrameRecord {
public:
  /// `row` is the window whose place is noted with each picture.
  explicit FrameRecord(HWND row);

  static const std::vector<Frame> &Frames() { return frames; }
  static void Clear() { frames.clear(); }

private:
  static BOOL WINAPI Update(HWND window, HDC to, POINT *place, SIZE *size, HDC from, POINT *origin, COLORREF key,
                            BLENDFUNCTION *blend, DWORD flags);

  inline static decltype(&::UpdateLayeredWindow) former = nullptr;
  inline static std::vector<Frame> frames;
  inline static HWND watchedRow = nullptr;
  tests::ImportSlot<decltype(&::UpdateLayeredWindow)> slot;
};

/// A bar that is shown, with the cursor on an empty place of it.
class ShownBar {
public:
  ShownBar();
  ~ShownBar() { ::DestroyWindow(dock.GetHandle()); }
  ShownBar(const ShownBar &) = delete;
  ShownBar &operator=(const ShownBar &) = delete;

  CMainDlg &Dock() { return dock; }
  HWND Row() const { return ::GetParent(dock.GetUserButtons().at(0)->GetHandle()); }
  RECT Bounds();

  /// A place of the bar, from its top right corner.
  POINT Place(int right, int down);

  /// A place of the bar where nothing stands.
  POINT Rest() { return Place(144, 68); }

  RECT FieldRect();
  void ClickAt(POINT point);

private:
  CMainDlg dock;
};

} // namespace lumenor::bench
