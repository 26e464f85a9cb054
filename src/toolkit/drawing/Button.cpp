#include "toolkit/drawing/Button.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include <commctrl.h>

#include "system/Instance.h"
#include "system/Text.h"
#include "toolkit/Accessibility.h"
#include "toolkit/CommonControls.h"
#include "toolkit/drawing/IButtonPainter.h"

namespace lumenor {

// A tool tip checks the record's size, which depends on how the headers are configured.
static_assert(sizeof(TOOLINFOW) == 72);

/// More of a tip fits on no screen, and a tool tip lays out all of it.
constexpr std::size_t longestToolTip = 2048;

Button::Button(std::shared_ptr<IButtonPainter> painter) : painter(std::move(painter)) {
  subscriptions.Add(this, &Button::OnStateChanged, IsMouseOver.changed, IsPressed.changed);
  subscriptions.Add(this, &Button::Invalidate, Opacity.changed);
  subscriptions.Add(this, &Button::OnNameChanged, Name.changed);
}

Button::~Button() = default;

void Button::SetPainter(std::shared_ptr<IButtonPainter> newPainter) {
  painter->Detach(); // an event with several dead entries may drop a living one for one of them
  painter = std::move(newPainter);
  painter->Attach(this);
  InvalidateWindow(TRUE);
}

void Button::Paint(RenderTargetPtr renderTarget, const D2D1_RECT_F *rect) {
  if (handle != nullptr)
    painter->Paint(std::move(renderTarget), rect);
}

void Button::OnAttached() {
  WindowedElement::OnAttached();
  BuildToolTip();
}

BOOL Button::ProcessWindowMessage(HWND, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result, DWORD mapId) {
  if (mapId != 0)
    return FALSE;
  switch (message) {
  case WM_PAINT:
    return OnPaint(result);
  case WM_KEYDOWN:
  case WM_KEYUP:
    return OnKey(message, wParam, result);
  case WM_LBUTTONDOWN:
  case WM_LBUTTONUP:
    IsPressed.Set(message == WM_LBUTTONDOWN ? 1 : 0);
    return FinishStateMessage(result);
  case WM_MOUSEMOVE:
    return OnMouseMove(result);
  case WM_MOUSELEAVE:
    return OnMouseLeave(result);
  case WM_SETFOCUS:
  case WM_KILLFOCUS:
    HasFocus.Set(message == WM_SETFOCUS ? 1 : 0);
    return FinishStateMessage(result);
  case WM_MOVE:
    return OnMove(lParam);
  case WM_SIZE:
    return OnSize(lParam);
  case WM_CREATE:
    OnCreate();
    result = 0;
    return TRUE;
  case WM_DESTROY:
    OnDestroy();
    result = 1;
    return TRUE;
  case WM_COMMAND:
    return OnCommand(wParam, lParam, result);
  default:
    return OnTextRequest(message, wParam, lParam, result);
  }
}

void Button::OnCreate() { painter->Attach(this); }

// Unhandled, so that the platform validates the window; the root paints it.
BOOL Button::OnPaint(LRESULT &result) {
  if (!::IsWindow(handle)) {
    result = 1;
    return TRUE;
  }
  if (IsDirty())
    Invalidate();
  return FALSE;
}

// Every key asks for a repaint, not only the space key.
BOOL Button::OnKey(UINT message, WPARAM key, LRESULT &result) {
  if (key == VK_SPACE)
    IsPressed.Set(message == WM_KEYDOWN ? 1 : 0);
  return FinishStateMessage(result);
}

// A move within the button changes nothing that is seen, so it asks for no repaint.
BOOL Button::OnMouseMove(LRESULT &result) {
  const bool wasOver = IsMouseOver.Get() != 0;
  IsMouseOver.Set(1);
  TRACKMOUSEEVENT tracking{sizeof(tracking), TME_LEAVE, handle, 0};
  ::TrackMouseEvent(&tracking);
  return wasOver && ::IsWindow(handle) ? FALSE : FinishStateMessage(result);
}

BOOL Button::OnMouseLeave(LRESULT &result) {
  IsMouseOver.Set(0);
  IsPressed.Set(0);
  return FinishStateMessage(result);
}

// Unhandled, so that the platform's button does its part of the click, unless a listener of the state has destroyed the
// window.
BOOL Button::FinishStateMessage(LRESULT &result) {
  if (!::IsWindow(handle)) {
    result = 1;
    return TRUE;
  }
  InvalidateWindow(FALSE);
  return FALSE;
}

// The parent panel has posted the notification back to this window. Commands of others end here.
BOOL Button::OnCommand(WPARAM wParam, LPARAM lParam, LRESULT &result) {
  result = 0;
  if (reinterpret_cast<HWND>(lParam) == handle && HIWORD(wParam) == BN_CLICKED) {
    const std::shared_ptr<Button> alive = weak_from_this().lock(); // null for one that isn't shared
    ButtonEventArgs args{this};
    Click.Fire(&args);
  }
  return TRUE;
}

std::wstring Button::GetAccessibleName() const {
  const std::wstring label = painter->GetLabel();
  return label.empty() ? Name.Get() : label;
}

/// Proxies for screen readers ask a button's window for its text and take that for its name. The window has none, which
/// would be a second place for what the label and the tip hold; it is answered when it is asked for.
BOOL Button::OnTextRequest(UINT message, WPARAM room, LPARAM buffer, LRESULT &result) const {
  const bool copies = message == WM_GETTEXT && room != 0 && buffer != 0;
  if ((!copies && message != WM_GETTEXTLENGTH) || HasWindowText())
    return FALSE;
  const std::wstring text = WithoutAccessKey(GetAccessibleName());
  result = static_cast<LRESULT>(copies ? std::min<std::size_t>(text.size(), room - 1) : text.size());
  if (copies)
    ::lstrcpynW(reinterpret_cast<wchar_t *>(buffer), text.c_str(), static_cast<int>(result) + 1);
  return TRUE;
}

/// A text that the window was given is what it answers.
bool Button::HasWindowText() const { return ::DefWindowProcW(handle, WM_GETTEXTLENGTH, 0, 0) != 0; }

// The platform takes a null handle for all windows of the desktop.
void Button::InvalidateWindow(BOOL erase) {
  if (handle != nullptr)
    ::InvalidateRect(handle, nullptr, erase);
}

void Button::OnStateChanged() { InvalidateWindow(TRUE); }

void Button::OnNameChanged() {
  NotifyAccessibility(EVENT_OBJECT_NAMECHANGE, handle);
  BuildToolTip();
}

// A button without a window can't be pointed at: its tip is built when it is attached. A tip for each name that is set
// before that would be a window that is never used, and its creation takes longer than that of the button's own.
void Button::BuildToolTip() {
  toolTipWindow.Reset();
  RunLatestOnceShown([this] { MakeToolTip(); });
}

void Button::MakeToolTip() {
  const HWND root = GetRootHandle();
  LoadCommonControls();
  toolTipWindow.Reset(::CreateWindowExW(WS_EX_TOPMOST | WS_EX_TRANSPARENT, TOOLTIPS_CLASSW, nullptr,
                                        WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                                        CW_USEDEFAULT, CW_USEDEFAULT, root, nullptr, instanceHandle, nullptr));
  if (!toolTipWindow)
    return;
  ::SetWindowPos(toolTipWindow.Get(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOSIZE | SWP_NOMOVE | SWP_NOACTIVATE);
  AddToToolTip(root);
}

void Button::AddToToolTip(HWND root) {
  std::wstring text(Beginning(Name.Get(), longestToolTip));
  TOOLINFOW info{};
  info.cbSize = sizeof(info);
  info.uFlags = TTF_IDISHWND | TTF_CENTERTIP | TTF_SUBCLASS | TTF_TRANSPARENT;
  info.hwnd = root;
  info.uId = reinterpret_cast<UINT_PTR>(handle);
  info.rect = GetBounds();
  info.hinst = instanceHandle;
  info.lpszText = text.data();
  ::SendMessageW(toolTipWindow.Get(), TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&info));
}

} // namespace lumenor
