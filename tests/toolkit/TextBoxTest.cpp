// The life of a text box: its window, its font, its two elements.

#include "toolkit/TextBox.h"

#include <string>

#include <gtest/gtest.h>

#include <commctrl.h>

#include "support/HandleCounts.h"
#include "support/MessagePump.h"
#include "toolkit/StatusFont.h"
#include "toolkit/TextBoxScene.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::unhandled;
using tests::WatchedTextBox;

class TextBoxTest : public tests::TextBoxScene {
protected:
  LOGFONTW Font() const {
    LOGFONTW font{};
    ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(box.handle, WM_GETFONT, 0, 0)), sizeof font, &font);
    return font;
  }

  static Box FieldBox() { return {Bounds().left, Bounds().top, FieldWidth(), FieldHeight()}; }
};

/// Every value of an element that the tables of the field tell.
struct Looks {
  Box box;
  std::wstring text;
  float fontSize;
  int weight, style, stretch;
  bool white;
  int alignment, trimming;
  bool operator==(const Looks &) const = default;
};

std::ostream &operator<<(std::ostream &stream, const Looks &looks) {
  return stream << looks.box << " '" << std::string(looks.text.begin(), looks.text.end()) << "' " << looks.fontSize
                << ' ' << looks.weight << ' ' << looks.style << ' ' << looks.stretch << ' ' << looks.white << ' '
                << looks.alignment << ' ' << looks.trimming;
}

Looks LooksOf(const TextElement &element) {
  return {BoxOf(element),
          element.Text.Get(),
          element.FontSize.Get(),
          element.FontWeight.Get(),
          element.FontStyle.Get(),
          element.FontStretch.Get(),
          element.Color.Get() == Color{1, 1, 1, 1},
          element.TextAlignment.Get(),
          element.Trimming.Get()};
}

} // namespace

TEST_F(TextBoxTest, IsAnEditControlWithItsStylesAndId) {
  Open();
  wchar_t name[32]{};
  ::GetClassNameW(box.handle, name, 32);
  EXPECT_STREQ(name, L"LumenorEDIT");
  EXPECT_EQ(::GetWindowLongW(box.handle, GWL_STYLE), 0x50010080);
  EXPECT_EQ(::GetWindowLongW(box.handle, GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY, 0);
  EXPECT_EQ(::GetDlgCtrlID(box.handle), controlId);
  EXPECT_EQ(::GetParent(box.handle), Root().GetHandle());
  EXPECT_EQ(box.GetHandle(), box.handle);
  EXPECT_STREQ(box.Accept.Name(), L"Accept");
}

TEST_F(TextBoxTest, StartsWithoutWatermarkAndCaret) {
  EXPECT_EQ(box.WatermarkText.Get(), L"");
  EXPECT_EQ(box.WatermarkShownOnFocus.Get(), 0);
  EXPECT_EQ(box.HasFocus.Get(), 0);
  EXPECT_EQ(box.caretVisible, 0);
  EXPECT_EQ(box.textElement, nullptr);
  EXPECT_EQ(box.watermarkElement, nullptr);
}

TEST_F(TextBoxTest, WindowStandsWhereTheElementIs) {
  Open();
  EXPECT_EQ(BoxOf(box), FieldBox());
  EXPECT_EQ(BoxOf(box.handle), FieldBox());
  const RECT moved{1, 2, 51, 22};
  box.SetBounds(&moved);
  EXPECT_EQ(BoxOf(box.handle), (Box{1, 2, 50, 20}));
  EXPECT_EQ(BoxOf(box), (Box{1, 2, 50, 20}));
  ::SetWindowPos(box.handle, nullptr, 7, 8, 90, 30, SWP_NOZORDER);
  EXPECT_EQ(BoxOf(box), (Box{7, 8, 90, 30}));
}

TEST_F(TextBoxTest, WithoutParentWindowItKeepsItsRectangleOnly) {
  tests::Leaf plain;
  box.parent = &plain;
  box.OnAttached();
  EXPECT_EQ(box.handle, nullptr);
  EXPECT_EQ(BoxOf(box), FieldBox());
  box.parent = nullptr;
  box.OnAttached();
  box.OnDetached();
  Paint();
  EXPECT_TRUE(PaintedColumns().empty());
}

TEST_F(TextBoxTest, DetachingTakesTheWindowDown) {
  Open();
  const HWND window = box.handle;
  box.OnDetached();
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_EQ(box.handle, nullptr);
  EXPECT_EQ(box.Ask(WM_KEYUP), unhandled) << "a late message";
}

TEST_F(TextBoxTest, CreationRepaintsWhatIsDue) {
  Open();
  EXPECT_EQ(Repaints(), 0);
  box.OnDetached();
  box.needsRepaint = 1;
  Root().calls.clear();
  box.OnAttached();
  EXPECT_EQ(Repaints(), 1);
}

TEST_F(TextBoxTest, VisibilityShowsAndHidesTheWindow) {
  Open();
  for (const Visibility hidden : {Visibility::Hidden, Visibility::Collapsed}) {
    box.Visibility.Set(hidden);
    EXPECT_EQ(::GetWindowLongW(box.handle, GWL_STYLE) & WS_VISIBLE, 0);
    box.Visibility.Set(Visibility::Visible);
    EXPECT_NE(::GetWindowLongW(box.handle, GWL_STYLE) & WS_VISIBLE, 0);
  }
}

TEST_F(TextBoxTest, WatermarkSetBeforehandReachesTheNewWindow) {
  box.WatermarkText.Set(L"early");
  box.WatermarkShownOnFocus.Set(1);
  Open();
  wchar_t text[16]{};
  EXPECT_TRUE(::SendMessageW(box.handle, EM_GETCUEBANNER, reinterpret_cast<WPARAM>(text), 16));
  EXPECT_STREQ(text, L"early");
  EXPECT_EQ(box.WatermarkShownOnFocus.Get(), 1);
}

TEST_F(TextBoxTest, FontIsTheStatusFontInTheBoxsSize) {
  box.FontSize = 14.0F;
  Open();
  EXPECT_EQ(Font().lfHeight, -14);
  EXPECT_EQ(Font().lfWeight, 400);
  EXPECT_STREQ(Font().lfFaceName, GetStatusFont().lfFaceName);
}

TEST_F(TextBoxTest, WindowHasTheFormerFontUntilItHasTheNewOne) {
  Open();
  const int objects = tests::CountGdiObjects();
  for (int i = 0; i < 5; ++i)
    box.ApplySystemFont();
  EXPECT_EQ(tests::CountGdiObjects(), objects);
  EXPECT_EQ(Font().lfHeight, -ScaleY(10));
}

TEST_F(TextBoxTest, LengthIsLimitedWithTheFont) {
  box.MaxLength = 42;
  box.OnAttached();
  EXPECT_NE(::SendMessageW(box.handle, EM_GETLIMITTEXT, 0, 0), 42);
  box.ApplySystemFont();
  EXPECT_EQ(::SendMessageW(box.handle, EM_GETLIMITTEXT, 0, 0), 42);
}

TEST_F(TextBoxTest, TextBeginsWhereItsElementDoes) {
  box.OnAttached();
  const LRESULT margins = MAKELONG(::GetSystemMetrics(SM_CXEDGE) + 1, 1);
  EXPECT_EQ(::SendMessageW(box.handle, EM_GETMARGINS, 0, 0), margins);
  ::SendMessageW(box.handle, EM_SETMARGINS, EC_LEFTMARGIN | EC_RIGHTMARGIN, MAKELPARAM(9, 9));
  box.ApplySystemFont();
  EXPECT_EQ(::SendMessageW(box.handle, EM_GETMARGINS, 0, 0), margins);
  SetText(L"x");
  EXPECT_EQ(PositionOf(0), ::GetSystemMetrics(SM_CXEDGE) + 1);
  EXPECT_EQ(PositionOf(0), box.textElement->Left.Get());
}

TEST_F(TextBoxTest, ElementsHaveTheValuesOfTheirTables) {
  box.WatermarkText.Set(L"cue");
  Open();
  const long edge = ::GetSystemMetrics(SM_CXEDGE);
  const long scaled = ScaleX(static_cast<int>(edge));
  const auto size = static_cast<float>(ScaleY(10));
  EXPECT_EQ(LooksOf(*box.textElement),
            (Looks{{edge + 1, 0, FieldWidth() - edge, FieldHeight()}, L"", size, 400, 0, 1, true, 0, 0}));
  EXPECT_EQ(LooksOf(*box.watermarkElement),
            (Looks{{scaled + 3, 0, FieldWidth() - scaled, FieldHeight()}, L"cue", size, 400, 2, 5, true, 0, 1}));
}

TEST_F(TextBoxTest, SizeRebuildsBothElements) {
  Open();
  const auto text = box.textElement;
  const auto watermark = box.watermarkElement;
  box.FontSize = 20.0F;
  ::SendMessageW(box.handle, WM_SIZE, 0, MAKELPARAM(60, 30));
  EXPECT_NE(box.textElement, text);
  EXPECT_NE(box.watermarkElement, watermark);
  const long edge = ::GetSystemMetrics(SM_CXEDGE);
  EXPECT_EQ(BoxOf(*box.textElement), (Box{edge + 1, 0, 60 - edge, 30}));
  EXPECT_EQ(BoxOf(*box.watermarkElement), (Box{ScaleX(2) + 3, 0, 60 - ScaleX(2), 30}));
  EXPECT_EQ(box.textElement->FontSize.Get(), 20.0F);
  EXPECT_EQ(box.watermarkElement->FontSize.Get(), 20.0F);
}

TEST_F(TextBoxTest, SizeTellsTheControlItsBannerAgain) {
  Open();
  box.WatermarkText.Set(L"cue");
  box.received.clear();
  ::SendMessageW(box.handle, WM_SIZE, 0, MAKELPARAM(FieldWidth(), FieldHeight()));
  EXPECT_EQ(box.CountOf(EM_SETCUEBANNER), 1);
  EXPECT_EQ(box.watermarkElement->Text.Get(), L"cue");
}

TEST_F(TextBoxTest, RootIsntAskedForRepaintsByItsElements) {
  Open();
  Root().calls.clear();
  SetText(L"some text");
  Paint();
  SetText(L"");
  box.WatermarkText.Set(L"cue");
  Paint();
  EXPECT_EQ(Repaints(), 0) << "or painting would ask for painting";
}

TEST_F(TextBoxTest, KeepsTheTypedLengthWithinTheLimit) {
  Open();
  for (int i = 0; i < 151; ++i)
    ::SendMessageW(box.handle, WM_CHAR, L'a' + i % 26, 1);
  EXPECT_EQ(Text().size(), 150U);
  EXPECT_EQ(Text().substr(147), L"rst");
}

namespace {

void PutOnClipboard(HWND owner, const std::wstring &text) {
  ASSERT_TRUE(::OpenClipboard(owner));
  ::EmptyClipboard();
  const HGLOBAL memory = ::GlobalAlloc(GMEM_MOVEABLE, (text.size() + 1) * sizeof(wchar_t));
  std::copy_n(text.c_str(), text.size() + 1, static_cast<wchar_t *>(::GlobalLock(memory)));
  ::GlobalUnlock(memory);
  ::SetClipboardData(CF_UNICODETEXT, memory);
  ::CloseClipboard();
}

} // namespace

TEST_F(TextBoxTest, KeepsThePastedLengthWithinTheLimit) {
  Open();
  for (const std::size_t length : {150U, 151U, 5000U}) {
    SetText(L"");
    PutOnClipboard(Root().GetHandle(), std::wstring(length, L'p'));
    ::SendMessageW(box.handle, WM_PASTE, 0, 0);
    EXPECT_EQ(Text(), std::wstring(150, L'p')) << length;
  }
}

TEST_F(TextBoxTest, LeavesNoWindowsAndNoHandlesBehind) {
  const auto live = [&] {
    WatchedTextBox other(surface.Target(), 7);
    other.parent = &Root();
    const RECT bounds = Bounds();
    other.SetBounds(&bounds);
    other.OnAttached();
    other.ApplySystemFont();
    ::SetWindowTextW(other.handle, L"text");
    const D2D1_RECT_F all{0, 0, 100, 20};
    surface.Draw([&] { Root().PaintChild(surface.Target(), &other, &all); });
  };
  live();
  const int windows = tests::CountWindows();
  const int objects = tests::CountGdiObjects();
  const int handles = tests::CountKernelHandles();
  for (int i = 0; i < 5; ++i)
    live();
  EXPECT_EQ(tests::CountWindows(), windows);
  EXPECT_EQ(tests::CountGdiObjects(), objects);
  EXPECT_EQ(tests::CountKernelHandles(), handles);
}

} // namespace lumenor
