#include "dock/Placement.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "dock/Rectangles.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/HResultError.h"

extern "C" decltype(&::RegSetValueExW) __imp_RegSetValueExW;

namespace lumenor {

namespace {

constexpr DesignScale normal = {96, 96};
constexpr DesignScale dense = {144, 192}; // 1.5 across and 2 down, so that a mix-up of the axes shows
constexpr RECT fullWorkArea = {0, 0, 1280, 1024};
constexpr RECT barAtTop = {190, 1, 1090, 78};
constexpr RECT barAtBottom = {190, 947, 1090, 1024};

/// The bar on a screen 1280 wide with this task bar, whose window ends at 40.
RECT BarWithTaskBar(const RECT &taskBar) { return BarRect({1280, taskBar, {0, 0, 1280, 40}}, normal); }

TEST(BarWidth, Is330LessThanTheScreen) { EXPECT_EQ(694, BarWidth(1024, normal)); }

TEST(BarWidth, IsAtMost900) { EXPECT_EQ(900, BarWidth(1280, normal)); }

TEST(BarWidth, IsAtLeast400) {
  EXPECT_EQ(400, BarWidth(640, normal));
  EXPECT_EQ(400, BarWidth(320, normal));
}

TEST(BarWidth, TakesTheLimitsThemselves) {
  EXPECT_EQ(400, BarWidth(729, normal));
  EXPECT_EQ(401, BarWidth(731, normal));
  EXPECT_EQ(899, BarWidth(1229, normal));
  EXPECT_EQ(900, BarWidth(1230, normal));
}

TEST(BarWidth, ScalesDevicePixelsOnceMore) {
  EXPECT_EQ(1041, BarWidth(1024, dense));
  EXPECT_EQ(1350, BarWidth(1280, dense));
  EXPECT_EQ(600, BarWidth(640, dense));
}

TEST(BarRect, IsUnderATaskBarAtTheTop) { EXPECT_EQ(Rect(190, 40, 1090, 117), BarWithTaskBar({0, 0, 1280, 41})); }

TEST(BarRect, LeavesOneRowFreeWithTheTaskBarAtTheBottom) {
  EXPECT_EQ(Rect(190, 1, 1090, 78), BarWithTaskBar({0, 984, 1280, 1024}));
}

TEST(BarRect, LeavesOneRowFreeWithTheTaskBarAtTheLeft) {
  EXPECT_EQ(Rect(190, 1, 1090, 78), BarWithTaskBar({0, 0, 62, 1024}));
}

TEST(BarRect, LeavesOneRowFreeWithTheTaskBarAtTheRight) {
  EXPECT_EQ(Rect(190, 1, 1090, 78), BarWithTaskBar({1218, 0, 1280, 1024}));
}

TEST(BarRect, LeavesOneRowFreeWhenTheTaskBarHasNoPlace) {
  EXPECT_EQ(Rect(190, 1, 1090, 78), BarWithTaskBar({0, 0, 0, 0}));
}

TEST(BarRect, IsCentredOnAScreenOfOddWidth) {
  EXPECT_EQ(Rect(165, 1, 860, 78), BarRect({1025, {0, 984, 1025, 1024}, {}}, normal));
}

TEST(BarRect, OverlapsAScreenNarrowerThanItself) {
  EXPECT_EQ(Rect(-40, 1, 360, 78), BarRect({320, {0, 200, 320, 240}, {}}, normal));
}

TEST(BarRect, IsScaledOnADenseScreen) {
  EXPECT_EQ(Rect(285, 1, 1635, 155), BarRect({1920, {0, 1040, 1920, 1080}, {}}, dense));
}

TEST(PlaceHorizontally, LeavesAFlyoutThatFits) {
  RECT flyout = {0, 5, 0, 6};
  PlaceHorizontally(flyout, 100, fullWorkArea, normal);
  EXPECT_EQ(Rect(100, 5, 340, 6), flyout);
}

TEST(PlaceHorizontally, PushesAFlyoutBackFromTheLeftEnd) {
  RECT flyout = {0, 5, 0, 6};
  PlaceHorizontally(flyout, 61, {62, 0, 1280, 1024}, normal);
  EXPECT_EQ(Rect(62, 5, 302, 6), flyout);
}

TEST(PlaceHorizontally, PushesAFlyoutBackFromTheRightEnd) {
  RECT flyout = {0, 5, 0, 6};
  PlaceHorizontally(flyout, 1041, fullWorkArea, normal);
  EXPECT_EQ(Rect(1040, 5, 1280, 6), flyout);
}

TEST(PlaceHorizontally, TakesTheEndsThemselves) {
  RECT flyout = {};
  PlaceHorizontally(flyout, 0, fullWorkArea, normal);
  EXPECT_EQ(Rect(0, 0, 240, 0), flyout);
  PlaceHorizontally(flyout, 1040, fullWorkArea, normal);
  EXPECT_EQ(Rect(1040, 0, 1280, 0), flyout);
}

TEST(PlaceHorizontally, PrefersTheLeftEndInAWorkAreaTooNarrow) {
  RECT flyout = {};
  PlaceHorizontally(flyout, -10, {0, 0, 200, 300}, normal);
  EXPECT_EQ(Rect(0, 0, 240, 0), flyout);
}

TEST(PlaceHorizontally, ScalesTheWidth) {
  RECT flyout = {};
  PlaceHorizontally(flyout, 1000, fullWorkArea, dense);
  EXPECT_EQ(Rect(920, 0, 1280, 0), flyout);
}

TEST(ForYouFlyoutRect, OpensUnderABarAtTheTop) {
  EXPECT_EQ(Rect(1028, 80, 1268, 280), ForYouFlyoutRect(barAtTop, 900, 200, fullWorkArea, normal));
}

TEST(ForYouFlyoutRect, OpensAboveABarAtTheBottomWithAGapOfTwo) {
  EXPECT_EQ(Rect(1028, 745, 1268, 945), ForYouFlyoutRect(barAtBottom, 900, 200, fullWorkArea, normal));
}

TEST(ForYouFlyoutRect, StaysUnderTheBarWhenItJustFits) {
  EXPECT_EQ(Rect(1028, 80, 1268, 280), ForYouFlyoutRect(barAtTop, 900, 200, {0, 0, 1280, 280}, normal));
  EXPECT_EQ(Rect(1028, -201, 1268, -1), ForYouFlyoutRect(barAtTop, 900, 200, {0, 0, 1280, 279}, normal));
}

TEST(ForYouFlyoutRect, IsPushedBackFromTheScreensEnd) {
  EXPECT_EQ(Rect(1040, 80, 1280, 280), ForYouFlyoutRect({240, 1, 1140, 78}, 900, 200, fullWorkArea, normal));
}

TEST(ForYouFlyoutRect, TakesTheFlyoutsHeightUnscaled) {
  EXPECT_EQ(Rect(667, 157, 1027, 357), ForYouFlyoutRect({10, 1, 760, 155}, 750, 200, fullWorkArea, dense));
}

TEST(SearchProviderFlyoutRect, OpensUnderTheSearchField) {
  EXPECT_EQ(Rect(995, 52, 1235, 172), SearchProviderFlyoutRect(barAtTop, 900, 120, fullWorkArea, normal));
}

TEST(SearchProviderFlyoutRect, OpensAboveTheSearchFieldWhenTheWorkAreaEnds) {
  EXPECT_EQ(Rect(995, 862, 1235, 982), SearchProviderFlyoutRect(barAtBottom, 900, 120, fullWorkArea, normal));
}

TEST(SearchProviderFlyoutRect, StaysUnderTheFieldWhenItJustFits) {
  EXPECT_EQ(Rect(995, 52, 1235, 172), SearchProviderFlyoutRect(barAtTop, 900, 120, {0, 0, 1280, 172}, normal));
  EXPECT_EQ(Rect(995, -84, 1235, 36), SearchProviderFlyoutRect(barAtTop, 900, 120, {0, 0, 1280, 171}, normal));
}

TEST(SearchProviderFlyoutRect, IsPushedBackFromTheScreensEnd) {
  EXPECT_EQ(Rect(1040, 52, 1280, 172), SearchProviderFlyoutRect({240, 1, 1140, 78}, 900, 120, fullWorkArea, normal));
}

TEST(SearchProviderFlyoutRect, ScalesTheHeightDownwardsOnly) {
  EXPECT_EQ(Rect(617, 103, 977, 343), SearchProviderFlyoutRect({10, 1, 760, 155}, 750, 120, fullWorkArea, dense));
  EXPECT_EQ(Rect(617, 820, 977, 940), SearchProviderFlyoutRect({10, 870, 760, 1024}, 750, 120, fullWorkArea, dense));
}

TEST(ButtonFlyoutRect, OpensUnderTheButtonWithAGapOfTwo) {
  EXPECT_EQ(Rect(300, 80, 540, 322), ButtonFlyoutRect({300, 78}, 77, 242, fullWorkArea, normal));
}

TEST(ButtonFlyoutRect, OpensOverTheButtonWhenTheWorkAreaEnds) {
  EXPECT_EQ(Rect(300, 703, 540, 945), ButtonFlyoutRect({300, 1024}, 77, 242, fullWorkArea, normal));
}

TEST(ButtonFlyoutRect, StaysUnderTheButtonWhenItJustFits) {
  EXPECT_EQ(Rect(300, 80, 540, 322), ButtonFlyoutRect({300, 78}, 77, 242, {0, 0, 1280, 322}, normal));
  EXPECT_EQ(Rect(300, -243, 540, -1), ButtonFlyoutRect({300, 78}, 77, 242, {0, 0, 1280, 321}, normal));
}

TEST(ButtonFlyoutRect, IsPushedBackFromBothEnds) {
  EXPECT_EQ(Rect(0, 80, 240, 322), ButtonFlyoutRect({-20, 78}, 77, 242, fullWorkArea, normal));
  EXPECT_EQ(Rect(1040, 80, 1280, 322), ButtonFlyoutRect({1200, 78}, 77, 242, fullWorkArea, normal));
}

TEST(ResetDialogRect, LiesUnderABarAtTheTop) {
  EXPECT_EQ(Rect(440, 77, 840, 249), ResetDialogRect(barAtTop, true, 1, normal));
}

TEST(ResetDialogRect, LiesOverABarAtTheBottom) {
  EXPECT_EQ(Rect(440, 775, 840, 947), ResetDialogRect(barAtTop, false, 947, normal));
}

TEST(ResetDialogRect, StaysOnTheScreenWhenTheButtonSaysBottomOfABarAtTheTop) {
  EXPECT_EQ(Rect(440, 77, 840, 249), ResetDialogRect(barAtTop, false, 1, normal));
  EXPECT_EQ(Rect(440, 77, 840, 249), ResetDialogRect(barAtTop, false, 171, normal));
  EXPECT_EQ(Rect(440, 0, 840, 172), ResetDialogRect(barAtTop, false, 172, normal));
}

TEST(ResetDialogRect, IsScaledOnADenseScreen) {
  EXPECT_EQ(Rect(660, 154, 1260, 498), ResetDialogRect({285, 1, 1635, 155}, true, 1, dense));
  EXPECT_EQ(Rect(660, 582, 1260, 926), ResetDialogRect({285, 1, 1635, 155}, false, 926, dense));
}

/// The registry value of the bar's edge, in a key that is put back, and the log.
class DockPosition : public ::testing::Test {
protected:
  DockPosition() { key.Create(); }

  std::vector<std::string> Logged() const { return log.Lines(); }

  const tests::TestFolders folders;
  const tests::KeptRegistryKey key{HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor"};
  const tests::LogCapture log{folders};
};

const std::vector<std::string> nothingLogged;
const std::vector<std::string> noneFound = {"INFO: No dock position regkey found, defaulting to top"};
const std::vector<std::string> notRead = {"INFO: Dock position regkey query failed, defaulting to top"};

TEST_F(DockPosition, ReadsTheTextUnchanged) {
  for (const std::wstring text : {L"Top", L"Bottom", L"Left", L"bottom ", L"%windir%"}) {
    key.SetText(L"DockPosition", text);
    EXPECT_EQ(text, GetDockPosition());
  }
  EXPECT_EQ(nothingLogged, Logged());
}

TEST_F(DockPosition, ReadsAnExpandableTextUnexpanded) {
  key.SetText(L"DockPosition", L"%windir%", REG_EXPAND_SZ);
  EXPECT_EQ(L"%windir%", GetDockPosition());
}

TEST_F(DockPosition, ReadsAnEmptyText) {
  key.SetText(L"DockPosition", L"");
  EXPECT_EQ(L"", GetDockPosition());
}

TEST_F(DockPosition, IsTopWithoutTheKeyAndLogsNothing) {
  key.Delete();
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(nothingLogged, Logged());
}

TEST_F(DockPosition, IsTopWithoutTheValue) {
  key.DeleteValue(L"DockPosition");
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(noneFound, Logged());
}

TEST_F(DockPosition, IsTopForANumber) {
  key.SetNumber(L"DockPosition", 1);
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(noneFound, Logged());
}

TEST_F(DockPosition, IsTopForATextWithoutData) {
  key.SetBytes(L"DockPosition", REG_SZ, "");
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(noneFound, Logged());
}

TEST_F(DockPosition, IsTopForATextWithoutItsEnd) {
  key.SetBytes(L"DockPosition", REG_SZ, std::string("B\0o\0", 4));
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(notRead, Logged());
}

TEST_F(DockPosition, IsTopForATextOfAnOddByteCount) {
  key.SetBytes(L"DockPosition", REG_SZ, std::string("B\0\0\0\0", 5));
  EXPECT_EQ(L"Top", GetDockPosition());
  EXPECT_EQ(notRead, Logged());
}

TEST_F(DockPosition, IsWrittenAsText) {
  SetDockPosition(L"Bottom");
  EXPECT_EQ(L"Bottom", key.Text(L"DockPosition"));
  EXPECT_EQ(L"Bottom", GetDockPosition());
  EXPECT_EQ(nothingLogged, Logged());
}

TEST_F(DockPosition, IsWrittenWithItsTerminator) {
  SetDockPosition(L"Top");
  RegistryKey opened;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, L"SOFTWARE\\Tarnwick\\Lumenor", 0, KEY_READ, opened.Put());
  DWORD bytes = 0;
  ::RegQueryValueExW(opened.Get(), L"DockPosition", nullptr, nullptr, nullptr, &bytes);
  EXPECT_EQ(8u, bytes);
}

TEST_F(DockPosition, CannotBeWrittenWithoutTheKey) {
  key.Delete();
  SetDockPosition(L"Bottom");
  EXPECT_EQ(std::vector<std::string>({"ERROR: SetDockPosition: Failed to open the dockposition in the registry"}),
            Logged());
  EXPECT_EQ(std::nullopt, key.Text(L"DockPosition"));
}

LSTATUS WINAPI RefuseValue(HKEY, LPCWSTR, DWORD, DWORD, const BYTE *, DWORD) { return ERROR_ACCESS_DENIED; }

TEST_F(DockPosition, StaysWhatItWasWhereTheValueCannotBeWritten) {
  SetDockPosition(L"Top");
  {
    const tests::ImportSlot slot(&__imp_RegSetValueExW, &RefuseValue);
    SetDockPosition(L"Bottom");
  }
  EXPECT_EQ(std::vector<std::string>({"ERROR: Failed to set the dockposition in the registry"}), Logged());
  EXPECT_EQ(L"Top", key.Text(L"DockPosition"));
}

// The display of the tests is 1280 by 1024 at 96 dots per inch, and its task bar is taken to be at the bottom.

TEST(ScreenPlacement, MeasuresTheBarOnTheScreen) { EXPECT_EQ(900, GetBarWidth()); }

TEST(ScreenPlacement, PlacesTheBarAndLogsHow) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  EXPECT_EQ(Rect(190, 1, 1090, 78), GetWindowRect());
  const std::string height = std::to_string(::GetSystemMetrics(SM_CYFULLSCREEN));
  EXPECT_EQ(std::vector<std::string>({"INFO: GetWindowRect() winCoord.cx = 900, winCoord.cy = 77",
                                      "INFO: GetWindowRect() workingWidth = 1280, workingHeight = " + height,
                                      "INFO: GetWindowRect() ABE_BOTTOM",
                                      "INFO: GetWindowRect() left = 190, right = 1090, top = 1, bottom = 78"}),
            log.Lines());
}

/// What GetWindowRect raised on a desktop that has no task bar; S_OK when nothing.
DWORD WINAPI PlaceWithoutTaskBar(void *) {
  const HDESK bare = ::CreateDesktopW(L"bare", nullptr, nullptr, 0, GENERIC_ALL, nullptr);
  if (bare == nullptr || !::SetThreadDesktop(bare))
    return static_cast<DWORD>(E_UNEXPECTED);
  try {
    GetWindowRect();
    return S_OK;
  } catch (const HResultError &error) {
    return static_cast<DWORD>(error.Result());
  }
}

TEST(ScreenPlacement, FailsWithoutATaskBar) {
  const tests::TestFolders folders;
  const tests::LogCapture log(folders);
  const KernelHandle thread(::CreateThread(nullptr, 0, PlaceWithoutTaskBar, nullptr, 0, nullptr));
  ASSERT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(thread.Get(), 60'000));
  DWORD result = S_OK;
  ::GetExitCodeThread(thread.Get(), &result);
  // Not to find a window is no error to the test platform, and no error is raised as the one that says nothing.
  EXPECT_EQ(static_cast<DWORD>(E_FAIL), result);
  EXPECT_EQ(std::vector<std::string>({"INFO: hwnd to Shell_TrayWnd is null. error code = 0"}), log.Lines());
}

TEST(ScreenPlacement, AsksTheScreenForItsWorkArea) { EXPECT_EQ(Rect(0, 0, 1280, 1024), GetWorkArea()); }

TEST(ScreenPlacement, PlacesTheForYouFlyout) {
  EXPECT_EQ(Rect(1028, 80, 1268, 280), GetForYouFlyoutRect(barAtTop, 200));
  EXPECT_EQ(Rect(1028, 745, 1268, 945), GetForYouFlyoutRect(barAtBottom, 200));
}

TEST(ScreenPlacement, PlacesTheSearchProviderFlyout) {
  EXPECT_EQ(Rect(995, 52, 1235, 172), GetSearchProviderFlyoutRect(barAtTop, 120));
  EXPECT_EQ(Rect(995, 862, 1235, 982), GetSearchProviderFlyoutRect(barAtBottom, 120));
}

TEST(ScreenPlacement, PlacesTheResetDialog) {
  EXPECT_EQ(Rect(440, 77, 840, 249), GetResetDialogRect(barAtTop, true, 1));
  EXPECT_EQ(Rect(440, 775, 840, 947), GetResetDialogRect(barAtTop, false, 947));
}

} // namespace

} // namespace lumenor
