#pragma once
// Draws a button in each of its states. The button holds its painter in a shared pointer and attaches itself; the
// painter borrows the button. User-interface thread only.

#include <string>

#include "toolkit/UIElement.h"

namespace lumenor {

class Button;

/// How a button looks. Paint gets the button's absolute rectangle on the root's drawing surface, in pixels.
class IButtonPainter : public Paintable {
public:
  virtual ~IButtonPainter() = default;

  /// The button that the painter is attached to, borrowed; null before Attach and after Detach.
  virtual Button *GetButton() { return button; }

  /// Ties the painter to `newButton`, which outlives it. Called by the button, when it gets its window and when it
  /// takes a new painter.
  virtual void Attach(Button *newButton) { button = newButton; }

  /// Ends what Attach began, as the button takes another painter.
  virtual void Detach() { button = nullptr; }

  /// The text that the button shows, by which screen readers name it; empty without one.
  virtual std::wstring GetLabel() const { return {}; }

protected:
  /// Whether the button's window shows; painters draw nothing where it doesn't.
  bool IsButtonVisible() const;

  Button *button = nullptr;
};

} // namespace lumenor
