#pragma once
// The screen that greets the user at the first start: what the dock does, a video tour, and two check boxes whose
// settings are stored when it is closed. Nothing but its close button ends it. Lives on the stack of the handler that
// shows it. User-interface thread.

#include <array>
#include <memory>
#include <string>

#include "system/Windows.h"
#include "toolkit/DockPanel.h"
#include "toolkit/drawing/CheckedButton.h"
#include "toolkit/drawing/ImageElement.h"
#include "toolkit/drawing/Window.h"
#include "toolkit/Event.h"
#include "toolkit/StackPanel.h"
#include "toolkit/TextElement.h"

namespace lumenor {

class ColorRectangle;
class DockButton;

class WelcomeScreenDialog : public Window {
public:
  /// The dialog has its top at that of `bounds` and is centred between left and right, in screen coordinates; its size
  /// is that of its background picture.
  explicit WelcomeScreenDialog(const RECT &bounds);

  BOOL ProcessWindowMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, LRESULT &result,
                            DWORD mapId = 0) override;
  void InitializeComponent() override;

private:
  /// A headline of what the dock does, and a sentence that explains it.
  struct FeatureRow {
    DockPanel panel;
    StackPanel texts;
    std::shared_ptr<TextElement> headline;
    std::shared_ptr<TextElement> sentence;
  };

  static constexpr int featureCount = 4;

  std::shared_ptr<TextElement> MakeText(const std::wstring &text, TextStyle style) const;

  void LoadPictures();
  void PlaceWindow();
  void ComposePanels();
  void AddTitle();
  void AddPicture();
  void AddTour();
  void AddFeatures();
  void AddFeature(FeatureRow &row);
  void AddButtons();
  std::shared_ptr<DockButton> MakeTourButton() const;
  void AddCloseButton();
  std::shared_ptr<CheckedButton> AddCheckBox(const wchar_t *textId);
  void AddPreferences();

  void OnClick(ButtonEventArgs *args);
  void ApplySettings() const;

  RECT bounds;
  std::shared_ptr<TextElement> titleText;
  std::shared_ptr<TextElement> featuresHeading;
  std::shared_ptr<TextElement> tourText;
  std::shared_ptr<TextElement> preferencesText;
  std::array<FeatureRow, featureCount> featureRows;
  std::shared_ptr<ImageElement> backgroundImage, arrowImage, handsImage;
  DockPanel rootPanel, contentPanel, bodyPanel, tourButtonPanel, bottomPanel;
  StackPanel mainStack, leftStack, featureStack, tourRow, tourTextStack, buttonStack;
  std::shared_ptr<ColorRectangle> tourButtonSpacer;
  std::shared_ptr<DockButton> tourButton;
  std::shared_ptr<Button> closeButton;
  std::shared_ptr<CheckedButton> updateCheckBox;
  std::shared_ptr<CheckedButton> startupCheckBox;
  ListenerPtr<ButtonEventArgs> clickListener;
};

} // namespace lumenor
