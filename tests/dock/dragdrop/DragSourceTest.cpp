// How long a drag lasts, and which cursor it shows.

#include <gtest/gtest.h>

#include "dock/dragdrop/DragObjects.h"
#include "dock/dragdrop/DragSource.h"
#include "dock/dragdrop/DragState.h"
#include "resources/resource.h"

namespace lumenor {

namespace {

using Microsoft::WRL::ComPtr;

class DragSource : public ::testing::Test {
protected:
  ~DragSource() override { ForgetDrag(); }

  const HCURSOR cursor = ::CopyIcon(::LoadCursorW(nullptr, IDC_NO));
  const ComPtr<CDragSource> source = MakeComObject<CDragSource>(cursor);
};

TEST_F(DragSource, IsMadeWithOneReference) {
  EXPECT_EQ(1U, CountReferences(source.Get()));
  ComPtr<IDropSource> same;
  EXPECT_EQ(S_OK, source->QueryInterface(IID_PPV_ARGS(same.GetAddressOf())));
  EXPECT_EQ(2U, CountReferences(source.Get()));
}

TEST_F(DragSource, IsCancelledByEscapeWhateverTheButton) {
  EXPECT_EQ(DRAGDROP_S_CANCEL, source->QueryContinueDrag(TRUE, MK_LBUTTON));
  EXPECT_EQ(DRAGDROP_S_CANCEL, source->QueryContinueDrag(TRUE, 0));
}

TEST_F(DragSource, GoesOnWithTheLeftButtonAndDropsWithoutIt) {
  EXPECT_EQ(S_OK, source->QueryContinueDrag(FALSE, MK_LBUTTON));
  EXPECT_EQ(S_OK, source->QueryContinueDrag(FALSE, MK_LBUTTON | MK_RBUTTON | MK_SHIFT));
  EXPECT_EQ(DRAGDROP_S_DROP, source->QueryContinueDrag(FALSE, 0));
  EXPECT_EQ(DRAGDROP_S_DROP, source->QueryContinueDrag(FALSE, MK_RBUTTON | MK_CONTROL));
}

TEST_F(DragSource, LeavesTheCursorOverTheRowToThePlatform) {
  const HCURSOR former = ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
  EXPECT_EQ(DRAGDROP_S_USEDEFAULTCURSORS, source->GiveFeedback(DROPEFFECT_MOVE));
  EXPECT_EQ(::LoadCursorW(nullptr, IDC_ARROW), ::GetCursor());
  ::SetCursor(former);
}

TEST_F(DragSource, ShowsItsOwnCursorOffTheRow) {
  const HCURSOR former = ::SetCursor(::LoadCursorW(nullptr, IDC_ARROW));
  dragOutside = true;
  EXPECT_EQ(S_OK, source->GiveFeedback(DROPEFFECT_NONE));
  EXPECT_EQ(cursor, ::GetCursor());
  ::SetCursor(former);
}

TEST(DragSourceCursor, IsDestroyedWithItsSource) {
  const HCURSOR cursor = ::CopyIcon(::LoadCursorW(nullptr, IDC_NO));
  ICONINFO info = {};
  auto source = MakeComObject<CDragSource>(cursor);
  ASSERT_TRUE(::GetIconInfo(cursor, &info));
  ::DeleteObject(info.hbmMask);
  ::DeleteObject(info.hbmColor);
  source.Reset();
  EXPECT_FALSE(::GetIconInfo(cursor, &info));
}

TEST(DragSourceCursor, IsInTheProgram) {
  EXPECT_NE(nullptr, ::LoadCursorW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(DragCursorId)));
}

} // namespace

} // namespace lumenor
