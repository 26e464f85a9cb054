#pragma once
// A task bar, as the shell of a desktop shows one. The test platform's own is hidden, and its reported place is fixed.
// This one is found before it.

#include <atomic>
#include <thread>

#include "system/Windows.h"

namespace lumenor::e2e {

class TaskBar {
public:
  /// Shows one at `area` of the screen for as long as it lives.
  explicit TaskBar(const RECT &area);
  ~TaskBar();
  TaskBar(const TaskBar &) = delete;
  TaskBar &operator=(const TaskBar &) = delete;

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Run();
  HWND CreateTopmost(const wchar_t *className, const RECT &place);
  void Answer(const COPYDATASTRUCT &sent) const;

  const RECT area;
  std::atomic<HWND> tray = nullptr;
  std::thread thread; // the last: it runs on the others
};

} // namespace lumenor::e2e
