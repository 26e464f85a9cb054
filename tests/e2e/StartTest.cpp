// The start: the command line, the first build of the documents, the single instance.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/OtherWindow.h"
#include "e2e/Screen.h"

namespace lumenor::e2e {
namespace {

constexpr wchar_t activateMessage[] = L"TWDOCK_11D3CB1E-8DE1-4105-9277-8BF483A1E841";
constexpr RECT elsewhere = {400, 400, 800, 700};

int HeadCount(const std::string &document) { return CountOf(document, "<Head>") + CountOf(document, "<Head/>"); }

TEST(Start, BuildsTheDocumentsFromTheStubsOfThreeLocaleFolders) {
  const Installation installation;
  const auto entry = [&](const wchar_t *head, int position) {
    return Entry{.head = head, .actionType = L"exe", .actionParams = installation.Recorder(), .position = position};
  };
  installation.WriteStub(L"enu_us", userDocument, 1, entry(L"particular", 5));
  installation.WriteStub(L"enu_xx", userDocument, 1, entry(L"hidden by the particular", 5));
  installation.WriteStub(L"enu_xx", userDocument, 2, entry(L"language", 3));
  installation.WriteStub(L"xx_xx", userDocument, 1, entry(L"hidden by the language", 3));
  installation.WriteStub(L"xx_xx", userDocument, 2, entry(L"common", 4));

  ShownDock dock(installation);

  const std::string document = ReadBytes(installation.DocumentPath(userDocument));
  const auto language = document.find("<Head>language</Head>"), common = document.find("<Head>common</Head>"),
             particular = document.find("<Head>particular</Head>");
  EXPECT_EQ(3, HeadCount(document));
  EXPECT_LT(language, common);
  EXPECT_LT(common, particular);
  EXPECT_NE(std::string::npos, particular);
  EXPECT_NE(nullptr, dock.Control(2002));
  EXPECT_EQ(nullptr, dock.Control(2003));
  EXPECT_TRUE(Exists(installation.DocumentPath(mainDocument)));
}

TEST(Start, TwoUnknownOptionsStartTheDock) {
  const Installation installation;
  ShownDock dock(installation, L"-x /y");
}

TEST(Start, ABareWordBehindAnOptionEndsWithMinusOneAndShowsNothing) {
  const Installation installation;
  DockProcess dock(installation, L"-x word");
  EXPECT_EQ(0xFFFFFFFFu, dock.WaitForExit());
  EXPECT_FALSE(Exists(installation.DocumentPath(mainDocument)));
}

TEST(Start, ASecondStartBringsTheFirstToTheFrontAndEndsWithZero) {
  const Installation installation;
  ShownDock first(installation);
  const HWND bar = first.Bar();
  const OtherWindow other(elsewhere);
  Click(Center(elsewhere));
  ASSERT_TRUE(WaitFor([&] { return ::GetForegroundWindow() == other.Handle(); }));

  const DockProcess second(installation);

  EXPECT_EQ(0u, second.WaitForExit());
  EXPECT_TRUE(WaitFor([&] { return ::GetForegroundWindow() == bar; }));
  EXPECT_TRUE(first.IsRunning());
}

TEST(Start, ASecondStartBesideAPanelProcessBroadcastsNothing) {
  const Installation installation;
  const std::wstring panel =
      installation.DockExe().substr(0, installation.DockExe().rfind(L'\\')) + L"\\LumenorPanel.exe";
  ASSERT_TRUE(::CopyFileW(installation.DockExe().c_str(), panel.c_str(), FALSE));
  const OtherWindow listener(elsewhere, ::RegisterWindowMessageW(activateMessage));
  ShownDock first(installation, L"", panel);

  const DockProcess second(installation);

  EXPECT_EQ(0u, second.WaitForExit());
  EXPECT_TRUE(HoldsFor([&] { return listener.Count() == 0; }, std::chrono::milliseconds(500)));
}

TEST(Start, ASecondStartWithoutAPanelProcessBroadcastsOnce) {
  const Installation installation;
  const OtherWindow listener(elsewhere, ::RegisterWindowMessageW(activateMessage));
  ShownDock first(installation);

  const DockProcess second(installation);

  EXPECT_EQ(0u, second.WaitForExit());
  EXPECT_TRUE(WaitFor([&] { return listener.Count() == 1; }));
}

TEST(Start, TheBarIsCentredAtTheTopAndNineHundredWideOnAScreenOf1280) {
  const Installation installation;
  installation.WriteUsualStubs();
  ShownDock dock(installation);
  const RECT bar = dock.BarRect();
  EXPECT_EQ(190, bar.left);
  EXPECT_EQ(1, bar.top);
  EXPECT_EQ(1090, bar.right);
  EXPECT_EQ(78, bar.bottom);
  SaveShot("start");
}

} // namespace
} // namespace lumenor::e2e
