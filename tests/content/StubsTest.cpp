#include "content/Stubs.h"

#include <gmock/gmock.h>

#include "content/Documents.h"
#include "support/ComApartment.h"
#include "support/ImportSlot.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/HResultError.h"

extern "C" decltype(&::FindFirstFileW) __imp_FindFirstFileW;
extern "C" decltype(&::FindNextFileW) __imp_FindNextFileW;

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

constexpr wchar_t name[] = L"Some.Document";

std::string StubXml(const std::string &elements) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\"?><UIRoot><Some.Document><Elements>" + elements +
         "</Elements></Some.Document></UIRoot>";
}

std::string ElementXml(const std::string &params, int position, const std::string &conditions = "") {
  return "<Element><ActionParams>" + params + "</ActionParams><Position>" + std::to_string(position) + "</Position>" +
         conditions + "</Element>";
}

constexpr char neverMet[] = "<Condition type=\"File\"><param name=\"Logic\">FileExist</param>"
                            "<param name=\"Key\">C:\\no such file</param></Condition>";
constexpr char alwaysMet[] = "<Condition type=\"File\"><param name=\"Logic\">FileNotExist</param>"
                             "<param name=\"Key\">C:\\no such file</param></Condition>";

Element Entry(const std::wstring &params, std::uint32_t position) {
  Element element;
  element.ActionParams = params;
  element.Position = position;
  return element;
}

/// The user is English in Germany: the folders are ENU_DE and, as the test platform has no RFC 1766 tags, en_us.
class Stubs : public testing::Test {
protected:
  Stubs() { geo.SetText(L"Nation", L"94"); }

  std::wstring Root() const { return folders.CommonFolder() + L"\\LangRes"; }

  std::wstring PathOf(const std::wstring &locale, const std::wstring &number) const {
    return Root() + L"\\" + locale + L"\\" + name + L"." + number + L".dstb";
  }

  void WriteRaw(const std::wstring &locale, const std::wstring &number, const std::string &bytes) const {
    tests::WriteBytes(PathOf(locale, number), bytes);
  }

  void Write(const std::wstring &locale, const std::wstring &number, const std::string &elements) const {
    WriteRaw(locale, number, StubXml(elements));
  }

  /// The document that the stubs make.
  ElementList Apply() const {
    ApplyStubs(name);
    return LoadDocument(name, false);
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const tests::KeptRegistryKey geo{HKEY_CURRENT_USER, L"Control Panel\\International\\Geo"};
};

TEST_F(Stubs, PathsLieInTheLocalesFolder) {
  EXPECT_EQ(Root() + L"\\enu_us\\a.dstb", StubFilePath(L"enu_us", L"a.dstb"));
}

TEST_F(Stubs, FilesThatBeginWithTheNameAndEndInDstbAreFound) {
  Write(L"xx_xx", L"1", "");
  for (const wchar_t *file : {L"Some.Document.dstb", L"Some.DocumentXdstb", L"Some.Document.1.dstb.bak",
                              L"Some.Document.xml", L"Other.1.dstb", L"XSome.Document.1.dstb"})
    tests::WriteBytes(Root() + L"\\xx_xx\\" + file, "");
  EXPECT_THAT(FindStubFiles(name, L"xx_xx"),
              UnorderedElementsAre(L"Some.Document.1.dstb", L"Some.Document.dstb", L"Some.DocumentXdstb"));
}

TEST_F(Stubs, WithoutTheFolderNoneIsFound) { EXPECT_THAT(FindStubFiles(name, L"xx_xx"), IsEmpty()); }

HANDLE WINAPI FailToSearch(LPCWSTR, LPWIN32_FIND_DATAW) {
  ::SetLastError(ERROR_ACCESS_DENIED);
  return INVALID_HANDLE_VALUE;
}

BOOL WINAPI FailToGoOn(HANDLE, LPWIN32_FIND_DATAW) {
  ::SetLastError(ERROR_ACCESS_DENIED);
  return FALSE;
}

template <typename Function> void ExpectToLeaveTheDocument(Function *slot, Function failing) {
  const tests::ImportSlot failed(slot, failing);
  EXPECT_THROW(ApplyStubs(name), HResultError);
  EXPECT_THAT(LoadDocument(name, false), ElementsAre(Entry(L"mine", 1)));
}

TEST_F(Stubs, AFolderThatCannotBeListedToItsEndLeavesTheDocument) {
  SaveDocument({Entry(L"mine", 1)}, name);
  Write(L"xx_xx", L"1", ElementXml("stub", 1));
  ExpectToLeaveTheDocument(&__imp_FindFirstFileW, &FailToSearch);
  ExpectToLeaveTheDocument(&__imp_FindNextFileW, &FailToGoOn);
}

TEST_F(Stubs, AFolderThatCannotBeSearchedIsLeftOutOfANewDocument) {
  Write(L"xx_xx", L"1", ElementXml("stub", 1));
  {
    const tests::ImportSlot search(&__imp_FindFirstFileW, &FailToSearch);
    ApplyStubs(name);
  }
  EXPECT_TRUE(DocumentExists(name));
  EXPECT_THAT(log.Lines(), testing::Contains(testing::EndsWith("xx_xx can't be listed, error 80070005")));
}

TEST_F(Stubs, NoStubAnywhereWritesAnEmptyDocument) {
  ApplyStubs(name);
  EXPECT_TRUE(DocumentExists(name));
  EXPECT_THAT(Apply(), IsEmpty());
}

TEST_F(Stubs, AllFieldsAreReadAndWritten) {
  Write(L"xx_xx", L"1",
        "<Element><Head MaxLength=\"3\">h</Head><ToolTip MaxLength=\"4\">t</ToolTip><ActionType>exe</ActionType>"
        "<ActionParams>p</ActionParams><ActionParamsBackup>b</ActionParamsBackup><Image>i</Image>"
        "<Position>5</Position></Element>");
  ApplyStubs(name);
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<UIRoot><Some.Document><Elements><Element>"
            "<Head MaxLength=\"3\">h</Head><ToolTip MaxLength=\"4\">t</ToolTip><ActionType>exe</ActionType>"
            "<ActionParams>p</ActionParams><ActionParamsBackup>b</ActionParamsBackup><Image>i</Image>"
            "<Position>5</Position></Element></Elements></Some.Document></UIRoot>\n",
            tests::ReadBytes(DocumentPath(name)));
}

TEST_F(Stubs, TheFoldersOfTheChainAreGathered) {
  Write(L"ENU_DE", L"1", ElementXml("country", 3));
  Write(L"ENU_xx", L"1", ElementXml("language", 2));
  Write(L"xx_xx", L"1", ElementXml("any", 1));
  Write(L"en_xx", L"1", ElementXml("of another chain", 4));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"any", 1), Entry(L"language", 2), Entry(L"country", 3)));
  EXPECT_EQ("INFO: DockStub: current locale set to ENU_DE", log.Lines()[0]);
}

TEST_F(Stubs, WithoutTheLocalesFolderTheOtherKeyIsTaken) {
  Write(L"en_us", L"1", ElementXml("country", 3));
  Write(L"en_xx", L"1", ElementXml("language", 2));
  Write(L"ENU_xx", L"1", ElementXml("of another chain", 4));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"language", 2), Entry(L"country", 3)));
  EXPECT_EQ("INFO: DockStub: current locale set to en_us", log.Lines()[0]);
}

TEST_F(Stubs, OfATakenPositionTheMoreParticularFolderStays) {
  Write(L"ENU_DE", L"1", ElementXml("stays", 7));
  Write(L"xx_xx", L"1", ElementXml("goes", 7));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"stays", 7)));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: DockStub: current locale set to ENU_DE",
                                       "INFO: DockStub: conditions met for " + tests::Utf8(PathOf(L"ENU_DE", L"1")),
                                       "INFO: DockStub: conditions met for " + tests::Utf8(PathOf(L"xx_xx", L"1")),
                                       "INFO: DockStub: duplicate element stays found at 7 skipping"));
}

TEST_F(Stubs, WithinAFolderTheListingsOrderDecides) {
  Write(L"xx_xx", L"1", ElementXml("1", 7));
  Write(L"xx_xx", L"2", ElementXml("2", 7));
  Write(L"xx_xx", L"3", ElementXml("3", 7));
  const std::wstring first = FindStubFiles(name, L"xx_xx")[0];
  EXPECT_THAT(Apply(), ElementsAre(Entry(first.substr(14, 1), 7)));
}

TEST_F(Stubs, AreSortedByPositionAsUnsignedNumbers) {
  Write(L"xx_xx", L"1", ElementXml("negative", -1));
  Write(L"xx_xx", L"2", ElementXml("ten", 10));
  Write(L"xx_xx", L"3", ElementXml("nine", 9));
  Write(L"xx_xx", L"4", ElementXml("most", 2147483647));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"nine", 9), Entry(L"ten", 10), Entry(L"most", 2147483647),
                                   Entry(L"negative", 0xFFFFFFFF)));
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::HasSubstr("<Position>-1</Position>"));
}

TEST_F(Stubs, OneWhoseConditionFailsIsLeftOut) {
  Write(L"xx_xx", L"1", ElementXml("out", 1, neverMet));
  Write(L"xx_xx", L"2", ElementXml("in", 2, alwaysMet));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"in", 2)));
  EXPECT_THAT(log.Lines(),
              UnorderedElementsAre("INFO: DockStub: current locale set to en_us",
                                   "INFO: DockStub: " + tests::Utf8(PathOf(L"xx_xx", L"1")) +
                                       " failed condition FileExist C:\\no such file",
                                   "INFO: DockStub: conditions met for " + tests::Utf8(PathOf(L"xx_xx", L"2"))));
}

TEST_F(Stubs, AFailedOneTakesNoPosition) {
  Write(L"ENU_DE", L"1", ElementXml("out", 1, neverMet));
  Write(L"xx_xx", L"1", ElementXml("in", 1));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"in", 1)));
}

TEST_F(Stubs, BrokenOnesAreLoggedAndPassedOver) {
  WriteRaw(L"xx_xx", L"1", "<UIRoot>");
  WriteRaw(L"xx_xx", L"2", "");
  Write(L"xx_xx", L"3", ElementXml("good", 3));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"good", 3)));
  EXPECT_THAT(log.Lines(),
              UnorderedElementsAre("INFO: DockStub: current locale set to en_us",
                                   "ERROR: DockStub: " + tests::Utf8(PathOf(L"xx_xx", L"1")) + " is not valid xml",
                                   "ERROR: DockStub: " + tests::Utf8(PathOf(L"xx_xx", L"2")) + " is not valid xml",
                                   "INFO: DockStub: conditions met for " + tests::Utf8(PathOf(L"xx_xx", L"3"))));
}

TEST_F(Stubs, AFolderOfAStubsNameIsPassedOver) {
  tests::MakeFolders(PathOf(L"xx_xx", L"1"));
  Write(L"xx_xx", L"2", ElementXml("good", 3));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"good", 3)));
}

TEST_F(Stubs, HostileOnesArePassedOver) {
  std::string deep;
  for (int i = 0; i < 20000; ++i)
    deep += "<a>";
  WriteRaw(L"xx_xx", L"1", deep);
  WriteRaw(L"xx_xx", L"2", std::string(70000, '\xFF'));
  Write(L"xx_xx", L"3", ElementXml("good", 3));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"good", 3)));
}

TEST_F(Stubs, OneOfAnotherDocumentIsAnEmptyEntryAtPosition0) {
  WriteRaw(L"xx_xx", L"1",
           std::string("<UIRoot><Other><Elements><Element><Position>9</Position>") + neverMet +
               "</Element></Elements></Other></UIRoot>");
  Write(L"xx_xx", L"2", ElementXml("one", 1));
  EXPECT_THAT(Apply(), ElementsAre(Element(), Entry(L"one", 1)));
}

TEST_F(Stubs, TheEmptyEntryGivesWayAtATakenPosition0) {
  Write(L"ENU_DE", L"1", ElementXml("zero", 0));
  WriteRaw(L"xx_xx", L"1", "<UIRoot/>");
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"zero", 0)));
}

TEST_F(Stubs, OnlyTheFirstElementCounts) {
  Write(L"xx_xx", L"1", ElementXml("first", 1) + ElementXml("second", 2));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"first", 1)));
}

TEST_F(Stubs, ConditionsAnywhereInTheFileApplyToTheFirstElement) {
  Write(L"xx_xx", L"1", ElementXml("first", 1, alwaysMet) + ElementXml("second", 2, neverMet));
  EXPECT_THAT(Apply(), IsEmpty());
  std::vector<Condition> conditions;
  ReadStubFile(name, PathOf(L"xx_xx", L"1"), conditions);
  ASSERT_EQ(2u, conditions.size());
  EXPECT_EQ(L"FileNotExist", conditions[0].Logic);
  EXPECT_EQ(L"FileExist", conditions[1].Logic);
}

TEST_F(Stubs, StayAsTheyAre) {
  Write(L"xx_xx", L"1", ElementXml("a", 1));
  const std::string before = tests::ReadBytes(PathOf(L"xx_xx", L"1"));
  Apply();
  EXPECT_EQ(before, tests::ReadBytes(PathOf(L"xx_xx", L"1")));
}

TEST_F(Stubs, ANewRunReplacesTheWholeDocument) {
  SaveDocument({Entry(L"users", 3)}, name);
  Write(L"xx_xx", L"1", ElementXml("stub", 1));
  EXPECT_THAT(Apply(), ElementsAre(Entry(L"stub", 1)));
}

TEST_F(Stubs, AFailureOtherThanBrokenXmlGoesThroughAndTheDocumentStays) {
  // A registry path that can't be split isn't a matter of this stub alone.
  SaveDocument({Entry(L"users", 3)}, name);
  Write(L"xx_xx", L"1",
        ElementXml("a", 1, "<Condition type=\"Registry\"><param name=\"Logic\">KeyExist</param></Condition>"));
  try {
    ApplyStubs(name);
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(E_INVALIDARG, error.Result());
  }
  EXPECT_THAT(LoadDocument(name, false), ElementsAre(Entry(L"users", 3)));
}

TEST_F(Stubs, AStubThatIsNoXmlRaisesItsOwnException) {
  WriteRaw(L"xx_xx", L"1", "<");
  std::vector<Condition> conditions;
  try {
    ReadStubFile(name, PathOf(L"xx_xx", L"1"), conditions);
    FAIL() << "nothing was raised";
  } catch (const InvalidDstbException &error) {
    EXPECT_STREQ("InvalidDstbException", error.what());
  }
}

TEST_F(Stubs, OfADocumentWithoutANameMakeNoDocument) {
  Write(L"xx_xx", L"1", ElementXml("a", 1));
  ApplyStubs(L"");
  EXPECT_FALSE(tests::Exists(folders.UserFolder()));
}

} // namespace
} // namespace lumenor
