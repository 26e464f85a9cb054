#pragma once
// A button of the tests on the real screen, with a listener on everything that it fires.

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "drawing/TestWindow.h"
#include "support/Desk.h"
#include "toolkit/drawing/Button.h"

namespace lumenor {

inline constexpr RECT buttonBounds{20, 10, 100, 50};

/// A button with a listener on everything that it fires.
class WatchedButton : public Button {
public:
  explicit WatchedButton(std::shared_ptr<IButtonPainter> painter) : Button(std::move(painter)) {
    Click.AddListener(clicks.get());
    IsPressed.changed.AddListener(states.get());
    IsMouseOver.changed.AddListener(states.get());
  }

  void OnClick(ButtonEventArgs *args) {
    senders.push_back(args->sender);
    if (onClick)
      onClick();
  }
  void OnState(PropertyChangeEventArgs<int> *args) {
    ++stateChanges;
    if (onState)
      onState(args);
  }
  void OnDestroy() override { ++destructions; }

  /// The message map's answer: {handled, result}.
  std::pair<BOOL, LRESULT> Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    LRESULT result = unset;
    const BOOL handled = ProcessWindowMessage(handle, message, wParam, lParam, result);
    return {handled, result};
  }

  static constexpr LRESULT unset = -77;
  std::vector<Button *> senders;
  int stateChanges = 0;
  int destructions = 0;
  std::function<void()> onClick;
  std::function<void(PropertyChangeEventArgs<int> *)> onState;
  std::shared_ptr<EventListener<ButtonEventArgs>> clicks = MakeListener(this, &WatchedButton::OnClick);
  std::shared_ptr<EventListener<PropertyChangeEventArgs<int>>> states = MakeListener(this, &WatchedButton::OnState);
};

inline constexpr std::pair<BOOL, LRESULT> unhandled{FALSE, WatchedButton::unset};

inline std::pair<BOOL, LRESULT> HandledWith(LRESULT result) { return {TRUE, result}; }

/// (IsPressed, IsMouseOver)
inline std::pair<int, int> StateOf(const Button &button) { return {button.IsPressed.Get(), button.IsMouseOver.Get()}; }

inline std::pair<int, int> State(int pressed, int mouseOver) { return {pressed, mouseOver}; }

inline std::vector<long> BoundsOf(const UIElement &element) {
  return {element.Left.Get(), element.Top.Get(), element.Width.Get(), element.Height.Get()};
}

/// {left, top, width, height} of a child window in its parent.
inline std::vector<long> WindowBoundsOf(HWND window) {
  RECT rect{};
  ::GetWindowRect(window, &rect);
  ::MapWindowPoints(nullptr, ::GetParent(window), reinterpret_cast<POINT *>(&rect), 2);
  return {rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
}

/// A watched button in the canvas of a window that shows, the cursor far from it.
class ButtonOnScreen : public ::testing::Test {
protected:
  ButtonOnScreen() {
    desk::MoveCursor({5, 5});
    button.SetBounds(&buttonBounds);
    root.onInitialize = [this] { root.canvas.AddChild(&button); };
    root.Create(nullptr);
    desk::PumpAll();
  }

  ~ButtonOnScreen() override {
    desk::ReleaseLeftButton();
    desk::MoveCursor({5, 5});
  }

  /// Validates the button's window, so that the next invalidation shows.
  void Validate() { ::ValidateRect(button.handle, nullptr); }
  bool IsInvalid() { return ::GetUpdateRect(button.handle, nullptr, FALSE) != FALSE; }

  std::shared_ptr<RecordingPainter> painter = std::make_shared<RecordingPainter>();
  WatchedButton button{painter};
  TestWindow root;
};

} // namespace lumenor
