// The jump list that the dock publishes when it starts.

#include <gtest/gtest.h>

#include "e2e/DockProcess.h"
#include "e2e/Input.h"
#include "e2e/ResetDialog.h"
#include "e2e/Screen.h"
#include "e2e/UserSteps.h"
#include "support/JumpLists.h"
#include "support/KeptRegistryKey.h"
#include "support/Shortcut.h"

namespace lumenor::e2e {
namespace {

using tests::JumpTask;
using Tasks = std::vector<JumpTask>;

constexpr wchar_t applicationId[] = L"com.tw.ebu.lumenor";
constexpr wchar_t picturesDocument[] = L"Lumenor.MainFrame.Controls.JumpList.Main";
constexpr wchar_t destinationListClass[] = L"Software\\Classes\\CLSID\\{77F10CF0-3DB5-4966-B520-B7C54FD35ED6}";

class JumpList : public ::testing::Test {
protected:
  JumpList() {
    WriteXmlStub(0, L"Test.First");
    WriteXmlStub(1, L"Test.Second");
    WriteStub(L"Test.First", 0, L"Elsewhere", L"exe", Program(L"elsewhere"));
    WriteStub(L"Test.Second", 0, L"Entry", L"exe", Program(L"entry"));
    WriteStub(userDocument, 1, L"User", L"exe", Program(L"user"));
  }

  void WriteStub(const wchar_t *document, int position, const std::wstring &head, const wchar_t *actionType,
                 const std::wstring &actionParams) const {
    installation.WriteStub(
        L"xx_xx", document, position,
        {.head = head, .actionType = actionType, .actionParams = actionParams, .position = position});
  }

  void WriteXmlStub(int position, const wchar_t *document) const {
    WriteStub(mainDocument, position, L"List", L"xml", document);
  }

  /// A picture for the tasks of that position.
  void WritePicture(int position, const wchar_t *image) const {
    installation.WriteStub(L"xx_xx", picturesDocument, position, {.image = image, .position = position});
  }

  std::wstring Program(const std::wstring &arguments) const { return installation.RecorderCommand(arguments); }

  static JumpTask Task(const std::wstring &title, const std::wstring &path, const std::wstring &arguments,
                       const std::wstring &icon = L"") {
    JumpTask task;
    task.title = title;
    task.path = path;
    task.arguments = arguments;
    task.icon = icon;
    return task;
  }

  /// The recorder has no icon of its own, and the platform none for it.
  JumpTask RecorderTask(const std::wstring &title, const std::wstring &arguments) const {
    return Task(title, installation.Recorder(), arguments);
  }

  static std::optional<Tasks> Published() { return tests::ReadJumpList(applicationId); }

  /// Runs the dock once; the list that it leaves.
  std::optional<Tasks> RunDock() const {
    ShownDock dock(installation);
    EXPECT_EQ(0U, CloseByButton(dock));
    return Published();
  }

  /// The dock can't be built, logs that and ends.
  void ExpectFailedStart() const {
    const DockProcess dock(installation);
    EXPECT_EQ(0U, dock.WaitForExit());
    EXPECT_TRUE(installation.Logged("FATAL: Failed to initialize Lumenor"));
    EXPECT_FALSE(installation.Logged("MainDlg creation"));
  }

  const Installation installation;
};

TEST_F(JumpList, ShowsTheLastFlyoutThenTheUsersButtonsAndOutlivesTheDock) {
  const std::wstring notes = installation.WriteAside(L"Notes.txt", "a file");
  const std::wstring application = notes.substr(0, notes.rfind(L'\\')) + L"\\Lumenor.exe";
  const std::wstring shortcut = installation.WriteAside(L"My link.lnk", "");
  tests::MakeShortcut(shortcut, {.target = installation.Recorder(),
                                 .arguments = L"from link",
                                 .workingFolder = installation.ResourcesFolder(),
                                 .description = L"what it is"});
  WriteStub(L"Test.Second", 1, L"Category", L"eccategory", L"Games");
  WriteStub(L"Test.Second", 2, L"Pillar", L"pillar", L"1");
  WriteStub(L"Test.Second", 3, L"Page", L"url", L"http://page.example/");
  WriteStub(userDocument, 10, L"Bar", L"exe", L"\"" + installation.DockExe() + L"\"");
  WriteStub(userDocument, 11, L"", L"exe", L"\"" + notes + L"\"");
  WriteStub(userDocument, 12, L"Ignored", L"exe", L"\"" + shortcut + L"\"");
  const std::wstring picture = installation.ResourcesFolder() + L"\\test.png";
  WritePicture(1, L"resources\\notes.ico");
  WritePicture(2, picture.c_str());

  const std::optional<Tasks> published = RunDock();

  JumpTask copied = Task(L"My link", installation.Recorder(), L"from link");
  copied.workingFolder = installation.ResourcesFolder();
  copied.description = L"what it is";
  const std::wstring notesIcon = installation.ResourcesFolder() + L"\\notes.ico";
  const Tasks expected = {
      RecorderTask(L"Entry", L"entry"),
      Task(L"Category", application, L"welcome=false splash=false view=standard pillar=ECENTER category=Games",
           notesIcon),
      Task(L"Pillar", application, L"welcome=false splash=false view=standard pillar=PC_ACTION_CENTER", picture),
      Task(L"User", installation.Recorder(), L"user", notesIcon), // at the same position as the category
      Task(L"Bar", installation.DockExe(), L"", installation.DockExe()),
      Task(notes, notes, L""),
      copied};
  EXPECT_EQ(expected, published.value_or(Tasks()));
}

TEST_F(JumpList, IsPublishedAnewAfterAReset) {
  installation.WriteDocument(userDocument, {{.head = L"Mine", .actionType = L"exe", .actionParams = Program(L"mine")}});
  ShownDock dock(installation);
  EXPECT_EQ((Tasks{RecorderTask(L"Entry", L"entry"), RecorderTask(L"Mine", L"mine")}), Published().value_or(Tasks()));
  ASSERT_TRUE(Reset(dock));
  EXPECT_EQ((Tasks{RecorderTask(L"Entry", L"entry"), RecorderTask(L"User", L"user")}), Published().value_or(Tasks()));
}

TEST_F(JumpList, LeavesOutAndLogsAButtonWhoseTargetIsGone) {
  const std::wstring target = installation.WriteAside(L"Going.exe", "a program");
  installation.WriteDocument(userDocument,
                             {{.head = L"Mine", .actionType = L"exe", .actionParams = Program(L"mine")},
                              {.head = L"Going", .actionType = L"exe", .actionParams = L"\"" + target + L"\" -a b"}});
  EXPECT_EQ(3U, RunDock().value_or(Tasks()).size());
  EXPECT_FALSE(installation.Logged("because it doesn't exist"));
  ::DeleteFileW(target.c_str());
  EXPECT_EQ((Tasks{RecorderTask(L"Entry", L"entry"), RecorderTask(L"Mine", L"mine")}), RunDock().value_or(Tasks()));
  EXPECT_TRUE(installation.Logged(
      "ERROR: Jumplist: Unable to add C:\\Program Files\\Tarnwick\\Lumenor\\Going.exe -a b because it "
      "doesn't exist"));
}

TEST_F(JumpList, IsPublishedOnWindowsSevenAlone) {
  const tests::KeptRegistryKey settings(HKEY_CURRENT_USER, L"Software\\Wine\\AppDefaults\\LumenorDock.exe");
  settings.SetText(L"Version", L"win10");
  EXPECT_EQ(std::nullopt, RunDock());
  EXPECT_TRUE(installation.Logged("INFO: Jumplist creation"));
  EXPECT_FALSE(installation.Logged("Create jumplist"));
  settings.SetText(L"Version", L"win7");
  EXPECT_EQ(2U, RunDock().value_or(Tasks()).size());
}

TEST_F(JumpList, ThatTheShellCannotMakeEndsTheStart) {
  const tests::KeptRegistryKey service(HKEY_LOCAL_MACHINE, destinationListClass);
  service.Delete();
  ExpectFailedStart();
  EXPECT_EQ(std::nullopt, Published());
}

TEST_F(JumpList, ThatCannotBeWrittenEndsTheStart) {
  const std::wstring list = tests::JumpListPath(applicationId), folder = list.substr(0, list.rfind(L'\\'));
  ::RemoveDirectoryW(folder.c_str());
  WriteBytes(folder, "a file where the folder should be");
  ExpectFailedStart();
  EXPECT_TRUE(installation.Logged("INFO: Jumplist: Commit list"));
  EXPECT_TRUE(::DeleteFileW(folder.c_str()));
}

TEST_F(JumpList, OfTheFactoryContentLeadsToFilesThatAreThere) {
  installation.UseFactoryContent();
  const Tasks published = RunDock().value_or(Tasks());
  std::vector<std::wstring> titles;
  for (const JumpTask &task : published) {
    titles.push_back(task.title);
    EXPECT_TRUE(Exists(task.path) && Exists(task.icon)) << ::testing::PrintToString(task);
  }
  EXPECT_EQ(
      (std::vector<std::wstring>{L"Health and security", L"Action Center", L"Control Panel", L"Task Manager",
                                 L"System Information", L"Command Prompt", L"About Windows", L"Notepad", L"Player"}),
      titles);
}

} // namespace
} // namespace lumenor::e2e
