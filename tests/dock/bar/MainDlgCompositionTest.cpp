// How the bar is composed on a screen of 1280 by 1024 pixels, at 96 dots per inch unless said otherwise.

#include <algorithm>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

#include "content/Documents.h"
#include "dock/bar/BarFixture.h"
#include "dock/flyouts/FlyoutWindow.h"
#include "support/Desk.h"
#include "support/LogCapture.h"
#include "toolkit/Scale.h"

namespace lumenor {

namespace {

class Bar : public BarFixture {
protected:
  void SaveDocuments(const ElementList &mainElements, const ElementList &userElements) const {
    SaveDocument(mainElements, mainDocument);
    SaveDocument(userElements, userDocument);
  }

  /// Builds the bar of so many fixed and user buttons.
  BarTree StartWith(int mainCount, int userCount) {
    SaveDocuments(PictureElements(mainCount), PictureElements(userCount));
    return BarTree(Start());
  }

  /// The control ids of the buttons on a panel.
  static std::vector<int> IdsOf(Container &panel) {
    std::vector<int> ids;
    for (UIElement *const child : panel.GetChildren())
      ids.push_back(::GetDlgCtrlID(child->GetHandle()));
    return ids;
  }

  static std::vector<std::wstring> HeadsOf(Container &panel) {
    std::vector<std::wstring> heads;
    for (UIElement *const child : panel.GetChildren())
      heads.push_back(dynamic_cast<DockButton &>(*child).GetElement().Head);
    return heads;
  }
};

using Lines = std::vector<std::string>;
using Ids = std::vector<int>;
using Texts = std::vector<std::wstring>;

const Lines composedBar = {
    "DockPanel 0 0 900 77",          "  BackPlate 0 0 900 77",           "  DockPanel 0 0 900 77",
    "    StackPanel 0 0 154 77",     "      DockButton 0 0 77 77",       "      DockButton 77 0 77 77",
    "    ImageElement 154 0 2 77",   "    ScrollViewer 156 0 538 77",    "      StackPanel 0 0 162 77",
    "        DockButton 4 4 77 73",  "        DockButton 85 4 77 73",    "    Canvas 696 0 204 77",
    "      DockButton 152 12 36 64", "      SearchBox 16 35 120 17",     "      TextBox 18 37 84 12",
    "      DockButton 106 37 13 14", "      DockButton 116 34 19 20",    "      StackPanel 148 2 60 16",
    "        DockButton 0 0 16 16",  "        CheckedButton 18 0 16 16", "        DockButton 36 0 16 16",
    "    ImageElement 694 0 2 77",
};

/// The same at 144 dots per inch.
const Lines denselyComposedBar = {
    "DockPanel 0 0 1350 116",         "  BackPlate 0 0 1350 116",         "  DockPanel 0 0 1350 116",
    "    StackPanel 0 0 232 116",     "      DockButton 0 0 116 116",     "      DockButton 116 0 116 116",
    "    ImageElement 232 0 2 116",   "    ScrollViewer 234 0 808 116",   "      StackPanel 0 0 244 116",
    "        DockButton 6 6 116 110", "        DockButton 128 6 116 110", "    Canvas 1044 0 306 116",
    "      DockButton 228 18 54 96",  "      SearchBox 24 53 180 26",     "      TextBox 27 56 126 18",
    "      DockButton 159 56 20 21",  "      DockButton 174 51 29 30",    "      StackPanel 222 3 90 24",
    "        DockButton 0 0 24 24",   "        CheckedButton 26 0 24 24", "        DockButton 52 0 24 24",
    "    ImageElement 1042 0 2 116",
};

TEST_F(Bar, IsComposedInItsOrder) {
  StartWith(2, 2);
  EXPECT_EQ(ScaleX(96) == 96 ? composedBar : denselyComposedBar, Describe(*dock->GetChild()));
}

/// Where the windows of the elements stand on the screen, against where the elements are; only what differs.
void CompareWindows(UIElement &element, POINT origin, Lines &differences) {
  origin.x += element.Left.Get();
  origin.y += element.Top.Get();
  if (element.GetHandle() != nullptr) {
    RECT place{};
    ::GetWindowRect(element.GetHandle(), &place);
    const RECT expected = {origin.x, origin.y, origin.x + element.Width.Get(), origin.y + element.Height.Get()};
    if (!::EqualRect(&place, &expected))
      differences.push_back(Describe(element)[0] + " has its window at " + std::to_string(place.left) + " " +
                            std::to_string(place.top) + " " + std::to_string(place.right - place.left) + " " +
                            std::to_string(place.bottom - place.top));
  }
  for (UIElement *const child : ChildrenOf(element))
    CompareWindows(*child, origin, differences);
}

TEST_F(Bar, HasEveryWindowWhereItsElementIs) {
  StartWith(2, 2);
  Lines differences;
  CompareWindows(*dock, {0, 0}, differences);
  EXPECT_EQ(Lines{}, differences);
}

TEST_F(Bar, IsAtTheTopInTheMiddleOfTheScreen) {
  StartWith(0, 0);
  RECT place{};
  ::GetWindowRect(dock->handle, &place);
  EXPECT_EQ((std::vector<LONG>{190, 1, 1090, 78}),
            (std::vector<LONG>{place.left, place.top, place.right, place.bottom}));
  EXPECT_TRUE(::IsWindowVisible(dock->handle));
}

TEST_F(Bar, HasTheTitleAndTheIconOfTheProgram) {
  StartWith(0, 0);
  wchar_t title[32] = {};
  ::GetWindowTextW(dock->handle, title, 32);
  EXPECT_STREQ(L"Lumenor Dock", title);
  const HICON icon = ::LoadIconW(::GetModuleHandleW(nullptr), MAKEINTRESOURCEW(128));
  ASSERT_NE(nullptr, icon);
  EXPECT_EQ(reinterpret_cast<LRESULT>(icon), ::SendMessageW(dock->handle, WM_GETICON, ICON_BIG, 0));
}

TEST_F(Bar, LogsItsComposition) {
  const tests::LogCapture log(folders);
  StartWith(0, 0);
  const Lines lines = log.Lines();
  EXPECT_EQ(1, std::count(lines.begin(), lines.end(), "INFO: MainDlg InitializeComponent"));
}

TEST_F(Bar, ShowsThreeFixedButtonsOfMore) {
  const BarTree tree = StartWith(5, 0);
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), HeadsOf(tree.mainButtons));
  EXPECT_EQ(231, tree.leftSplitter.Left.Get());
}

TEST_F(Bar, WithoutFixedButtonsKeepsTheLeftSplitter) {
  const BarTree tree = StartWith(0, 1);
  EXPECT_EQ(Texts{}, HeadsOf(tree.mainButtons));
  EXPECT_EQ("ImageElement 0 0 2 77", Describe(tree.leftSplitter)[0]);
  EXPECT_EQ("ScrollViewer 2 0 692 77", Describe(tree.scrollViewer)[0]);
  EXPECT_EQ(lumenor::Visibility::Visible, tree.leftSplitter.Visibility.Get());
}

TEST_F(Bar, ShowsUserButtonsInTheOrderOfTheDocument) {
  const BarTree tree = StartWith(0, 3);
  EXPECT_EQ((Texts{L"Head 0", L"Head 1", L"Head 2"}), HeadsOf(tree.userButtons));
}

TEST_F(Bar, LetsOnlyUserButtonsBeDragged) {
  const BarTree tree = StartWith(1, 1);
  EXPECT_EQ(1, dynamic_cast<DockButton &>(*tree.userButtons.GetChildren()[0]).Draggable.Get());
  EXPECT_EQ(0, dynamic_cast<DockButton &>(*tree.mainButtons.GetChildren()[0]).Draggable.Get());
  EXPECT_EQ(0, tree.forYouButton.Draggable.Get());
}

TEST_F(Bar, GivesUserButtonsTheToolTipOfTheirElement) {
  const BarTree tree = StartWith(0, 1);
  EXPECT_EQ(L"Tip of Head 0", tree.userButtons.GetChildren()[0]->Name.Get());
}

TEST_F(Bar, NumbersItsButtons) {
  const BarTree tree = StartWith(2, 3);
  EXPECT_EQ((Ids{1000, 1001}), IdsOf(tree.mainButtons));
  EXPECT_EQ((Ids{2000, 2001, 2002}), IdsOf(tree.userButtons));
}

TEST_F(Bar, NumbersTheCommandButtonsFromTheCountOfUserButtons) {
  const BarTree tree = StartWith(1, 3);
  EXPECT_EQ((Ids{1003, 1004, 1005}),
            (Ids{::GetDlgCtrlID(tree.forYouButton.GetHandle()), ::GetDlgCtrlID(tree.searchProviderButton.GetHandle()),
                 ::GetDlgCtrlID(tree.searchButton.GetHandle())}));
  EXPECT_EQ((Ids{1007, 1008, 1006}), IdsOf(tree.systemButtons)) << "reset, position, close";
}

TEST_F(Bar, SkipsAUserElementWithoutAButton) {
  SaveDocuments({}, {PictureElement(L"First"), VanishedElement(L"Gone"), PictureElement(L"Last")});
  const BarTree tree(Start());
  EXPECT_EQ((Texts{L"First", L"Last"}), HeadsOf(tree.userButtons));
  EXPECT_EQ((Ids{2000, 2001}), IdsOf(tree.userButtons));
}

TEST_F(Bar, KeepsTheRecordOfASkippedElement) {
  SaveDocuments({}, {PictureElement(L"First"), VanishedElement(L"Gone"), PictureElement(L"Last")});
  const ElementList before = LoadDocument(userDocument, false);
  Start();
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(before, LoadDocument(userDocument, false));
}

TEST_F(Bar, SkipsAUserElementWithNeitherAPictureNorATarget) {
  Element nameOnly;
  nameOnly.Head = L"Name only";
  SaveDocuments({}, {PictureElement(L"First"), Element(), nameOnly, PictureElement(L"Last")});
  const ElementList before = LoadDocument(userDocument, false);
  ASSERT_EQ(4U, before.size());
  EXPECT_EQ((Texts{L"First", L"Last"}), HeadsOf(BarTree(Start()).userButtons));
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(before, LoadDocument(userDocument, false));
}

/// A picture of each kind that can't be decoded.
class BarWithABadPicture : public Bar {
protected:
  /// Builds a bar with such a button among the fixed ones and among the user's.
  void StartWith(const std::wstring &image) {
    Element bad = PictureElement(L"Bad");
    bad.Image = image;
    SaveDocuments({bad, PictureElement(L"Fixed")}, {PictureElement(L"First"), bad, PictureElement(L"Last")});
    Start();
  }

  void ExpectAllButtons(const std::wstring &image) {
    ASSERT_TRUE(::IsWindow(dock->handle));
    const BarTree tree(*dock);
    EXPECT_EQ((Texts{L"Bad", L"Fixed"}), HeadsOf(tree.mainButtons));
    EXPECT_EQ((Texts{L"First", L"Bad", L"Last"}), HeadsOf(tree.userButtons));
    const Lines lines = log.Lines();
    EXPECT_EQ(2, std::count_if(lines.begin(), lines.end(), [&](const std::string &line) {
                return line.starts_with("ERROR: MainDlg: can't show " + tests::Utf8(image) + ", error ") &&
                       line.ends_with(", loading default image");
              }));
    EXPECT_TRUE(desk::EventLogSpy::Reports().empty());
  }

  const tests::LogCapture log{folders};
  const desk::EventLogSpy eventLog;
};

TEST_F(BarWithABadPicture, ComesUpWithOneThatHasAFlippedBit) {
  const std::wstring path = folders.Root() + L"\\flipped.png";
  std::string bytes = tests::ReadBytes(PicturePath());
  bytes.at(bytes.find("IHDR") + 3) ^= 1;
  tests::WriteBytes(path, bytes);
  StartWith(path);
  ExpectAllButtons(path);
}

TEST_F(BarWithABadPicture, ComesUpWithOneThatIsCutOff) {
  const std::wstring path = folders.Root() + L"\\cut.png";
  tests::WriteBytes(path, tests::ReadBytes(PicturePath()).substr(0, 20));
  StartWith(path);
  ExpectAllButtons(path);
}

TEST_F(BarWithABadPicture, ComesUpWithOneThatIsAFolder) {
  StartWith(folders.Root());
  ExpectAllButtons(folders.Root());
}

TEST_F(BarWithABadPicture, ComesUpWithOneThatIsADevice) {
  StartWith(L"NUL");
  ExpectAllButtons(L"NUL");
}

TEST_F(BarWithABadPicture, ComesUpWithOneThatIsTheConsole) {
  StartWith(L"CON");
  ASSERT_TRUE(::IsWindow(dock->handle));
  EXPECT_EQ((Texts{L"First", L"Bad", L"Last"}), HeadsOf(BarTree(*dock).userButtons));
}

/// What the screen shows of the place of a user button's picture, every fourth pixel.
std::vector<std::uint32_t> PictureOnScreen(const CMainDlg &dock, std::size_t index) {
  std::vector<std::uint32_t> pixels;
  for (LONG y = 16; y < 48; y += 4)
    for (LONG x = 22; x < 54; x += 4) {
      POINT place = {x, y};
      ::ClientToScreen(dock.GetUserButtons().at(index)->GetHandle(), &place);
      pixels.push_back(desk::PixelAt(place));
    }
  return pixels;
}

TEST_F(BarWithABadPicture, ShowsTheDefaultOneInstead) {
  ElementList elements(3, PictureElement(L"")); // nothing to be seen of its picture
  elements[1].Image = folders.Root() + L"\\nowhere.png";
  elements[2].Image = folders.Root();
  SaveDocuments({}, elements);
  Start();
  ASSERT_TRUE(::IsWindow(dock->handle));
  EXPECT_TRUE(desk::PumpUntil([&] { return PictureOnScreen(*dock, 0) != PictureOnScreen(*dock, 1); }));
  EXPECT_TRUE(desk::PumpUntil([&] { return PictureOnScreen(*dock, 1) == PictureOnScreen(*dock, 2); }));
}

TEST_F(Bar, MakesAButtonForAMissingTargetWithAPicture) {
  Element element = VanishedElement(L"Gone");
  element.Image = PicturePath();
  SaveDocuments({}, {element});
  EXPECT_EQ(Texts{L"Gone"}, HeadsOf(BarTree(Start()).userButtons));
}

TEST_F(Bar, ShowsThirtyUserButtonsOfMore) {
  const BarTree tree = StartWith(0, 31);
  EXPECT_EQ(30U, tree.userButtons.GetChildren().size());
  EXPECT_EQ(2029, IdsOf(tree.userButtons).back());
  EXPECT_EQ(31U, dock->GetUserElements().size());
}

TEST_F(Bar, SavesTheRecordsBehindTheThirtieth) {
  StartWith(0, 31);
  const ElementList before = LoadDocument(userDocument, false);
  ::SendMessageW(dock->handle, WM_CLOSE, 0, 0);
  EXPECT_EQ(before, LoadDocument(userDocument, false));
}

TEST_F(Bar, WithAFixedButtonThatCannotBeMadeDoesNotComeUp) {
  const desk::EventLogSpy eventLog;
  SaveDocuments({PictureElement(L"First"), VanishedElement(L"Gone")}, {});
  Start();
  EXPECT_EQ(nullptr, dock->handle);
  EXPECT_EQ(std::nullopt, TakeQuitCode());
  EXPECT_EQ(Texts{L"caught an unhandled exception in OnInitDialog"}, eventLog.Reports());
}

TEST_F(Bar, MakesTheDocumentsThatAreMissing) {
  Start();
  for (const wchar_t *name : {mainDocument, userDocument, forYouDocument}) {
    EXPECT_TRUE(DocumentExists(name)) << tests::Utf8(name);
    EXPECT_EQ(ElementList{}, LoadDocument(name, false));
  }
}

TEST_F(Bar, StartsItsThreeTimers) {
  StartWith(0, 0);
  EXPECT_TRUE(::KillTimer(dock->handle, 3));
  EXPECT_TRUE(::KillTimer(dock->handle, 4));
  EXPECT_TRUE(::KillTimer(dock->handle, 8));
  EXPECT_FALSE(::KillTimer(dock->handle, 8));
}

TEST_F(Bar, OffersTheOtherEdgeCheckedAtTheTop) {
  WriteTexts({{L"Button.Tooltip.DockAtTop", L"At top"}, {L"Button.Tooltip.DockAtBottom", L"At bottom"}});
  const BarTree tree = StartWith(0, 0);
  EXPECT_EQ(1, tree.dockPositionButton.Checked.Get());
  EXPECT_EQ(L"At top", tree.dockPositionButton.Name.Get());
  EXPECT_EQ(std::nullopt, registry.Text(L"DockPosition")) << "nothing is written at a start at the top";
}

TEST_F(Bar, ComesUpAtTheBottomWhenTheRegistrySaysSo) {
  WriteTexts({{L"Button.Tooltip.DockAtTop", L"At top"}, {L"Button.Tooltip.DockAtBottom", L"At bottom"}});
  registry.SetText(L"DockPosition", L"Bottom");
  const BarTree tree = StartWith(0, 0);
  RECT place{};
  ::GetWindowRect(dock->handle, &place);
  EXPECT_EQ((std::vector<LONG>{190, 947, 1090, 1024}),
            (std::vector<LONG>{place.left, place.top, place.right, place.bottom}));
  EXPECT_EQ(0, tree.dockPositionButton.Checked.Get());
  EXPECT_EQ(L"At bottom", tree.dockPositionButton.Name.Get());
  EXPECT_EQ(L"Bottom", registry.Text(L"DockPosition"));
}

TEST_F(Bar, ComesUpAtTheTopForAnyOtherText) {
  registry.SetText(L"DockPosition", L"Left");
  const BarTree tree = StartWith(0, 0);
  EXPECT_EQ(1, dock->Top.Get());
  EXPECT_EQ(1, tree.dockPositionButton.Checked.Get());
  EXPECT_EQ(L"Left", registry.Text(L"DockPosition"));
}

TEST_F(Bar, PlacesTheCommandButtonsByTheirElements) {
  const BarTree tree = StartWith(0, 0);
  EXPECT_EQ(L"foryou", tree.forYouButton.GetElement().ActionParams);
  EXPECT_EQ(L"..\\resources\\foryou_idle.png", tree.forYouButton.GetElement().Image);
  EXPECT_EQ(L"searchProvider", tree.searchProviderButton.GetElement().ActionParams);
  EXPECT_EQ(L"search", tree.searchButton.GetElement().ActionParams);
  EXPECT_EQ(L"resetConfirmation", tree.resetButton.GetElement().ActionParams);
  EXPECT_EQ(L"close", tree.closeButton.GetElement().ActionParams);
}

TEST_F(Bar, KeepsTheLayoutOfTheSystemButtons) {
  const BarTree tree = StartWith(0, 0);
  EXPECT_EQ((Margin{0, 0, 0, 0}), tree.resetButton.Margin.Get());
  EXPECT_EQ((Margin{2, 0, 0, 0}), tree.dockPositionButton.Margin.Get());
  EXPECT_EQ((Margin{2, 0, 0, 0}), tree.closeButton.Margin.Get());
  EXPECT_EQ(lumenor::HorizontalAlignment::Right, tree.dockPositionButton.HorizontalAlignment.Get());
  EXPECT_EQ(lumenor::HorizontalAlignment::Right, tree.closeButton.HorizontalAlignment.Get());
  EXPECT_EQ(lumenor::HorizontalAlignment::Stretch, tree.resetButton.HorizontalAlignment.Get());
}

} // namespace

} // namespace lumenor
