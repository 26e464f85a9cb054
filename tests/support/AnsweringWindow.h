#pragma once
// A window of the test's own thread, never shown, that answers the messages of the product as the test wants.

#include <functional>

#include "system/Windows.h"

namespace lumenor::tests {

class AnsweringWindow {
public:
  /// `answer` is called for each message from WM_USER on; its value is the message's result. `parent` may be
  /// HWND_MESSAGE.
  explicit AnsweringWindow(std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)> answer,
                           HWND parent = HWND_MESSAGE);
  ~AnsweringWindow();
  AnsweringWindow(const AnsweringWindow &) = delete;
  AnsweringWindow &operator=(const AnsweringWindow &) = delete;

  HWND Get() const { return window; }

private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

  std::function<LRESULT(UINT, WPARAM, LPARAM)> answer;
  HWND window;
};

} // namespace lumenor::tests
