#include "drawing/TestWindow.h"

#include <utility>

#include <gtest/gtest.h>

#include "support/ImportSlot.h"
#include "system/Desktop.h"

// The slot through which the program calls UpdateLayeredWindow.
extern "C" BOOL(WINAPI *__imp_UpdateLayeredWindow)(HWND, HDC, POINT *, SIZE *, HDC, POINT *, COLORREF, BLENDFUNCTION *,
                                                   DWORD);

namespace lumenor {

void RecordingPainter::Paint(RenderTargetPtr, const D2D1_RECT_F *rect) {
  ++paints;
  lastRect = *rect;
}

void RecordingPainter::Attach(Button *newButton) {
  IButtonPainter::Attach(newButton);
  ++attaches;
  if (onAttach)
    onAttach();
}

namespace {

/// The first render target of a process costs half a second and more; as long as one is held the next ones are free.
class HeldTarget : public ::testing::Environment {
public:
  void SetUp() override { target = CreateGdiRenderTarget(); }
  void TearDown() override { target.Reset(); }

private:
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> target;
};

[[maybe_unused]] const ::testing::Environment *const heldTarget = ::testing::AddGlobalTestEnvironment(new HeldTarget);

} // namespace

TestWindow::TestWindow() { dialogId = MainDialogId; }

TestWindow::~TestWindow() {
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
}

void TestWindow::InitializeComponent() {
  const RECT bounds{120, 140, 320, 220};
  UIElement::SetBounds(&bounds);
  SetChild(&canvas);
  if (onInitialize)
    onInitialize();
}

void TestWindow::OnDestroy() {
  if (onDestroy)
    onDestroy();
}

void TestWindow::OnClose() {
  if (onClose)
    onClose();
}

void TestWindow::EndSession() {
  ++sessionsEnded;
  if (onEndSession)
    onEndSession();
}

void TestWindow::Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) {
  ++paints;
  if (onPaint)
    onPaint(target.Get());
  Window::Paint(std::move(target), rect);
}

namespace {

std::vector<LayerSpy::Call> calls;
decltype(__imp_UpdateLayeredWindow) platformUpdate = nullptr;

BOOL WINAPI HearUpdate(HWND window, HDC context, POINT *position, SIZE *size, HDC source, POINT *origin, COLORREF key,
                       BLENDFUNCTION *blend, DWORD flags) {
  calls.push_back({*position, *size, *origin, key, *blend, flags});
  return platformUpdate(window, context, position, size, source, origin, key, blend, flags);
}

} // namespace

LayerSpy::LayerSpy() {
  calls.clear();
  platformUpdate = desk::ExchangeSlot(&__imp_UpdateLayeredWindow, &HearUpdate);
}

LayerSpy::~LayerSpy() { desk::ExchangeSlot(&__imp_UpdateLayeredWindow, platformUpdate); }

const std::vector<LayerSpy::Call> &LayerSpy::Calls() { return calls; }

} // namespace lumenor
