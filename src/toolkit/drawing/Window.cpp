#include "toolkit/drawing/Window.h"

#include <utility>

#include "system/Desktop.h"
#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor {

namespace {

// The frame, the title with its menu, and the absolute position that a template may ask for.
constexpr LONG unwantedStyle = WS_CAPTION | WS_SYSMENU | WS_THICKFRAME | DS_ABSALIGN;
constexpr LONG neededExtendedStyle = WS_EX_LAYERED | WS_EX_TOPMOST;

constexpr UINT styleChangeFlags = SWP_NOSIZE | SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED;

/// BeginPaint and EndPaint of one repaint.
class PaintContext {
public:
  /// Raises HResultError when the platform gives no context.
  explicit PaintContext(HWND window) : window(window) { ThrowIfNull(::BeginPaint(window, &paint)); }
  ~PaintContext() {
    ::EndPaint(window, &paint);
    // EndPaint has given the context back to the platform; deleting it as well, each time, is intentional.
    ::DeleteDC(paint.hdc);
  }
  PaintContext(const PaintContext &) = delete;
  PaintContext &operator=(const PaintContext &) = delete;

  PAINTSTRUCT paint{};

private:
  HWND window;
};

/// BeginDraw and EndDraw of one pass over the tree.
class DrawSession {
public:
  explicit DrawSession(ID2D1RenderTarget *target) : target(target) { target->BeginDraw(); }
  ~DrawSession() {
    if (target != nullptr)
      target->EndDraw();
  }
  DrawSession(const DrawSession &) = delete;
  DrawSession &operator=(const DrawSession &) = delete;

  /// Ends the drawing; returns the first failure of all that was drawn.
  HRESULT End() { return std::exchange(target, nullptr)->EndDraw(); }

private:
  ID2D1RenderTarget *target;
};

/// Hands the picture in `source`, of the size of `screenRect`, to the platform as what `window` shows.
void UpdateLayers(HWND window, const RECT &screenRect, HDC source, unsigned char opacity) {
  POINT position{screenRect.left, screenRect.top};
  SIZE size{screenRect.right - screenRect.left, screenRect.bottom - screenRect.top};
  POINT origin{0, 0};
  BLENDFUNCTION blend{AC_SRC_OVER, 0, opacity, AC_SRC_ALPHA};
  const DWORD flags = IsLowColorDisplay() ? ULW_OPAQUE : ULW_ALPHA;
  ThrowIfFalse(::UpdateLayeredWindow(window, nullptr, &position, &size, source, &origin, 0, &blend, flags));
}

} // namespace

/// Every factory has a device, whose creation takes longer than everything else of a window. So a window that is made
/// while there are others uses their factory, which is released with the last of them unless it is held.
Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> Window::CreateTarget() {
  Microsoft::WRL::ComPtr<ID2D1Factory> factory = heldFactory;
  if (!allWindows.empty())
    allWindows.front()->renderTarget->GetFactory(factory.ReleaseAndGetAddressOf());
  if (factory)
    return CreateGdiRenderTarget(factory.Get());
  auto target = CreateGdiRenderTarget();
  if (factoryHolds != 0)
    target->GetFactory(&heldFactory);
  return target;
}

Window::Window() : renderTarget(CreateTarget()) {
  subscriptions.Add(this, &Window::OnLeftChanged, Left.changed);
  subscriptions.Add(this, &Window::OnTopChanged, Top.changed);
  subscriptions.Add(this, &Window::OnVisibilityChanged, Visibility.changed);
  subscriptions.Add(this, &Window::OnOpacityChanged, Opacity.changed);
  allWindows.push_back(this);
}

Window::~Window() {
  WindowMoveHold::Forget(*this);
  std::erase(allWindows, this);
}

/// Most windows of a bar are never looked at: tips, and the rows of closed flyouts. Making them takes longer than all
/// the rest, so the bar is on the screen before.
HWND Window::Create(HWND parentWindow) {
  postpones = Visibility.Get() == lumenor::Visibility::Visible;
  const ScopeExit ending([this] {
    postpones = false;
    postponed.clear();
  });
  CDialogImpl::Create(parentWindow);
  RunPostponed();
  return handle;
}

void Window::RunOnceShown(std::function<void()> work) {
  if (postpones)
    postponed.push_back(std::move(work));
  else
    work();
}

void Window::RunPostponed() {
  postpones = false;
  const HWND focus = ::GetFocus();
  const bool succeeded = Guarded(L"OnInitDialog", [this] {
    for (const std::function<void()> &work : postponed)
      if (handle != nullptr)
        work();
  });
  if (!succeeded)
    DestroyAfterFailure();
  else if (::GetFocus() != focus) // a dialog takes it when it is made, also one that stays hidden
    ::SetFocus(focus);
}

BOOL Window::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD mapId) {
  if (mapId != 0)
    return FALSE;
  if (OnMessage(message, wParam, lParam, result))
    return TRUE;
  BOOL handled = FALSE;
  const LRESULT answer = ReflectNotifications(handle, message, wParam, lParam, handled);
  if (handled)
    result = answer;
  return handled;
}

BOOL Window::OnMessage(UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result) {
  switch (message) {
  case WM_INITDIALOG:
    return Answer(L"OnInitDialog", result, 1, [&] {
      if (!std::exchange(isComposed, true)) // any program of the desktop can send a second one
        OnInitDialog();
    });
  case WM_SHOWWINDOW:
    return Answer(L"OnShowWindow", [&] { return OnShowWindow(wParam != 0); });
  case WM_WINDOWPOSCHANGED:
    return Answer(L"OnWindowPosChanged",
                  [&] { return OnWindowPosChanged(*reinterpret_cast<const WINDOWPOS *>(lParam)); });
  case WM_DESTROY: // no Answer: the window is on its way already
    isComposed = false;
    return Guarded(L"OnDestroy", [&] {
      OnDestroy();
      result = 0;
    });
  case WM_CLOSE:
    return Answer(L"OnClose", result, 0, [&] {
      OnClose();
      ::DestroyWindow(handle);
    });
  case WM_NCCALCSIZE:
    return Answer(L"OnNcCalcSize", result, 0, [] {}); // the client area is the whole window
  case WM_QUERYENDSESSION:
    return Answer(L"OnQueryEndSession", result, 1, [] {});
  case WM_ENDSESSION:
    return Answer(L"OnEndSession", result, wParam != 0 && lParam != 0 ? 1 : 0, [&] { OnEndSession(); });
  default:
    return FALSE;
  }
}

void Window::OnInitDialog() {
  RemoveFrame();
  MakeLayered();
  {
    const WindowMoveHold untilComposed;
    InitializeComponent();
  }
  Show();
}

BOOL Window::OnShowWindow(bool isShown) {
  Visibility.Set(isShown ? lumenor::Visibility::Visible : lumenor::Visibility::Hidden);
  return FALSE;
}

/// `position` is a copy: the listeners may send the next one.
BOOL Window::OnWindowPosChanged(WINDOWPOS position) {
  Left.Set(position.x);
  Top.Set(position.y);
  Width.Set(position.cx);
  Height.Set(position.cy);
  return FALSE;
}

void Window::OnEndSession() {
  if (endSessionHandler != nullptr)
    (this->*endSessionHandler)();
}

/// Further failures are consequences of the one that was reported, and are dropped.
void Window::DestroyAfterFailure() {
  const WindowExceptionScope consequences;
  ::DestroyWindow(handle);
  ForgetWindowException();
}

void Window::RemoveFrame() {
  const LONG style = ::GetWindowLongW(handle, GWL_STYLE);
  if ((style & unwantedStyle) == 0)
    return;
  ::SetWindowLongW(handle, GWL_STYLE, style & ~unwantedStyle);
  ::SetWindowPos(handle, nullptr, 0, 0, 0, 0, styleChangeFlags);
}

void Window::MakeLayered() {
  const LONG style = ::GetWindowLongW(handle, GWL_EXSTYLE);
  if ((style & neededExtendedStyle) == neededExtendedStyle)
    return;
  ::SetWindowLongW(handle, GWL_EXSTYLE, style | neededExtendedStyle);
  ::SetWindowPos(handle, nullptr, 0, 0, 0, 0, styleChangeFlags);
  // A style alone puts no window above the others: only this does.
  ::SetWindowPos(handle, HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
}

void Window::MoveToBounds() { ::MoveWindow(handle, Left.Get(), Top.Get(), Width.Get(), Height.Get(), TRUE); }

void Window::OnVisibilityChanged(PropertyChangeEventArgs<lumenor::Visibility> *args) {
  if (!::IsWindow(handle))
    return;
  if (args->newValue != lumenor::Visibility::Visible)
    ::ShowWindow(handle, SW_HIDE);
  else
    Show();
}

void Window::Show() {
  if (Visibility.Get() != lumenor::Visibility::Visible)
    return;
  MoveToBounds();
  ::ShowWindow(handle, SW_SHOW);
  ::SetFocus(handle);
  Render();
}

void Window::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  if (GetChild() != nullptr)
    PaintChild(std::move(target), GetChild(), rect);
}

// Every Invalidate in the tree arrives here, and repaints at once.
void Window::Invalidate() {
  if (handle != nullptr)
    ::InvalidateRect(handle, nullptr, TRUE);
  Render();
}

// A property that changes while the tree paints asks for a repaint during one. One more pass follows then; an element
// that changes at every paint gets no third, or the bar would paint for ever. Properties may still change when the
// window is gone: an animation isn't notified of that and plays to its end.
void Window::Render() {
  if (repaintHolds != 0 || !::IsWindow(handle))
    return;
  if (rendering) {
    paintPending = 1;
    return;
  }
  rendering = true;
  const ScopeExit ending([this] {
    rendering = false;
    paintPending = 0;
  });
  RenderOnce();
  if (paintPending != 0 && ::IsWindow(handle))
    RenderOnce();
}

void Window::RenderOnce() {
  PaintContext context(handle);
  // What any child window waits to have painted is in this picture; what changes during the painting isn't.
  ::RedrawWindow(handle, nullptr, nullptr, RDW_VALIDATE | RDW_ALLCHILDREN);
  RECT screenRect{};
  ::GetWindowRect(handle, &screenRect);
  RECT &area = context.paint.rcPaint;
  area = {0, 0, screenRect.right - screenRect.left, screenRect.bottom - screenRect.top};
  if (::IsRectEmpty(&area))
    return; // nothing to show, and no bitmap is that small
  const MemoryDeviceContext memory(::CreateCompatibleDC(nullptr));
  const BitmapHandle bitmap(::CreateCompatibleBitmap(context.paint.hdc, area.right, area.bottom));
  const SelectedObject selected(memory.Get(), bitmap.Get());
  if (!selected.Succeeded())
    throw HResultError(E_FAIL);
  Draw(memory.Get(), area);
  UpdateLayers(handle, screenRect, memory.Get(), Opacity.Get());
}

void Window::Draw(HDC target, const RECT &area) {
  ThrowIfFailed(renderTarget->BindDC(target, &area));
  DrawSession session(renderTarget.Get());
  const D2D1_MATRIX_3X2_F identity{{{1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F}}};
  renderTarget->SetTransform(&identity);
  const D2D1_COLOR_F transparentWhite{1.0F, 1.0F, 1.0F, 0.0F};
  renderTarget->Clear(&transparentWhite);
  RECT client{};
  ::GetClientRect(handle, &client);
  const D2D1_RECT_F rect{0.0F, 0.0F, static_cast<float>(client.right), static_cast<float>(client.bottom)};
  Paint(renderTarget, &rect);
  if (const HRESULT drawn = session.End(); FAILED(drawn))
    ::PostMessageW(handle, DrawFailedMessage, static_cast<WPARAM>(drawn), 0);
}

} // namespace lumenor
