#include "content/Conditions.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/HandleCounts.h"
#include "support/KeptRegistryKey.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"
#include "system/Handles.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr wchar_t stubPath[] = L"C:\\a stub.dstb";
constexpr wchar_t keyPath[] = L"HKEY_CURRENT_USER\\Software\\LumenorTests\\Conditions";
constexpr wchar_t keySubpath[] = L"Software\\LumenorTests\\Conditions";

TEST(ReadConditions, TakesEveryConditionOfTheDocumentInFileOrder) {
  const tests::ComApartment com;
  const XmlNodePtr document = LoadXmlString(
      L"<UIRoot><Condition type=\"File\"><param name=\"Logic\">FileExist</param><param name=\"Key\">C:\\x</param>"
      L"</Condition><E><Element><Condition type=\"Registry\"><param name=\"Logic\">CheckValue</param>"
      L"<param name=\"Key\">K</param><param name=\"ValueName\">N</param><param name=\"ValueData\">D</param>"
      L"<param name=\"ValueType\">REG_SZ</param></Condition></Element></E></UIRoot>");
  EXPECT_THAT(ReadConditions(SelectNode(document, L"/UIRoot/E/Element")),
              ElementsAre(Condition{L"File", L"FileExist", L"C:\\x", L"", L"", L""},
                          Condition{L"Registry", L"CheckValue", L"K", L"N", L"D", L"REG_SZ"}));
}

TEST(ReadConditions, AMissingTypeReadsAsEmpty) {
  const tests::ComApartment com;
  const XmlNodePtr document = LoadXmlString(L"<E><Condition/></E>");
  EXPECT_THAT(ReadConditions(SelectNode(document, L"/E")), ElementsAre(Condition()));
}

TEST(ReadConditions, UnknownNamesAreIgnoredAndARepeatedOneReplaces) {
  const tests::ComApartment com;
  const XmlNodePtr document =
      LoadXmlString(L"<E><Condition><param name=\"Key\">first</param><param name=\"key\">x</param><param>y</param>"
                    L"<other name=\"Key\">z</other><param name=\"Key\">second</param></Condition></E>");
  EXPECT_THAT(ReadConditions(SelectNode(document, L"/E")), ElementsAre(Condition{L"", L"", L"second", L"", L"", L""}));
}

TEST(ReadConditions, OfAMillionOnlySoManyAreReadThatTheyAreTooMany) {
  const tests::ComApartment com;
  std::wstring xml = L"<E>";
  for (int i = 0; i < 1500; ++i)
    xml += L"<Condition type='File'/>";
  EXPECT_EQ(1001U, ReadConditions(SelectNode(LoadXmlString(xml + L"</E>"), L"/E")).size());
  xml = L"<E><Condition>";
  for (int i = 0; i < 1000; ++i)
    xml += L"<param name='Logic'>first</param>";
  xml += L"<param name='Logic'>last</param></Condition></E>";
  EXPECT_THAT(ReadConditions(SelectNode(LoadXmlString(xml), L"/E")),
              ElementsAre(Condition{L"", L"first", L"", L"", L"", L""}));
}

class Conditions : public testing::Test {
protected:
  bool Evaluate(const std::vector<Condition> &conditions) const {
    log.Clear();
    return EvaluateConditions(stubPath, conditions);
  }

  /// The condition fails with a line in the log.
  void ExpectFails(const Condition &condition) const {
    EXPECT_FALSE(Evaluate({condition}));
    EXPECT_THAT(log.Lines(), ElementsAre("INFO: DockStub: C:\\a stub.dstb failed condition " +
                                         tests::Utf8(condition.Logic) + " " + tests::Utf8(condition.Key)));
  }

  void ExpectFailsSilently(const Condition &condition) const {
    EXPECT_FALSE(Evaluate({condition}));
    EXPECT_THAT(log.Lines(), IsEmpty());
  }

  /// The condition holds, and the one after it is still checked.
  void ExpectHolds(const Condition &condition) const {
    EXPECT_TRUE(Evaluate({condition}));
    EXPECT_THAT(log.Lines(), IsEmpty());
    EXPECT_FALSE(Evaluate({condition, never}));
  }

  /// The condition makes the stub pass, whatever follows it.
  void ExpectSettlesAll(const Condition &condition) const {
    EXPECT_TRUE(Evaluate({condition, never}));
    EXPECT_THAT(log.Lines(), IsEmpty());
  }

  static Condition Value(const std::wstring &type, const std::wstring &data) {
    return {L"Registry", L"CheckValue", keyPath, L"Name", data, type};
  }

  const Condition never{L"File", L"FileExist", L"C:\\no such file", L"", L"", L""};
  const tests::TestFolders folders;
  const tests::LogCapture log{folders};
  const tests::KeptRegistryKey key{HKEY_CURRENT_USER, keySubpath};
};

TEST_F(Conditions, NoneAtAllAreMet) { EXPECT_TRUE(Evaluate({})); }

TEST_F(Conditions, TooManyAreNotEvaluated) {
  const Condition met{L"File", L"FileNotExist", L"C:\\no such file", L"", L"", L""};
  EXPECT_TRUE(Evaluate(std::vector<Condition>(1000, met)));
  EXPECT_THAT(log.Lines(), IsEmpty());
  EXPECT_FALSE(Evaluate(std::vector<Condition>(1001, met)));
  EXPECT_THAT(log.Lines(), ElementsAre("ERROR: DockStub: C:\\a stub.dstb has too many conditions"));
}

TEST_F(Conditions, TheFirstThatFailsEndsTheEvaluation) {
  const Condition other{L"File", L"FileExist", L"C:\\nor this", L"", L"", L""};
  EXPECT_FALSE(Evaluate({never, other}));
  EXPECT_THAT(log.Lines(), ElementsAre("INFO: DockStub: C:\\a stub.dstb failed condition FileExist C:\\no such file"));
}

TEST_F(Conditions, AFileExistsAtItsExpandedPath) {
  tests::WriteBytes(folders.AppData() + L"\\a file", "");
  ExpectHolds({L"File", L"FileExist", L"%appdata%\\a file", L"", L"", L""});
  ExpectFails({L"File", L"FileNotExist", L"%appdata%\\a file", L"", L"", L""});
}

TEST_F(Conditions, AMissingFileFails) {
  ExpectFails({L"File", L"FileExist", L"%appdata%\\a file", L"", L"", L""});
  ExpectHolds({L"File", L"FileNotExist", L"%appdata%\\a file", L"", L"", L""});
}

TEST_F(Conditions, AFolderIsAFileToo) { ExpectHolds({L"File", L"FileExist", L"%appdata%", L"", L"", L""}); }

TEST_F(Conditions, AFileUnderTheOtherProgramFolderExists) {
  tests::WriteBytes(folders.ProgramFilesX86() + L"\\Maker\\a.exe", "");
  ExpectHolds({L"File", L"FileExist", L"%programfiles%\\Maker\\a.exe", L"", L"", L""});
  ExpectFails({L"File", L"FileNotExist", L"%programfiles%\\Maker\\a.exe", L"", L"", L""});
}

TEST_F(Conditions, NoPathIsNoFile) { ExpectFails({L"File", L"FileExist", L"", L"", L"", L""}); }

TEST_F(Conditions, AnUnknownLogicOfAFilePasses) {
  ExpectHolds({L"File", L"fileexist", L"C:\\no such file", L"", L"", L""});
  ExpectHolds({L"File", L"", L"", L"", L"", L""});
}

TEST_F(Conditions, AnUnknownLogicOfTheRegistryFailsSilently) {
  key.Create();
  ExpectFailsSilently({L"Registry", L"keyexist", keyPath, L"", L"", L""});
  ExpectFailsSilently({L"Registry", L"", keyPath, L"", L"", L""});
}

TEST_F(Conditions, AnUnknownTypeFailsSilently) {
  ExpectFailsSilently({L"", L"FileNotExist", L"C:\\no such file", L"", L"", L""});
  ExpectFailsSilently({L"file", L"FileNotExist", L"C:\\no such file", L"", L"", L""});
}

TEST_F(Conditions, AKeyThatCanBeOpenedExists) {
  key.Create();
  ExpectHolds({L"Registry", L"KeyExist", keyPath, L"", L"", L""});
  ExpectFails({L"Registry", L"KeyNotExist", keyPath, L"", L"", L""});
}

TEST_F(Conditions, AMissingKeyDoesNotExist) {
  ExpectFails({L"Registry", L"KeyExist", keyPath, L"", L"", L""});
  ExpectHolds({L"Registry", L"KeyNotExist", keyPath, L"", L"", L""});
}

TEST_F(Conditions, AKeyIsExpandedForItsExistenceButNotForItsValue) {
  const tests::EnvironmentValue variable(L"LUMENOR_TEST", L"LumenorTests");
  key.SetText(L"Name", L"data");
  const std::wstring path = L"HKEY_CURRENT_USER\\Software\\%LUMENOR_TEST%\\Conditions";
  ExpectHolds({L"Registry", L"KeyExist", path, L"", L"", L""});
  ExpectFails({L"Registry", L"KeyNotExist", path, L"", L"", L""});
  ExpectFails({L"Registry", L"CheckValue", path, L"Name", L"data", L"REG_SZ"});
}

TEST_F(Conditions, AKeyOfAnUnknownRootDoesNotExist) {
  ExpectFails({L"Registry", L"KeyExist", L"HKCU\\Software", L"", L"", L""});
  ExpectFails({L"Registry", L"KeyExist", L"HKEY_CURRENT_USER", L"", L"", L""});
}

TEST_F(Conditions, AKeyPathThatCantBeSplitRaises) {
  for (const wchar_t *logic : {L"KeyExist", L"KeyNotExist", L"CheckValue"})
    for (const wchar_t *path : {L"", L"HKEY_CURRENT_USER\\"})
      EXPECT_THROW(Evaluate({{L"Registry", logic, path, L"", L"", L""}}), HResultError);
}

TEST_F(Conditions, NoKeyStaysOpen) {
  key.SetText(L"Name", L"data");
  const int before = tests::CountKernelHandles();
  for (const Condition &condition : {Condition{L"Registry", L"KeyExist", keyPath, L"", L"", L""},
                                     Value(L"REG_SZ", L"data"), Value(L"REG_SZ", L"other"), Value(L"none", L"")})
    for (int i = 0; i < 5; ++i)
      Evaluate({condition, condition});
  EXPECT_EQ(before, tests::CountKernelHandles());
}

TEST_F(Conditions, AValueOfAMissingKeyFails) { ExpectFails(Value(L"REG_SZ", L"")); }

TEST_F(Conditions, AMissingValueSettlesAllWhenNoDataIsAskedFor) {
  key.Create();
  ExpectSettlesAll(Value(L"REG_SZ", L""));
  ExpectSettlesAll(Value(L"REG_EXPAND_SZ", L""));
  ExpectSettlesAll(Value(L"REG_MULTI_SZ", L""));
  ExpectSettlesAll(Value(L"REG_BINARY", L""));
}

TEST_F(Conditions, AMissingValueFailsSilentlyWhenDataIsAskedFor) {
  key.Create();
  ExpectFailsSilently(Value(L"REG_SZ", L"x"));
  ExpectFailsSilently(Value(L"REG_EXPAND_SZ", L"x"));
  ExpectFailsSilently(Value(L"REG_MULTI_SZ", L"x"));
  ExpectFailsSilently(Value(L"REG_BINARY", L"x"));
}

TEST_F(Conditions, AValueWithoutDataIsLikeAMissingOne) {
  key.SetBytes(L"Name", REG_SZ, "");
  ExpectSettlesAll(Value(L"REG_SZ", L""));
  ExpectFailsSilently(Value(L"REG_SZ", L"x"));
  key.SetBytes(L"Name", REG_BINARY, "");
  ExpectSettlesAll(Value(L"REG_BINARY", L""));
  ExpectFailsSilently(Value(L"REG_BINARY", L"x"));
}

TEST_F(Conditions, AConditionBeforeTheEmptyRuleStillCounts) {
  key.Create();
  EXPECT_FALSE(Evaluate({never, Value(L"REG_SZ", L"")}));
}

TEST_F(Conditions, TextIsComparedWithoutCase) {
  key.SetText(L"Name", L"Some Text");
  ExpectHolds(Value(L"REG_SZ", L"sOME tEXT"));
  ExpectFails(Value(L"REG_SZ", L"Some"));
  ExpectFails(Value(L"REG_SZ", L""));
}

TEST_F(Conditions, TextIsNotExpanded) {
  const tests::EnvironmentValue variable(L"LUMENOR_TEST", L"Value");
  key.SetText(L"Name", L"%LUMENOR_TEST%", REG_EXPAND_SZ);
  ExpectHolds(Value(L"REG_SZ", L"%LUMENOR_TEST%"));
  ExpectFails(Value(L"REG_SZ", L"Value"));
}

TEST_F(Conditions, ExpandableTextIsExpandedAndComparedWithCase) {
  const tests::EnvironmentValue variable(L"LUMENOR_TEST", L"Value");
  key.SetText(L"Name", L"%LUMENOR_TEST% x", REG_EXPAND_SZ);
  ExpectHolds(Value(L"REG_EXPAND_SZ", L"Value x"));
  ExpectFails(Value(L"REG_EXPAND_SZ", L"value x"));
  ExpectFails(Value(L"REG_EXPAND_SZ", L"%LUMENOR_TEST% x"));
}

TEST_F(Conditions, PlainTextServesForExpandableText) {
  const tests::EnvironmentValue variable(L"LUMENOR_TEST", L"Value");
  key.SetText(L"Name", L"%LUMENOR_TEST%");
  ExpectHolds(Value(L"REG_EXPAND_SZ", L"Value"));
}

TEST_F(Conditions, TextThatIsNotWellFormedFails) {
  key.SetBytes(L"Name", REG_SZ, std::string("a\0b\0", 4));
  ExpectFails(Value(L"REG_SZ", L"ab"));
  ExpectFails(Value(L"REG_EXPAND_SZ", L"ab"));
  ExpectFails(Value(L"REG_MULTI_SZ", L"ab"));
  ExpectFails(Value(L"REG_SZ", L""));
}

TEST_F(Conditions, MultiTextComparesPlainTextWithCase) {
  key.SetText(L"Name", L"Some Text");
  ExpectHolds(Value(L"REG_MULTI_SZ", L"Some Text"));
  ExpectFails(Value(L"REG_MULTI_SZ", L"some text"));
}

TEST_F(Conditions, ATrueMultiTextComesUnderTheEmptyRule) {
  key.SetBytes(L"Name", REG_MULTI_SZ, std::string("a\0\0\0b\0\0\0\0\0", 10));
  ExpectSettlesAll(Value(L"REG_MULTI_SZ", L""));
  ExpectFailsSilently(Value(L"REG_MULTI_SZ", L"a"));
}

TEST_F(Conditions, AnotherTypeThanTextComesUnderTheEmptyRule) {
  key.SetNumber(L"Name", 5);
  ExpectSettlesAll(Value(L"REG_SZ", L""));
  ExpectFailsSilently(Value(L"REG_EXPAND_SZ", L"5"));
}

TEST_F(Conditions, BinaryIsComparedAsTextUpToItsFirstNull) {
  key.SetBytes(L"Name", REG_BINARY, std::string("A\0b\0\0\0c\0", 8));
  ExpectHolds(Value(L"REG_BINARY", L"Ab"));
  ExpectFails(Value(L"REG_BINARY", L"ab"));
  ExpectFails(Value(L"REG_BINARY", L""));
}

TEST_F(Conditions, BinaryWithoutANullIsComparedWhole) {
  key.SetBytes(L"Name", REG_BINARY, std::string("A\0b\0", 4));
  ExpectHolds(Value(L"REG_BINARY", L"Ab"));
}

TEST_F(Conditions, BinaryOfAnOddCountEndsInAHalfCharacter) {
  key.SetBytes(L"Name", REG_BINARY, std::string("A\0b", 3));
  ExpectHolds(Value(L"REG_BINARY", L"Ab"));
}

TEST_F(Conditions, BinaryThatBeginsWithANullIsEmptyTextButNoEmptyValue) {
  key.SetBytes(L"Name", REG_BINARY, std::string("\0\0\0\0", 4));
  ExpectHolds(Value(L"REG_BINARY", L""));
}

TEST_F(Conditions, AnotherTypeThanBinaryFails) {
  key.SetText(L"Name", L"Ab");
  ExpectFails(Value(L"REG_BINARY", L"Ab"));
}

TEST_F(Conditions, ANumberIsComparedWithTheDataAsANumber) {
  key.SetNumber(L"Name", 42);
  ExpectHolds(Value(L"REG_DWORD", L"42"));
  ExpectHolds(Value(L"REG_DWORD", L" 42 of them"));
  ExpectFails(Value(L"REG_DWORD", L"43"));
  ExpectFails(Value(L"REG_DWORD", L"0x2A"));
}

TEST_F(Conditions, ANumberAboveTheSignedRangeEqualsTheNegativeOne) {
  key.SetNumber(L"Name", 0xFFFFFFFF);
  ExpectHolds(Value(L"REG_DWORD", L"-1"));
}

TEST_F(Conditions, AMissingNumberFailsWithoutAnEmptyRule) {
  key.Create();
  ExpectFails(Value(L"REG_DWORD", L""));
  ExpectFails(Value(L"REG_DWORD", L"0"));
  ExpectFails(Value(L"REG_QWORD", L"0"));
}

TEST_F(Conditions, ANumberOfZeroEqualsDataThatIsNoNumber) {
  key.SetNumber(L"Name", 0);
  ExpectHolds(Value(L"REG_DWORD", L""));
  ExpectHolds(Value(L"REG_DWORD", L"none"));
}

TEST_F(Conditions, AnotherTypeThanTheNumbersFails) {
  key.SetBytes(L"Name", REG_BINARY, std::string("\x2A\0\0\0", 4));
  ExpectFails(Value(L"REG_DWORD", L"42"));
  key.SetNumber(L"Name", 42);
  ExpectFails(Value(L"REG_QWORD", L"42"));
  key.SetLongNumber(L"Name", 42);
  ExpectFails(Value(L"REG_DWORD", L"42"));
}

TEST_F(Conditions, ALongNumberIsComparedInAllItsBits) {
  key.SetLongNumber(L"Name", 0x1'0000'0005);
  ExpectHolds(Value(L"REG_QWORD", L"4294967301"));
  ExpectFails(Value(L"REG_QWORD", L"5"));
}

TEST_F(Conditions, AnUnknownValueTypeFailsSilently) {
  key.SetText(L"Name", L"data");
  ExpectFailsSilently(Value(L"reg_sz", L"data"));
  ExpectFailsSilently(Value(L"", L"data"));
  ExpectFailsSilently(Value(L"REG_NONE", L""));
}

TEST_F(Conditions, LongTextsAreCompared) {
  const std::wstring text(32000, L'x');
  key.SetText(L"Name", text);
  ExpectHolds(Value(L"REG_SZ", text));
  ExpectFails(Value(L"REG_SZ", text + L"x"));
}

} // namespace
} // namespace lumenor
