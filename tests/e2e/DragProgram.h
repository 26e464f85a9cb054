#pragma once
// Another program on the desktop, from whose window files are dragged by the mouse.

#include <string>
#include <vector>

#include "system/Handles.h"
#include "system/Windows.h"

namespace lumenor::e2e {

class DragProgram {
public:
  /// Starts it and waits for its window, far from the bar. What it drags is the list of `paths`, which need not exist;
  /// a text where there are none.
  explicit DragProgram(const std::vector<std::wstring> &paths);

  /// Ends the program.
  ~DragProgram() { Kill(); }
  DragProgram(const DragProgram &) = delete;
  DragProgram &operator=(const DragProgram &) = delete;

  bool IsUp() const { return window != nullptr; }

  /// Begins a drag: presses the left button on the window, keeps it down and moves a little.
  void Grab() const;

  /// Begins a drag and lets go at `target` (screen coordinates).
  void DragTo(POINT target) const;

  /// Waits for the end of the drag: its result in hexadecimal, a blank and its effect.
  std::wstring WaitForResult() const;

  /// Ends the program as a crash does, and waits until it is gone.
  void Kill();

private:
  KernelHandle process;
  HWND window = nullptr;
};

} // namespace lumenor::e2e
