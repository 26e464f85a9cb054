// Broken and huge files: the dock starts, nothing of the user's is lost, and the log says what was wrong. LUMENOR_STUBS
// sets how many stubs are many.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/ProcessFigures.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"

#include <commctrl.h>

namespace lumenor::e2e {
namespace {

int Stubs() {
  const char *const number = std::getenv("LUMENOR_STUBS");
  return number == nullptr ? 1000 : std::atoi(number);
}

class HostileInput : public ::testing::Test {
protected:
  HostileInput() { installation.WriteUsualStubs(); }

  /// One fixed button with this picture.
  void UsePicture(const std::wstring &image) {
    installation.WriteStub(L"enu_us", mainDocument, 0,
                           {.head = L"Picture",
                            .actionType = L"exe",
                            .actionParams = installation.Recorder(),
                            .image = image,
                            .position = 0});
  }

  const Installation installation;
};

TEST_F(HostileInput, ABrokenUserDocumentShowsAsEmptyAndIsLeftAsItStands) {
  installation.WriteDocument(userDocument, {});
  const std::string broken = "<?xml version=\"1.0\"?><UIRoot><Lumenor.MainFrame";
  WriteBytes(installation.DocumentPath(userDocument), broken);
  ShownDock dock(installation);
  EXPECT_EQ(nullptr, dock.Control(2000));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(broken, ReadBytes(installation.DocumentPath(userDocument)));
}

TEST_F(HostileInput, AUserDocumentThatHoldsAnotherOneShowsAsEmptyAndIsLeftAsItStands) {
  installation.WriteDocument(mainDocument, {{.head = L"Elsewhere", .actionType = L"exe", .actionParams = L"x"}});
  const std::string other = ReadBytes(installation.DocumentPath(mainDocument));
  ::DeleteFileW(installation.DocumentPath(mainDocument).c_str());
  WriteBytes(installation.DocumentPath(userDocument), other);
  ShownDock dock(installation);
  EXPECT_EQ(nullptr, dock.Control(2000));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(other, ReadBytes(installation.DocumentPath(userDocument)));
}

TEST_F(HostileInput, ADocumentOfExpandingEntitiesShowsAsEmpty) {
  installation.WriteDocument(userDocument, {});
  std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE l [<!ENTITY a0 \"lol\">";
  for (int i = 1; i < 12; ++i) {
    bomb += "<!ENTITY a" + std::to_string(i) + " \"";
    for (int k = 0; k < 10; ++k)
      bomb += "&a" + std::to_string(i - 1) + ";";
    bomb += "\">";
  }
  WriteBytes(installation.DocumentPath(userDocument), bomb + "]><UIRoot>&a11;</UIRoot>");
  ShownDock dock(installation);
  EXPECT_EQ(nullptr, dock.Control(2000));
}

TEST_F(HostileInput, MessagesOfAnotherProgramWithWildAddressesEndNothing) {
  ShownDock dock(installation);
  for (const UINT message : {WM_USER + 1U, WM_USER + 13U}) {
    EXPECT_EQ(1, ::SendMessageW(dock.Bar(), message, 0xDEADBEEF, 0));
    ::PostMessageW(dock.Bar(), message, 0xDEADBEEF, 0);
  }
  ::PostMessageW(dock.Bar(), WM_INITDIALOG, 0, 0);
  EXPECT_EQ(FALSE, ::SendMessageW(dock.Field(), EM_SETCUEBANNER, 1, 0xDEADBEE0));
  ::PostMessageW(dock.Field(), EM_SETCUEBANNER, 1, 8);
  EXPECT_TRUE(
      WaitFor([&] { return installation.Logged("ERROR: Message 1037 with an address that the dock didn't send"); }));
  EXPECT_TRUE(installation.Logged("ERROR: Message 1025 with an address that the dock didn't send"));
  EXPECT_TRUE(WaitFor([&] {
    return std::ranges::count_if(installation.LogLines(), [](const std::string &line) {
             return line.find("ERROR: Message 5377 with an address that can't be read") != std::string::npos;
           }) == 2;
  })) << "the one that was sent and the one that was posted";
  EXPECT_EQ(0U, CloseByButton(dock));
}

TEST_F(HostileInput, NonsenseInMessagesOfAnotherProgramEndsNothing) {
  ShownDock dock(installation);
  const HWND bar = dock.Bar();
  OpenForYou(dock);
  std::vector<HWND> windows = dock.Popups();
  windows.push_back(bar);
  // What the dock obeys by design: removing, the welcome screen, the edges, lost drawing resources, the reset.
  constexpr std::array<UINT, 6> orders = {WM_USER + 3, WM_USER + 4,  WM_USER + 5,
                                          WM_USER + 6, WM_USER + 10, WM_USER + 15};
  constexpr std::array<ULONGLONG, 8> numbers = {
      0, 1, 0xFFFF, 0x10000, 0xDEADBEEF, 0x7FFFFFFFFFFFFFFF, ~0ULL, 0xFFFFFFFF80000000};
  std::mt19937 random(1);
  for (int i = 0; i < 20'000; ++i) {
    const UINT message = i % 2 == 0 ? WM_USER + random() % 64 : WM_USER + random() % (0xC000 - WM_USER);
    if (std::ranges::find(orders, message) != orders.end())
      continue;
    const HWND window = windows[random() % windows.size()];
    const WPARAM wParam = numbers[random() % numbers.size()];
    const LPARAM lParam = static_cast<LPARAM>(numbers[random() % numbers.size()]);
    DWORD_PTR result = 0;
    ASSERT_NE(0, ::SendMessageTimeoutW(window, message, wParam, lParam, SMTO_ABORTIFHUNG, 20'000, &result)) << message;
    if (i % 8 == 0)
      ::PostMessageW(window, message, wParam, lParam);
  }
  EXPECT_EQ(bar, dock.Bar());
  EXPECT_EQ(0U, CloseByButton(dock));
}

TEST_F(HostileInput, ABrokenStubIsLoggedAndSkipped) {
  installation.WriteRawStub(L"xx_xx", userDocument, 9, "<UIRoot><not closed");
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2001));
  EXPECT_TRUE(installation.Logged("ERROR: DockStub: "));
  EXPECT_TRUE(installation.Logged(".9.dstb is not valid xml"));
}

TEST_F(HostileInput, AMissingPictureGivesTheDefaultOneAndItsLogLines) {
  UsePicture(L"..\\resources\\nowhere.png");
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(1000));
  EXPECT_TRUE(installation.Logged("ERROR: WICHelper: cannot find "));
}

TEST_F(HostileInput, ACorruptPictureOnAFixedButtonGivesTheDefaultOneAndItsLogLine) {
  WriteBytes(installation.ResourcesFolder() + L"\\corrupt.png", "this is no picture at all");
  UsePicture(L"..\\resources\\corrupt.png");
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(1000));
  EXPECT_TRUE(installation.Logged("ERROR: MainDlg: can't show ..\\resources\\corrupt.png, error "));
}

TEST_F(HostileInput, BadRecordsOfTheUserCostTheirButtonOrItsPictureAndNothingElse) {
  const std::wstring program = L"\"" + installation.Recorder() + L"\"";
  const auto entry = [&](const std::wstring &image) {
    return Entry{.head = L"Head", .actionType = L"exe", .actionParams = program, .image = image};
  };
  const Entry empty = {.image = L""};
  installation.WriteDocument(userDocument,
                             {empty, entry(L"NUL"), entry(L"CON"), entry(installation.ResourcesFolder())});
  for (int start = 1; start <= 2; ++start) {
    ShownDock dock(installation);
    EXPECT_NE(nullptr, dock.Control(2002));
    EXPECT_EQ(nullptr, dock.Control(2003)) << "the empty record makes no button";
    EXPECT_EQ(0U, CloseByButton(dock));
  }
}

TEST_F(HostileInput, ADamagedProgramOnTheRowHasTheDefaultPictureAndALogLine) {
  const std::wstring icon = installation.WriteAside(L"a.ico", std::string("\0\0\1\0\1\0", 6));
  const std::wstring program = installation.WriteAside(L"a.exe", "MZ" + std::string(58, '\0') + "\xFF\xFF\xFF\x7F");
  installation.WriteDocument(userDocument,
                             {{.head = L"Icon", .actionType = L"exe", .actionParams = icon, .image = L""},
                              {.head = L"Program", .actionType = L"exe", .actionParams = program, .image = L""}});
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2001));
  SaveShot("damaged-program");
  EXPECT_TRUE(installation.Logged("a.ico is damaged"));
  EXPECT_TRUE(installation.Logged("a.exe is damaged"));
  EXPECT_EQ(0U, CloseByButton(dock));
}

TEST_F(HostileInput, TextsOfMegabytesAreShownAsFarAsTheyFitAndSavedWhole) {
  const auto entry = [&](std::size_t head, std::size_t toolTip) {
    return Entry{.head = std::wstring(head, L'm'),
                 .actionType = L"exe",
                 .actionParams = installation.Recorder(),
                 .toolTip = std::wstring(toolTip, L't')};
  };
  installation.WriteDocument(userDocument, {entry(10'000'000, 1), entry(1, 4'000'000)});
  ShownDock dock(installation);
  ASSERT_NE(nullptr, dock.Control(2001));
  MoveCursor(Center(RectOf(dock.Control(2001)))); // its tip
  std::printf("    %.1f MB with texts of 10,000,000 and 4,000,000 letters\n", PrivateMegabytes(dock.Id()));
  EXPECT_GT(1000, PrivateMegabytes(dock.Id()));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_LT(14'000'000U, ReadBytes(installation.DocumentPath(userDocument)).size());
}

TEST_F(HostileInput, OfAThousandStubsThoseThatHaveRoomAreShown) {
  const int count = Stubs();
  for (int i = 2; i < count; ++i) // two of the usual ones are there
    installation.WriteStub(L"xx_xx", userDocument, i, installation.RecorderEntry(L"n", std::to_wstring(i), i));
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2029));
  EXPECT_EQ(nullptr, dock.Control(2030));
  std::printf("    %.1f MB with %d stubs\n", PrivateMegabytes(dock.Id()), count);
  EXPECT_GT(1000, PrivateMegabytes(dock.Id()));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(count, CountOf(ReadBytes(installation.DocumentPath(userDocument)), "<Head>"));
}

TEST_F(HostileInput, WhereTheProfileFolderCannotBeMadeTheDockSaysSoAndEnds) {
  const std::wstring folder = installation.UserFolder().substr(0, installation.UserFolder().rfind(L'\\'));
  ::RemoveDirectoryW(folder.c_str());
  WriteBytes(folder, "a file where the folder should be");
  DockProcess dock(installation);
  EXPECT_EQ(0u, dock.WaitForExit());
  EXPECT_TRUE(installation.Logged("FATAL: Failed to initialize Lumenor"));
  ::DeleteFileW(folder.c_str());
}

/// Gives the status font another family for as long as it lives.
class StatusFontFamily {
public:
  explicit StatusFontFamily(const wchar_t *family) {
    former.cbSize = sizeof(former);
    ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof(former), &former, 0);
    NONCLIENTMETRICSW metrics = former;
    ::lstrcpynW(metrics.lfStatusFont.lfFaceName, family, LF_FACESIZE);
    ::SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof(metrics), &metrics, SPIF_UPDATEINIFILE);
  }
  ~StatusFontFamily() { ::SystemParametersInfoW(SPI_SETNONCLIENTMETRICS, sizeof(former), &former, SPIF_UPDATEINIFILE); }
  StatusFontFamily(const StatusFontFamily &) = delete;
  StatusFontFamily &operator=(const StatusFontFamily &) = delete;

private:
  NONCLIENTMETRICSW former = {};
};

TEST_F(HostileInput, AStatusFontThatIsNotInstalledIsReplacedByAnother) {
  const StatusFontFamily missing(L"No Such Family");
  ShownDock dock(installation);
  const RECT button = RectOf(dock.Control(1000));
  // The band of the label, between the picture and the arrow, with white letters.
  const Picture label = CaptureSettled({button.left, button.top + 48, button.right, button.top + 64});
  int bright = 0;
  for (int y = 0; y < label.Height(); ++y)
    for (int x = 0; x < label.Width(); ++x)
      bright += (label.At(x, y) & 0xFF) > 0xC0;
  EXPECT_GT(bright, 20);
}

TEST_F(HostileInput, ADocumentThatIsLockedAtTheEndKeepsWhatItHeld) {
  installation.WriteDocument(userDocument,
                             {{.head = L"Mine", .actionType = L"exe", .actionParams = installation.Recorder()}});
  ShownDock dock(installation);
  const std::string before = ReadBytes(installation.DocumentPath(userDocument));
  {
    const FileHandle lock(::CreateFileW(installation.DocumentPath(userDocument).c_str(), GENERIC_READ, 0, nullptr,
                                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    Click(dock.CloseButton());
    EXPECT_TRUE(WaitFor([&] { return dock.Bar() == nullptr; }));
    EXPECT_TRUE(HoldsFor([&] { return dock.IsRunning(); }, std::chrono::milliseconds(500)));
  }
  EXPECT_EQ(before, ReadBytes(installation.DocumentPath(userDocument)));
}

TEST_F(HostileInput, ThirtyOneRecordsShowThirtyButtonsAndAllAreSavedBack) {
  std::vector<Entry> entries;
  for (int i = 0; i < 31; ++i)
    entries.push_back({.head = L"Head " + std::to_wstring(i),
                       .actionType = L"exe",
                       .actionParams = installation.Recorder(),
                       .position = i});
  installation.WriteDocument(userDocument, entries);
  ShownDock dock(installation);
  EXPECT_NE(nullptr, dock.Control(2029));
  EXPECT_EQ(nullptr, dock.Control(2030));
  EXPECT_EQ(0U, CloseByButton(dock));
  EXPECT_EQ(31, CountOf(ReadBytes(installation.DocumentPath(userDocument)), "<Head>Head "));
}

} // namespace
} // namespace lumenor::e2e
