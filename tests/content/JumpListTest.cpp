#include "content/JumpList.h"

#include <gmock/gmock.h>

#include "content/Documents.h"
#include "content/IconSpy.h"
#include "content/ShellSteps.h"
#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"

extern "C" decltype(&::CoCreateInstance) __imp_CoCreateInstance;

namespace lumenor {
namespace {

using namespace tests;
using Microsoft::WRL::ComPtr;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::Optional;

constexpr wchar_t userDocument[] = L"Lumenor.MainFrame.Windows.DockViewWindow.User";

Element Entry(const std::wstring &type, const std::wstring &params, const std::wstring &head = L"Head",
              std::uint32_t position = 0) {
  Element element;
  element.Head = head;
  element.ActionType = type;
  element.ActionParams = params;
  element.Position = position;
  return element;
}

Element Picture(std::uint32_t position, const std::wstring &image) {
  Element element;
  element.Image = image;
  element.Position = position;
  return element;
}

class JumpListTest : public testing::Test {
protected:
  using Tasks = std::vector<JumpTask>;

  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }

  /// A file that tasks may lead to.
  std::wstring MakeFile(const std::wstring &name) const {
    WriteBytes(Path(name), "x");
    return Path(name);
  }

  static std::optional<Tasks> Published() { return ReadJumpList(L"com.tw.ebu.lumenor"); }

  /// Publishes these buttons of the user.
  static HRESULT Publish(const ElementList &user, const ElementList &pictures = {}) {
    SaveDocument(user, userDocument);
    return CreateJumpList({}, pictures);
  }

  /// The lines of the jump list itself.
  std::vector<std::string> Lines() const {
    std::vector<std::string> lines = log.AllLines();
    std::erase_if(lines, [](const std::string &line) { return line.find("Jumplist: ") == std::string::npos; });
    return lines;
  }

  const ComApartment com;
  const TestFolders folders;
  const LogCapture log{folders};
};

/// Hears what is done with lists and collections.
class ListSteps {
public:
  ListSteps() {
    HeardSteps::Reset();
    list.Hear<3>("SetAppID").Hear<4>("BeginList").Hear<7>("AddUserTasks").Hear<8>("CommitList").Hear<11>("AbortList");
    list.Hear<5>("AppendCategory").Hear<6>("AppendKnownCategory").Hear<10>("DeleteList");
    collection.Hear<3>("GetCount").Hear<5>("AddObject");
  }

private:
  StepSpy<10> list{MakeObject<ICustomDestinationList>(CLSID_DestinationList).Get()};
  StepSpy<11> collection{MakeObject<IObjectCollection>(CLSID_EnumerableObjectCollection).Get()};
};

// The list.

TEST_F(JumpListTest, HasTheFlyoutsEntriesBeforeTheUsersButtons) {
  const std::wstring file = MakeFile(L"a.exe");
  SaveDocument({Entry(L"exe", L"\"" + file + L"\" 1", L"One"), Entry(L"exe", L"\"" + file + L"\" 2", L"Two")},
               L"Flyout");
  SaveDocument({Entry(L"exe", L"\"" + file + L"\" 3", L"Three"), Entry(L"exe", L"\"" + file + L"\" 4", L"Four")},
               userDocument);
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"exe", file, L"Not this"), Entry(L"xml", L"Flyout")}, {}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"One", file, L"1", L""), Task(L"Two", file, L"2", L""),
                                          Task(L"Three", file, L"3", L""), Task(L"Four", file, L"4", L"")}));
}

TEST_F(JumpListTest, HasTheEntriesOfTheLastFlyoutOnly) {
  const std::wstring file = MakeFile(L"a.exe");
  SaveDocument({Entry(L"exe", file, L"First")}, L"First");
  SaveDocument({Entry(L"exe", file, L"Second")}, L"Second");
  SaveDocument({}, userDocument);
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"xml", L"First"), Entry(L"url", L"x"), Entry(L"xml", L"Second")}, {}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Second", file, L"", L"")}));
}

TEST_F(JumpListTest, LogsEachFlyout) {
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"xml", L"First"), Entry(L"XML", L"No"), Entry(L"xml", L"Second")}, {}));
  EXPECT_THAT(Lines(),
              ElementsAre("INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                          "INFO: Jumplist: Beginning list", "INFO: Jumplist: Add tasks", "INFO: Jumplist: Add tasks",
                          "INFO: Jumplist: Add tasks", "INFO: Jumplist: Commit list"));
}

TEST_F(JumpListTest, ReadsTheUsersButtonsThenEachFlyoutBehindItsLine) {
  const std::wstring stubs = folders.CommonFolder() + L"\\LangRes\\xx_xx\\";
  for (const std::wstring name : {L"Second", L"First", userDocument})
    WriteText(stubs + name + L".1.dstb", L"<UIRoot><" + name + L"><Elements><Element><Head>Head</Head></Element>" +
                                             L"</Elements></" + name + L"></UIRoot>");
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"xml", L"First"), Entry(L"xml", L"Second")}, {}));
  std::vector<std::string> lines = log.AllLines();
  std::erase_if(lines, [](const std::string &line) {
    return line.find("conditions met") == std::string::npos && !line.starts_with("INFO: Jumplist: ");
  });
  const std::string met = "INFO: DockStub: conditions met for " + Utf8(stubs);
  EXPECT_THAT(lines, ElementsAre("INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                                 "INFO: Jumplist: Beginning list", met + Utf8(userDocument) + ".1.dstb",
                                 "INFO: Jumplist: Add tasks", met + "First.1.dstb", "INFO: Jumplist: Add tasks",
                                 met + "Second.1.dstb", "INFO: Jumplist: Add tasks", "INFO: Jumplist: Commit list"));
}

TEST_F(JumpListTest, ALastFlyoutWithoutEntriesLeavesTheUsersButtons) {
  const std::wstring file = MakeFile(L"a.exe");
  SaveDocument({Entry(L"exe", file, L"First")}, L"First");
  SaveDocument({Entry(L"exe", file, L"Mine")}, userDocument);
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"xml", L"First"), Entry(L"xml", L"Missing")}, {}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Mine", file, L"", L"")}));
}

TEST_F(JumpListTest, ReplacesTheListOfBefore) {
  const std::wstring file = MakeFile(L"a.exe");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file, L"One"), Entry(L"exe", file, L"Two")}));
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file, L"Three")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Three", file, L"", L"")}));
}

TEST_F(JumpListTest, IsMadeInItsSteps) {
  const ListSteps steps;
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", MakeFile(L"a.exe")), Entry(L"exe", MakeFile(L"b.exe"))}));
  EXPECT_THAT(HeardSteps::names,
              ElementsAre("SetAppID", "BeginList", "AddObject", "AddObject", "GetCount", "AddUserTasks", "CommitList"));
}

TEST_F(JumpListTest, WithoutTasksIsCommittedWithoutAskingForMore) {
  const ListSteps steps;
  ASSERT_EQ(S_OK, Publish({}));
  EXPECT_THAT(HeardSteps::names, ElementsAre("SetAppID", "BeginList", "CommitList"));
  EXPECT_THAT(Published(), Optional(IsEmpty()));
}

TEST_F(JumpListTest, WithoutATaskThatSurvivesIsCommittedWithoutTasks) {
  const ListSteps steps;
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", Path(L"gone.exe")), Entry(L"url", L"http://a.example/")}));
  EXPECT_THAT(HeardSteps::names, ElementsAre("SetAppID", "BeginList", "GetCount", "CommitList"));
  EXPECT_THAT(Published(), Optional(IsEmpty()));
}

TEST_F(JumpListTest, HasAsManyTasksAsThereAre) {
  ElementList user;
  Tasks expected;
  const std::wstring file = MakeFile(L"a.exe");
  for (int i = 0; i < 60; ++i) {
    const std::wstring number = std::to_wstring(i);
    user.push_back(Entry(L"exe", L"\"" + file + L"\" " + number, L"Task " + number));
    expected.push_back(Task(L"Task " + number, file, number, L""));
  }
  ASSERT_EQ(S_OK, Publish(user));
  EXPECT_THAT(Published(), Optional(expected));
}

// What tasks start.

TEST_F(JumpListTest, APillarAndACategoryStartTheMainApplication) {
  const std::wstring application = folders.InstallFolderX86() + L"\\Lumenor.exe";
  WriteBytes(application, "x");
  ASSERT_EQ(S_OK, Publish({Entry(L"pillar", L"1", L"Pillar"), Entry(L"eccategory", L"Play & more", L"Category")}));
  const std::wstring arguments = L"welcome=false splash=false view=standard pillar=";
  EXPECT_THAT(Published(),
              Optional(Tasks{Task(L"Pillar", application, arguments + L"PC_ACTION_CENTER", L""),
                             Task(L"Category", application, arguments + L"ECENTER category=Play & more", L"")}));
}

TEST_F(JumpListTest, AMainApplicationThatIsNotInstalledIsLeftOut) {
  ASSERT_EQ(S_OK, Publish({Entry(L"pillar", L"7", L"Pillar")}));
  EXPECT_THAT(Published(), Optional(IsEmpty()));
  EXPECT_THAT(Lines(), Contains("ERROR: Jumplist: Unable to add " + Utf8(folders.InstallFolder()) +
                                "\\Lumenor.exe welcome=false splash=false view=standard pillar= because it doesn't "
                                "exist"));
}

TEST_F(JumpListTest, AnyOtherTypeIsACommandLine) {
  const std::wstring file = MakeFile(L"My Tools\\a tool.exe");
  ElementList user;
  Tasks expected;
  for (const wchar_t *type : {L"exe", L"", L"helpSearch", L"url", L"PILLAR", L"Eccategory", L"xml"}) {
    user.push_back(Entry(type, file + L" -x \"y z\"", type));
    expected.push_back(Task(*type == L'\0' ? file : std::wstring(type), file, L"-x \"y z\"", L""));
  }
  ASSERT_EQ(S_OK, Publish(user));
  EXPECT_THAT(Published(), Optional(expected));
}

TEST_F(JumpListTest, AnAddressIsLeftOutUnlessItIsAPath) {
  const std::wstring file = MakeFile(L"page.htm");
  ASSERT_EQ(S_OK, Publish({Entry(L"url", L"http://a.example/?q=1 2"), Entry(L"url", file, L"Page")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Page", file, L"", L"")}));
  EXPECT_THAT(Lines(), Contains("ERROR: Jumplist: Unable to add http://a.example/?q=1 2  because it doesn't exist"));
}

TEST_F(JumpListTest, AProgramOfTheOtherProgramFolderIsFound) {
  const std::wstring file = folders.ProgramFilesX86() + L"\\Maker\\tool.exe";
  WriteBytes(file, "x");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"%programfiles%\\Maker\\tool.exe\" -x")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"-x", L"")}));
}

TEST_F(JumpListTest, AMissingTargetAndAFolderAreLeftOut) {
  const std::wstring file = MakeFile(L"a.exe");
  MakeFolders(Path(L"folder.exe"));
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + Path(L"gone.exe") + L"\" -x y"), Entry(L"exe", file),
                           Entry(L"exe", Path(L"folder.exe"))}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"", L"")}));
  EXPECT_THAT(
      Lines(),
      ElementsAre("INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                  "INFO: Jumplist: Beginning list", "INFO: Jumplist: Add tasks",
                  "ERROR: Jumplist: Unable to add " + Utf8(Path(L"gone.exe")) + " -x y because it doesn't exist",
                  "ERROR: Jumplist: Unable to add " + Utf8(Path(L"folder.exe")) + "  because it doesn't exist",
                  "INFO: Jumplist: Commit list"));
}

TEST_F(JumpListTest, ATaskThatCanNotBeLinkedIsLeftOut) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring broken = MakeFile(L"broken.lnk");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + broken + L"\" -x"), Entry(L"exe", file)}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"", L"")}));
  EXPECT_THAT(Lines(), Contains("ERROR: Jumplist: Unable to add " + Utf8(broken) + " -x"));
}

TEST_F(JumpListTest, AMachineWithoutLinksGetsAnEmptyList) {
  const FailingClass noLinks(CLSID_ShellLink, E_FAIL);
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", MakeFile(L"a.exe")), Entry(L"exe", MakeFile(L"b.exe"))}));
  EXPECT_EQ(2, noLinks.Creations());
  EXPECT_THAT(Published(), Optional(IsEmpty()));
}

TEST_F(JumpListTest, AShortcutIsCopied) {
  const JumpTask content{L"", L"C:\\windows\\regedit.exe", L"/s", L"C:\\windows", L"Registry", L"", 0};
  WriteShortcut(Path(L"My Registry.lnk"), content);
  const IconSpy icons;
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", Path(L"My Registry.lnk"))}));
  JumpTask expected = content;
  expected.title = L"My Registry";
  EXPECT_THAT(Published(), Optional(Tasks{expected}));
}

TEST_F(JumpListTest, AShortcutInUpperCaseIsAFileLikeAnyOther) {
  const std::wstring file = MakeFile(L"NOTES.LNK");
  const IconSpy icons;
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + file + L"\" -x")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"-x", L"")}));
}

TEST_F(JumpListTest, AnEntryWithoutAHeadIsTitledByItsPath) {
  const std::wstring file = MakeFile(L"a.exe");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + file + L"\" -x", L"")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(file, file, L"-x", L"")}));
}

// Pictures.

TEST_F(JumpListTest, APictureIsTheOneOfTheSamePosition) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring one = MakeFile(L"one.ico");
  const std::wstring two = MakeFile(L"two.ico");
  ASSERT_EQ(S_OK,
            Publish({Entry(L"exe", file, L"B", 20), Entry(L"exe", file, L"None", 30), Entry(L"exe", file, L"A", 10)},
                    {Picture(10, one), Picture(20, two), Picture(40, one)}));
  EXPECT_THAT(Published(),
              Optional(Tasks{Task(L"B", file, L"", two), Task(L"None", file, L"", L""), Task(L"A", file, L"", one)}));
}

TEST_F(JumpListTest, TheLastPictureOfAPositionWins) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring one = MakeFile(L"one.ico");
  const std::wstring two = MakeFile(L"two.ico");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file, L"A", 10), Entry(L"exe", file, L"B", 10)},
                          {Picture(10, one), Picture(10, two), Picture(11, one)}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"A", file, L"", two), Task(L"B", file, L"", two)}));
}

TEST_F(JumpListTest, APictureIsSoughtWherePicturesLie) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring installed = folders.InstallFolder() + L"\\pictures\\installed.ico";
  WriteBytes(installed, "x");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file, L"A", 1), Entry(L"exe", file, L"B", 2)},
                          {Picture(1, L"pictures\\installed.ico"), Picture(2, L"nowhere.ico")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"A", file, L"", installed),
                                          Task(L"B", file, L"", folders.CommonFolder() + L"\\LangRes\\nowhere.ico")}));
}

TEST_F(JumpListTest, ATaskWithoutAPictureShowsTheOneThatTheShellHas) {
  const std::wstring file = MakeFile(L"a.txt");
  const IconSpy icons(false, true);
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file)}));
  const std::wstring kept = folders.CommonFolder() + L"\\ImageCache\\a.txt.ico";
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"", kept)}));
  EXPECT_TRUE(Exists(kept));
}

// Failures.

TEST_F(JumpListTest, AFailedStepIsReturnedAndNothingIsCommitted) {
  const std::wstring file = MakeFile(L"a.exe");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", file, L"Former")}));
  const Steps order{"SetAppID", "BeginList", "AddObject", "GetCount", "AddUserTasks", "CommitList"};
  for (std::size_t i = 0; i < order.size(); ++i) {
    const ListSteps steps;
    HeardSteps::failing = order[i];
    HeardSteps::failure = STG_E_ACCESSDENIED;
    EXPECT_EQ(STG_E_ACCESSDENIED, Publish({Entry(L"exe", file, L"New")})) << order[i];
    EXPECT_EQ(Steps(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(i) + 1), HeardSteps::names);
    EXPECT_THAT(Published(), Optional(Tasks{Task(L"Former", file, L"", L"")})) << order[i];
  }
}

TEST_F(JumpListTest, ATaskThatCanNotBeAddedEndsTheTasks) {
  const ListSteps steps;
  HeardSteps::failing = "AddObject";
  HeardSteps::failure = E_OUTOFMEMORY;
  EXPECT_EQ(E_OUTOFMEMORY, Publish({Entry(L"exe", MakeFile(L"a.exe")), Entry(L"exe", MakeFile(L"b.exe"))}));
  EXPECT_THAT(HeardSteps::names, ElementsAre("SetAppID", "BeginList", "AddObject"));
}

TEST_F(JumpListTest, AFailureEndsTheLogWithItsStep) {
  const ListSteps steps;
  HeardSteps::failing = "BeginList";
  HeardSteps::failure = E_FAIL;
  EXPECT_EQ(E_FAIL, Publish({}));
  EXPECT_THAT(Lines(), ElementsAre("INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                                   "INFO: Jumplist: Beginning list"));
}

TEST_F(JumpListTest, AMachineWithoutJumpListsReturnsItsFailure) {
  const FailingClass noLists(CLSID_DestinationList, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(REGDB_E_CLASSNOTREG, Publish({}));
  EXPECT_THAT(Lines(), ElementsAre("INFO: Jumplist: Co-creating destination list"));
}

TEST_F(JumpListTest, AMachineWithoutCollectionsReturnsItsFailureIfThereAreTasks) {
  const FailingClass noCollections(CLSID_EnumerableObjectCollection, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(S_OK, Publish({}));
  EXPECT_EQ(0, noCollections.Creations());
  EXPECT_EQ(REGDB_E_CLASSNOTREG, Publish({Entry(L"exe", Path(L"gone.exe"))}));
}

TEST_F(JumpListTest, ADocumentThatCanNotBeMadeReturnsItsFailure) {
  WriteBytes(folders.UserFolder(), "in the way");
  HRESULT failure = S_OK;
  try {
    LoadDocument(userDocument, false);
  } catch (const HResultError &error) {
    failure = error.Result();
  }
  ASSERT_LT(failure, 0);
  EXPECT_EQ(failure, CreateJumpList({}, {}));
  EXPECT_EQ(std::nullopt, Published());
}

/// Whether no object of the test platform's services lives.
bool AllReleased() {
  const FARPROC canUnload = ::GetProcAddress(::GetModuleHandleW(L"lumenor_services.dll"), "DllCanUnloadNow");
  return reinterpret_cast<HRESULT(WINAPI *)()>(reinterpret_cast<void *>(canUnload))() == S_OK;
}

TEST_F(JumpListTest, EveryWayOutReleasesItsObjects) {
  const ElementList user{Entry(L"exe", MakeFile(L"a.exe")), Entry(L"exe", MakeFile(L"broken.lnk"))};
  ASSERT_EQ(S_OK, Publish(user));
  EXPECT_TRUE(AllReleased());
  for (const char *step : {"SetAppID", "BeginList", "AddObject", "GetCount", "AddUserTasks", "CommitList"}) {
    {
      const ListSteps steps;
      EXPECT_FALSE(AllReleased()) << "the spies hold some";
      HeardSteps::failing = step;
      HeardSteps::failure = E_FAIL;
      EXPECT_EQ(E_FAIL, Publish(user));
    }
    EXPECT_TRUE(AllReleased()) << step;
  }
  DeleteTree(folders.UserFolder());
  WriteBytes(folders.UserFolder(), "in the way");
  EXPECT_LT(CreateJumpList({}, {}), 0);
  EXPECT_TRUE(AllReleased());
}

std::vector<std::pair<CLSID, DWORD>> created;
decltype(&::CoCreateInstance) formerCreate;

HRESULT WINAPI HearCreate(REFCLSID id, LPUNKNOWN outer, DWORD context, REFIID interfaceId, LPVOID *object) {
  created.emplace_back(id, context);
  return formerCreate(id, outer, context, interfaceId, object);
}

TEST_F(JumpListTest, IsMadeOfObjectsInTheProcess) {
  SaveDocument({Entry(L"exe", MakeFile(L"a.exe"))}, userDocument);
  const IconSpy icons;
  const ImportSlot slot(&__imp_CoCreateInstance, &HearCreate);
  formerCreate = slot.Former();
  created.clear();
  ASSERT_EQ(S_OK, CreateJumpList({}, {}));
  std::erase_if(created, [](const auto &object) { // the documents'
    return object.first != CLSID_DestinationList && object.first != CLSID_EnumerableObjectCollection &&
           object.first != CLSID_ShellLink;
  });
  ASSERT_EQ(3u, created.size());
  EXPECT_EQ(CLSID_DestinationList, created[0].first);
  EXPECT_EQ(static_cast<DWORD>(CLSCTX_INPROC_SERVER), created[0].second);
  EXPECT_EQ(CLSID_EnumerableObjectCollection, created[1].first);
  EXPECT_EQ(static_cast<DWORD>(CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER), created[1].second);
  EXPECT_EQ(CLSID_ShellLink, created[2].first);
  EXPECT_EQ(static_cast<DWORD>(CLSCTX_INPROC_SERVER), created[2].second);
}

// Hostile content.

TEST_F(JumpListTest, HostileTextsArriveAsTheyAre) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring arguments = L"\"a\nb\" %PATH% %s%n \u00e4\u6f22\U0001F600 " + std::wstring(5000, L'x');
  const std::wstring head = L"100% \"\u05e9\u05dc\u05d5\u05dd\" <&>" + std::wstring(3000, L'y');
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + file + L"\" " + arguments, head)}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(head, file, arguments, L"")}));
}

TEST_F(JumpListTest, TargetsOfAnyLettersAreListed) {
  const std::wstring file = MakeFile(L"\u00e4\u6f22 100% 'x' & (1).exe");
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + file + L"\"")}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"Head", file, L"", L"")}));
}

TEST_F(JumpListTest, EmptyAndBrokenCommandLinesAreLeftOut) {
  ElementList user;
  for (const wchar_t *params :
       {L"", L" ", L"\"", L"\"\"", L"\" \" x", L"\\\\", L"C:", L"C:\\", L"a|b?*", L"%APPDATA%", L"\n"})
    user.push_back(Entry(L"exe", params));
  user.push_back(Element());
  ASSERT_EQ(S_OK, AddJumpListTasks(MakeObject<ICustomDestinationList>(CLSID_DestinationList).Get(), user, {}));
  std::vector<std::string> lines = Lines();
  std::erase_if(lines, [](const std::string &line) { return !line.starts_with("ERROR: Jumplist: Unable to add "); });
  EXPECT_EQ(user.size(), lines.size());
}

TEST_F(JumpListTest, PathsOf300CharactersCostTheListNothing) {
  const std::wstring folder = Path(std::wstring(200, L'f'));
  const std::wstring longPath = folder + L"\\" + std::wstring(300 - folder.size() - 5, L'x') + L".exe";
  ASSERT_EQ(300u, longPath.size());
  const std::wstring file = MakeFile(L"a.exe");
  MakeFolders(folder);
  WriteBytes(L"\\\\?\\" + longPath, "x");
  const IconSpy icons(false, true);
  ASSERT_EQ(S_OK, Publish({Entry(L"exe", L"\"" + longPath + L"\""), Entry(L"exe", L"\"\\\\?\\" + longPath + L"\""),
                           Entry(L"exe", Path(std::wstring(300, L'm'))), Entry(L"exe", file)}));
  EXPECT_THAT(Published(),
              Optional(Tasks{Task(L"Head", file, L"", folders.CommonFolder() + L"\\ImageCache\\a.exe.ico")}));
}

TEST_F(JumpListTest, PositionsAtTheirLimitsAreMatched) {
  const std::wstring file = MakeFile(L"a.exe");
  const std::wstring one = MakeFile(L"one.ico");
  ASSERT_EQ(S_OK,
            Publish({Entry(L"exe", file, L"A", 0xFFFFFFFF), Entry(L"exe", file, L"B", 0)}, {Picture(0xFFFFFFFF, one)}));
  EXPECT_THAT(Published(), Optional(Tasks{Task(L"A", file, L"", one), Task(L"B", file, L"", L"")}));
}

TEST_F(JumpListTest, DocumentsThatAreNoXmlReadAsEmpty) {
  WriteBytes(DocumentPath(userDocument), "<UIRoot><broken");
  WriteBytes(DocumentPath(L"Flyout"), std::string(5000, '\0'));
  ASSERT_EQ(S_OK, CreateJumpList({Entry(L"xml", L"Flyout")}, {}));
  EXPECT_THAT(Published(), Optional(IsEmpty()));
}

} // namespace
} // namespace lumenor
