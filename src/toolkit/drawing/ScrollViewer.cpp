#include "toolkit/drawing/ScrollViewer.h"

#include <algorithm>
#include <utility>

#include "toolkit/drawing/ButtonLayout.h"
#include "toolkit/drawing/GlowButtonPainter.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr int arrowWidth = 24;  // design pixels, those of the picture
constexpr int arrowHeight = 48; // likewise
constexpr int barHeight = 77;   // design pixels, of the area with the arrows

/// How far a click slides the strip, in device pixels.
const long scrollStep = ScaleX(77);

constexpr float slideSeconds = 0.3F;

/// Much more than a slide takes: on a busy machine its last tick is late.
constexpr ULONGLONG slideLimitMs = 1000;

/// The arrow fills the button's width and stands in the middle of its height. It has no label, but a font can't have
/// the size 0.
ButtonLayout MakeArrowLayout() {
  const int top = ScaleY((barHeight - arrowHeight) / 2);
  return {.fontSize = 10.0F, .imageTop = top, .imageBottom = ScaleY(barHeight) - top - ScaleY(arrowHeight)};
}

/// Two quick clicks on one spot are two steps, though the platform reports a double click. For other buttons they are
/// one, so that nobody starts a program twice.
class ArrowButton : public Button {
public:
  using Button::Button;

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId) override {
    if (message != WM_LBUTTONDBLCLK)
      return Button::ProcessWindowMessage(window, message, wParam, lParam, result, mapId);
    result = ::SendMessageW(window, WM_LBUTTONDOWN, wParam, lParam);
    return TRUE;
  }
};

/// The window shows nothing of its own and lies over those of the strip, which are to be painted before it.
void LetStripShowThrough(HWND button) {
  ::SetWindowLongW(button, GWL_EXSTYLE, ::GetWindowLongW(button, GWL_EXSTYLE) | WS_EX_TRANSPARENT);
  ::SetWindowPos(button, nullptr, 0, 0, 0, 0,
                 SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_FRAMECHANGED | SWP_NOACTIVATE);
}

/// Each move of a strip raises its window above the arrow's, which then has to come up again to be clicked.
void ShowAbove(Button &button, bool isShown) {
  button.Visibility.Set(isShown ? Visibility::Visible : Visibility::Collapsed);
  if (isShown)
    MoveElementWindow(button);
}

} // namespace

ScrollViewer::ScrollViewer(RenderTargetPtr renderTarget)
    : renderTarget(std::move(renderTarget)),
      childDesiredWidthListener(MakeListener<PropertyChangeEventArgs<long>>(this, &ScrollViewer::Layout)),
      childLeftListener(MakeListener(this, &ScrollViewer::OnChildLeftChanged)),
      childVisibilityListener(
          MakeListener<PropertyChangeEventArgs<lumenor::Visibility>>(this, &ScrollViewer::UpdateButtons)) {
  animation.Duration.Set(slideSeconds);
  animation.AccelerationRatio.Set(0.05F);
  animation.DecelerationRatio.Set(0.75F);
}

// A screen too narrow for the bar gives a negative width, and a rectangle whose edges are swapped.
void ScrollViewer::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (rect->right <= rect->left || rect->bottom <= rect->top)
    return;
  PaintChild(target, child, rect);
  PaintChild(target, leftButton.get(), rect);
  PaintChild(target, rightButton.get(), rect);
}

void ScrollViewer::MakeWindow(HWND parentWindow) {
  Create(parentWindow);
  leftButton = MakeArrowButton(L"..\\resources\\scroll_left.png", &ScrollViewer::OnLeftClick);
  rightButton = MakeArrowButton(L"..\\resources\\scroll_right.png", &ScrollViewer::OnRightClick);
  PlaceButtons();
  UpdateButtons();
}

/// "Scroll" is the tool tip. "scroll" is the window's text for screen readers; a label would only cover the arrow.
std::shared_ptr<Button> ScrollViewer::MakeArrowButton(const wchar_t *imagePath, void (ScrollViewer::*onClick)()) {
  auto button = std::make_shared<ArrowButton>(
      std::make_shared<GlowButtonPainter>(renderTarget, 0, L"", imagePath, MakeArrowLayout(), L""));
  button->Name.Set(L"Scroll");
  button->Visibility.Set(lumenor::Visibility::Collapsed);
  button->SetParent(this);
  ::SetWindowTextW(button->GetHandle(), L"scroll");
  LetStripShowThrough(button->GetHandle());
  ::ShowWindow(button->GetHandle(), SW_HIDE); // made showing, as every button
  subscriptions.Add(this, onClick, button->Click);
  return button;
}

void ScrollViewer::SetChild(UIElement *newChild) {
  if (child != nullptr)
    UnfollowChild();
  newChild->DesiredWidth.changed.AddListener(childDesiredWidthListener.get());
  newChild->Left.changed.AddListener(childLeftListener.get());
  newChild->Visibility.changed.AddListener(childVisibilityListener.get());
  SingleChildContainer::SetChild(newChild);
}

void ScrollViewer::UnfollowChild() {
  animation.Target.Set(nullptr); // the former strip may be destroyed; no slide may set it any more
  slideEnd.reset();
  child->DesiredWidth.changed.RemoveListener(childDesiredWidthListener.get());
  child->Left.changed.RemoveListener(childLeftListener.get());
  child->Visibility.changed.RemoveListener(childVisibilityListener.get());
}

void ScrollViewer::Layout() {
  if (child == nullptr)
    return;
  child->Width.Set(child->DesiredWidth.Get());
  child->Height.Set(Height.Get());
  const long overhang = child->Width.Get() - Width.Get();
  if (overhang <= 0 || child->Left.Get() > 0)
    child->Left.Set(0);
  else if (child->Left.Get() < -overhang)
    child->Left.Set(-overhang); // the strip's end is never inside the viewer
  UpdateButtons();
}

void ScrollViewer::UpdateButtons() {
  if (!leftButton || !rightButton || child == nullptr)
    return;
  const bool isThere = child->Visibility.Get() != lumenor::Visibility::Collapsed;
  ShowAbove(*leftButton, isThere && child->Left.Get() < 0);
  ShowAbove(*rightButton, isThere && child->Left.Get() + child->Width.Get() > Width.Get());
}

void ScrollViewer::FitToSize() {
  MoveElementWindow(*this);
  Layout();
  PlaceButtons();
}

/// Never at a negative place or of a negative size: a button's window reads either as a huge one.
void ScrollViewer::PlaceButtons() {
  if (!leftButton || !rightButton)
    return;
  const LONG width = ScaleX(arrowWidth);
  const LONG height = std::max(0L, Height.Get());
  const LONG right = std::max(0L, Width.Get() - width);
  const RECT leftBounds{0, 0, width, height};
  const RECT rightBounds{right, 0, right + width, height};
  leftButton->SetBounds(&leftBounds);
  rightButton->SetBounds(&rightBounds);
}

/// Slides the strip by `distance` pixels, to its end at most, from where it is just now.
void ScrollViewer::Slide(long distance) {
  if (child == nullptr)
    return;
  const long from = child->Left.Get();
  const long to = InsideLimits(from + distance);
  slideEnd.reset();
  animation.From.Set(static_cast<float>(from));
  animation.To.Set(static_cast<float>(to));
  animation.Target.Set(&child->Left);
  animation.Start();
  if (from != to)
    slideEnd = to;
  slideDeadline = ::GetTickCount64() + slideLimitMs;
}

/// The place nearest to `left` at which no end of the strip is inside the viewer, unless the strip is narrower.
long ScrollViewer::InsideLimits(long left) const {
  return std::min(std::max(left, Width.Get() - child->Width.Get()), 0L);
}

bool ScrollViewer::IsSliding() const { return slideEnd.has_value() && ::GetTickCount64() < slideDeadline; }

void ScrollViewer::EndSlide() {
  if (slideEnd.has_value())
    child->Left.Set(InsideLimits(*std::exchange(slideEnd, std::nullopt)));
}

/// Asks for the repaint itself: a short last step uncovers nothing but what an arrow lies over, and the platform then
/// has no window to paint.
void ScrollViewer::OnChildLeftChanged(PropertyChangeEventArgs<long> *args) {
  if (slideEnd == args->newValue)
    slideEnd.reset();
  UpdateButtons();
  Invalidate();
}

void ScrollViewer::OnLeftClick() { Slide(scrollStep); }

void ScrollViewer::OnRightClick() { Slide(-scrollStep); }

} // namespace lumenor
