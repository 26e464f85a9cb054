#pragma once
// A message-only window by which the platform's timer calls a sink on the thread that made it.

#include "Module.h"
#include "system/Windows.h"

namespace lumenor::services {

/// What a tick window calls.
class TickSink {
public:
  virtual void OnTick() = 0;

protected:
  ~TickSink() = default;
};

class TickWindow {
public:
  /// Makes the window on this thread; `sink` is borrowed and outlives this.
  explicit TickWindow(TickSink &sink);

  /// On another thread the window itself is destroyed a little later, but the sink isn't called any more.
  ~TickWindow();
  TickWindow(const TickWindow &) = delete;
  TickWindow &operator=(const TickWindow &) = delete;

  /// Ticks every 10 ms. Only on the thread of the window.
  HRESULT Start();
  HRESULT Stop();

  /// Before the DLL is unloaded: the platform must not keep a class whose procedure is gone.
  static void ForgetClass();

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  bool IsOnItsThread() const;

  HWND window;
};

} // namespace lumenor::services
