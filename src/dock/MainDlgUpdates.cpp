// What changes on the bar by itself: it fades while the cursor is elsewhere, and its flyouts follow their files.

#include "dock/MainDlg.h"

#include "content/Documents.h"
#include "dock/DragState.h"
#include "system/Paths.h"
#include "toolkit/Animation.h"

namespace lumenor {

namespace {

constexpr unsigned char dimmed = 190;
constexpr unsigned char opaque = 255;

/// Steps of the fade timer without the cursor before the bar dims.
constexpr int idleTicksBeforeFade = 21;

} // namespace

/// The count starts anew only when the bar comes back from being dim. A cursor that stays away a little at a time adds
/// up, so that the bar may dim as soon as it leaves again.
void CMainDlg::StepFade() {
  POINT cursor;
  if (!::GetCursorPos(&cursor)) // another desktop has the cursor, such as that of a locked session
    return;
  const RECT bar = GetScreenBounds();
  if (::PtInRect(&bar, cursor)) {
    if (idleTicks == 0 || Opacity.Get() != dimmed)
      return;
    Fade(dimmed, opaque);
    ShowFadingButtons(lumenor::Visibility::Visible);
    idleTicks = 0;
  } else if (!dragOutside && !keepAwake) {
    if (idleTicks >= idleTicksBeforeFade && Opacity.Get() >= opaque) {
      Fade(opaque, dimmed);
      ShowFadingButtons(lumenor::Visibility::Hidden);
    }
    ++idleTicks;
  }
}

void CMainDlg::Fade(float from, float to) {
  fadeAnimation->From.Set(from);
  fadeAnimation->To.Set(to);
  fadeAnimation->Target.Set(&Opacity);
  fadeAnimation->Start();
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
