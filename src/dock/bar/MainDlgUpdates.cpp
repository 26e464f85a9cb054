// What changes on the bar by itself: it fades while the cursor is elsewhere, and its flyouts follow their files.

#include "dock/bar/MainDlg.h"

#include "content/Documents.h"
#include "dock/dragdrop/DragState.h"
#include "system/Paths.h"

namespace lumenor {

void CMainDlg::StepFade() {
  POINT cursor;
  if (!::GetCursorPos(&cursor)) // another desktop has the cursor, such as that of a locked session
    return;
  const RECT place = GetScreenBounds();
  fade.Step(::PtInRect(&place, cursor) != FALSE, !dragOutside && !keepAwake);
}

void CMainDlg::OnRefresh(UINT message) {
  if (message == RefreshForYouMessage)
    RefreshForYou();
  else
    RefreshSearchProviders();
}

/// Any write in the folder brings this, so the mark heeds only the list's own file, and only when that is newer.
void CMainDlg::RefreshForYou() {
  forYouFlyout.Refresh();
  if (forYouFlyout.Visibility.Get() == lumenor::Visibility::Visible)
    forYouFlyout.SetBounds(ForYouFlyoutPlace()); // as high as its rows now are, and still against the bar
  const FILETIME fileTime = LastWriteTime(DocumentPath(forYouListName));
  if (::CompareFileTime(&forYouFileTime, &fileTime) >= 0)
    return;
  SetForYouState(true);
  forYouFileTime = fileTime;
}

void CMainDlg::RefreshSearchProviders() {
  searchProviderFlyout.Refresh();
  if (searchProviderFlyout.Visibility.Get() == lumenor::Visibility::Visible)
    searchProviderFlyout.SetBounds(SearchProviderFlyoutPlace());
}

} // namespace lumenor
