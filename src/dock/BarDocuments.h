#pragma once
// The names of the documents that the bar is built from.

namespace lumenor {

inline constexpr wchar_t mainDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Main";
inline constexpr wchar_t userDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";
inline constexpr wchar_t forYouDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou";

} // namespace lumenor
