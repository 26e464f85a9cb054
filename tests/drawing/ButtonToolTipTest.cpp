// The tool tip of a button: its window, its tool, and when both are made anew.

#include "toolkit/drawing/Button.h"

#include <cwchar>
#include <string>
#include <vector>

#include <commctrl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "drawing/ButtonOnScreen.h"

namespace lumenor {

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ButtonToolTip = ButtonOnScreen;

struct Tool {
  TOOLINFOW info{};
  wchar_t text[80] = {};
};

/// The one tool of the one tool tip window.
Tool ReadTool(HWND toolTip) {
  Tool tool;
  tool.info.cbSize = sizeof(tool.info);
  tool.info.lpszText = tool.text;
  ::SendMessageW(toolTip, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool.info));
  return tool;
}

std::vector<std::wstring> windowEvents;

/// Notes the making and destroying of tool tip windows.
LRESULT CALLBACK NoteToolTips(int code, WPARAM window, LPARAM create) {
  wchar_t name[64] = {};
  ::GetClassNameW(reinterpret_cast<HWND>(window), name, 64);
  if (code == HCBT_CREATEWND && std::wstring(name) == TOOLTIPS_CLASSW)
    windowEvents.emplace_back(L"made");
  if (code == HCBT_DESTROYWND && std::wstring(name) == TOOLTIPS_CLASSW)
    windowEvents.emplace_back(L"destroyed");
  return ::CallNextHookEx(nullptr, code, window, create);
}

} // namespace

TEST_F(ButtonToolTip, HoldsTheBeginningOfANameThatNoScreenHolds) {
  button.Name.Set(std::wstring(5'000'000, L'm'));
  Tool tool;
  std::wstring text(10'000, L'\0');
  tool.info.cbSize = sizeof(tool.info);
  tool.info.lpszText = text.data();
  ::SendMessageW(desk::ToolTips().at(0), TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&tool.info));
  EXPECT_EQ(2048U, std::wcslen(text.c_str()));
}

TEST_F(ButtonToolTip, IsAPopupOfTheRootWithTheNameAsItsText) {
  button.Name.Set(L"Open the calculator");
  const auto toolTips = desk::ToolTips();
  ASSERT_EQ(toolTips.size(), 1U);
  const DWORD style = static_cast<DWORD>(::GetWindowLongW(toolTips[0], GWL_STYLE));
  EXPECT_EQ(style & 0x8000FFFF, 0x80000003);
  EXPECT_EQ(::GetWindowLongW(toolTips[0], GWL_EXSTYLE) & 40, 40);
  EXPECT_EQ(::GetWindow(toolTips[0], GW_OWNER), root.handle);
  const Tool tool = ReadTool(toolTips[0]);
  EXPECT_EQ(tool.info.uFlags, 275U);
  EXPECT_EQ(tool.info.hwnd, root.handle);
  EXPECT_EQ(tool.info.uId, reinterpret_cast<UINT_PTR>(button.handle));
  EXPECT_EQ(tool.info.hinst, ::GetModuleHandleW(nullptr));
  EXPECT_STREQ(tool.text, L"Open the calculator");
  EXPECT_THAT((std::vector<long>{tool.info.rect.left, tool.info.rect.top, tool.info.rect.right, tool.info.rect.bottom}),
              ElementsAre(20, 10, 100, 50));
}

TEST_F(ButtonToolTip, IsBuiltWhenTheButtonIsAttached) { EXPECT_EQ(desk::ToolTips().size(), 1U); }

TEST_F(ButtonToolTip, WaitsForTheWindowThatItPointsAt) {
  Button other(std::make_shared<RecordingPainter>());
  other.Name.Set(L"named early");
  EXPECT_EQ(desk::ToolTips().size(), 1U);
  root.canvas.AddChild(&other);
  const auto toolTips = desk::ToolTips();
  ASSERT_EQ(toolTips.size(), 2U);
  EXPECT_THAT((std::vector<std::wstring>{ReadTool(toolTips[0]).text, ReadTool(toolTips[1]).text}),
              Contains(L"named early"));
  root.canvas.RemoveChild(&other);
}

TEST_F(ButtonToolTip, NewNameDestroysTheOldWindowBeforeItMakesANewOne) {
  button.Name.Set(L"first");
  const HWND first = desk::ToolTips().at(0);
  windowEvents.clear();
  const HHOOK hook = ::SetWindowsHookExW(WH_CBT, NoteToolTips, nullptr, ::GetCurrentThreadId());
  button.Name.Set(L"second");
  ::UnhookWindowsHookEx(hook);
  EXPECT_THAT(windowEvents, ElementsAre(L"destroyed", L"made"));
  EXPECT_FALSE(::IsWindow(first));
  ASSERT_EQ(desk::ToolTips().size(), 1U);
  EXPECT_STREQ(ReadTool(desk::ToolTips()[0]).text, L"second");
}

TEST_F(ButtonToolTip, ShowsWhenTheCursorRests) {
  button.Name.Set(L"resting");
  desk::MoveCursor(desk::MiddleOf(button.handle));
  EXPECT_TRUE(desk::PumpUntil([&] { return ::IsWindowVisible(desk::ToolTips().at(0)) != FALSE; }));
}

TEST_F(ButtonToolTip, GoesWithItsButton) {
  {
    Button other(std::make_shared<RecordingPainter>());
    root.canvas.AddChild(&other);
    root.canvas.RemoveChild(&other);
    EXPECT_EQ(desk::ToolTips().size(), 2U);
  }
  EXPECT_EQ(desk::ToolTips().size(), 1U);
}

} // namespace lumenor
