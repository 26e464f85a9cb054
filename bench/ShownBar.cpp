#include "ShownBar.h"

#include "support/Desk.h"
#include "support/MessagePump.h"
#include "system/HResultError.h"
#include "system/WindowException.h"

// The slot through which a window puts its picture on the screen.
extern "C" decltype(&::UpdateLayeredWindow) __imp_UpdateLayeredWindow;

namespace lumenor::bench {

FrameRecord::FrameRecord(HWND row) : slot(&__imp_UpdateLayeredWindow, &Update) {
  former = slot.Former();
  frames.clear();
  watchedRow = row;
}

BOOL WINAPI FrameRecord::Update(HWND window, HDC to, POINT *place, SIZE *size, HDC from, POINT *origin, COLORREF key,
                                BLENDFUNCTION *blend, DWORD flags) {
  const BOOL done = former(window, to, place, size, from, origin, key, blend, flags);
  RECT row = {}, room = {};
  ::GetWindowRect(watchedRow, &row);
  ::GetWindowRect(::GetParent(watchedRow), &room);
  frames.push_back({Clock::now(), blend == nullptr ? 255 : blend->SourceConstantAlpha, row.left - room.left});
  return done;
}

ShownBar::ShownBar() {
  ThrowIfNull(dock.Create(nullptr));
  RethrowWindowException();
  desk::MoveCursor(Rest());
  tests::PumpUntil([] { return false; }, std::chrono::milliseconds(800)); // the first pictures are slow
}

RECT ShownBar::Bounds() {
  RECT bar = {};
  ::GetWindowRect(dock.GetHandle(), &bar);
  return bar;
}

POINT ShownBar::Place(int right, int down) {
  const RECT bar = Bounds();
  return {bar.right - right, bar.top + down};
}

RECT ShownBar::FieldRect() {
  const POINT corner = Place(204 - 18, 37);
  return {corner.x, corner.y, corner.x + 84, corner.y + 12};
}

void ShownBar::ClickAt(POINT point) {
  desk::MoveCursor(point);
  desk::PressLeftButton();
  desk::ReleaseLeftButton();
}

} // namespace lumenor::bench
