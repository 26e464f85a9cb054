#include "dock/bar/BarButtons.h"

#include "content/DocumentNames.h"
#include "dock/Commands.h"
#include "dock/TextIds.h"
#include "system/LanguageResources.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr int labelStyle = 15; // kept with the layout; no painter reads it

ButtonLayout MakeLabelledLayout() {
  ButtonLayout layout;
  layout.fontSize = static_cast<float>(ScaleY(10));
  layout.textFlag = 1;
  layout.textStyle = labelStyle;
  layout.textTop = ScaleY(64);
  layout.textBottom = ScaleY(29);
  return layout;
}

void SetImageMargins(ButtonLayout &layout, int left, int right, int top, int bottom) {
  layout.imageLeft = ScaleX(left);
  layout.imageRight = ScaleX(right);
  layout.imageTop = ScaleY(top);
  layout.imageBottom = ScaleY(bottom);
}

Element MakeCommandElement(Command command, const wchar_t *image, const std::wstring &toolTip) {
  Element element;
  element.ActionParams = CommandName(command);
  element.Image = image;
  element.ToolTip = toolTip;
  return element;
}

} // namespace

ButtonLayout MakeBarButtonLayout() {
  ButtonLayout layout = MakeLabelledLayout();
  SetImageMargins(layout, 22, 23, 16, 29);
  return layout;
}

ButtonLayout MakeForYouLayout() {
  ButtonLayout layout = MakeLabelledLayout();
  SetImageMargins(layout, 2, 2, 16, 16);
  return layout;
}

ButtonLayout MakeSearchButtonLayout() {
  ButtonLayout layout;
  layout.fontSize = static_cast<float>(ScaleY(10));
  layout.textFlag = 1;
  SetImageMargins(layout, 3, 3, 3, 3);
  return layout;
}

ButtonLayout MakeSystemButtonLayout() {
  ButtonLayout layout;
  layout.fontSize = 13.0F; // the same at every density: these buttons have no label
  return layout;
}

std::wstring LoadForYouTitle() { return LoadDocumentString(forYouDocumentName, L"Element/Head"); }

Element MakeForYouElement(bool active) {
  return MakeCommandElement(Command::ForYou,
                            active ? L"..\\resources\\foryou_active.png" : L"..\\resources\\foryou_idle.png",
                            LoadDocumentString(forYouDocumentName, L"Element/ToolTip"));
}

Element MakeSearchProviderElement() {
  return MakeCommandElement(Command::SearchProvider, L"..\\resources\\arrow.png", LoadDockString(selectProviderTextId));
}

Element MakeSearchElement() {
  return MakeCommandElement(Command::Search, L"..\\resources\\search.png", LoadDockString(searchTextId));
}

Element MakeResetElement() {
  return MakeCommandElement(Command::ResetConfirmation, L"..\\resources\\reset-icon.png", LoadDockString(resetTextId));
}

Element MakeCloseElement() {
  return MakeCommandElement(Command::Close, L"..\\resources\\close-icon.png", LoadDockString(closeTextId));
}

} // namespace lumenor
