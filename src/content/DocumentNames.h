#pragma once
// The names of the documents that the bar and the jump list are built from.

namespace lumenor {

inline constexpr wchar_t mainDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Main";
inline constexpr wchar_t userDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";
inline constexpr wchar_t forYouDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou";

/// Its entries aren't shown; they bring pictures for the tasks of the same position.
inline constexpr wchar_t jumpListDocumentName[] = L"Lumenor.MainFrame.Controls.JumpList.Main";

} // namespace lumenor
