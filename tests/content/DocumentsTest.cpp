#include "content/Documents.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/FailingDisk.h"
#include "support/HeldFile.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/ComText.h"
#include "system/Handles.h"
#include "system/HResultError.h"
#include "system/Xml.h"

extern "C" decltype(&::GetFileAttributesW) __imp_GetFileAttributesW;

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t name[] = L"Some.Document";

Element FullElement() {
  Element element;
  element.Head = L"Gr\u00FC\u00DFe & <Co>";
  element.HeadMaxLength = 20;
  element.ToolTip = L"A \"tip\"";
  element.ToolTipMaxLength = -1;
  element.ActionType = L"exe";
  element.ActionParams = L"\"%programfiles%\\x\\y.exe\" -a";
  element.ActionParamsBackup = L"backup";
  element.Image = L"..\\resources\\x.png";
  element.Position = 7;
  return element;
}

Element Named(const std::wstring &head, std::uint32_t position) {
  Element element;
  element.Head = head;
  element.Position = position;
  return element;
}

/// A document of `name` around the XML of its entries.
std::string DocumentXml(const std::string &elements) {
  return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><UIRoot><Some.Document><Elements>" + elements +
         "</Elements></Some.Document></UIRoot>";
}

HRESULT FailureOfSaving(const ElementList &list) {
  try {
    SaveDocument(list, name);
    return S_OK;
  } catch (const HResultError &error) {
    return error.Result();
  }
}

class Documents : public testing::Test {
protected:
  void WriteDocument(const std::string &elements) { tests::WriteBytes(DocumentPath(name), DocumentXml(elements)); }

  ElementList Load() { return LoadDocument(name, false); }

  /// A stub of the document that applies everywhere.
  void WriteStub(const std::string &elements) {
    tests::WriteBytes(folders.CommonFolder() + L"\\LangRes\\xx_xx\\" + name + L".1.dstb", DocumentXml(elements));
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
};

TEST_F(Documents, ANewElementIsEmpty) {
  const Element element;
  EXPECT_EQ(L"", element.Head + element.ToolTip + element.ActionType + element.ActionParams +
                     element.ActionParamsBackup + element.Image + element.Spare1 + element.Spare2);
  EXPECT_EQ(0, element.HeadMaxLength);
  EXPECT_EQ(0, element.ToolTipMaxLength);
  EXPECT_EQ(0u, element.Position);
}

TEST_F(Documents, LieInTheUsersFolderUnderTheirName) {
  EXPECT_EQ(folders.AppData() + L"\\Tarnwick\\Lumenor\\Some.Document.xml", DocumentPath(name));
}

TEST_F(Documents, ExistWhenAnythingHasTheirFileName) {
  EXPECT_FALSE(DocumentExists(name));
  tests::MakeFolders(DocumentPath(name));
  EXPECT_TRUE(DocumentExists(name));
}

TEST_F(Documents, WithoutEntriesHaveTheirNameInBothPlaces) {
  EXPECT_EQ(L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><UIRoot><A.B><Elements></Elements></A.B></UIRoot>",
            EmptyDocumentXml(L"A.B"));
}

TEST_F(Documents, EntriesAreSelectedBelowTheirName) {
  EXPECT_EQ(L"/UIRoot/A.B/Elements/Element", ElementsQuery(L"A.B"));
}

TEST_F(Documents, AreSavedWithAllOfEachEntryInOrder) {
  SaveDocument({FullElement(), Element()}, name);
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<UIRoot><Some.Document><Elements><Element>"
            "<Head MaxLength=\"20\">Gr\xC3\xBC\xC3\x9F"
            "e &amp; &lt;Co&gt;</Head>"
            "<ToolTip MaxLength=\"-1\">A \"tip\"</ToolTip>"
            "<ActionType>exe</ActionType>"
            "<ActionParams>\"%programfiles%\\x\\y.exe\" -a</ActionParams>"
            "<ActionParamsBackup>backup</ActionParamsBackup>"
            "<Image>..\\resources\\x.png</Image>"
            "<Position>7</Position></Element>"
            "<Element><Head/><ToolTip/><ActionType/><ActionParams/><ActionParamsBackup/><Image/>"
            "<Position>0</Position></Element>"
            "</Elements></Some.Document></UIRoot>\n",
            tests::ReadBytes(DocumentPath(name)));
}

TEST_F(Documents, SparesAreNotWritten) {
  Element element;
  element.Spare1 = L"one";
  element.Spare2 = L"two";
  SaveDocument({element}, name);
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::Not(testing::HasSubstr("one")));
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::Not(testing::HasSubstr("two")));
}

TEST_F(Documents, LoseOnlyTheBackupInALoad) {
  SaveDocument({FullElement()}, name);
  Element expected = FullElement();
  expected.ActionParamsBackup.clear();
  EXPECT_THAT(Load(), ElementsAre(expected));
}

TEST_F(Documents, ReadAndSavedAgainHaveAnEmptyBackup) {
  WriteDocument("<Element><ActionParamsBackup>backup</ActionParamsBackup></Element>");
  SaveDocument(Load(), name);
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::HasSubstr("<ActionParamsBackup/>"));
}

TEST_F(Documents, WithoutEntriesHaveAnEmptyListOfElements) {
  SaveDocument({}, name);
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)),
              testing::HasSubstr("<UIRoot><Some.Document><Elements/></Some.Document></UIRoot>"));
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, AMaxLengthOfZeroIsNoAttributeAndReadsAsZero) {
  SaveDocument({Named(L"x", 1)}, name);
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::HasSubstr("<Head>x</Head>"));
  EXPECT_EQ(0, Load()[0].HeadMaxLength);
}

TEST_F(Documents, ChildrenAreFoundByNameInAnyOrder) {
  WriteDocument(
      "<Element><Position>3</Position><Image>i</Image><Other>o</Other><ActionParams>p</ActionParams>"
      "<ActionType>url</ActionType><ToolTip MaxLength=\"5\">t</ToolTip><Head MaxLength=\"4\">h</Head></Element>");
  Element expected;
  expected.Head = L"h";
  expected.HeadMaxLength = 4;
  expected.ToolTip = L"t";
  expected.ToolTipMaxLength = 5;
  expected.ActionType = L"url";
  expected.ActionParams = L"p";
  expected.Image = L"i";
  expected.Position = 3;
  EXPECT_THAT(Load(), ElementsAre(expected));
}

TEST_F(Documents, ChildrenOfANamespaceOrFurtherDownAreNone) {
  WriteDocument("<Element><Head xmlns=\"urn:other\">1</Head><o:Head xmlns:o=\"urn:other\">2</o:Head>"
                "<Other><Head>3</Head></Other><Head MaxLength=\"4\">h</Head><Head MaxLength=\"5\">i</Head></Element>");
  Element expected = Named(L"h", 0);
  expected.HeadMaxLength = 4;
  EXPECT_THAT(Load(), ElementsAre(expected));
}

int nodesTaken = 0;
HRESULT(STDMETHODCALLTYPE *platformNextNode)(IXMLDOMNodeList *, IXMLDOMNode **) = nullptr;

HRESULT STDMETHODCALLTYPE CountNode(IXMLDOMNodeList *list, IXMLDOMNode **node) {
  const HRESULT result = platformNextNode(list, node);
  nodesTaken += result == S_OK ? 1 : 0;
  return result;
}

TEST_F(Documents, AnEntryWithVeryManyChildrenCostsNoMoreThanItsFields) {
  std::string children;
  for (int i = 0; i < 100; ++i)
    children += "<Head>h</Head><Other/>";
  WriteDocument("<Element>" + children + "<Position>3</Position></Element>");
  Microsoft::WRL::ComPtr<IXMLDOMNodeList> list;
  ASSERT_EQ(S_OK, LoadXmlString(L"<a/>")->selectNodes(MakeBstr(L"a").Get(), &list));
  tests::OperationSpy spy(list.Get());
  platformNextNode = spy.Exchange(9, &CountNode);
  nodesTaken = 0;
  EXPECT_THAT(Load(), ElementsAre(Named(L"h", 3)));
  // The entry and its two fields; some platforms take the only node of a query in the same way.
  EXPECT_THAT(nodesTaken, testing::AllOf(testing::Ge(3), testing::Le(5)));
}

TEST_F(Documents, MissingChildrenReadAsEmpty) {
  WriteDocument("<Element/>");
  EXPECT_THAT(Load(), ElementsAre(Element()));
}

TEST_F(Documents, NumbersAreReadUpToTheFirstCharacterThatIsNoDigit) {
  WriteDocument("<Element><Head MaxLength=\"12px\">h</Head><Position>8th</Position></Element>"
                "<Element><Head MaxLength=\"long\">h</Head><Position>first</Position></Element>");
  const ElementList list = Load();
  ASSERT_EQ(2u, list.size());
  EXPECT_EQ(12, list[0].HeadMaxLength);
  EXPECT_EQ(8u, list[0].Position);
  EXPECT_EQ(0, list[1].HeadMaxLength);
  EXPECT_EQ(0u, list[1].Position);
}

TEST_F(Documents, ANegativePositionIsALargeOneAndIsWrittenSigned) {
  WriteDocument("<Element><Position>-2</Position></Element>");
  const ElementList list = Load();
  ASSERT_EQ(1u, list.size());
  EXPECT_EQ(0xFFFFFFFEu, list[0].Position);
  SaveDocument(list, name);
  EXPECT_THAT(tests::ReadBytes(DocumentPath(name)), testing::HasSubstr("<Position>-2</Position>"));
}

TEST_F(Documents, EntriesStayInDocumentOrderAndNoneIsDropped) {
  SaveDocument({Named(L"c", 5), Named(L"a", 5), Named(L"b", 1)}, name);
  EXPECT_THAT(Load(), ElementsAre(Named(L"c", 5), Named(L"a", 5), Named(L"b", 1)));
}

TEST_F(Documents, AnElementElsewhereIsNoEntry) {
  tests::WriteBytes(DocumentPath(name),
                    "<UIRoot><Some.Document><Element/><Elements><Group><Element/></Group></Elements>"
                    "</Some.Document></UIRoot>");
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, OfAnotherNameThanTheFileReadAsEmpty) {
  tests::WriteBytes(DocumentPath(name), "<UIRoot><Other><Elements><Element/></Elements></Other></UIRoot>");
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, ThatAreBrokenReadAsEmptyWithoutALineAndStay) {
  const tests::LogCapture log(folders);
  for (const std::string bytes : {"", "no xml", "<UIRoot>", "<?xml version=\"1.0\"?><UIRoot><Some.Document>"}) {
    tests::WriteBytes(DocumentPath(name), bytes);
    EXPECT_THAT(Load(), IsEmpty());
    EXPECT_EQ(bytes, tests::ReadBytes(DocumentPath(name)));
  }
  EXPECT_THAT(log.Lines(), IsEmpty());
}

TEST_F(Documents, ThatCantBeOpenedReadAsEmpty) {
  SaveDocument({Named(L"a", 1)}, name);
  const FileHandle locked(
      ::CreateFileW(DocumentPath(name).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, AFolderInTheirPlaceReadsAsEmpty) {
  tests::MakeFolders(DocumentPath(name));
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, MissingOnesAreBuiltFromTheirStubs) {
  WriteStub("<Element><Head>stub</Head><Position>4</Position></Element>");
  EXPECT_THAT(Load(), ElementsAre(Named(L"stub", 4)));
  EXPECT_TRUE(DocumentExists(name));
}

TEST_F(Documents, MissingOnesWithoutStubsAreWrittenEmpty) {
  EXPECT_THAT(Load(), IsEmpty());
  EXPECT_EQ("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<UIRoot><Some.Document><Elements/></Some.Document></UIRoot>\n",
            tests::ReadBytes(DocumentPath(name)));
}

TEST_F(Documents, PresentOnesAreNotComparedWithTheirStubs) {
  WriteStub("<Element><Head>stub</Head></Element>");
  SaveDocument({Named(L"users", 1)}, name);
  EXPECT_THAT(Load(), ElementsAre(Named(L"users", 1)));
}

/// A folder on a server that doesn't answer: nothing is known of what is in it.
TEST_F(Documents, ThatCantBeLookedForAreNotBuiltFromTheirStubs) {
  SaveDocument({Named(L"users", 1)}, name);
  static decltype(&::GetFileAttributesW) platformAttributes;
  {
    const tests::ImportSlot slot(
        &__imp_GetFileAttributesW, +[](LPCWSTR asked) WINAPI -> DWORD {
          if (!std::wstring(asked).ends_with(L".xml"))
            return platformAttributes(asked);
          ::SetLastError(ERROR_BAD_NETPATH);
          return INVALID_FILE_ATTRIBUTES;
        });
    platformAttributes = slot.Former();
    Load();
  }
  EXPECT_THAT(Load(), ElementsAre(Named(L"users", 1)));
}

TEST_F(Documents, BrokenOnesAreNotRepairedFromTheirStubs) {
  WriteStub("<Element><Head>stub</Head></Element>");
  tests::WriteBytes(DocumentPath(name), "<UIRoot>");
  EXPECT_THAT(Load(), IsEmpty());
}

TEST_F(Documents, AForcedLoadOverwritesThemFromTheirStubs) {
  WriteStub("<Element><Head>stub</Head><Position>4</Position></Element>");
  SaveDocument({Named(L"users", 1)}, name);
  EXPECT_THAT(LoadDocument(name, true), ElementsAre(Named(L"stub", 4)));
  EXPECT_THAT(Load(), ElementsAre(Named(L"stub", 4)));
}

TEST_F(Documents, TheUsersFolderAndItsParentAreMade) {
  SaveDocument({}, name);
  EXPECT_THAT(tests::ListFolder(folders.UserFolder()), ElementsAre(L"Some.Document.xml"));
}

TEST_F(Documents, TheUsersFolderIsMadeInAnExistingParent) {
  tests::MakeFolders(folders.AppData() + L"\\Tarnwick");
  SaveDocument({}, name);
  EXPECT_TRUE(DocumentExists(name));
}

TEST_F(Documents, WhereNoFolderCanBeMadeSavingRaises) {
  tests::WriteBytes(folders.AppData() + L"\\Tarnwick", "a file in the folder's place");
  EXPECT_LT(FailureOfSaving({}), 0);
  EXPECT_EQ("a file in the folder's place", tests::ReadBytes(folders.AppData() + L"\\Tarnwick"));
}

TEST_F(Documents, WhileTheirFileIsLockedSavingRaisesAndTheOldFileStays) {
  SaveDocument({Named(L"old", 1)}, name);
  {
    const FileHandle locked(
        ::CreateFileW(DocumentPath(name).c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    EXPECT_LT(FailureOfSaving({Named(L"new", 1)}), 0);
  }
  EXPECT_THAT(Load(), ElementsAre(Named(L"old", 1)));
}

TEST_F(Documents, WhileTheirFileMayOnlyBeReadSavingRaisesAndTheOldFileStays) {
  SaveDocument({Named(L"old", 1)}, name);
  const FileHandle reader(
      ::CreateFileW(DocumentPath(name).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_LT(FailureOfSaving({Named(L"new", 1)}), 0);
  EXPECT_THAT(Load(), ElementsAre(Named(L"old", 1)));
}

TEST_F(Documents, InUseForAMomentAreReadAllTheSame) {
  SaveDocument({Named(L"a", 1)}, name);
  const tests::HeldFile held(DocumentPath(name), 3);
  EXPECT_THAT(Load(), ElementsAre(Named(L"a", 1)));
  EXPECT_FALSE(held.IsHeld());
}

TEST_F(Documents, InUseForAMomentAreSavedAllTheSame) {
  SaveDocument({Named(L"old", 1)}, name);
  for (const DWORD share : {0, FILE_SHARE_READ}) {
    const tests::HeldFile held(DocumentPath(name), 3, share);
    EXPECT_EQ(S_OK, FailureOfSaving({Named(L"new", share)}));
    EXPECT_THAT(Load(), ElementsAre(Named(L"new", share)));
  }
}

TEST_F(Documents, InUseForLongerThanAQuarterOfASecondFailTheSave) {
  SaveDocument({Named(L"old", 1)}, name);
  {
    const tests::HeldFile held(DocumentPath(name));
    EXPECT_LT(FailureOfSaving({Named(L"new", 1)}), 0);
    EXPECT_EQ(250u, tests::HeldFile::WaitedMs());
  }
  EXPECT_THAT(Load(), ElementsAre(Named(L"old", 1)));
  EXPECT_THAT(tests::ListFolder(folders.UserFolder()), ElementsAre(L"Some.Document.xml"));
}

TEST_F(Documents, ThatWouldBeTooLargeToBeReadAreNotWritten) {
  const tests::LogCapture log(folders);
  WriteDocument("<Element><Head>good</Head></Element>");
  EXPECT_EQ(S_OK, FailureOfSaving({Named(std::wstring(6'000'000, L'\x4E2D'), 0)})) << "three bytes each";
  EXPECT_THAT(log.Lines(),
              ElementsAre("ERROR: Xml: " + tests::Utf8(DocumentPath(name)) + " would be too large and stays as it is"));
  EXPECT_THAT(Load(), ElementsAre(Named(L"good", 0)));
}

TEST_F(Documents, OnAFullDiskSavingRaisesAndTheOldListStays) {
  SaveDocument({Named(L"old", 1)}, name);
  const ElementList longer(1000, FullElement());
  for (const DWORD taken : {0, 100}) {
    const tests::FullDisk full(taken);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), FailureOfSaving(longer));
  }
  EXPECT_THAT(Load(), ElementsAre(Named(L"old", 1)));
  EXPECT_THAT(tests::ListFolder(folders.UserFolder()), ElementsAre(L"Some.Document.xml"));
}

TEST_F(Documents, OnAFullDiskMissingOnesAreNotThereHalf) {
  const tests::FullDisk full(100);
  EXPECT_LT(FailureOfSaving({FullElement()}), 0);
  EXPECT_THAT(tests::ListFolder(folders.UserFolder()), IsEmpty());
}

TEST_F(Documents, OnAFullDiskAResetRaisesAndTheOldListStays) {
  WriteStub("<Element><Head>stub</Head><Position>4</Position></Element>");
  SaveDocument({Named(L"users", 1)}, name);
  {
    const tests::FullDisk full(100);
    EXPECT_THROW(LoadDocument(name, true), HResultError);
  }
  EXPECT_THAT(Load(), ElementsAre(Named(L"users", 1)));
}

TEST_F(Documents, WithADoctypeReadAsEmpty) {
  tests::WriteBytes(DocumentPath(name), "<!DOCTYPE UIRoot [<!ENTITY e \"text\">]><UIRoot><Some.Document><Elements>"
                                        "<Element><Head>&e;</Head></Element></Elements></Some.Document></UIRoot>");
  EXPECT_THAT(Load(), IsEmpty());
}

/// What XML has no element for, what a path would be led astray by, and what the platform keeps for its devices.
const std::wstring noNames[] = {L"",
                                L" ",
                                L"My Tools",
                                L"a ",
                                L" a",
                                L"a'b",
                                L"a\"b",
                                L"a:b",
                                L":",
                                L"..",
                                L".",
                                L"..\\Tools",
                                L"a\\b",
                                L"a/b",
                                L"../Tools",
                                L"C:\\a",
                                L"1st",
                                L"-a",
                                L".a",
                                L"<",
                                L"a&b",
                                L"a><b",
                                L"a*",
                                L"a?b",
                                L"a|b",
                                L"a[1]",
                                L"a(b)",
                                L"a=b",
                                L"a\tb",
                                L"a\nb",
                                L"a%b",
                                L"CON",
                                L"nul",
                                L"Com1",
                                L"LPT9",
                                L"aux.Tools",
                                L"PRN.a.b",
                                std::wstring(129, L'a'),
                                std::wstring(9000, L'a')};

/// The log can't always show these.
const std::wstring noNamesBeyondAscii[] = {L"a\u00A0b", L"a\u3000", L"\u2026", L"\uFFFE", L"\u0301", {L'a', 0xD800}};

class NoDocuments : public Documents {
protected:
  NoDocuments() {
    for (const wchar_t *file : {L"My Tools.xml", L"a'b.xml", L"..\\Tools.xml"})
      tests::WriteBytes(folders.UserFolder() + L"\\" + file, DocumentXml("<Element/>"));
  }

  void ExpectNone(const std::wstring &bad) const {
    const auto before = tests::ListFolder(folders.UserFolder());
    for (const bool force : {false, true}) {
      ElementList read{Element()};
      EXPECT_NO_THROW(read = LoadDocument(bad, force)) << tests::Utf8(bad);
      EXPECT_THAT(read, IsEmpty()) << tests::Utf8(bad);
    }
    EXPECT_EQ(S_OK, HResultOf([&] { SaveDocument({Named(L"a", 1)}, bad); })) << tests::Utf8(bad);
    EXPECT_EQ(before, tests::ListFolder(folders.UserFolder())) << tests::Utf8(bad);
  }
};

TEST_F(NoDocuments, HaveANameThatIsNoElements) {
  const tests::LogCapture log(folders);
  for (const std::wstring &bad : noNames) {
    log.Clear();
    ExpectNone(bad);
    EXPECT_THAT(log.Lines(), testing::SizeIs(2)) << tests::Utf8(bad);
    EXPECT_THAT(log.Lines(), testing::Each(testing::StartsWith("ERROR: Document: "))) << tests::Utf8(bad);
  }
}

TEST_F(NoDocuments, HaveANameWithLettersThatNoElementHas) {
  for (const std::wstring &bad : noNamesBeyondAscii)
    ExpectNone(bad);
}

TEST_F(Documents, OfNoNameAreNotBuiltFromTheStubsOfAll) {
  WriteStub("<Element><Head>stub</Head></Element>");
  const tests::LogCapture log(folders);
  EXPECT_THAT(LoadDocument(L"", false), IsEmpty());
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: Document: \"\" can't be the name of a document"));
}

TEST_F(Documents, OfAnyNameThatAnElementMayHaveAreKept) {
  const std::wstring longest(128, L'a');
  for (const wchar_t *good : {L"a", L"_", L"A.B-C_9", L"\u00DC\u00E9", L"\u65E5\u672C", L"\u05E9", L"Console", L"COM10",
                              L"NULL.Tools", L"a.CON", longest.c_str()}) {
    SaveDocument({Named(good, 1)}, good);
    EXPECT_THAT(LoadDocument(good, false), ElementsAre(Named(good, 1))) << tests::Utf8(good);
  }
}

TEST_F(Documents, OfANameThatXmlDoesNotTakeAreNotSavedAndLoadAsEmpty) {
  for (const wchar_t *bad : {L"", L"a b", L"1st", L"<", L"a&b"}) {
    SaveDocument({Named(L"a", 1)}, bad);
    EXPECT_FALSE(tests::Exists(folders.UserFolder())) << tests::Utf8(bad);
    EXPECT_THAT(LoadDocument(bad, false), IsEmpty()) << tests::Utf8(bad);
  }
}

TEST_F(Documents, LongTextsAreKeptWhole) {
  Element element;
  element.Head = std::wstring(65536, L'\u00E4');
  element.ActionParams = std::wstring(65536, L'&');
  SaveDocument({element}, name);
  EXPECT_THAT(Load(), ElementsAre(element));
}

TEST_F(Documents, ManyEntriesAreKeptInOrder) {
  ElementList list;
  for (std::uint32_t i = 0; i < 2000; ++i)
    list.push_back(Named(std::to_wstring(i), 2000 - i));
  SaveDocument(list, name);
  EXPECT_EQ(list, Load());
}

TEST_F(Documents, AnEntryWithCharactersThatXmlLacksDoesNotCostTheOthers) {
  Element bad = Named({L'a', 0xD800, L'b'}, 1);
  SaveDocument({bad, Named(L"good", 2)}, name);
  EXPECT_THAT(Load(), ElementsAre(Named(L"a\uFFFD"
                                        L"b",
                                        1),
                                  Named(L"good", 2)));
}

TEST_F(Documents, AFailureWithoutComRaisesAndWritesNothing) {
  ::CoUninitialize();
  const HRESULT failure = FailureOfSaving({});
  ::CoInitialize(nullptr);
  EXPECT_EQ(CO_E_NOTINITIALIZED, failure);
  EXPECT_FALSE(tests::Exists(folders.UserFolder()));
}

} // namespace
} // namespace lumenor
