#include "dock/bar/BarButtons.h"

#include "content/DocumentNames.h"
#include "dock/Commands.h"
#include "dock/TextIds.h"
#include "system/LanguageResources.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

constexpr int labelStyle = 15; // kept with the layout; no painter reads it

/// The margins of the picture are in design pixels.
ButtonLayout MakePictureLayout(int left, int right, int top, int bottom) {
  return {.fontSize = static_cast<float>(ScaleY(10)),
          .textFlag = 1,
          .imageLeft = ScaleX(left),
          .imageRight = ScaleX(right),
          .imageTop = ScaleY(top),
          .imageBottom = ScaleY(bottom)};
}

ButtonLayout MakeLabelledLayout(int left, int right, int top, int bottom) {
  ButtonLayout layout = MakePictureLayout(left, right, top, bottom);
  layout.textStyle = labelStyle;
  layout.textTop = ScaleY(64);
  layout.textBottom = ScaleY(29);
  return layout;
}

Element MakeCommandElement(Command command, const wchar_t *image, const std::wstring &toolTip) {
  Element element;
  element.ActionParams = CommandName(command);
  element.Image = image;
  element.ToolTip = toolTip;
  return element;
}

} // namespace

ButtonLayout MakeBarButtonLayout() { return MakeLabelledLayout(22, 23, 16, 29); }

ButtonLayout MakeForYouLayout() { return MakeLabelledLayout(2, 2, 16, 16); }

ButtonLayout MakeSearchButtonLayout() { return MakePictureLayout(3, 3, 3, 3); }

/// The same at every density: these buttons have no label.
ButtonLayout MakeSystemButtonLayout() { return {.fontSize = 13.0F}; }

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
