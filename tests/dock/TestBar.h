#pragma once
// What the tests of the dock's windows stand in: folders and COM, a bar to put buttons on, and flyouts whose choices
// are noted instead of run.

#include <functional>
#include <string>
#include <vector>

#include "content/Element.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "resources/resource.h"
#include "support/ComApartment.h"
#include "support/Desk.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "toolkit/Canvas.h"
#include "toolkit/drawing/Window.h"

namespace lumenor {

/// A window as the bar is one, on the screen at (100, 200) with 400 by 77 pixels; elements stand on its canvas.
class TestBar : public Window {
public:
  TestBar();
  ~TestBar() override;

  void InitializeComponent() override;
  RenderTargetPtr Target() const { return renderTarget; }

  Canvas canvas;
};

/// A flyout that notes what is chosen and how often its rows are made.
class TestFlyout : public FlyoutWindow {
public:
  using FlyoutWindow::FlyoutWindow;
  ~TestFlyout() override;

  void CreateItems() override;
  void OnItemChosen(const Element &element) override;

  const RECT &Bounds() const { return bounds; }
  const TextElement &Header() const { return *header; }
  void SetElements(const ElementList &list) { elements = list; }
  void SetHeaderHeight(long height) { header->DesiredHeight.Set(height); }

  int creations = 0;
  ElementList chosen;
  std::vector<bool> shownWhenChosen;
  std::function<void()> onChosen;
};

/// Where the window stands on the screen.
RECT ScreenRect(HWND window);

/// An element with these texts, and "Tip of " and the label as its tool tip.
Element MakeElement(const std::wstring &label, const std::wstring &actionType = L"",
                    const std::wstring &actionParams = L"", const std::wstring &image = L"");

/// A real click of the left button.
void ClickAt(POINT point);

} // namespace lumenor
