// The collector as the platform really starts it; when it is started is tested in TransferTest.cpp.

#include "tracking/Collector.h"

#include <gmock/gmock.h>

#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/Recorder.h"
#include "support/TestFolders.h"

namespace lumenor {
namespace {

using testing::ElementsAre;

class Collector : public testing::Test {
protected:
  Collector() {
    key.Delete();
    key32.Delete();
    recorder.InstallAs(program);
    tests::MakeFolders(folders.UserFolder() + L"\\ruq");
  }

  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const tests::Recorder recorder{folders};
  const tests::KeptRegistryKey key{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Tarnwick\\MirrApp"};
  const tests::KeptRegistryKey key32{HKEY_LOCAL_MACHINE, L"SOFTWARE\\Wow6432Node\\Tarnwick\\MirrApp"};
  const std::wstring program = folders.ProgramFiles() + L"\\A collector\\TWRuq.exe";
};

TEST_F(Collector, IsStartedWithTheNameOfTheDock) {
  key.SetText(L"RuqPath", L"%ProgramFiles%\\A collector\\TWRuq.exe", REG_EXPAND_SZ);
  StartCollector();
  EXPECT_THAT(recorder.WaitForCommandLines(1), ElementsAre(L"\"" + program + L"\" lumenor3.4"));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: running TWRuq.exe"));
}

TEST_F(Collector, ThatIsMissingDoesNoHarm) {
  key.SetText(L"RuqPath", folders.Root() + L"\\missing.exe");
  StartCollector();
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: RUQMENT: running TWRuq.exe"));
  key.SetText(L"RuqPath", program);
  StartCollector();
  EXPECT_THAT(recorder.WaitForCommandLines(1), ElementsAre(L"\"" + program + L"\" lumenor3.4"));
}

TEST_F(Collector, ThatTheShellCannotBeGivenIsLogged) {
  key.SetText(L"RuqPath", L"C:\\" + std::wstring(1500, L'x') + L".exe");
  StartCollector();
  EXPECT_THAT(log.Lines(),
              ElementsAre("INFO: RUQMENT: running TWRuq.exe", "ERROR: RUQMENT: A path of 1507 characters is too long"));
}

TEST_F(Collector, ItsIniFileIsNamedByTheMachine) {
  EXPECT_EQ(L"", CollectorIniFile());
  key32.SetText(L"RuqIniFile", L"%APPDATA%\\old.ini");
  EXPECT_EQ(folders.AppData() + L"\\old.ini", CollectorIniFile());
  key.SetText(L"RuqIniFile", L"C:\\new.ini");
  EXPECT_EQ(L"C:\\new.ini", CollectorIniFile());
}

} // namespace
} // namespace lumenor
