#pragma once
// A root window of the tests on the real screen, and what is asked of it again and again.

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "drawing/TestWindow.h"
#include "support/Desk.h"
#include "system/EventLog.h"

namespace lumenor {

/// What the result reads when a message map leaves it alone.
inline constexpr LRESULT unset = -77;
inline constexpr std::pair<BOOL, LRESULT> unhandled{FALSE, unset};

inline std::pair<BOOL, LRESULT> HandledWith(LRESULT result) { return {TRUE, result}; }

inline std::vector<long> BoundsOf(const UIElement &element) {
  return {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()};
}

inline std::vector<long> ScreenBoundsOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

/// The platform gives the focus of a dialog on to a child.
inline bool HasFocus(HWND window) { return ::GetFocus() == window || ::IsChild(window, ::GetFocus()); }

/// Counts the firings of a property.
template <typename T> class Watch {
public:
  explicit Watch(Property<T> &property) { property.changed.AddListener(listener.get()); }
  void Note(PropertyChangeEventArgs<T> *args) {
    values.push_back(args->newValue);
    if (onChange)
      onChange();
  }
  std::vector<T> values;
  std::function<void()> onChange;

private:
  std::shared_ptr<EventListener<PropertyChangeEventArgs<T>>> listener = MakeListener(this, &Watch::Note);
};

class WindowOnScreen : public ::testing::Test {
protected:
  WindowOnScreen() {
    OpenDockEventLog();
    desk::MoveCursor({5, 5});
  }

  void Open() {
    window.Create(nullptr);
    desk::PumpAll();
  }

  std::pair<BOOL, LRESULT> Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    LRESULT result = unset;
    const BOOL handled = window.ProcessWindowMessage(window.handle, message, wParam, lParam, result);
    return {handled, result};
  }

  TestWindow window;
};

} // namespace lumenor
