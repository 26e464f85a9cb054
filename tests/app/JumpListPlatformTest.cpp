#include "app/JumpListPlatform.h"

#include <cstring>
#include <functional>

#include <gmock/gmock.h>

#include "app/VersionSpy.h"
#include "content/DocumentNames.h"
#include "content/Documents.h"
#include "content/JumpList.h"
#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/ImportSlot.h"
#include "support/JumpLists.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

#include <shobjidl.h>

extern "C" decltype(&::GetModuleHandleW) __imp_GetModuleHandleW;
extern "C" decltype(&::GetProcAddress) __imp_GetProcAddress;

namespace lumenor {
namespace {

using namespace tests;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

bool IsOn(DWORD major, DWORD minor, BOOL succeeds = TRUE) {
  const VersionSpy platform(major, minor, succeeds);
  return IsJumpListPlatform();
}

TEST(IsJumpListPlatform, IsTrueExactlyForVersion61) {
  EXPECT_TRUE(IsOn(6, 1));
  EXPECT_EQ(sizeof(OSVERSIONINFOW), VersionSpy::size);
  EXPECT_FALSE(IsOn(6, 0));
  EXPECT_FALSE(IsOn(6, 2));
  EXPECT_FALSE(IsOn(5, 1));
  EXPECT_FALSE(IsOn(7, 1));
  EXPECT_FALSE(IsOn(10, 0));
}

TEST(IsJumpListPlatform, IsFalseWhereTheVersionCanNotBeTold) { EXPECT_FALSE(IsOn(6, 1, FALSE)); }

TEST(IsJumpListPlatform, IsTrueOnTheTestPlatform) { EXPECT_TRUE(IsJumpListPlatform()); }

/// Hears the application id that the process takes.
class ApplicationIdSpy {
public:
  ApplicationIdSpy() {
    ids.clear();
    sought.clear();
    result = S_OK;
    onSet = [] {};
    formerModule = moduleSlot.Former();
    formerAddress = addressSlot.Former();
  }

  static inline std::vector<std::wstring> ids;
  static inline std::vector<std::wstring> sought; // the modules
  static inline HRESULT result;
  static inline bool hasModule = true;
  static inline bool hasFunction = true;
  static inline std::function<void()> onSet;

private:
  static HRESULT WINAPI Set(PCWSTR id) {
    ids.emplace_back(id);
    onSet();
    return result;
  }

  static HMODULE WINAPI FindModule(LPCWSTR name) {
    if (name == nullptr || ::lstrcmpiW(name, L"Shell32.dll") != 0)
      return formerModule(name);
    sought.emplace_back(name);
    return hasModule ? formerModule(name) : nullptr;
  }

  static FARPROC WINAPI FindFunction(HMODULE module, LPCSTR name) {
    if (reinterpret_cast<UINT_PTR>(name) <= 0xFFFF || std::strcmp(name, "SetCurrentProcessExplicitAppUserModelID") != 0)
      return formerAddress(module, name);
    return hasFunction ? reinterpret_cast<FARPROC>(reinterpret_cast<void *>(&Set)) : nullptr;
  }

  static inline decltype(&::GetModuleHandleW) formerModule;
  static inline decltype(&::GetProcAddress) formerAddress;

  const ImportSlot<decltype(__imp_GetModuleHandleW)> moduleSlot{&__imp_GetModuleHandleW, &FindModule};
  const ImportSlot<decltype(__imp_GetProcAddress)> addressSlot{&__imp_GetProcAddress, &FindFunction};
};

class PublishJumpListTest : public testing::Test {
protected:
  PublishJumpListTest() { hasApplicationId = false; }
  ~PublishJumpListTest() override { ApplicationIdSpy::hasModule = ApplicationIdSpy::hasFunction = true; }

  static Element Entry(const std::wstring &type, const std::wstring &params, std::uint32_t position = 0) {
    Element element;
    element.Head = L"Head";
    element.ActionType = type;
    element.ActionParams = params;
    element.Position = position;
    return element;
  }

  static HRESULT Failure() {
    try {
      PublishJumpList();
    } catch (const HResultError &error) {
      return error.Result();
    }
    return S_OK;
  }

  static std::optional<std::vector<JumpTask>> Published() { return ReadJumpList(L"com.tw.ebu.lumenor"); }

  const ComApartment com;
  const TestFolders folders;
  const LogCapture log{folders};
};

TEST_F(PublishJumpListTest, PublishesTheDocumentsOfTheBar) {
  const std::wstring file = folders.Root() + L"\\a.exe";
  const std::wstring picture = folders.Root() + L"\\a.ico";
  WriteBytes(file, "x");
  WriteBytes(picture, "x");
  SaveDocument({Entry(L"xml", L"Flyout")}, L"Lumenor.MainFrame.Windows.DockViewWindow.Main");
  SaveDocument({Entry(L"exe", L"\"" + file + L"\" 1", 7)}, L"Flyout");
  SaveDocument({Entry(L"exe", L"\"" + file + L"\" 2", 8)}, L"Lumenor.MainFrame.Windows.DockViewWindow.User");
  Element pictured;
  pictured.Image = picture;
  pictured.Position = 8;
  SaveDocument({pictured}, L"Lumenor.MainFrame.Controls.JumpList.Main");
  const ApplicationIdSpy applicationId;
  PublishJumpList();
  EXPECT_THAT(Published(), Optional(ElementsAre(JumpTask{L"Head", file, L"1", {}, {}, {}, 0},
                                                JumpTask{L"Head", file, L"2", {}, {}, picture, 0})));
  EXPECT_THAT(ApplicationIdSpy::ids, ElementsAre(L"com.tw.ebu.lumenor"));
  EXPECT_THAT(ApplicationIdSpy::sought, ElementsAre(L"Shell32.dll"));
  EXPECT_THAT(log.Lines(),
              ElementsAre("INFO: Jumplist creation", "INFO: Create jumplist",
                          "INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                          "INFO: Jumplist: Beginning list", "INFO: Jumplist: Add tasks", "INFO: Jumplist: Add tasks",
                          "INFO: Setting path " + Utf8(file) + ", on the shelllink, with params 1",
                          "INFO: Setting path " + Utf8(file) + ", on the shelllink, with params 2",
                          "INFO: Jumplist: Commit list"));
}

TEST_F(PublishJumpListTest, MakesTheDocumentsThatAreMissing) {
  PublishJumpList();
  EXPECT_THAT(Published(), Optional(IsEmpty()));
  EXPECT_THAT(ListFolder(folders.UserFolder()), ElementsAre(L"Lumenor.MainFrame.Controls.JumpList.Main.xml",
                                                            L"Lumenor.MainFrame.Windows.DockViewWindow.Main.xml",
                                                            L"Lumenor.MainFrame.Windows.DockViewWindow.User.xml"));
}

TEST_F(PublishJumpListTest, TakesTheIdBeforeItReadsTheDocuments) {
  const ApplicationIdSpy applicationId;
  bool isEarly = false;
  ApplicationIdSpy::onSet = [&] { isEarly = !DocumentExists(mainDocumentName); };
  PublishJumpList();
  EXPECT_TRUE(isEarly);
  EXPECT_TRUE(DocumentExists(mainDocumentName));
}

TEST_F(PublishJumpListTest, TakesTheIdOnceAProcess) {
  const ApplicationIdSpy applicationId;
  PublishJumpList();
  PublishJumpList();
  PublishJumpList();
  EXPECT_THAT(ApplicationIdSpy::ids, ElementsAre(L"com.tw.ebu.lumenor"));
  EXPECT_THAT(Published(), Optional(IsEmpty()));
}

TEST_F(PublishJumpListTest, TakesTheIdInTheNextCycleWhenItWasRefused) {
  const ApplicationIdSpy applicationId;
  ApplicationIdSpy::result = E_ACCESSDENIED;
  EXPECT_EQ(E_ACCESSDENIED, Failure());
  ApplicationIdSpy::result = S_OK;
  EXPECT_EQ(S_OK, Failure());
  EXPECT_EQ(2U, ApplicationIdSpy::ids.size());
}

TEST_F(PublishJumpListTest, DoesNothingOnAnotherPlatform) {
  const VersionSpy platform(6, 2);
  const ApplicationIdSpy applicationId;
  PublishJumpList();
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Jumplist creation"));
  EXPECT_THAT(ApplicationIdSpy::ids, IsEmpty());
  EXPECT_THAT(ListFolder(folders.AppData()), IsEmpty());
}

TEST_F(PublishJumpListTest, RaisesTheFailureOfTheId) {
  const ApplicationIdSpy applicationId;
  ApplicationIdSpy::result = E_ACCESSDENIED;
  EXPECT_EQ(E_ACCESSDENIED, Failure());
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: Jumplist creation"));
  EXPECT_EQ(std::nullopt, Published());
}

TEST_F(PublishJumpListTest, GoesOnWithoutAnIdWhereTheShellKnowsNone) {
  const ApplicationIdSpy applicationId;
  ApplicationIdSpy::hasFunction = false;
  PublishJumpList();
  EXPECT_THAT(Published(), Optional(IsEmpty()));
  ApplicationIdSpy::hasFunction = true;
  ApplicationIdSpy::hasModule = false;
  PublishJumpList();
  EXPECT_THAT(ApplicationIdSpy::ids, IsEmpty());
}

TEST_F(PublishJumpListTest, RaisesTheFailureOfTheList) {
  const FailingClass noLists(CLSID_DestinationList, REGDB_E_CLASSNOTREG);
  EXPECT_EQ(REGDB_E_CLASSNOTREG, Failure());
  EXPECT_EQ(1, noLists.Creations());
}

TEST_F(PublishJumpListTest, RaisesTheFailureOfADocumentBeforeTheListIsBegun) {
  WriteBytes(folders.UserFolder(), "in the way");
  EXPECT_LT(Failure(), 0);
  EXPECT_THAT(log.Lines(), testing::Not(testing::Contains("INFO: Create jumplist")));
}

TEST_F(PublishJumpListTest, ReadsTheDocumentsInTheirOrder) {
  const std::wstring stubs = folders.CommonFolder() + L"\\LangRes\\xx_xx\\";
  for (const std::wstring name : {jumpListDocumentName, userDocumentName, mainDocumentName})
    WriteText(stubs + name + L".1.dstb", L"<UIRoot><" + name + L"><Elements><Element><ActionType>exe</ActionType>" +
                                             L"</Element></Elements></" + name + L"></UIRoot>");
  PublishJumpList();
  std::vector<std::string> lines = log.Lines();
  std::erase_if(lines, [](const std::string &line) {
    return line.find("conditions met") == std::string::npos && line.find("ump") == std::string::npos;
  });
  ASSERT_LT(6u, lines.size());
  lines.resize(7);
  const std::string met = "INFO: DockStub: conditions met for " + Utf8(stubs);
  EXPECT_THAT(lines, ElementsAre("INFO: Jumplist creation", met + Utf8(mainDocumentName) + ".1.dstb",
                                 met + Utf8(jumpListDocumentName) + ".1.dstb", "INFO: Create jumplist",
                                 "INFO: Jumplist: Co-creating destination list", "INFO: Jumplist: Setting APP_ID",
                                 "INFO: Jumplist: Beginning list"));
}

} // namespace
} // namespace lumenor
