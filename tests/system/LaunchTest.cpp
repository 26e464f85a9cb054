#include "system/Launch.h"

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/ImportSlot.h"
#include "support/Recorder.h"
#include "support/TestFolders.h"

// The slot through which the program asks whether a file is there.
extern "C" decltype(&::GetFileAttributesW) __imp_GetFileAttributesW;

namespace lumenor {
namespace {

int lookUps = 0;
decltype(&::GetFileAttributesW) platformLookUp = nullptr;

DWORD WINAPI CountLookUp(LPCWSTR path) {
  ++lookUps;
  return platformLookUp(path);
}

using tests::Recorder;
using tests::TestFolders;
using tests::WriteBytes;

class SplitCommandLineTest : public testing::Test {
protected:
  void ExpectSplit(const std::wstring &commandLine, const std::wstring &program, const std::wstring &arguments) {
    const CommandLine split = SplitCommandLine(commandLine);
    EXPECT_EQ(program, split.program);
    EXPECT_EQ(arguments, split.arguments);
  }

  const TestFolders folders;
  const std::wstring root = folders.Root();
};

TEST_F(SplitCommandLineTest, EmptyInputGivesEmptyParts) { ExpectSplit(L"", L"", L""); }

TEST_F(SplitCommandLineTest, BlanksAloneAreTheProgram) { ExpectSplit(L"   ", L"   ", L""); }

TEST_F(SplitCommandLineTest, AQuotedPathWithBlanksLosesItsQuotes) {
  ExpectSplit(L"\"C:\\My Programs\\a tool.exe\" one", L"C:\\My Programs\\a tool.exe", L"one");
}

TEST_F(SplitCommandLineTest, ArgumentsBehindQuotesBeginAtTheFirstNonBlankAndStayAsTheyAre) {
  ExpectSplit(L"\"C:\\tool.exe\"   -a  \"b c\" %TEMP% ", L"C:\\tool.exe", L"-a  \"b c\" %TEMP% ");
}

TEST_F(SplitCommandLineTest, OnlyBlanksBehindTheProgramGiveNoArguments) {
  ExpectSplit(L"\"C:\\tool.exe\"   ", L"C:\\tool.exe", L"");
}

TEST_F(SplitCommandLineTest, BlanksBeforeTheQuotesDoNoHarm) {
  ExpectSplit(L"  \"C:\\a tool.exe\" one", L"C:\\a tool.exe", L"one");
}

TEST_F(SplitCommandLineTest, WithoutAClosingQuoteTheWholeInputIsTheProgram) {
  ExpectSplit(L"\"C:\\tool.exe one", L"\"C:\\tool.exe one", L"");
  ExpectSplit(L"\"", L"\"", L"");
}

TEST_F(SplitCommandLineTest, EmptyQuotesGiveAnEmptyProgram) { ExpectSplit(L"\"\" one", L"", L"one"); }

TEST_F(SplitCommandLineTest, AQuotedProgramIsExpandedAndMapped) {
  WriteBytes(folders.ProgramFilesX86() + L"\\Maker\\tool.exe", "");
  ExpectSplit(L"\"%programfiles%\\Maker\\tool.exe\" x", folders.ProgramFilesX86() + L"\\Maker\\tool.exe", L"x");
}

TEST_F(SplitCommandLineTest, AnUnquotedPathEndsWhereItIsAnExistingFile) {
  WriteBytes(root + L"\\My Programs\\a tool.exe", "");
  ExpectSplit(root + L"\\My Programs\\a tool.exe first second", root + L"\\My Programs\\a tool.exe", L"first second");
}

TEST_F(SplitCommandLineTest, AFolderDoesNotEndAnUnquotedPath) {
  tests::MakeFolders(root + L"\\My");
  WriteBytes(root + L"\\My Programs\\tool.exe", "");
  ExpectSplit(root + L"\\My Programs\\tool.exe first", root + L"\\My Programs\\tool.exe", L"first");
}

TEST_F(SplitCommandLineTest, TheShortestExistingFileWins) {
  WriteBytes(root + L"\\one", "");
  WriteBytes(root + L"\\one two", "");
  ExpectSplit(root + L"\\one two three", root + L"\\one", L"two three");
}

TEST_F(SplitCommandLineTest, AnUnquotedPathThatIsTheWholeInputStaysWhole) {
  WriteBytes(root + L"\\My Programs\\a tool.exe", "");
  ExpectSplit(root + L"\\My Programs\\a tool.exe", root + L"\\My Programs\\a tool.exe", L"");
}

TEST_F(SplitCommandLineTest, AnUnquotedProgramThatDoesNotExistKeepsItsArguments) {
  ExpectSplit(root + L"\\missing.exe one two", root + L"\\missing.exe one two", L"");
}

TEST_F(SplitCommandLineTest, AnUnquotedProgramIsExpandedAndMapped) {
  WriteBytes(folders.ProgramFilesX86() + L"\\The Maker\\tool.exe", "");
  ExpectSplit(L"%programfiles%\\The Maker\\tool.exe x", folders.ProgramFilesX86() + L"\\The Maker\\tool.exe", L"x");
}

TEST_F(SplitCommandLineTest, BlanksBeforeAnUnquotedProgramMakeThePrefixesTooLong) {
  // The prefix has as many characters as the blank's index tells, counted from the first non-blank.
  WriteBytes(root + L"\\tool.exe", "");
  ExpectSplit(L"  " + root + L"\\tool.exe one", L"  " + root + L"\\tool.exe one", L"");
}

TEST_F(SplitCommandLineTest, ALongTextOfManyWordsIsTheProgramAndDoesNotKeepTheUserWaiting) {
  std::wstring words;
  for (int i = 0; i < 16000; ++i)
    words += L"a ";
  lookUps = 0;
  platformLookUp = __imp_GetFileAttributesW;
  const tests::ImportSlot slot(&__imp_GetFileAttributesW, &CountLookUp);
  ExpectSplit(words, words, L"");
  EXPECT_GT(lookUps, 100);
  EXPECT_LT(lookUps, 3000); // without an end to the search there are some 50,000, which take minutes
}

TEST_F(SplitCommandLineTest, AProgramWithALongPathIsFound) {
  const std::wstring path = root + L"\\" + std::wstring(100, L'x') + L" y\\" + std::wstring(100, L'z') + L".exe";
  WriteBytes(path, "");
  ExpectSplit(path + L" one", path, L"one");
}

TEST_F(SplitCommandLineTest, LongArgumentsAreKeptWhole) {
  WriteBytes(root + L"\\tool.exe", "");
  const std::wstring arguments(65536, L'x');
  ExpectSplit(root + L"\\tool.exe " + arguments, root + L"\\tool.exe", arguments);
}

TEST(OpenWithShell, StartsAProgramWithItsArguments) {
  const tests::ComApartment com;
  const TestFolders folders;
  const Recorder recorder(folders);
  const std::wstring program = folders.Root() + L"\\a tool.exe";
  recorder.InstallAs(program);
  OpenWithShell(program, L"one \"two three\"");
  EXPECT_THAT(recorder.WaitForCommandLines(1), testing::ElementsAre(L"\"" + program + L"\" one \"two three\""));
}

TEST(OpenWithShell, AMissingProgramIsSilent) {
  const tests::ComApartment com;
  const TestFolders folders;
  const Recorder recorder(folders);
  OpenWithShell(folders.Root() + L"\\missing.exe", L"one");
  OpenWithShell(L"", L"");
  EXPECT_THAT(recorder.CommandLines(), testing::IsEmpty());
}

} // namespace
} // namespace lumenor
