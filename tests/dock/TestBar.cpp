#include "dock/TestBar.h"

#include <gtest/gtest.h>

#include "system/Desktop.h"
#include "system/EventLog.h"

namespace lumenor {

namespace {

/// The event log, as the entry function opens it, and a render target: the first one of a process costs half a second
/// and more, and as long as one is held the next ones are free.
class OpenedServices : public ::testing::Environment {
public:
  void SetUp() override {
    OpenDockEventLog();
    target = CreateGdiRenderTarget();
  }
  void TearDown() override { target.Reset(); }

private:
  Microsoft::WRL::ComPtr<ID2D1DCRenderTarget> target;
};

[[maybe_unused]] const ::testing::Environment *const opened = ::testing::AddGlobalTestEnvironment(new OpenedServices);

} // namespace

TestBar::TestBar() {
  dialogId = MainDialogId;
  Create(nullptr);
}

void TestBar::InitializeComponent() {
  const RECT bounds = {100, 200, 500, 277};
  UIElement::SetBounds(&bounds);
  SetChild(&canvas);
}

TestBar::~TestBar() {
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
}

TestFlyout::~TestFlyout() {
  if (::IsWindow(handle))
    ::DestroyWindow(handle);
}

void TestFlyout::CreateItems() {
  ++creations;
  FlyoutWindow::CreateItems();
}

void TestFlyout::OnItemChosen(const Element &element) {
  shownWhenChosen.push_back(::IsWindowVisible(handle));
  if (onChosen)
    onChosen();
  chosen.push_back(element);
}

RECT ScreenRect(HWND window) {
  RECT rect = {};
  ::GetWindowRect(window, &rect);
  return rect;
}

Element MakeElement(const std::wstring &label, const std::wstring &actionType, const std::wstring &actionParams,
                    const std::wstring &image) {
  Element element;
  element.Head = label;
  element.ToolTip = L"Tip of " + label;
  element.ActionType = actionType;
  element.ActionParams = actionParams;
  element.Image = image;
  return element;
}

void ClickAt(POINT point) {
  desk::MoveCursor(point);
  desk::PressLeftButton();
  desk::ReleaseLeftButton();
  desk::PumpAll();
}

} // namespace lumenor
