// Jump lists: in which order they are built, when they are published, and what is kept of them.

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "support/JumpLists.h"
#include "support/TestFolders.h"
#include "system/ChildRun.h"
#include "system/Handles.h"
#include "wine/Links.h"

namespace lumenor::services {

namespace {

using tests::JumpTask;
using tests::ReadJumpList;
using Tasks = std::optional<std::vector<JumpTask>>;

constexpr wchar_t application[] = L"Example.Lister";
constexpr wchar_t notepad[] = L"C:\\windows\\notepad.exe";
constexpr wchar_t ownList[] = L"LUMENOR_TEST_APPDATA"; // tells a child run where to publish

Ptr<ICustomDestinationList> NewList(const wchar_t *id) {
  auto list = Create<ICustomDestinationList>(CLSID_DestinationList);
  if (id != nullptr) {
    EXPECT_EQ(list->SetAppID(id), S_OK);
  }
  return list;
}

Ptr<IShellLinkW> Link(const std::wstring &title, const std::wstring &path, const std::wstring &arguments = L"") {
  auto link = Create<IShellLinkW>(CLSID_ShellLink);
  if (!title.empty())
    SetTitle(link, title);
  if (!path.empty()) {
    EXPECT_EQ(link->SetPath(path.c_str()), S_OK);
  }
  EXPECT_EQ(link->SetArguments(arguments.c_str()), S_OK);
  return link;
}

/// A link with an icon of its own: the platform's would be found out from the program.
Ptr<IShellLinkW> TaskLink(const std::wstring &title) {
  auto link = Link(title, notepad);
  EXPECT_EQ(link->SetIconLocation(L"C:\\x.ico", 0), S_OK);
  return link;
}

JumpTask Task(const std::wstring &title) { return {title, notepad, L"", L"", L"", L"C:\\x.ico", 0}; }

Ptr<IShellLinkW> Separator() {
  auto link = Create<IShellLinkW>(CLSID_ShellLink);
  EXPECT_EQ(PropertiesOf(link)->SetValue(PKEY_AppUserModel_IsDestListSeparator, *PropertyValue(true)), S_OK);
  return link;
}

Ptr<IObjectCollection> ArrayOf(std::initializer_list<Ptr<IShellLinkW>> links) {
  auto objects = Create<IObjectCollection>(CLSID_EnumerableObjectCollection);
  for (const auto &link : links)
    EXPECT_EQ(objects->AddObject(link.Get()), S_OK);
  return objects;
}

std::wstring ThisProgram() {
  wchar_t path[MAX_PATH] = {};
  ::GetModuleFileNameW(nullptr, path, MAX_PATH);
  return path;
}

class DestinationListTest : public ::testing::Test {
protected:
  static Ptr<IObjectArray> Begin(const Ptr<ICustomDestinationList> &list) {
    UINT slots = 0;
    Ptr<IObjectArray> removed;
    EXPECT_EQ(list->BeginList(&slots, IID_PPV_ARGS(&removed)), S_OK);
    return removed;
  }

  static void Publish(const Ptr<ICustomDestinationList> &list, std::initializer_list<Ptr<IShellLinkW>> links) {
    Begin(list);
    if (links.size() != 0) {
      EXPECT_EQ(list->AddUserTasks(ArrayOf(links).Get()), S_OK);
    }
    EXPECT_EQ(list->CommitList(), S_OK);
  }

  /// The answer to these tasks in a list that is begun.
  HRESULT Add(std::initializer_list<Ptr<IShellLinkW>> links) { return list->AddUserTasks(ArrayOf(links).Get()); }

  static UINT CountOf(const Ptr<IObjectArray> &objects) {
    UINT count = 99;
    EXPECT_EQ(objects ? objects->GetCount(&count) : E_POINTER, S_OK);
    return count;
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const Ptr<ICustomDestinationList> list = NewList(application);
};

using CategoryTest = DestinationListTest;

TEST_F(DestinationListTest, KeepsAllThatTheLinksOfItsTasksTell) {
  const auto link = Link(L"A title", notepad, L"\"a b\" c");
  ASSERT_EQ(link->SetWorkingDirectory(L"C:\\windows\\system32"), S_OK);
  ASSERT_EQ(link->SetDescription(L"What it does"), S_OK);
  ASSERT_EQ(link->SetIconLocation(L"C:\\icons\\one.ico", -3), S_OK);
  Publish(list, {link, TaskLink(L"Another")});
  const std::vector<JumpTask> expected = {
      {L"A title", notepad, L"\"a b\" c", L"C:\\windows\\system32", L"What it does", L"C:\\icons\\one.ico", -3},
      Task(L"Another")};
  EXPECT_EQ(ReadJumpList(application), expected);
}

TEST_F(DestinationListTest, KeepsTextsOfAllKinds) {
  const std::wstring title = L"100 % = a\nb\r\n\tc [task]\x7F%0A \u00C4\u4E16\U0001F600";
  const auto link = Link(title, notepad, L"[task]\ntitle=x\n");
  ASSERT_EQ(link->SetIconLocation(L"C:\\x.ico", 0), S_OK);
  Publish(list, {link, TaskLink(L"next")});
  const std::vector<JumpTask> expected = {{title, notepad, L"[task]\ntitle=x\n", L"", L"", L"C:\\x.ico", 0},
                                          Task(L"next")};
  EXPECT_EQ(ReadJumpList(application), expected);
}

TEST_F(DestinationListTest, IsAFileThatAScriptCanRead) {
  const auto link = Link(L"50 %\n\u00C4", notepad, L"/a \"b\"");
  ASSERT_EQ(link->SetIconLocation(L"C:\\x.ico", 4), S_OK);
  Begin(list);
  ASSERT_EQ(list->AppendKnownCategory(KDC_RECENT), S_OK);
  ASSERT_EQ(list->AppendCategory(L"Places", ArrayOf({link}).Get()), S_OK);
  ASSERT_EQ(list->AppendKnownCategory(KDC_FREQUENT), S_OK);
  ASSERT_EQ(Add({Separator(), link}), S_OK);
  ASSERT_EQ(list->CommitList(), S_OK);
  const std::string properties = "title=50 %25%0A\xC3\x84\n"
                                 "path=C:\\windows\\notepad.exe\n"
                                 "arguments=/a \"b\"\n"
                                 "workingFolder=\n"
                                 "description=\n"
                                 "icon=C:\\x.ico\n"
                                 "iconIndex=4\n";
  EXPECT_EQ(
      tests::ReadBytes(folders.AppData() + L"\\Microsoft\\Windows\\Recent\\CustomDestinations\\Example.Lister.txt"),
      "[list]\napplication=Example.Lister\n\n"
      "[known category]\nname=recent\n\n"
      "[category]\nname=Places\n\n"
      "[destination]\n" +
          properties +
          "\n[known category]\nname=frequent\n\n"
          "[separator]\n\n"
          "[task]\n" +
          properties);
}

TEST_F(DestinationListTest, BeginningTellsTheSlotsAndThatNothingWasRemoved) {
  UINT slots = 0;
  Ptr<IObjectArray> removed;
  EXPECT_EQ(list->BeginList(&slots, IID_PPV_ARGS(&removed)), S_OK);
  EXPECT_EQ(slots, 10U);
  EXPECT_EQ(CountOf(removed), 0U);
}

TEST_F(DestinationListTest, NothingIsPublishedBeforeTheCommit) {
  Begin(list);
  ASSERT_EQ(Add({TaskLink(L"task")}), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks());
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"task")}));
}

TEST_F(DestinationListTest, UnfinishedListGoesWithItsObject) {
  {
    const auto other = NewList(application);
    Begin(other);
    ASSERT_EQ(other->AddUserTasks(ArrayOf({TaskLink(L"task")}).Get()), S_OK);
  }
  EXPECT_EQ(ReadJumpList(application), Tasks());
}

TEST_F(DestinationListTest, CommitReplacesTheWholeList) {
  Publish(list, {TaskLink(L"one"), TaskLink(L"two")});
  Publish(NewList(application), {TaskLink(L"three")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"three")}));
  const std::wstring path = tests::JumpListPath(application);
  EXPECT_EQ(tests::ListFolder(path.substr(0, path.find_last_of(L'\\'))),
            std::vector<std::wstring>{L"Example.Lister.txt"})
      << "and nothing stays beside it";
}

TEST_F(DestinationListTest, WithoutTasksIsAnEmptyList) {
  Publish(list, {TaskLink(L"one")});
  Publish(list, {});
  EXPECT_EQ(ReadJumpList(application), Tasks(std::vector<JumpTask>()));
}

TEST_F(DestinationListTest, IsAsItsLinksWereWhenTheyWereAdded) {
  const auto link = TaskLink(L"before");
  Begin(list);
  ASSERT_EQ(Add({link}), S_OK);
  SetTitle(link, L"after");
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"before")}));
}

TEST_F(DestinationListTest, SurvivesTheProcess) {
  if (tests::IsChildRun()) {
    wchar_t appData[MAX_PATH] = {};
    ::GetEnvironmentVariableW(ownList, appData, MAX_PATH);
    const tests::EnvironmentValue redirected(L"APPDATA", appData);
    Publish(list, {TaskLink(L"of the child")});
    return;
  }
  EXPECT_EQ(tests::RunThisTestAsChild({{ownList, folders.AppData()}}).exitCode, 0U);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"of the child")}));
}

TEST_F(DestinationListTest, AbortDropsWhatIsUnfinishedAndKeepsWhatIsPublished) {
  Publish(list, {TaskLink(L"published")});
  Begin(list);
  ASSERT_EQ(Add({TaskLink(L"unfinished")}), S_OK);
  EXPECT_EQ(list->AbortList(), S_OK);
  EXPECT_EQ(list->CommitList(), E_UNEXPECTED);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"published")}));
}

TEST_F(DestinationListTest, BeginningAgainDropsWhatWasAdded) {
  Begin(list);
  ASSERT_EQ(list->AppendKnownCategory(KDC_RECENT), S_OK);
  ASSERT_EQ(Add({TaskLink(L"dropped")}), S_OK);
  Publish(list, {TaskLink(L"kept")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"kept")}));
  EXPECT_EQ(tests::ReadBytes(tests::JumpListPath(application)).find("recent"), std::string::npos);
}

TEST_F(DestinationListTest, RefusesWhatComesBeforeTheBeginning) {
  const auto tasks = ArrayOf({Link(L"task", notepad, L"x")});
  EXPECT_EQ(list->AddUserTasks(tasks.Get()), E_UNEXPECTED);
  EXPECT_EQ(list->AppendCategory(L"Places", tasks.Get()), E_UNEXPECTED);
  EXPECT_EQ(list->AppendKnownCategory(KDC_RECENT), E_UNEXPECTED);
  EXPECT_EQ(list->CommitList(), E_UNEXPECTED);
  EXPECT_EQ(list->AbortList(), E_UNEXPECTED);
  EXPECT_EQ(ReadJumpList(application), Tasks());
}

TEST_F(DestinationListTest, RefusesWhatComesAfterTheCommit) {
  Publish(list, {TaskLink(L"task")});
  EXPECT_EQ(Add({TaskLink(L"late")}), E_UNEXPECTED);
  EXPECT_EQ(list->AppendKnownCategory(KDC_RECENT), E_UNEXPECTED);
  EXPECT_EQ(list->CommitList(), E_UNEXPECTED);
  EXPECT_EQ(list->AbortList(), E_UNEXPECTED);
}

TEST_F(DestinationListTest, RefusesAnotherIdUntilItIsFinished) {
  Begin(list);
  EXPECT_EQ(list->SetAppID(L"Example.Other"), E_UNEXPECTED);
  ASSERT_EQ(Add({TaskLink(L"task")}), S_OK);
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(L"Example.Other"), Tasks());
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"task")}));
  EXPECT_EQ(list->SetAppID(L"Example.Other"), S_OK);
  Begin(list);
  ASSERT_EQ(list->AbortList(), S_OK);
  EXPECT_EQ(list->SetAppID(application), S_OK);
}

TEST_F(DestinationListTest, RefusesWhatIsNoId) {
  EXPECT_EQ(list->SetAppID(nullptr), E_INVALIDARG);
  EXPECT_EQ(list->SetAppID(L""), E_INVALIDARG);
  EXPECT_EQ(list->SetAppID(L"with space"), E_INVALIDARG);
  EXPECT_EQ(list->SetAppID(std::wstring(129, L'x').c_str()), E_INVALIDARG);
  Publish(list, {TaskLink(L"task")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"task")})) << "the former id is left";
  EXPECT_EQ(list->SetAppID(std::wstring(128, L'x').c_str()), S_OK);
}

TEST_F(DestinationListTest, IdLastsAsLongAsTheObject) {
  Publish(list, {TaskLink(L"one")});
  Publish(list, {TaskLink(L"two")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"two")}));
}

TEST_F(DestinationListTest, EachIdHasAListOfItsOwn) {
  Publish(list, {TaskLink(L"one")});
  Publish(NewList(L"Example.Other"), {TaskLink(L"two")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"one")}));
  EXPECT_EQ(ReadJumpList(L"Example.Other"), Tasks({Task(L"two")}));
}

TEST_F(DestinationListTest, IdMayHaveWhatAFilesNameMayNot) {
  Publish(NewList(L"a\\b/c:d*e?f\"g<h>i|j%5C"), {TaskLink(L"strange")});
  EXPECT_EQ(ReadJumpList(L"a\\b/c:d*e?f\"g<h>i|j%5C"), Tasks({Task(L"strange")}));
  EXPECT_TRUE(tests::Exists(folders.AppData() + L"\\Microsoft\\Windows\\Recent\\CustomDestinations\\"
                                                L"a%5Cb%2Fc%3Ad%2Ae%3Ff%22g%3Ch%3Ei%7Cj%255C.txt"));
}

TEST_F(DestinationListTest, WithoutAnIdItIsTheExecutables) {
  const auto own = NewList(nullptr);
  Publish(own, {TaskLink(L"own")});
  EXPECT_EQ(ReadJumpList(ThisProgram()), Tasks({Task(L"own")}));
  EXPECT_EQ(own->DeleteList(nullptr), S_OK);
  EXPECT_EQ(ReadJumpList(ThisProgram()), Tasks());
}

TEST_F(DestinationListTest, TasksComeOnce) {
  Begin(list);
  ASSERT_EQ(Add({TaskLink(L"first")}), S_OK);
  EXPECT_EQ(Add({TaskLink(L"second")}), HRESULT_FROM_WIN32(ERROR_ALREADY_EXISTS));
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"first")}));
}

TEST_F(DestinationListTest, RefusesNoTasks) {
  Begin(list);
  EXPECT_EQ(list->AddUserTasks(nullptr), E_INVALIDARG);
  EXPECT_EQ(Add({}), E_INVALIDARG);
  EXPECT_EQ(Add({TaskLink(L"task")}), S_OK) << "it has none yet";
}

TEST_F(DestinationListTest, RefusesLinksWithoutTitleOrPathAndTheirWholeArray) {
  Begin(list);
  EXPECT_EQ(Add({TaskLink(L"good"), Link(L"", notepad)}), E_INVALIDARG);
  EXPECT_EQ(Add({TaskLink(L"good"), Link(L"title", L"")}), E_INVALIDARG);
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks(std::vector<JumpTask>()));
}

TEST_F(DestinationListTest, RefusesObjectsThatAreNoLinks) {
  const auto objects = ArrayOf({TaskLink(L"good")});
  ASSERT_EQ(objects->AddObject(list.Get()), S_OK);
  Begin(list);
  EXPECT_EQ(list->AddUserTasks(objects.Get()), E_NOINTERFACE);
}

TEST_F(DestinationListTest, SeparatorsAreNoTasks) {
  Publish(list, {TaskLink(L"one"), Separator(), TaskLink(L"two")});
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"one"), Task(L"two")}));
}

TEST_F(DestinationListTest, DeletedListIsGone) {
  Publish(list, {TaskLink(L"one")});
  Publish(NewList(L"Example.Other"), {TaskLink(L"two")});
  EXPECT_EQ(list->DeleteList(L"Example.Other"), S_OK);
  EXPECT_EQ(ReadJumpList(L"Example.Other"), Tasks());
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"one")}));
  EXPECT_EQ(list->DeleteList(nullptr), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks()) << "without an id it is the object's own";
}

TEST_F(DestinationListTest, DeletingWhatIsntThereIsNoFailure) {
  EXPECT_EQ(list->DeleteList(application), S_OK) << "nor is the folder";
  Publish(list, {});
  EXPECT_EQ(list->DeleteList(L"Example.Other"), S_OK);
}

TEST_F(DestinationListTest, TellsAtAnyTimeThatNothingWasRemoved) {
  Ptr<IObjectArray> removed;
  EXPECT_EQ(list->GetRemovedDestinations(IID_PPV_ARGS(&removed)), S_OK);
  EXPECT_EQ(CountOf(removed), 0U);
  Begin(list);
  EXPECT_EQ(list->GetRemovedDestinations(IID_PPV_ARGS(removed.ReleaseAndGetAddressOf())), S_OK);
  EXPECT_EQ(CountOf(removed), 0U);
}

TEST_F(DestinationListTest, RefusedBeginningBeginsNothing) {
  UINT slots = 0;
  Ptr<IObjectArray> removed;
  void *object = list.Get();
  EXPECT_EQ(list->BeginList(nullptr, IID_PPV_ARGS(&removed)), E_POINTER);
  EXPECT_EQ(list->BeginList(&slots, __uuidof(IObjectArray), nullptr), E_POINTER);
  EXPECT_EQ(list->BeginList(&slots, __uuidof(IShellLinkW), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(list->CommitList(), E_UNEXPECTED);
}

TEST_F(DestinationListTest, CommitThatFailsMayBeTriedAgain) {
  const std::wstring blocked = folders.Root() + L"\\file";
  tests::WriteBytes(blocked, "in the way");
  Begin(list);
  ASSERT_EQ(Add({TaskLink(L"task")}), S_OK);
  {
    const tests::EnvironmentValue appData(L"APPDATA", blocked);
    EXPECT_EQ(list->CommitList(), HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND));
    appData.Remove();
    EXPECT_EQ(list->CommitList(), HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND));
  }
  EXPECT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"task")}));
}

TEST_F(DestinationListTest, ListThatCantBeReplacedStays) {
  Publish(list, {TaskLink(L"former")});
  const std::wstring path = tests::JumpListPath(application);
  const FileHandle inUse(::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  Begin(list);
  ASSERT_EQ(Add({TaskLink(L"later")}), S_OK);
  EXPECT_EQ(list->CommitList(), HRESULT_FROM_WIN32(ERROR_ACCESS_DENIED));
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"former")}));
  EXPECT_EQ(tests::ListFolder(path.substr(0, path.find_last_of(L'\\'))).size(), 1U) << "what was written aside went";
}

TEST_F(CategoryTest, DestinationsAreNoTasks) {
  Begin(list);
  ASSERT_EQ(list->AppendCategory(L"Places", ArrayOf({Link(L"place", notepad, L"x")}).Get()), S_OK);
  ASSERT_EQ(Add({TaskLink(L"task")}), S_OK);
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(ReadJumpList(application), Tasks({Task(L"task")}));
}

TEST_F(CategoryTest, NeedsANameAndDestinations) {
  const auto links = ArrayOf({Link(L"place", notepad, L"x")});
  Begin(list);
  EXPECT_EQ(list->AppendCategory(nullptr, links.Get()), E_INVALIDARG);
  EXPECT_EQ(list->AppendCategory(L"", links.Get()), E_INVALIDARG);
  EXPECT_EQ(list->AppendCategory(L"Places", nullptr), E_INVALIDARG);
  EXPECT_EQ(list->AppendCategory(L"Places", ArrayOf({}).Get()), E_INVALIDARG);
  ASSERT_EQ(list->CommitList(), S_OK);
  EXPECT_EQ(tests::ReadBytes(tests::JumpListPath(application)), "[list]\napplication=Example.Lister\n");
}

TEST_F(CategoryTest, RefusesLinksWithoutArguments) {
  Begin(list);
  EXPECT_EQ(list->AppendCategory(L"Places", ArrayOf({Link(L"place", notepad)}).Get()), E_INVALIDARG);
  EXPECT_EQ(list->AppendCategory(L"Places", ArrayOf({Link(L"", notepad, L"x")}).Get()), E_INVALIDARG);
}

TEST_F(CategoryTest, RefusesFilesThatNobodyRegisteredFor) {
  Ptr<IShellItem> item;
  ASSERT_EQ(::SHCreateItemFromParsingName(L"C:\\windows", nullptr, IID_PPV_ARGS(&item)), S_OK);
  const auto objects = ArrayOf({Link(L"place", notepad, L"x")});
  ASSERT_EQ(objects->AddObject(item.Get()), S_OK);
  Begin(list);
  EXPECT_EQ(list->AppendCategory(L"Places", objects.Get()), static_cast<HRESULT>(0x80040F03U));
  ASSERT_EQ(objects->RemoveObjectAt(1), S_OK);
  ASSERT_EQ(objects->AddObject(list.Get()), S_OK);
  EXPECT_EQ(list->AppendCategory(L"Places", objects.Get()), E_NOINTERFACE);
}

TEST_F(CategoryTest, RefusesKnownOnesThatAreUnknown) {
  Begin(list);
  EXPECT_EQ(list->AppendKnownCategory(static_cast<KNOWNDESTCATEGORY>(0)), E_INVALIDARG);
  EXPECT_EQ(list->AppendKnownCategory(static_cast<KNOWNDESTCATEGORY>(3)), E_INVALIDARG);
}

} // namespace

} // namespace lumenor::services
