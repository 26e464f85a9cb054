#pragma once
// The IDs of the texts that the dock asks its language resources for: the one table, which the check of the shipped
// content reads too.

namespace lumenor {

// The dock's own strings.
inline constexpr wchar_t dockAtTopTextId[] = L"Button.Tooltip.DockAtTop";
inline constexpr wchar_t dockAtBottomTextId[] = L"Button.Tooltip.DockAtBottom";
inline constexpr wchar_t resetTextId[] = L"Button.Tooltip.Reset";
inline constexpr wchar_t closeTextId[] = L"Button.Tooltip.Close"; // the welcome screen's strings have it too
inline constexpr wchar_t selectProviderTextId[] = L"SearchBox.SelectProviderToolTip";
inline constexpr wchar_t searchTextId[] = L"SearchBox.ButtonToolTip";
inline constexpr wchar_t resetTitleTextId[] = L"ResetWindow.Title";
inline constexpr wchar_t resetDescriptionTextId[] = L"ResetWindow.Description";
inline constexpr wchar_t resetConfirmTextId[] = L"ResetWindow.ResetButton";
inline constexpr wchar_t resetCancelTextId[] = L"ResetWindow.CancelButton";

// Those of the welcome screen, which also has two for each feature (FeatureText).
inline constexpr wchar_t welcomeTitleTextId[] = L"TextBlock.WindowTitle";
inline constexpr wchar_t featuresHeadingTextId[] = L"TextBlock.FeaturesHeading";
inline constexpr wchar_t viewTourTextId[] = L"TextBlock.ViewTour";
inline constexpr wchar_t preferencesTextId[] = L"TextBlock.OptOutPreferences";
inline constexpr wchar_t allowToUpdateTextId[] = L"TextBlock.AllowToUpdate";
inline constexpr wchar_t startWithSessionTextId[] = L"TextBlock.OptOutLabel";
inline constexpr wchar_t welcomeCloseTextId[] = L"TextBlock.ButtonClose";

} // namespace lumenor
