#include "content/TaskLink.h"

#include <gmock/gmock.h>

#include "content/IconSpy.h"
#include "content/ShellSteps.h"
#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"

namespace lumenor {
namespace {

using namespace tests;
using Microsoft::WRL::ComPtr;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(IsShortcutPath, LooksAtTheLastFourCharactersInTheirCase) {
  for (const wchar_t *path : {L"C:\\a\\Notes.lnk", L"Notes.lnk", L".lnk", L"C:\\a\\.lnk", L"C:\\a.exe.lnk"})
    EXPECT_TRUE(IsShortcutPath(path)) << Utf8(path);
  for (const wchar_t *path : {L"", L"lnk", L"C:\\a\\Notes.LNK", L"C:\\a\\Notes.Lnk", L"C:\\a.lnk\\b", L"C:\\a.lnk.exe",
                              L"C:\\a.lnk ", L"xlnk"})
    EXPECT_FALSE(IsShortcutPath(path)) << Utf8(path);
}

TEST(ShortcutTitle, IsTheTextBetweenTheLastBackslashAndTheExtension) {
  EXPECT_EQ(L"My Notes", ShortcutTitle(L"C:\\My folder\\My Notes.lnk"));
  EXPECT_EQ(L"b", ShortcutTitle(L"C:\\a.lnk\\b.lnk"));
  EXPECT_EQ(L"a.lnk", ShortcutTitle(L"C:\\a.lnk.lnk"));
  EXPECT_EQ(L"", ShortcutTitle(L"C:\\a\\.lnk"));
  EXPECT_EQ(L"x/y", ShortcutTitle(L"C:\\x/y.lnk"));
}

TEST(ShortcutTitle, OfAPathWithoutABackslashIsTheWholePath) {
  EXPECT_EQ(L"Notes.lnk", ShortcutTitle(L"Notes.lnk"));
  EXPECT_EQ(L"C:/x/Notes.lnk", ShortcutTitle(L"C:/x/Notes.lnk"));
  EXPECT_EQ(L"", ShortcutTitle(L""));
}

constexpr wchar_t program[] = L"C:\\windows\\regedit.exe"; // has an icon

class TaskLinkFixture : public testing::Test {
protected:
  TaskLinkFixture() { MakeFolders(folders.CommonFolder()); }

  std::wstring Path(const std::wstring &name) const { return folders.Root() + L"\\" + name; }
  std::wstring Cached(const std::wstring &name) const { return folders.CommonFolder() + L"\\ImageCache\\" + name; }

  static Element Headed(const std::wstring &head) {
    Element element;
    element.Head = head;
    return element;
  }

  HRESULT Create(const std::wstring &path, const std::wstring &icon = {}) {
    return CreateTaskLink(path, L"-x", Headed(L"Head"), link, icon);
  }

  const ComApartment com;
  const TestFolders folders;
  ComPtr<IShellLinkW> link;
};

// Links to programs.

class CreateTaskLinkTest : public TaskLinkFixture {};

TEST_F(CreateTaskLinkTest, LinksAProgramWithItsArgumentsItsHeadAndItsOwnIcon) {
  const LogCapture log(folders);
  ASSERT_EQ(S_OK, CreateTaskLink(program, L"/s \"a b\"", Headed(L"Registry"), link, L""));
  EXPECT_EQ(Task(L"Registry", program, L"/s \"a b\"", program), Described(link.Get()));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Setting path C:\\windows\\regedit.exe, on the shelllink, with params /s "
                                       "\"a b\""));
  EXPECT_FALSE(Exists(folders.CommonFolder() + L"\\ImageCache")) << "nothing to keep";
}

TEST_F(CreateTaskLinkTest, TitlesAnEntryWithoutAHeadByItsPath) {
  ASSERT_EQ(S_OK, CreateTaskLink(program, L"-x", Headed(L""), link, L""));
  EXPECT_EQ(program, Described(link.Get()).title);
}

TEST_F(CreateTaskLinkTest, TakesTheGivenIconWithoutAskingTheShell) {
  const IconSpy icons(true, true);
  ASSERT_EQ(S_OK, Create(program, L"C:\\pictures\\mail.ico"));
  EXPECT_EQ(L"C:\\pictures\\mail.ico", Described(link.Get()).icon);
  EXPECT_EQ(0, Described(link.Get()).iconIndex);
  EXPECT_THAT(IconSpy::ownAsked, IsEmpty());
  EXPECT_THAT(IconSpy::associatedAsked, IsEmpty());
}

TEST_F(CreateTaskLinkTest, DoesNotAskTheShellForTheIconOfADamagedProgram) {
  const IconSpy icons(true, true);
  const std::wstring damaged = Path(L"damaged.exe");
  WriteBytes(damaged, "MZ");
  ASSERT_EQ(S_OK, Create(damaged));
  EXPECT_EQ(L"", Described(link.Get()).icon);
  EXPECT_THAT(IconSpy::ownAsked, IsEmpty());
  EXPECT_THAT(IconSpy::associatedAsked, IsEmpty());
}

TEST_F(CreateTaskLinkTest, DestroysTheIconThatTellsOfTheFilesOwn) {
  const IconSpy icons(true, true);
  ASSERT_EQ(S_OK, Create(program));
  EXPECT_EQ(program, Described(link.Get()).icon);
  EXPECT_THAT(IconSpy::ownAsked, ElementsAre(program));
  EXPECT_EQ(0U, IconSpy::ownIndex) << "the first of the file";
  EXPECT_THAT(IconSpy::associatedAsked, IsEmpty());
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::own));
}

TEST_F(CreateTaskLinkTest, KeepsTheIconThatTheShellShowsForAFileWithoutOne) {
  for (const UINT_PTR none : {0, 1}) { // 1 means a kind of file that holds none
    DeleteTree(folders.CommonFolder() + L"\\ImageCache");
    const IconSpy icons(false, true);
    IconSpy::own = reinterpret_cast<HICON>(none);
    ASSERT_EQ(S_OK, Create(program));
    EXPECT_EQ(Task(L"Head", program, L"-x", Cached(L"regedit.exe.ico")), Described(link.Get()));
    EXPECT_TRUE(Exists(Cached(L"regedit.exe.ico")));
    EXPECT_THAT(IconSpy::associatedAsked, ElementsAre(program));
    EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
  }
}

TEST_F(CreateTaskLinkTest, TakesAnIconFileThatIsThereAsItIs) {
  const IconSpy icons(false, true);
  WriteBytes(Cached(L"regedit.exe.ico"), "former");
  ASSERT_EQ(S_OK, Create(program));
  EXPECT_EQ(Cached(L"regedit.exe.ico"), Described(link.Get()).icon);
  EXPECT_EQ("former", ReadBytes(Cached(L"regedit.exe.ico")));
}

TEST_F(CreateTaskLinkTest, NamesAnIconFileThatCouldNotBeWritten) {
  const IconSpy icons(false, true);
  WriteBytes(folders.CommonFolder() + L"\\ImageCache", "in the way");
  ASSERT_EQ(S_OK, Create(program));
  EXPECT_EQ(Cached(L"regedit.exe.ico"), Described(link.Get()).icon);
}

TEST_F(CreateTaskLinkTest, LeavesAFileForWhichThereIsNoIconWithoutOne) {
  const IconSpy icons;
  ASSERT_EQ(S_OK, Create(program));
  EXPECT_EQ(L"", Described(link.Get()).icon);
}

TEST_F(CreateTaskLinkTest, TakesItsStepsInOrder) {
  const IconSpy icons(true);
  const LinkSteps steps;
  ASSERT_EQ(S_OK, Create(program));
  EXPECT_THAT(HeardSteps::names, ElementsAre("SetPath", "SetArguments", "SetIconLocation", "SetValue", "Commit"));
}

TEST_F(CreateTaskLinkTest, ReturnsTheFailureOfEachStepAndGoesNoFurther) {
  const Steps order{"SetPath", "SetArguments", "SetIconLocation", "SetValue", "Commit"};
  for (std::size_t i = 0; i < order.size(); ++i) {
    const IconSpy icons(true);
    const LinkSteps steps;
    HeardSteps::failing = order[i];
    HeardSteps::failure = STG_E_ACCESSDENIED;
    EXPECT_EQ(STG_E_ACCESSDENIED, Create(program)) << order[i];
    EXPECT_EQ(Steps(order.begin(), order.begin() + static_cast<std::ptrdiff_t>(i) + 1), HeardSteps::names);
  }
}

TEST_F(CreateTaskLinkTest, ReturnsTheFailureOfAnIconToBeSet) {
  const IconSpy icons(false, true);
  const LinkSteps steps;
  HeardSteps::failing = "SetIconLocation";
  HeardSteps::failure = E_INVALIDARG;
  EXPECT_EQ(E_INVALIDARG, Create(program));
  EXPECT_EQ(E_INVALIDARG, Create(program, L"C:\\given.ico"));
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
}

TEST_F(CreateTaskLinkTest, ReturnsTheFailureOfAMachineWithoutShellLinksAsItStands) {
  const LogCapture log(folders);
  const FailingClass noLinks(CLSID_ShellLink, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(REGDB_E_CLASSNOTREG, Create(program));
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(CreateTaskLinkTest, TakesASuccessWithoutALinkForAFailure) {
  const LogCapture log(folders);
  const FailingClass noLinks(CLSID_ShellLink, S_OK);
  EXPECT_EQ(E_FAIL, Create(program));
  EXPECT_EQ(1, noLinks.Creations());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: CoCreate of CLSID_ShellLink failed"));
}

TEST_F(CreateTaskLinkTest, KeepsHostileTextsWhole) {
  const std::wstring arguments = L"\"a\nb\" %PATH% %s \u00e4\u6f22\U0001F600 " + std::wstring(5000, L'x');
  const std::wstring head = L"100% \"\u05e9\u05dc\u05d5\u05dd\"\t" + std::wstring(3000, L'y');
  ASSERT_EQ(S_OK, CreateTaskLink(program, arguments, Headed(head), link, L""));
  EXPECT_EQ(arguments, Described(link.Get()).arguments);
  EXPECT_EQ(head, Described(link.Get()).title);
}

TEST_F(CreateTaskLinkTest, RefusesAPathThatTheShellHasNoRoomFor) {
  const IconSpy icons;
  const std::wstring longest = L"C:\\" + std::wstring(256, L'x');
  const LinkSteps steps;
  EXPECT_EQ(HResultFromError(ERROR_FILENAME_EXCED_RANGE), Create(longest + L"y"));
  EXPECT_THAT(HeardSteps::names, IsEmpty());
  Create(longest);
  EXPECT_THAT(HeardSteps::names, testing::Contains("SetPath"));
}

TEST_F(CreateTaskLinkTest, ReplacesTheLinkThatItIsHanded) {
  ASSERT_EQ(S_OK, Create(program));
  const ComPtr<IShellLinkW> former = link;
  ASSERT_EQ(S_OK, CreateTaskLink(program, L"-y", Headed(L"Other"), link, L""));
  EXPECT_NE(former.Get(), link.Get());
  EXPECT_EQ(L"-x", Described(former.Get()).arguments);
}

// Copies of shortcuts.

class CopyShortcutTest : public TaskLinkFixture {
protected:
  CopyShortcutTest() { WriteShortcut(shortcut, content); }

  const JumpTask content{L"",
                         program,
                         L"/s \"a b\" \u00e4\u6f22",
                         L"C:\\windows\\system32",
                         L"Edits \u201cthe registry\u201d",
                         L"C:\\windows\\explorer.exe",
                         3};
  const std::wstring shortcut = Path(L"My Registry.lnk");
};

JumpTask CopyOf(JumpTask content, const std::wstring &title, const std::wstring &icon) {
  content.title = title;
  content.icon = icon;
  content.iconIndex = 0;
  return content;
}

TEST_F(CopyShortcutTest, CopiesItsFieldsAndTitlesItByItsFileName) {
  const IconSpy icons(true, true);
  ASSERT_EQ(S_OK, Create(shortcut, L"C:\\given.ico")); // whose arguments, head and icon don't matter
  EXPECT_EQ(CopyOf(content, L"My Registry", Cached(L"My Registry.lnk.ico")), Described(link.Get()));
  EXPECT_TRUE(Exists(Cached(L"My Registry.lnk.ico")));
  EXPECT_THAT(IconSpy::ownAsked, IsEmpty());
  EXPECT_THAT(IconSpy::associatedAsked, ElementsAre(shortcut)) << "the shortcut's own, not its target's";
  EXPECT_THAT(IconSpy::destroyed, ElementsAre(IconSpy::associated));
}

TEST_F(CopyShortcutTest, HasNoIconWhereTheShellHasNone) {
  const IconSpy icons;
  ASSERT_EQ(S_OK, Create(shortcut));
  EXPECT_EQ(CopyOf(content, L"My Registry", L""), Described(link.Get()));
}

TEST_F(CopyShortcutTest, TakesAnIconFileThatIsThereAsItIs) {
  const IconSpy icons(false, true);
  WriteBytes(Cached(L"My Registry.lnk.ico"), "former");
  ASSERT_EQ(S_OK, Create(shortcut));
  EXPECT_EQ(Cached(L"My Registry.lnk.ico"), Described(link.Get()).icon);
  EXPECT_EQ("former", ReadBytes(Cached(L"My Registry.lnk.ico")));
}

TEST_F(CopyShortcutTest, IsCopiedOnTheRealShell) {
  ASSERT_EQ(S_OK, Create(shortcut));
  JumpTask copy = Described(link.Get());
  copy.icon.clear();
  EXPECT_EQ(CopyOf(content, L"My Registry", L""), copy);
}

TEST_F(CopyShortcutTest, IsLoggedAsAnyOtherTarget) {
  const LogCapture log(folders);
  ASSERT_EQ(S_OK, Create(shortcut));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Setting path " + Utf8(shortcut) + ", on the shelllink, with params -x"));
}

const Steps copySteps{"Load",
                      "Resolve",
                      "GetPath",
                      "SetPath",
                      "SetIconLocation",
                      "GetArguments",
                      "SetArguments",
                      "GetWorkingDirectory",
                      "SetWorkingDirectory",
                      "GetDescription",
                      "SetDescription",
                      "SetValue",
                      "Commit"};

TEST_F(CopyShortcutTest, TakesItsStepsInOrder) {
  const IconSpy icons(false, true);
  const LinkSteps steps;
  ASSERT_EQ(S_OK, Create(shortcut));
  EXPECT_EQ(copySteps, HeardSteps::names);
}

TEST_F(CopyShortcutTest, ReturnsTheFailureOfEachStepAndGoesNoFurther) {
  for (std::size_t i = 0; i < copySteps.size(); ++i) {
    const IconSpy icons(false, true);
    const LinkSteps steps;
    HeardSteps::failing = copySteps[i];
    HeardSteps::failure = STG_E_ACCESSDENIED;
    EXPECT_EQ(STG_E_ACCESSDENIED, Create(shortcut)) << copySteps[i];
    EXPECT_EQ(Steps(copySteps.begin(), copySteps.begin() + static_cast<std::ptrdiff_t>(i) + 1), HeardSteps::names);
  }
}

std::wstring loadedPath;
HWND resolveWindow;
DWORD loadMode, resolveFlags, pathFlags;
int pathSize, argumentsSize, folderSize, descriptionSize;

/// Hears what the source is asked with.
class ArgumentSpy {
public:
  ArgumentSpy() {
    formerLoad = file.Exchange(5, &Load);
    spy.Exchange(19, &Resolve);
    formerGetPath = spy.Exchange(3, &GetPath);
    formerGetArguments = spy.Exchange(10, &GetArguments);
    formerGetFolder = spy.Exchange(8, &GetFolder);
    formerGetDescription = spy.Exchange(6, &GetDescription);
  }

private:
  using GetText = HRESULT(STDMETHODCALLTYPE *)(IShellLinkW *, LPWSTR, int);

  static HRESULT STDMETHODCALLTYPE Load(IPersistFile *self, LPCOLESTR path, DWORD mode) {
    loadedPath = path;
    loadMode = mode;
    return formerLoad(self, path, mode);
  }
  static HRESULT STDMETHODCALLTYPE Resolve(IShellLinkW *, HWND window, DWORD flags) {
    resolveWindow = window;
    resolveFlags = flags;
    return S_OK;
  }
  static HRESULT STDMETHODCALLTYPE GetPath(IShellLinkW *self, LPWSTR path, int size, WIN32_FIND_DATAW *data,
                                           DWORD flags) {
    pathSize = size;
    pathFlags = flags;
    return formerGetPath(self, path, size, data, flags);
  }
  static HRESULT STDMETHODCALLTYPE GetArguments(IShellLinkW *self, LPWSTR text, int size) {
    argumentsSize = size;
    return formerGetArguments(self, text, size);
  }
  static HRESULT STDMETHODCALLTYPE GetFolder(IShellLinkW *self, LPWSTR text, int size) {
    folderSize = size;
    return formerGetFolder(self, text, size);
  }
  static HRESULT STDMETHODCALLTYPE GetDescription(IShellLinkW *self, LPWSTR text, int size) {
    descriptionSize = size;
    return formerGetDescription(self, text, size);
  }

  static inline HRESULT(STDMETHODCALLTYPE *formerGetPath)(IShellLinkW *, LPWSTR, int, WIN32_FIND_DATAW *, DWORD);
  static inline GetText formerGetArguments, formerGetFolder, formerGetDescription;
  static inline HRESULT(STDMETHODCALLTYPE *formerLoad)(IPersistFile *, LPCOLESTR, DWORD);

  OperationSpy spy{MakeObject<IShellLinkW>(CLSID_ShellLink).Get()};
  OperationSpy file{MakeObject<IPersistFile>(CLSID_ShellLink).Get()};
};

TEST_F(CopyShortcutTest, AsksTheSourceSilentlyForRawPathsWithTheShellsLimits) {
  const ArgumentSpy spy;
  ASSERT_EQ(S_OK, Create(shortcut));
  EXPECT_EQ(shortcut, loadedPath);
  EXPECT_EQ(0U, loadMode);
  EXPECT_EQ(::GetDesktopWindow(), resolveWindow);
  EXPECT_EQ(static_cast<DWORD>(SLR_NO_UI), resolveFlags);
  EXPECT_EQ(static_cast<DWORD>(SLGP_RAWPATH), pathFlags);
  EXPECT_EQ(260, pathSize);
  EXPECT_EQ(1024, argumentsSize);
  EXPECT_EQ(260, folderSize);
  EXPECT_EQ(1024, descriptionSize);
}

TEST_F(CopyShortcutTest, CutsTextsAtTheShellsLimits) {
  JumpTask longer = content;
  longer.arguments = std::wstring(3000, L'a');
  longer.workingFolder = L"C:\\" + std::wstring(600, L'w');
  longer.description = std::wstring(3000, L'd');
  WriteShortcut(shortcut, longer);
  ASSERT_EQ(S_OK, Create(shortcut));
  const JumpTask copy = Described(link.Get());
  EXPECT_EQ(std::wstring(1023, L'a'), copy.arguments);
  EXPECT_EQ(L"C:\\" + std::wstring(256, L'w'), copy.workingFolder);
  EXPECT_EQ(std::wstring(1023, L'd'), copy.description);
}

TEST_F(CopyShortcutTest, OfAMissingFileFails) {
  EXPECT_EQ(HResultFromError(ERROR_FILE_NOT_FOUND), Create(Path(L"none.lnk")));
}

TEST_F(CopyShortcutTest, OfAFileThatIsNoShortcutFails) {
  for (const std::size_t size : {0, 1, 76, 5000}) {
    WriteBytes(Path(L"bad.lnk"), Pattern(size));
    EXPECT_LT(Create(Path(L"bad.lnk")), 0) << size;
  }
}

TEST_F(CopyShortcutTest, OfAShortcutThatBreaksOffDoesNotCrash) {
  const std::string whole = ReadBytes(shortcut);
  ASSERT_LT(76u, whole.size());
  for (std::size_t size = 0; size < whole.size(); size += 7) {
    WriteBytes(Path(L"bad.lnk"), whole.substr(0, size));
    if (SUCCEEDED(Create(Path(L"bad.lnk")))) {
      EXPECT_EQ(L"bad", Described(link.Get()).title) << size;
    }
  }
}

TEST_F(CopyShortcutTest, OfAShortcutThatLeadsToNoFileFails) {
  JumpTask nowhere = content;
  nowhere.path.clear();
  WriteShortcut(shortcut, nowhere);
  EXPECT_EQ(E_FAIL, Create(shortcut));
}

TEST_F(CopyShortcutTest, OfAShortcutWithoutANameIsTitledByItsPath) {
  WriteShortcut(Path(L".lnk"), content);
  ASSERT_EQ(S_OK, Create(Path(L".lnk")));
  EXPECT_EQ(Path(L".lnk"), Described(link.Get()).title);
}

TEST_F(CopyShortcutTest, WithItsExtensionInUpperCaseIsAFileLikeAnyOther) {
  const std::wstring upper = Path(L"MY REGISTRY.LNK");
  WriteShortcut(upper, content);
  const IconSpy icons;
  ASSERT_EQ(S_OK, Create(upper));
  EXPECT_EQ(Task(L"Head", upper, L"-x", L""), Described(link.Get()));
}

} // namespace
} // namespace lumenor
