#pragma once
// The names of the documents that the bar and the jump list are built from, and what a name may be.

#include <string>

namespace lumenor {

inline constexpr wchar_t mainDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.Main";
inline constexpr wchar_t userDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";
inline constexpr wchar_t forYouDocumentName[] = L"Lumenor.MainFrame.Windows.DockViewWindow.ForYou";

/// Its entries aren't shown; they have the pictures of the tasks with the same position.
inline constexpr wchar_t jumpListDocumentName[] = L"Lumenor.MainFrame.Controls.JumpList.Main";

/// The For You list, which another program writes. It is never built from stubs.
inline constexpr wchar_t forYouListName[] = L"Lumenor.MainFrame.Controls.DockPopup.ForYou";

/// Whether a document can have this name, which is also an element's, a step of an XPath and a file's: one that XML
/// allows without a prefix, of at most 128 characters, and that isn't the platform's for a device. Needs a thread that
/// has initialised COM.
bool IsDocumentName(const std::wstring &name);

} // namespace lumenor
