#include "toolkit/drawing/ScrollViewer.h"

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>

#include "drawing/ButtonOnScreen.h"
#include "drawing/Pictures.h"
#include "drawing/TestWindow.h"
#include "support/Desk.h"
#include "support/FailingClass.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"
#include "system/WindowException.h"
#include "toolkit/AnimationServices.h"
#include "toolkit/StackPanel.h"
#include "toolkit/TestElements.h"

namespace lumenor {

namespace {

using tests::Box;
using tests::BoxOf;
using tests::Leaf;

class ScrollViewerTest : public ::testing::Test {
protected:
  ScrollViewerTest() {
    viewer.Width.Set(100);
    viewer.Height.Set(40);
    strip.Top.Set(3);
    viewer.SetChild(&strip);
  }

  Leaf strip{250, 20};
  ScrollViewer viewer{nullptr};
};

TEST_F(ScrollViewerTest, StripGetsTheWidthItAsksForAndTheRoomsHeight) {
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 40}));
  EXPECT_EQ(viewer.GetChild(), &strip);
  EXPECT_EQ(strip.calls, std::vector<std::string>{"OnAttached"});
}

TEST_F(ScrollViewerTest, StripNoWiderThanTheRoomSitsAtZero) {
  strip.Left.Set(-20);
  strip.DesiredWidth.Set(100);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 100, 40}));
  strip.Left.Set(7);
  viewer.Layout();
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 100, 40}));
}

TEST_F(ScrollViewerTest, WiderStripStaysWhereItWasScrolledTo) {
  strip.Left.Set(-60);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -60);
  strip.Left.Set(-150);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -150) << "its end meets the room's";
}

TEST_F(ScrollViewerTest, EndOfTheStripNeverComesInsideTheRoom) {
  strip.Left.Set(-151);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), -150);
}

TEST_F(ScrollViewerTest, BeginOfTheStripNeverComesInsideTheRoom) {
  strip.Left.Set(1);
  viewer.Layout();
  EXPECT_EQ(strip.Left.Get(), 0);
}

TEST_F(ScrollViewerTest, StripScrolledToItsEndFollowsAGrowingRoom) {
  strip.Left.Set(-150);
  viewer.Width.Set(120);
  EXPECT_EQ(strip.Left.Get(), -130);
  viewer.Width.Set(300);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 40}));
}

TEST_F(ScrollViewerTest, FollowsItsOwnHeightAndTheStripsWish) {
  viewer.Height.Set(50);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 250, 50}));
  strip.DesiredWidth.Set(300);
  EXPECT_EQ(BoxOf(strip), (Box{0, 3, 300, 50}));
}

TEST_F(ScrollViewerTest, ReplacedStripIsntFollowedAnyMore) {
  Leaf second(10, 10);
  viewer.SetChild(&second);
  EXPECT_EQ(BoxOf(second), (Box{0, 0, 10, 40}));
  EXPECT_EQ(strip.parent, nullptr);
  EXPECT_EQ(strip.DesiredWidth.changed.Count(), 0U);
  EXPECT_EQ(strip.Left.changed.Count(), 0U);
  EXPECT_EQ(strip.Visibility.changed.Count(), 0U);
}

TEST_F(ScrollViewerTest, WithoutStripLaysOutNothing) {
  ScrollViewer empty(nullptr);
  empty.Width.Set(10);
  EXPECT_EQ(empty.GetChild(), nullptr);
}

/// A strip of a blue and a yellow half, 500 pixels wide, with a window as panels have one.
class Strip : public StackPanel {
public:
  Strip() { DesiredWidth.Set(500); }

  void Paint(RenderTargetPtr target, const D2D1_RECT_F *rect) override {
    const float middle = (rect->left + rect->right) / 2;
    Fill(*target.Get(), {rect->left, rect->top, middle, rect->bottom}, 0x0000FF);
    Fill(*target.Get(), {middle, rect->top, rect->right, rect->bottom}, 0xFFFF00);
    ++paints;
  }
  void Layout() override {} // keeps its wish, having no children

  int paints = 0;

private:
  static void Fill(ID2D1RenderTarget &target, const D2D1_RECT_F &rect, UINT32 color) {
    const D2D1_COLOR_F solid{static_cast<float>(color >> 16 & 0xFF) / 255, static_cast<float>(color >> 8 & 0xFF) / 255,
                             static_cast<float>(color & 0xFF) / 255, 1};
    Microsoft::WRL::ComPtr<ID2D1SolidColorBrush> brush;
    ThrowIfFailed(target.CreateSolidColorBrush(&solid, nullptr, &brush));
    target.FillRectangle(&rect, brush.Get());
  }
};

/// The places of an element from now on.
class SeenPlaces {
public:
  explicit SeenPlaces(UIElement &element) { element.Left.changed.AddListener(listener.get()); }

  std::vector<long> places;

private:
  void OnChange(PropertyChangeEventArgs<long> *args) { places.push_back(args->newValue); }

  std::shared_ptr<EventListener<PropertyChangeEventArgs<long>>> listener = MakeListener(this, &SeenPlaces::OnChange);
};

/// Gives the test its arrows.
class ExposedViewer : public ScrollViewer {
public:
  using ScrollViewer::leftButton;
  using ScrollViewer::rightButton;
  using ScrollViewer::ScrollViewer;
};

constexpr RECT room{20, 5, 120, 45}; // in the window; an arrow takes 24 of its 100 pixels

/// A viewer in a window that shows, without its strip yet. The arrows' pictures are red to the left, green to the
/// right.
class ScrollViewerOnScreen : public ::testing::Test {
protected:
  ScrollViewerOnScreen() {
    const std::wstring resources = folders.ProgramFiles() + L"\\Tarnwick\\resources";
    tests::MakeFolders(folders.InstallFolder());
    tests::MakeFolders(resources);
    tests::WritePicture(resources + L"\\scroll_left.png", tests::SolidPicture(24, 48, 0xFFFF0000));
    tests::WritePicture(resources + L"\\scroll_right.png", tests::SolidPicture(24, 48, 0xFF00FF00));
    desk::MoveCursor({5, 5});
    root.onInitialize = [this] {
      root.canvas.AddChild(&viewer);
      viewer.SetBounds(&room);
    };
    root.Create(nullptr);
    root.Visibility.Set(Visibility::Visible);
    desk::PumpAll();
  }

  ~ScrollViewerOnScreen() override {
    desk::ReleaseLeftButton();
    desk::MoveCursor({5, 5});
    ForgetWindowException();
    if (::IsWindow(root.GetHandle()))
      ::DestroyWindow(root.GetHandle());
    ShutDownAnimationServices();
  }

  /// Which arrows show: "", "left", "right" or "left right"; their windows and their elements agree.
  std::string Arrows() const {
    std::string shown;
    for (const auto &button : {viewer.leftButton, viewer.rightButton}) {
      const bool shows = button->Visibility.Get() == Visibility::Visible;
      EXPECT_EQ(::IsWindowVisible(button->GetHandle()) != FALSE, shows);
      if (!shows)
        EXPECT_EQ(button->Visibility.Get(), Visibility::Collapsed);
      else
        shown += (shown.empty() ? "" : " ") + std::string(button == viewer.leftButton ? "left" : "right");
    }
    return shown;
  }

  /// A press and a release of the real mouse on the arrow.
  static void Press(const Button &button) {
    desk::MoveCursor(desk::MiddleOf(button.handle));
    desk::PressLeftButton();
    desk::PumpAll();
    desk::ReleaseLeftButton();
    desk::PumpAll();
    desk::MoveCursor({5, 5});
  }

  /// A click as the parent posts it back, without the wait for it.
  static void Click(const Button &button) {
    ::SendMessageW(button.handle, WM_COMMAND, MAKEWPARAM(0, BN_CLICKED), reinterpret_cast<LPARAM>(button.handle));
  }

  bool SlidesTo(long left) {
    return desk::PumpUntil([] { return GetAnimationServices().Timer()->IsEnabled() == S_FALSE; }) &&
           strip.Left.Get() == left;
  }

  /// What shows at a point of the window, 0x00RRGGBB.
  std::uint32_t PixelAt(int x, int y) { return desk::PixelAt({root.Left.Get() + x, root.Top.Get() + y}); }

  bool Shows(int x, int y, std::uint32_t color) {
    return desk::PumpUntil([=, this] { return PixelAt(x, y) == color; });
  }

  tests::TestFolders folders;
  TestWindow root;
  ExposedViewer viewer{root.Target()};
  Strip strip;
};

TEST_F(ScrollViewerOnScreen, GetsItsWindowAndTwoArrowsThatDontShow) {
  const HWND window = viewer.GetHandle();
  EXPECT_EQ(::GetParent(window), root.canvas.GetHandle());
  EXPECT_EQ(::GetWindowLongW(window, GWL_STYLE), 0x52000000);
  EXPECT_EQ(BoxOf(window), (Box{20, 5, 100, 40}));
  EXPECT_EQ(tests::ChildWindows(window).size(), 2U);
  EXPECT_EQ(Arrows(), "");
}

TEST_F(ScrollViewerOnScreen, ArrowsAreNamedAndLieAboveWithoutCovering) {
  for (const auto &button : {viewer.leftButton, viewer.rightButton}) {
    EXPECT_EQ(::GetParent(button->GetHandle()), viewer.GetHandle());
    EXPECT_EQ(button->Name.Get(), L"Scroll");
    wchar_t text[16] = L"";
    ::GetWindowTextW(button->GetHandle(), text, 16);
    EXPECT_STREQ(text, L"scroll");
    EXPECT_EQ(::GetWindowLongW(button->GetHandle(), GWL_EXSTYLE) & WS_EX_TRANSPARENT, WS_EX_TRANSPARENT);
  }
}

TEST_F(ScrollViewerOnScreen, ArrowsStandAtTheEndsOfTheRoom) {
  EXPECT_EQ(BoxOf(viewer.leftButton->GetHandle()), (Box{0, 0, 24, 40}));
  EXPECT_EQ(BoxOf(viewer.rightButton->GetHandle()), (Box{76, 0, 24, 40}));
  viewer.Width.Set(150);
  viewer.Height.Set(60);
  EXPECT_EQ(BoxOf(viewer.GetHandle()), (Box{20, 5, 150, 60}));
  EXPECT_EQ(BoxOf(viewer.leftButton->GetHandle()), (Box{0, 0, 24, 60}));
  EXPECT_EQ(BoxOf(viewer.rightButton->GetHandle()), (Box{126, 0, 24, 60}));
  EXPECT_EQ(BoxOf(*viewer.rightButton), (Box{126, 0, 24, 60}));
}

TEST_F(ScrollViewerOnScreen, ArrowShowsWhereThereIsMoreToCome) {
  viewer.SetChild(&strip);
  EXPECT_EQ(Arrows(), "right");
  strip.Left.Set(-1);
  EXPECT_EQ(Arrows(), "left right");
  strip.Left.Set(-400);
  EXPECT_EQ(Arrows(), "left");
  strip.DesiredWidth.Set(501);
  EXPECT_EQ(Arrows(), "left right");
  strip.DesiredWidth.Set(100);
  EXPECT_EQ(Arrows(), "");
  viewer.Width.Set(99);
  EXPECT_EQ(Arrows(), "right");
}

TEST_F(ScrollViewerOnScreen, CollapsedStripHidesBothArrows) {
  viewer.SetChild(&strip);
  strip.Left.Set(-50);
  strip.Visibility.Set(Visibility::Collapsed);
  EXPECT_EQ(Arrows(), "");
  strip.Visibility.Set(Visibility::Hidden);
  EXPECT_EQ(Arrows(), "left right") << "it keeps its place";
}

TEST_F(ScrollViewerOnScreen, ArrowsStayAboveTheStripThatMoves) {
  viewer.SetChild(&strip);
  strip.Left.Set(-10);
  for (const long left : {-20L, -30L}) {
    strip.Left.Set(left);
    EXPECT_EQ(BoxOf(strip.GetHandle()), (Box{left, 0, 500, 40}));
    EXPECT_EQ(tests::ChildWindows(viewer.GetHandle()).back(), strip.GetHandle());
  }
  viewer.Height.Set(50);
  EXPECT_EQ(tests::ChildWindows(viewer.GetHandle()).back(), strip.GetHandle());
}

TEST_F(ScrollViewerOnScreen, ArrowThatComesUpLiesAboveTheStrip) {
  viewer.SetChild(&strip);
  ASSERT_EQ(Arrows(), "right");
  ::SetWindowPos(strip.GetHandle(), HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  strip.Left.Set(-10);
  const std::vector<HWND> windows = tests::ChildWindows(viewer.GetHandle());
  EXPECT_EQ(windows.back(), strip.GetHandle());
}

TEST_F(ScrollViewerOnScreen, ClickSlidesByAStep) {
  viewer.SetChild(&strip);
  desk::PumpAll();
  Press(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(-77)) << strip.Left.Get();
  EXPECT_EQ(Arrows(), "left right");
  Press(*viewer.leftButton); // not the same one, which would be a double click
  EXPECT_TRUE(SlidesTo(0)) << strip.Left.Get();
  Press(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(-77)) << strip.Left.Get();
  Click(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(-154)) << strip.Left.Get();
}

TEST_F(ScrollViewerOnScreen, SlideEndsWhereTheStripEnds) {
  viewer.SetChild(&strip);
  strip.Left.Set(-350);
  Click(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(-400)) << strip.Left.Get();
  EXPECT_EQ(Arrows(), "left") << "gone as soon as the end is there";
}

TEST_F(ScrollViewerOnScreen, SlideEndsWhereTheStripBegins) {
  viewer.SetChild(&strip);
  strip.Left.Set(-30);
  Click(*viewer.leftButton);
  EXPECT_TRUE(SlidesTo(0)) << strip.Left.Get();
  EXPECT_EQ(Arrows(), "right");
}

TEST_F(ScrollViewerOnScreen, StripInsideItsRoomSlidesHomeOnly) {
  strip.DesiredWidth.Set(80);
  viewer.SetChild(&strip);
  strip.Left.Set(-40);
  Click(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(0)) << strip.Left.Get();
}

TEST_F(ScrollViewerOnScreen, ClickDuringASlideStartsFromWhereTheStripIs) {
  strip.DesiredWidth.Set(5000);
  viewer.SetChild(&strip);
  Click(*viewer.rightButton);
  strip.Left.Set(-1000); // far off, so that the way from anywhere else shows; a busy machine has few ticks
  const SeenPlaces seen(strip);
  Click(*viewer.rightButton);
  EXPECT_EQ(strip.Left.Get(), -1000) << "no jump";
  EXPECT_TRUE(SlidesTo(-1000 - 77)) << strip.Left.Get();
  EXPECT_THAT(seen.places, testing::AllOf(testing::Not(testing::IsEmpty()), testing::Each(testing::Lt(-1000))))
      << "nor any back to an earlier start";
}

TEST_F(ScrollViewerOnScreen, SecondClickOfADoubleClickIsAStepToo) {
  strip.DesiredWidth.Set(5000);
  viewer.SetChild(&strip);
  const HWND arrow = viewer.rightButton->GetHandle();
  ::SendMessageW(arrow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
  ::SendMessageW(arrow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  ASSERT_TRUE(SlidesTo(-77));
  ::SendMessageW(arrow, WM_LBUTTONDBLCLK, MK_LBUTTON, MAKELPARAM(5, 5));
  ::SendMessageW(arrow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  EXPECT_TRUE(SlidesTo(-154));
}

TEST_F(ScrollViewerOnScreen, SlideTakesItsTime) {
  viewer.SetChild(&strip);
  const ULONGLONG start = ::GetTickCount64();
  Click(*viewer.rightButton);
  EXPECT_TRUE(SlidesTo(-77));
  EXPECT_GE(::GetTickCount64() - start, 290U);
}

/// What the platform was asked for: the seconds, the end and the shares of speeding up and of slowing down.
std::vector<double> askedMove;
HRESULT(STDMETHODCALLTYPE *createMove)
(IUIAnimationTransitionLibrary *, double, double, double, double, IUIAnimationTransition **) = nullptr;

HRESULT STDMETHODCALLTYPE NoteMove(IUIAnimationTransitionLibrary *self, double duration, double end,
                                   double acceleration, double deceleration, IUIAnimationTransition **result) {
  askedMove = {duration, end, acceleration, deceleration};
  return createMove(self, duration, end, acceleration, deceleration, result);
}

// A short slide has too few steps to tell its curve by.
TEST_F(ScrollViewerOnScreen, SlideSpeedsUpForAMomentAndSlowsDownForLong) {
  viewer.SetChild(&strip);
  tests::OperationSpy library(GetAnimationServices().TransitionLibrary().Get());
  createMove = library.Exchange(10, &NoteMove);
  Click(*viewer.rightButton);
  EXPECT_THAT(askedMove, testing::Pointwise(testing::DoubleNear(0.00001), {0.3, -77.0, 0.05, 0.75}));
}

TEST_F(ScrollViewerOnScreen, ReplacedStripDoesntSlideOn) {
  viewer.SetChild(&strip);
  Click(*viewer.rightButton);
  ASSERT_TRUE(desk::PumpUntil([this] { return strip.Left.Get() < 0; }));
  const long left = strip.Left.Get();
  Strip second;
  viewer.SetChild(&second);
  EXPECT_EQ(Arrows(), "right");
  EXPECT_TRUE(SlidesTo(left));
  EXPECT_EQ(second.Left.Get(), 0);
  viewer.SetChild(&strip);
}

TEST_F(ScrollViewerOnScreen, WithoutAnimationsTheClickRaisesAndTheStripStays) {
  viewer.SetChild(&strip);
  ShutDownAnimationServices();
  const tests::FailingClass noTimer(CLSID_UIAnimationTimer, E_ACCESSDENIED);
  Click(*viewer.rightButton);
  EXPECT_THROW(RethrowWindowException(), HResultError);
  EXPECT_EQ(strip.Left.Get(), 0);
}

TEST_F(ScrollViewerOnScreen, WithoutStripAnArrowDoesNothing) {
  Click(*viewer.leftButton);
  Click(*viewer.rightButton);
  EXPECT_EQ(Arrows(), "");
}

TEST_F(ScrollViewerOnScreen, PaintsTheStripShiftedAndClippedToTheRoom) {
  const desk::Backdrop behind({root.Left.Get(), root.Top.Get(), root.Left.Get() + 200, root.Top.Get() + 80},
                              RGB(0x30, 0x30, 0x30));
  ::SetWindowPos(root.GetHandle(), HWND_TOPMOST, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
  viewer.SetChild(&strip);
  strip.Left.Set(-200); // the halves meet in the middle of the room
  strip.Invalidate();
  EXPECT_TRUE(Shows(60, 25, 0x0000FF));
  EXPECT_TRUE(Shows(69, 25, 0x0000FF));
  EXPECT_TRUE(Shows(70, 25, 0xFFFF00));
  EXPECT_TRUE(Shows(19, 25, 0x303030)) << "left of the room";
  EXPECT_TRUE(Shows(120, 25, 0x303030)) << "right of the room";
  EXPECT_TRUE(Shows(70, 4, 0x303030));
  EXPECT_TRUE(Shows(70, 45, 0x303030));
}

TEST_F(ScrollViewerOnScreen, PaintsTheStripAnewWhereASmallMoveUncoversNothing) {
  viewer.SetChild(&strip);
  strip.Left.Set(-200);
  strip.Invalidate();
  ASSERT_TRUE(Shows(69, 25, 0x0000FF));
  strip.Left.Set(-201);
  EXPECT_TRUE(Shows(69, 25, 0xFFFF00));
}

TEST_F(ScrollViewerOnScreen, PaintsTheArrowsAboveTheStrip) {
  viewer.Height.Set(77);
  viewer.SetChild(&strip);
  strip.Left.Set(-200);
  strip.Invalidate();
  EXPECT_TRUE(Shows(20, 5 + 38, 0xFF0000));
  EXPECT_TRUE(Shows(43, 5 + 38, 0xFF0000));
  EXPECT_TRUE(Shows(44, 5 + 38, 0x0000FF));
  EXPECT_TRUE(Shows(95, 5 + 38, 0xFFFF00));
  EXPECT_TRUE(Shows(96, 5 + 38, 0x00FF00));
  EXPECT_EQ(PixelAt(30, 5 + 13), 0x0000FFU) << "the arrow begins 14 pixels down";
  EXPECT_EQ(PixelAt(30, 5 + 14), 0xFF0000U);
  EXPECT_EQ(PixelAt(30, 5 + 61), 0xFF0000U);
  EXPECT_EQ(PixelAt(30, 5 + 62), 0x0000FFU) << "and is 48 high";
  strip.Left.Set(0);
  strip.Invalidate();
  EXPECT_TRUE(Shows(30, 5 + 38, 0x0000FF)) << "nothing to come on the left";
}

TEST_F(ScrollViewerOnScreen, RoomOfNegativeWidthPaintsNothing) {
  viewer.SetChild(&strip);
  strip.paints = 0;
  const D2D1_RECT_F crossed{20, 0, 10, 40}, flat{20, 40, 30, 40};
  viewer.Paint(root.Target(), &crossed);
  viewer.Paint(root.Target(), &flat);
  EXPECT_EQ(strip.paints, 0);
}

TEST_F(ScrollViewerOnScreen, ArrowsOfARoomWithoutSizeStayWithinIt) {
  viewer.SetChild(&strip);
  viewer.Width.Set(-30);
  viewer.Height.Set(-5);
  EXPECT_EQ(BoxOf(*viewer.leftButton), (Box{0, 0, 24, 0}));
  EXPECT_EQ(BoxOf(*viewer.rightButton), (Box{0, 0, 24, 0}));
  viewer.Width.Set(100);
  viewer.Height.Set(40);
  EXPECT_EQ(BoxOf(*viewer.rightButton), (Box{76, 0, 24, 40}));
}

TEST_F(ScrollViewerOnScreen, DetachedViewerLosesItsWindows) {
  const HWND window = viewer.GetHandle(), arrow = viewer.leftButton->GetHandle();
  root.canvas.RemoveChild(&viewer);
  EXPECT_FALSE(::IsWindow(window));
  EXPECT_FALSE(::IsWindow(arrow));
  EXPECT_EQ(viewer.GetHandle(), nullptr);
  viewer.OnDetached();
  viewer.SetChild(&strip);
  root.canvas.AddChild(&viewer);
  EXPECT_TRUE(::IsWindow(viewer.GetHandle()));
  EXPECT_EQ(BoxOf(viewer.rightButton->GetHandle()), (Box{76, 0, 24, 40}));
  EXPECT_EQ(Arrows(), "right");
}

TEST_F(ScrollViewerOnScreen, CommandGoesBackToItsControl) {
  viewer.SetChild(&strip);
  int clicks = 0;
  class Counter : public EventListener<ButtonEventArgs> {
  public:
    explicit Counter(int &count) : count(count) {}
    void Invoke(ButtonEventArgs *) override { ++count; }

  private:
    int &count;
  } counter(clicks);
  viewer.rightButton->Click.AddListener(&counter);
  ::SendMessageW(viewer.GetHandle(), WM_COMMAND, MAKEWPARAM(0, BN_CLICKED),
                 reinterpret_cast<LPARAM>(viewer.rightButton->GetHandle()));
  EXPECT_EQ(clicks, 0) << "a turn later";
  desk::PumpAll();
  EXPECT_EQ(clicks, 1);
}

TEST(ScrollViewerWindow, WithoutParentWindowThereIsNone) {
  ScrollViewer viewer(nullptr);
  viewer.OnAttached();
  EXPECT_EQ(viewer.GetHandle(), nullptr);
  Leaf windowless;
  viewer.parent = &windowless;
  viewer.OnAttached();
  EXPECT_EQ(viewer.GetHandle(), nullptr);
  Leaf strip(50, 10);
  viewer.SetChild(&strip);
  viewer.Width.Set(20);
  EXPECT_EQ(BoxOf(strip), (Box{0, 0, 50, 0}));
}

} // namespace

} // namespace lumenor
