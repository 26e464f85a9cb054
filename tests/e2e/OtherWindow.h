#pragma once
// A window of the test's own process: something else on the desktop to click, and a listener to broadcasts.

#include <atomic>
#include <thread>

#include "system/Windows.h"

namespace lumenor::e2e {

/// A visible window on a thread of its own, which pumps its messages for as long as the object lives.
class OtherWindow {
public:
  /// `area` in screen coordinates; `watched` is a message number to count, 0 for none.
  explicit OtherWindow(const RECT &area, UINT watched = 0);
  ~OtherWindow();

  HWND Handle() const { return handle; }

  /// How many of the watched message have arrived.
  int Count() const { return count; }

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  void Run(const RECT &area);

  UINT watched;
  std::atomic<int> count = 0;
  std::atomic<HWND> handle = nullptr;
  std::thread thread;
};

} // namespace lumenor::e2e
