#pragma once
// A text box in a window on the screen and a picture to paint it on, with what its tests ask again and again.

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "support/RenderSurface.h"
#include "toolkit/EditTextElement.h"
#include "toolkit/Scale.h"
#include "toolkit/TestElements.h"
#include "toolkit/TextBox.h"

namespace lumenor::tests {

/// A text box that shows its insides and remembers what it was asked and what it fired.
class WatchedTextBox : public TextBox {
public:
  using TextBox::caretVisible;
  using TextBox::needsRepaint;
  using TextBox::TextBox;
  using TextBox::textElement;
  using TextBox::watermarkElement;

  static constexpr LRESULT unset = -77;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override {
    received.push_back(message);
    return TextBox::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
  }

  /// The message map's answer: {handled, result}.
  std::pair<BOOL, LRESULT> Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
    LRESULT result = unset;
    const BOOL handled = ProcessWindowMessage(handle, message, wParam, lParam, result);
    return {handled, result};
  }

  long CountOf(UINT message) const { return static_cast<long>(std::ranges::count(received, message)); }

  void OnAccept(TextBoxEventArgs *args) {
    senders.push_back(args->sender);
    if (onAccept)
      onAccept();
  }
  void ListenToAccept() { Accept.AddListener(acceptListener.get()); }

  std::vector<UINT> received;
  std::vector<TextBox *> senders;
  std::function<void()> onAccept;

private:
  std::shared_ptr<TypedEventListener<WatchedTextBox, TextBoxEventArgs>> acceptListener =
      MakeListener(this, &WatchedTextBox::OnAccept);
};

inline constexpr std::pair<BOOL, LRESULT> unhandled{FALSE, WatchedTextBox::unset};

inline std::pair<BOOL, LRESULT> HandledWith(LRESULT result) { return {TRUE, result}; }

class TextBoxScene : public ::testing::Test {
protected:
  TextBoxScene();
  ~TextBoxScene() override;

  /// The window under the box, one for all tests: to take it down costs the test platform two seconds.
  static TopLevel &Root();

  /// How often a repaint was asked of the root.
  static long Repaints();

  /// Gives the box its window and its font.
  void Open();

  void SetText(const std::wstring &text) { ::SetWindowTextW(box.handle, text.c_str()); }
  std::wstring Text() const;
  void Select(int start, int end);
  void Focus() { ::SetFocus(box.handle); }
  void Unfocus() { ::SetFocus(Root().GetHandle()); }
  void HideCaret() { box.caretVisible = 0; }

  /// Where the control says that a character is, in its client area.
  int PositionOf(std::size_t index) const;

  /// The width of `text` in the window's font.
  int WidthOf(const std::wstring &text) const;
  TEXTMETRICW FontMetrics() const;

  void Validate() const { ::ValidateRect(box.handle, nullptr); }
  bool IsInvalid() const { return ::GetUpdateRect(box.handle, nullptr, FALSE) != FALSE; }

  /// Paints the box as its parent does.
  void Paint();

  /// The pixel of the last Paint at (`x`, `y`) of the field.
  std::uint32_t At(int x, int y) const { return surface.At(Bounds().left + x, Bounds().top + y); }

  /// The columns of the field that the last Paint left any colour in.
  std::vector<int> PaintedColumns() const;

  /// Whether the last Paint kept within the field.
  bool KeptWithinTheField() const;

  /// As on the bar: 84 by 12 design pixels.
  static RECT Bounds();
  static int FieldWidth() { return Bounds().right - Bounds().left; }
  static int FieldHeight() { return Bounds().bottom - Bounds().top; }

  static constexpr int controlId = 111;

  RenderSurface surface{ScaleX(140), ScaleY(40)};
  WatchedTextBox box{surface.Target(), controlId};
};

} // namespace lumenor::tests
