#include "content/ElementAction.h"

#include <optional>

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/Recorder.h"
#include "support/TestFolders.h"

#include <shellapi.h>

extern "C" decltype(&::ShellExecuteW) __imp_ShellExecuteW;

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(PillarName, HasThreePillars) {
  EXPECT_EQ(L"PC_HEALTH_SECURITY", PillarName(0));
  EXPECT_EQ(L"PC_ACTION_CENTER", PillarName(1));
  EXPECT_EQ(L"ECENTER", PillarName(2));
  EXPECT_EQ(L"", PillarName(3));
  EXPECT_EQ(L"", PillarName(-1));
}

TEST(PillarArguments, EndInTheNameOfTheIndex) {
  EXPECT_EQ(L"welcome=false splash=false view=standard pillar=PC_ACTION_CENTER", PillarArguments(L"1"));
  EXPECT_EQ(L"welcome=false splash=false view=standard pillar=PC_HEALTH_SECURITY", PillarArguments(L"none"));
}

TEST(PillarArguments, OfTheIndex7EndWithNothingBehindPillar) {
  EXPECT_EQ(L"welcome=false splash=false view=standard pillar=", PillarArguments(L"7"));
}

TEST(CategoryArguments, EndInTheTextAsItStands) {
  EXPECT_EQ(L"welcome=false splash=false view=standard pillar=ECENTER category=Two words",
            CategoryArguments(L"Two words"));
}

Element Action(const std::wstring &type, const std::wstring &params) {
  Element element;
  element.ActionType = type;
  element.ActionParams = params;
  return element;
}

class RunElementActionTest : public testing::Test {
protected:
  /// The command lines that the action has started programs with; it must start one.
  std::vector<std::wstring> Run(const std::wstring &type, const std::wstring &params) const {
    RunElementAction(Action(type, params));
    return recorder.WaitForCommandLines(1);
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::Recorder recorder{folders};
};

TEST_F(RunElementActionTest, APillarStartsTheMainApplication) {
  recorder.InstallAs(folders.InstallFolder() + L"\\Lumenor.exe");
  EXPECT_THAT(Run(L"pillar", L"2"), ElementsAre(L"\"" + folders.InstallFolder() +
                                                L"\\Lumenor.exe\" welcome=false splash=false view=standard "
                                                L"pillar=ECENTER"));
}

TEST_F(RunElementActionTest, ACategoryStartsTheMainApplicationWhereverItIs) {
  recorder.InstallAs(folders.InstallFolderX86() + L"\\Lumenor.exe");
  EXPECT_THAT(Run(L"eccategory", L"Play & more"),
              ElementsAre(L"\"" + folders.InstallFolderX86() +
                          L"\\Lumenor.exe\" welcome=false splash=false view=standard pillar=ECENTER "
                          L"category=Play & more"));
}

TEST_F(RunElementActionTest, AProgramStartsWithItsArguments) {
  recorder.InstallAs(folders.Root() + L"\\My Tools\\a tool.exe");
  EXPECT_THAT(Run(L"exe", folders.Root() + L"\\My Tools\\a tool.exe -x \"y z\""),
              ElementsAre(L"\"" + folders.Root() + L"\\My Tools\\a tool.exe\" -x \"y z\""));
}

TEST_F(RunElementActionTest, AProgramOfTheOtherProgramFolderStarts) {
  recorder.InstallAs(folders.ProgramFilesX86() + L"\\Maker\\tool.exe");
  EXPECT_THAT(Run(L"exe", L"\"%programfiles%\\Maker\\tool.exe\" -x"),
              ElementsAre(L"\"" + folders.ProgramFilesX86() + L"\\Maker\\tool.exe\" -x"));
}

TEST_F(RunElementActionTest, AnAddressMayBeAFile) {
  recorder.InstallAs(folders.Root() + L"\\page.exe");
  EXPECT_THAT(Run(L"url", folders.Root() + L"\\page.exe"), ElementsAre(testing::HasSubstr(L"page.exe")));
}

/// A machine whose browser is a recorder, registered as browsers are.
class LongAddress : public RunElementActionTest {
protected:
  LongAddress() {
    recorder.InstallAs(Browser());
    Register(L"\"" + Browser() + L"\" -open \"%1\"");
  }

  std::wstring Browser() const { return folders.Root() + L"\\The browser\\browse.exe"; }
  void Register(const std::wstring &command) const { http.SetText(L"", command); }

  /// The command line of the browser with these arguments.
  std::wstring Started(const std::wstring &arguments) const { return L"\"" + Browser() + L"\" " + arguments; }

  static std::wstring Address(std::size_t length) {
    const std::wstring start = L"http://a.example/?q=100%25&x=%61&y=";
    return start + std::wstring(length - start.size(), L'z');
  }

  void ExpectRefused(const std::wstring &type, const std::wstring &params, const std::string &line) const {
    log.Clear();
    RunElementAction(Action(type, params));
    EXPECT_THAT(log.Lines(), ElementsAre(line));
    EXPECT_THAT(recorder.CommandLines(), IsEmpty());
  }

  const tests::KeptRegistryKey http{HKEY_LOCAL_MACHINE, L"Software\\Classes\\http\\shell\\open\\command"};
  const tests::LogCapture log{folders};
};

TEST_F(LongAddress, Of1222CharactersReachesTheBrowser) {
  EXPECT_THAT(Run(L"url", Address(1222)), ElementsAre(Started(L"-open \"" + Address(1222) + L"\"")));
}

TEST_F(LongAddress, Of2083CharactersReachesTheBrowser) {
  EXPECT_THAT(Run(L"url", Address(2083)), ElementsAre(Started(L"-open \"" + Address(2083) + L"\"")));
}

TEST_F(LongAddress, Of2084CharactersIsRefusedWithALogLine) {
  ExpectRefused(L"url", Address(2084), "ERROR: Launch: An address of 2084 characters is too long");
}

TEST_F(LongAddress, ThatOnlyItsVariablesMakeLongReachesTheBrowserAsItStands) {
  const tests::EnvironmentValue variable(L"LUMENOR_LONG", std::wstring(1500, L'v'));
  const std::wstring address = L"HTTP://a.example/?q=%LUMENOR_LONG%";
  EXPECT_THAT(Run(L"url", address), ElementsAre(Started(L"-open \"" + address + L"\"")));
}

TEST_F(LongAddress, StaysOneArgumentWhateverItHolds) {
  const std::wstring escaped = L"%22%20-evil%20%22x%09%5C%22%3C%3E%7C%5E%5C";
  const std::wstring address = Address(1000) + L"\" -evil \"x\t\\\"<>|^\\";
  EXPECT_THAT(Run(L"url", address), ElementsAre(Started(L"-open \"" + Address(1000) + escaped + L"\"")));
}

TEST_F(LongAddress, StaysOneArgumentOfACommandWithoutQuotationMarks) {
  Register(L"\"" + Browser() + L"\" --one-argument %1");
  EXPECT_THAT(Run(L"url", Address(1000) + L" -evil"),
              ElementsAre(Started(L"--one-argument " + Address(1000) + L"%20-evil")));
}

TEST_F(LongAddress, IsPutInEveryPlaceForItButNotIntoItself) {
  Register(L"\"" + Browser() + L"\" %1 %1");
  const std::wstring address = Address(1000) + L"%1";
  EXPECT_THAT(Run(L"url", address), ElementsAre(Started(address + L" " + address)));
}

TEST_F(LongAddress, IsRefusedWhereNoBrowserTakesIt) {
  const std::string line = "ERROR: Launch: An address of 1000 characters is too long";
  Register(L"\"" + Browser() + L"\" -open");
  ExpectRefused(L"url", Address(1000), line);
  http.Delete();
  ExpectRefused(L"url", Address(1000), line);
}

TEST_F(LongAddress, OfAnotherSchemeOrAFileIsRefused) {
  const std::string line = "ERROR: Launch: An address of 1100 characters is too long";
  for (const std::wstring start : {L"mailto:a@b.example?subject=", L"httpfile://a", L"http:a", L"C:\\folder\\", L""})
    ExpectRefused(L"url", start + std::wstring(1100 - start.size(), L'z'), line);
}

TEST_F(LongAddress, OfAProgramIsRefused) {
  ExpectRefused(L"exe", L"\"C:\\" + std::wstring(1097, L'z') + L"\" -x",
                "ERROR: Launch: A program's name of 1100 characters is too long");
}

TEST_F(LongAddress, ArgumentsMayBeLongAll) {
  const std::wstring arguments(20000, L'x');
  recorder.InstallAs(folders.InstallFolder() + L"\\Lumenor.exe");
  EXPECT_THAT(Run(L"exe", L"\"" + Browser() + L"\" " + arguments), ElementsAre(Started(arguments)));
  RunElementAction(Action(L"eccategory", arguments));
  ASSERT_EQ(2u, recorder.WaitForCommandLines(2).size());
  EXPECT_TRUE(recorder.CommandLines()[1].ends_with(L" category=" + arguments));
}

struct ShellCall {
  HWND owner;
  std::wstring verb;
  std::wstring program;
  std::optional<std::wstring> arguments;
  bool hasFolder;
  int show;
};

/// Intercepts the calls to the shell.
class ShellSpy {
public:
  ShellSpy() { calls.clear(); }
  static const std::vector<ShellCall> &Calls() { return calls; }

private:
  static HINSTANCE WINAPI Hear(HWND owner, LPCWSTR verb, LPCWSTR program, LPCWSTR arguments, LPCWSTR folder, INT show) {
    calls.push_back({owner, verb, program, arguments == nullptr ? std::nullopt : std::optional<std::wstring>(arguments),
                     folder != nullptr, show});
    return nullptr; // a failure, which the program ignores
  }

  static inline std::vector<ShellCall> calls;
  const tests::ImportSlot<decltype(__imp_ShellExecuteW)> slot{&__imp_ShellExecuteW, &Hear};
};

TEST(RunElementAction, AsksTheShellToOpenWithoutOwnerOrFolderInANormalWindow) {
  const ShellSpy spy;
  RunElementAction(Action(L"exe", L"\"C:\\a.exe\" x"));
  ASSERT_EQ(1u, ShellSpy::Calls().size());
  const ShellCall &call = ShellSpy::Calls()[0];
  EXPECT_EQ(nullptr, call.owner);
  EXPECT_EQ(L"open", call.verb);
  EXPECT_EQ(L"C:\\a.exe", call.program);
  EXPECT_EQ(L"x", call.arguments);
  EXPECT_FALSE(call.hasFolder);
  EXPECT_EQ(5, call.show);
}

TEST(RunElementAction, AnAddressIsOpenedAsItStands) {
  const ShellSpy spy;
  RunElementAction(Action(L"url", L"http://a.example/?q=%TEMP% x"));
  ASSERT_EQ(1u, ShellSpy::Calls().size());
  EXPECT_EQ(L"http://a.example/?q=%TEMP% x", ShellSpy::Calls()[0].program);
  EXPECT_EQ(std::nullopt, ShellSpy::Calls()[0].arguments);
}

TEST(RunElementAction, AnAddressOfUpTo900CharactersIsTheShells) {
  const ShellSpy spy;
  const std::wstring address = L"http://a.example/" + std::wstring(883, L'z');
  RunElementAction(Action(L"url", address));
  ASSERT_EQ(1u, ShellSpy::Calls().size());
  EXPECT_EQ(address, ShellSpy::Calls()[0].program);
  EXPECT_EQ(std::nullopt, ShellSpy::Calls()[0].arguments);
  RunElementAction(Action(L"url", address + L"z"));
  ASSERT_EQ(2u, ShellSpy::Calls().size());
  EXPECT_NE(std::nullopt, ShellSpy::Calls()[1].arguments);
}

TEST(RunElementAction, AnyOtherTypeDoesNothing) {
  const ShellSpy spy;
  for (const wchar_t *type : {L"", L"URL", L"Exe", L"xml", L"helpSearch", L"pillars", L"eccategory "})
    RunElementAction(Action(type, L"C:\\a.exe"));
  EXPECT_THAT(ShellSpy::Calls(), IsEmpty());
}

TEST(RunElementAction, AMissingProgramIsSilent) {
  const tests::ComApartment com;
  const tests::TestFolders folders;
  for (const wchar_t *type : {L"url", L"exe", L"eccategory", L"pillar"})
    EXPECT_NO_THROW(RunElementAction(Action(type, L"Q:\\missing.exe")));
  EXPECT_NO_THROW(RunElementAction(Action(L"exe", L"")));
}

} // namespace
} // namespace lumenor
