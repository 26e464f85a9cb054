#include "system/Xml.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/FailingDisk.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/OperationSpy.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/HResultError.h"

#include <oleauto.h>

extern "C" decltype(&::SysAllocStringLen) __imp_SysAllocStringLen;

namespace lumenor {
namespace {

using testing::ElementsAre;

template <typename Call> HRESULT FailureOf(Call &&call) {
  try {
    call();
    return S_OK;
  } catch (const HResultError &error) {
    return error.Result();
  }
}

class Xml : public testing::Test {
protected:
  XmlNodePtr Load(const std::wstring &xml) { return LoadXmlString(xml); }

  std::wstring Saved(const XmlDocumentPtr &document) {
    const std::wstring path = folders.Root() + L"\\saved.xml";
    SaveXmlFile(document, path);
    const std::string bytes = tests::ReadBytes(path);
    return std::wstring(bytes.begin(), bytes.end());
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
};

TEST_F(Xml, AFileIsLoaded) {
  tests::WriteBytes(folders.Root() + L"\\a.xml", "<?xml version=\"1.0\" encoding=\"utf-8\"?><R>\xC3\xBC</R>");
  EXPECT_EQ(L"\u00FC", ChildText(LoadXmlFile(folders.Root() + L"\\a.xml"), L"/R"));
}

TEST_F(Xml, AFileWhoseNameLooksLikeAnAddressIsLoaded) {
  for (const wchar_t *name :
       {L"a b.xml", L"\u00FC.xml", L"#1.xml", L"100%.xml", L"%zz.xml", L"a+b&c=d.xml", L"\u65E5.xml"}) {
    const std::wstring path = folders.Root() + L"\\" + name;
    tests::WriteBytes(path, "<R>found</R>");
    EXPECT_NE(nullptr, LoadXmlFile(path)) << tests::Utf8(name);
  }
}

TEST_F(Xml, AMissingFileIsNull) { EXPECT_EQ(nullptr, LoadXmlFile(folders.Root() + L"\\missing.xml")); }

TEST_F(Xml, AFolderIsNull) { EXPECT_EQ(nullptr, LoadXmlFile(folders.Root())); }

TEST_F(Xml, NoPathIsNull) { EXPECT_EQ(nullptr, LoadXmlFile(L"")); }

TEST_F(Xml, AFileOfMoreThan16MegabytesIsNullAndLogged) {
  const std::wstring path = folders.Root() + L"\\large.xml";
  const tests::LogCapture log(folders);
  tests::WriteBytes(path, "<a>" + std::string(1 << 20, 'x') + "</a>");
  EXPECT_NE(nullptr, LoadXmlFile(path));
  tests::WriteBytes(path, "<a/>" + std::string((16 << 20) - 3, ' '));
  EXPECT_EQ(nullptr, LoadXmlFile(path));
  EXPECT_EQ(std::vector<std::string>{"ERROR: Xml: " + tests::Utf8(path) + " is too large"}, log.Lines());
}

TEST_F(Xml, ALockedFileIsNull) {
  const std::wstring path = folders.Root() + L"\\a.xml";
  tests::WriteBytes(path, "<R/>");
  const FileHandle locked(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  EXPECT_EQ(nullptr, LoadXmlFile(path));
}

TEST_F(Xml, TextThatIsNotWellFormedIsNull) {
  EXPECT_EQ(nullptr, LoadXmlString(L""));
  EXPECT_EQ(nullptr, LoadXmlString(L"text"));
  EXPECT_EQ(nullptr, LoadXmlString(L"<a><b></a>"));
  EXPECT_EQ(nullptr, LoadXmlString(L"<a/><b/>"));
  EXPECT_EQ(nullptr, LoadXmlString(L"<a>&none;</a>"));
  EXPECT_EQ(nullptr, LoadXmlString(std::wstring(L"<a>\0</a>", 8)));
}

TEST_F(Xml, BytesThatAreNoTextAreNull) {
  std::string bytes;
  for (int i = 0; i < 4096; ++i)
    bytes += static_cast<char>(i * 37);
  tests::WriteBytes(folders.Root() + L"\\a.xml", bytes);
  EXPECT_EQ(nullptr, LoadXmlFile(folders.Root() + L"\\a.xml"));
  tests::WriteBytes(folders.Root() + L"\\a.xml", "");
  EXPECT_EQ(nullptr, LoadXmlFile(folders.Root() + L"\\a.xml"));
}

TEST_F(Xml, EntitiesThatGrowWithoutEndAreNull) {
  std::wstring xml = L"<!DOCTYPE a [<!ENTITY e0 \"laugh\">";
  for (int i = 1; i < 20; ++i) {
    const std::wstring inner = L"&e" + std::to_wstring(i - 1) + L";";
    xml += L"<!ENTITY e" + std::to_wstring(i) + L" \"";
    for (int j = 0; j < 10; ++j)
      xml += inner;
    xml += L"\">";
  }
  EXPECT_EQ(nullptr, LoadXmlString(xml + L"]><a>&e19;</a>"));
}

TEST_F(Xml, VeryDeepNestingIsNull) {
  std::wstring open, close;
  for (int i = 0; i < 20000; ++i) {
    open += L"<a>";
    close += L"</a>";
  }
  EXPECT_EQ(nullptr, LoadXmlString(open + close));
}

TEST_F(Xml, ADocumentWithADoctypeIsNull) {
  for (const wchar_t *xml : {L"<!DOCTYPE a><a/>", L"<?xml version=\"1.0\"?><!--c--><!DOCTYPE a []><a/>",
                             L"<!DOCTYPE a [<!ENTITY e \"text\">]><a>&e;</a>", L"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>",
                             L"<!DOCTYPE a SYSTEM \"a.dtd\"><a/>"}) {
    EXPECT_EQ(nullptr, LoadXmlString(xml)) << tests::Utf8(xml);
    tests::WriteText(folders.Root() + L"\\a.xml", xml);
    EXPECT_EQ(nullptr, LoadXmlFile(folders.Root() + L"\\a.xml")) << tests::Utf8(xml);
  }
}

TEST_F(Xml, AFileOutsideIsNotTakenIn) {
  const std::wstring secret = folders.Root() + L"\\secret.txt";
  tests::WriteBytes(secret, "secret");
  EXPECT_EQ(nullptr, Load(L"<!DOCTYPE a [<!ENTITY e SYSTEM \"" + secret + L"\">]><a>&e;</a>"));
}

TEST_F(Xml, SelectNodeGivesTheFirstMatch) {
  const XmlNodePtr document = Load(L"<a><b>1</b><b>2</b></a>");
  EXPECT_EQ(L"1", NodeText(SelectNode(document, L"/a/b")));
  EXPECT_EQ(nullptr, SelectNode(document, L"/a/c"));
}

TEST_F(Xml, SelectNodeOfNullIsNull) { EXPECT_EQ(nullptr, SelectNode(nullptr, L"/a")); }

TEST_F(Xml, SelectNodesGivesAllInDocumentOrder) {
  const XmlNodePtr document = Load(L"<a><b>1</b><c><b>2</b></c><b>3</b></a>");
  std::vector<std::wstring> found;
  for (const XmlNodePtr &node : SelectNodes(document, L"//b"))
    found.push_back(NodeText(node));
  EXPECT_THAT(found, ElementsAre(L"1", L"2", L"3"));
  EXPECT_THAT(SelectNodes(document, L"//none"), testing::IsEmpty());
}

TEST_F(Xml, ABadQueryRaises) {
  const XmlNodePtr document = Load(L"<a/>");
  EXPECT_LT(FailureOf([&] { SelectNode(document, L"/a[["); }), 0);
  EXPECT_LT(FailureOf([&] { SelectNodes(document, L"/a[["); }), 0);
  EXPECT_LT(FailureOf([&] { ChildText(document, L"/a[["); }), 0);
}

TEST_F(Xml, TextIsOfTheNodeAndAllBelow) {
  EXPECT_EQ(L"1&2< 3", ChildText(Load(L"<a><b>1&amp;2<c> &lt; </c><![CDATA[3]]></b></a>"), L"/a/b"));
}

TEST_F(Xml, TextOfNoMatchIsEmpty) { EXPECT_EQ(L"", ChildText(Load(L"<a/>"), L"/a/b")); }

TEST_F(Xml, AttributesAreReadFromTheNodeAndFromAChild) {
  const XmlNodePtr document = Load(L"<a><b n=\"5 &lt; 6\" empty=\"\"/></a>");
  EXPECT_EQ(L"5 < 6", NodeAttribute(SelectNode(document, L"/a/b"), L"n"));
  EXPECT_EQ(L"", NodeAttribute(SelectNode(document, L"/a/b"), L"empty"));
  EXPECT_EQ(L"5 < 6", ChildAttribute(document, L"/a/b", L"n"));
}

TEST_F(Xml, AMissingAttributeOrChildIsEmpty) {
  const XmlNodePtr document = Load(L"<a><b n=\"5\">t</b></a>");
  EXPECT_EQ(L"", NodeAttribute(SelectNode(document, L"/a/b"), L"N"));
  EXPECT_EQ(L"", NodeAttribute(SelectNode(document, L"/a/b/text()"), L"n"));
  EXPECT_EQ(L"", NodeAttribute(document, L"n"));
  EXPECT_EQ(L"", ChildAttribute(document, L"/a/b", L"m"));
  EXPECT_EQ(L"", ChildAttribute(document, L"/a/c", L"n"));
}

TEST_F(Xml, ANullNodeIsAnInvalidArgument) {
  constexpr auto invalid = static_cast<HRESULT>(0x80070057);
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  EXPECT_EQ(invalid, FailureOf([] { NodeText(nullptr); }));
  EXPECT_EQ(invalid, FailureOf([] { ChildText(nullptr, L"a"); }));
  EXPECT_EQ(invalid, FailureOf([] { NodeAttribute(nullptr, L"a"); }));
  EXPECT_EQ(invalid, FailureOf([] { ChildAttribute(nullptr, L"a", L"b"); }));
  EXPECT_EQ(invalid, FailureOf([] { SelectNodes(nullptr, L"a"); }));
  EXPECT_EQ(invalid, FailureOf([] { CreateNode(nullptr, L"a", L""); }));
  EXPECT_EQ(invalid, FailureOf([] { CreateNodeWithMaxLength(nullptr, L"a", L"", 1); }));
  EXPECT_EQ(invalid, FailureOf([&] { AppendChild(nullptr, document); }));
  EXPECT_EQ(invalid, FailureOf([&] { AppendChild(document, nullptr); }));
  EXPECT_EQ(invalid, FailureOf([] { SaveXmlFile(nullptr, L"a"); }));
  EXPECT_EQ(invalid, FailureOf([] { CreateProcessingInstruction(nullptr, L"a", L"b"); }));
  EXPECT_EQ(invalid, FailureOf([] { NodeName(nullptr); }));
  EXPECT_EQ(invalid, FailureOf([] { FirstChild(nullptr); }));
  EXPECT_EQ(invalid, FailureOf([&] { InsertBefore(nullptr, document, document); }));
  EXPECT_EQ(invalid, FailureOf([&] { InsertBefore(nullptr, document, nullptr); }));
  EXPECT_EQ(invalid, FailureOf([&] { InsertBefore(document, nullptr, document); }));
  EXPECT_EQ(invalid, FailureOf([&] { InsertBefore(document, nullptr, nullptr); }));
  EXPECT_EQ(invalid, FailureOf([&] { RemoveChild(nullptr, document); }));
  EXPECT_EQ(invalid, FailureOf([&] { RemoveChild(document, nullptr); }));
}

TEST_F(Xml, AFailedStringAllocationIsOutOfMemory) {
  constexpr auto outOfMemory = static_cast<HRESULT>(0x8007000E);
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  const tests::ImportSlot slot(
      &__imp_SysAllocStringLen, +[](const OLECHAR *, UINT) STDAPICALLTYPE -> BSTR { return nullptr; });
  EXPECT_EQ(outOfMemory, FailureOf([] { LoadXmlFile(L"a"); }));
  EXPECT_EQ(outOfMemory, FailureOf([] { LoadXmlString(L"<a/>"); }));
  EXPECT_EQ(outOfMemory, FailureOf([&] { SelectNode(document, L"a"); }));
  EXPECT_EQ(outOfMemory, FailureOf([&] { NodeAttribute(SelectNode(document, L"a"), L"a"); }));
  EXPECT_EQ(outOfMemory, FailureOf([&] { CreateNode(document, L"a", L"b"); }));
  EXPECT_EQ(outOfMemory, FailureOf([&] { CreateProcessingInstruction(document, L"a", L"b"); }));
}

/// A document that was taken for a damaged one wouldn't be saved, or would be replaced.
TEST_F(Xml, AParserWithoutMemoryIsOutOfMemory) {
  constexpr std::size_t loadSlot = 58, loadXmlSlot = 65;
  constexpr auto outOfMemory = static_cast<HRESULT>(0x8007000E);
  const std::wstring path = folders.Root() + L"\\a.xml";
  tests::WriteBytes(path, "<a/>");
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  const auto fail = +[](void *, void *, void *) STDMETHODCALLTYPE -> HRESULT { return E_OUTOFMEMORY; };
  tests::OperationSpy spy(document.Get());
  spy.Exchange(loadSlot, fail);
  spy.Exchange(loadXmlSlot, fail);
  EXPECT_EQ(outOfMemory, FailureOf([&] { LoadXmlFile(path); }));
  EXPECT_EQ(outOfMemory, FailureOf([] { LoadXmlString(L"<a/>"); }));
}

TEST_F(Xml, WithoutComADocumentRaises) {
  ::CoUninitialize();
  const HRESULT failure = FailureOf([] { LoadXmlString(L"<a/>"); });
  ::CoInitialize(nullptr);
  EXPECT_EQ(CO_E_NOTINITIALIZED, failure);
}

TEST_F(Xml, ANewNodeHasItsTextAndAttributes) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  AppendChild(SelectNode(document, L"/a"), CreateNode(document, L"b", L"1 < 2", {{L"m", L"x\"y"}, {L"n", L""}}));
  EXPECT_EQ(L"<a><b m=\"x&quot;y\" n=\"\">1 &lt; 2</b></a>\n", Saved(document));
}

TEST_F(Xml, ANewNodeOfEmptyTextIsAnEmptyElement) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  const XmlNodePtr node = CreateNode(document, L"b", L"");
  VARIANT_BOOL hasChildren = VARIANT_TRUE;
  node->hasChildNodes(&hasChildren);
  EXPECT_EQ(VARIANT_FALSE, hasChildren);
  EXPECT_EQ(L"", NodeText(node));
}

TEST_F(Xml, MaxLengthIsAnAttributeUnlessItIsZero) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  AppendChild(SelectNode(document, L"/a"), CreateNodeWithMaxLength(document, L"b", L"t", 0));
  AppendChild(SelectNode(document, L"/a"), CreateNodeWithMaxLength(document, L"c", L"t", 12));
  AppendChild(SelectNode(document, L"/a"), CreateNodeWithMaxLength(document, L"d", L"t", -3));
  EXPECT_EQ(L"<a><b>t</b><c MaxLength=\"12\">t</c><d MaxLength=\"-3\">t</d></a>\n", Saved(document));
}

TEST_F(Xml, ANewNodeOfANameThatXmlDoesNotTakeRaises) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  EXPECT_LT(FailureOf([&] { CreateNode(document, L"", L""); }), 0);
}

TEST_F(Xml, AppendingANodeToItselfRaises) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><b/></a>");
  EXPECT_LT(FailureOf([&] { AppendChild(SelectNode(document, L"/a"), document); }), 0);
}

TEST_F(Xml, AProcessingInstructionIsSavedAsItWasMade) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  const XmlNodePtr instruction = CreateProcessingInstruction(document, L"xml", L"version=\"1.0\" encoding = \"utf-8\"");
  InsertBefore(document, instruction, FirstChild(document));
  EXPECT_EQ(L"<?xml version=\"1.0\" encoding = \"utf-8\"?>\n<a/>\n", Saved(document));
}

TEST_F(Xml, AProcessingInstructionWithoutANameRaises) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  EXPECT_LT(FailureOf([&] { CreateProcessingInstruction(document, L"", L"b"); }), 0);
}

TEST_F(Xml, ANodeHasTheNameOfItsKind) {
  const XmlDocumentPtr document = LoadXmlString(L"<?p q?><a>text</a>");
  EXPECT_EQ(L"#document", NodeName(document));
  EXPECT_EQ(L"p", NodeName(FirstChild(document)));
  EXPECT_EQ(L"a", NodeName(SelectNode(document, L"/a")));
  EXPECT_EQ(L"#text", NodeName(SelectNode(document, L"/a/text()")));
}

TEST_F(Xml, TheFirstChildMayBeOfAnyKind) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><!--c--><b/><d/></a>");
  EXPECT_EQ(L"#comment", NodeName(FirstChild(SelectNode(document, L"/a"))));
  EXPECT_EQ(nullptr, FirstChild(SelectNode(document, L"/a/b")));
}

TEST_F(Xml, ANodeIsPutAheadOfAnother) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><b/><c/></a>");
  const XmlNodePtr parent = SelectNode(document, L"/a");
  InsertBefore(parent, CreateNode(document, L"x", L""), SelectNode(document, L"/a/c"));
  InsertBefore(parent, CreateNode(document, L"y", L""), FirstChild(parent));
  EXPECT_EQ(L"<a><y/><b/><x/><c/></a>\n", Saved(document));
}

TEST_F(Xml, ANodeThatIsPutAheadOfNothingIsTheLast) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><b/></a>");
  const XmlNodePtr parent = SelectNode(document, L"/a");
  InsertBefore(parent, CreateNode(document, L"x", L""), nullptr);
  InsertBefore(FirstChild(parent), CreateNode(document, L"y", L""), FirstChild(FirstChild(parent)));
  EXPECT_EQ(L"<a><b><y/></b><x/></a>\n", Saved(document));
}

TEST_F(Xml, AChildIsRemovedWithAllBelowIt) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><b><c/></b><d/></a>");
  RemoveChild(SelectNode(document, L"/a"), SelectNode(document, L"/a/b"));
  EXPECT_EQ(L"<a><d/></a>\n", Saved(document));
}

TEST_F(Xml, WhatIsNoChildIsNotRemoved) {
  const XmlDocumentPtr document = LoadXmlString(L"<a><b><c/></b></a>");
  EXPECT_LT(FailureOf([&] { RemoveChild(SelectNode(document, L"/a"), SelectNode(document, L"/a/b/c")); }), 0);
  EXPECT_EQ(L"<a><b><c/></b></a>\n", Saved(document));
}

TEST_F(Xml, SavingWhereNoFileCanBeRaises) {
  const XmlDocumentPtr document = LoadXmlString(L"<a/>");
  EXPECT_LT(FailureOf([&] { SaveXmlFile(document, folders.Root() + L"\\missing\\a.xml"); }), 0);
}

TEST_F(Xml, ASaveThatFailsHalfwayRaisesAndLeavesTheOldFile) {
  const std::wstring path = folders.Root() + L"\\a.xml";
  tests::WriteBytes(path, "<old/>");
  const XmlDocumentPtr document = LoadXmlString(L"<a>" + std::wstring(10000, L'x') + L"</a>");
  {
    const tests::FullDisk full(4096);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), FailureOf([&] { SaveXmlFile(document, path); }));
  }
  EXPECT_EQ("<old/>", tests::ReadBytes(path));
}

TEST_F(Xml, TheDeclarationIsSavedAsItStands) {
  const std::pair<const wchar_t *, const char *> saved[] = {
      {L"<a b='1'>\u00FC</a>", "<a b=\"1\">\xC3\xBC</a>\n"},
      {L"<?xml version='1.0' standalone='yes'?><a>\u00FC</a>",
       "<?xml version=\"1.0\" standalone=\"yes\"?>\n<a>\xC3\xBC</a>\n"},
      {L"<?xml version=\"1.0\" encoding=\"utf-8\" ?><!--c--><a>\u65E5<b/></a>",
       "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!--c-->\n<a>\xE6\x97\xA5<b/></a>\n"}};
  const std::wstring path = folders.Root() + L"\\a.xml";
  for (const auto &[xml, bytes] : saved) {
    SaveXmlFile(LoadXmlString(xml), path);
    EXPECT_EQ(bytes, tests::ReadBytes(path));
  }
}

TEST_F(Xml, ALongTextIsKeptWhole) {
  const std::wstring text(65536, L'\u65E5');
  const XmlDocumentPtr document = LoadXmlString(L"<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>");
  AppendChild(SelectNode(document, L"/a"), CreateNode(document, L"b", text));
  const std::wstring path = folders.Root() + L"\\a.xml";
  SaveXmlFile(document, path);
  EXPECT_EQ(text, ChildText(LoadXmlFile(path), L"/a/b"));
}

TEST_F(Xml, TextThatNoXmlCanHoldStillGivesAFileThatLoads) {
  const XmlDocumentPtr document = LoadXmlString(L"<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>");
  const std::wstring bad = {L'x', 1, 0xD800, L'y', 0xDC00, 0xFFFE, L'z'};
  AppendChild(SelectNode(document, L"/a"), CreateNode(document, L"b", bad, {{L"n", bad}}));
  const std::wstring path = folders.Root() + L"\\a.xml";
  SaveXmlFile(document, path);
  const XmlDocumentPtr loaded = LoadXmlFile(path);
  ASSERT_NE(nullptr, loaded);
  EXPECT_EQ(L"x\uFFFD\uFFFDy\uFFFD\uFFFDz", ChildText(loaded, L"/a/b"));
  EXPECT_EQ(L"x\uFFFD\uFFFDy\uFFFD\uFFFDz", ChildAttribute(loaded, L"/a/b", L"n"));
}

TEST(XmlText, ReplacesWhatXmlCantHold) {
  EXPECT_EQ(L"a\uFFFDb", XmlText(std::wstring(L"a\0b", 3)));
  EXPECT_EQ(L"a\uFFFDb", XmlText(L"a\x1F"
                                 L"b"));
  EXPECT_EQ(L"\uFFFD\uFFFD", XmlText({0xFFFE, 0xFFFF}));
}

TEST(XmlText, ReplacesHalvesOfPairs) {
  EXPECT_EQ(L"\uFFFDa", XmlText({0xD800, L'a'}));
  EXPECT_EQ(L"a\uFFFD", XmlText({L'a', 0xDBFF}));
  EXPECT_EQ(L"\uFFFDa", XmlText({0xDC00, L'a'}));
  EXPECT_EQ(L"\uFFFD\uFFFD", XmlText({0xDFFF, 0xD800}));
  EXPECT_EQ(L"\uFFFD\U00010000", XmlText({0xD800, 0xD800, 0xDC00}));
}

TEST(XmlText, KeepsEverythingElse) {
  const std::wstring text = L"\t\n\r \x7F\u00FC\uD7FF\uE000\uFFFD\U0001F600\U0010FFFF<&\"";
  EXPECT_EQ(text, XmlText(text));
  EXPECT_EQ(L"", XmlText(L""));
}

TEST_F(Xml, TextBeyondTheBasicPlaneIsKept) {
  const XmlDocumentPtr document = LoadXmlString(L"<?xml version=\"1.0\" encoding=\"utf-8\"?><a/>");
  const std::wstring text = L"a\t\U0001F600 \uFFFD\uD7FF\uE000";
  AppendChild(SelectNode(document, L"/a"), CreateNode(document, L"b", text));
  const std::wstring path = folders.Root() + L"\\a.xml";
  SaveXmlFile(document, path);
  EXPECT_EQ(text, ChildText(LoadXmlFile(path), L"/a/b"));
}

} // namespace
} // namespace lumenor
