// What is on the disk when the process is ended in the middle of a save: one of the two lists, whole. A child saves
// without an end and is killed at a random instant, as often as LUMENOR_KILLS says.

#include "content/Documents.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/TestFolders.h"
#include "system/ChildRun.h"

namespace lumenor {
namespace {

constexpr wchar_t name[] = L"Some.Document";
constexpr int usualKills = 6;
constexpr DWORD startMs = 20'000; // more than a child ever needs to its first save

int Kills() {
  const char *const wanted = std::getenv("LUMENOR_KILLS");
  return wanted == nullptr ? usualKills : std::atoi(wanted);
}

/// A list whose entries all name their list.
ElementList ListOf(std::size_t count, const std::wstring &head) {
  Element element;
  element.Head = head;
  element.ToolTip = L"An entry of list " + head;
  element.ActionType = L"exe";
  element.ActionParams = L"\"%programfiles%\\Some Folder\\Some Program.exe\" -some -arguments";
  element.Image = L"..\\resources\\some.png";
  return ElementList(count, element);
}

class Stopwatch {
public:
  Stopwatch() { ::QueryPerformanceCounter(&start); }
  LONGLONG Microseconds() const {
    LARGE_INTEGER now, frequency;
    ::QueryPerformanceCounter(&now);
    ::QueryPerformanceFrequency(&frequency);
    return (now.QuadPart - start.QuadPart) * 1'000'000 / frequency.QuadPart;
  }

private:
  LARGE_INTEGER start;
};

class Killer {
public:
  explicit Killer(const tests::TestFolders &folders) : folders(folders) {
    std::printf("seed %u, %d kills\n", seed, Kills());
  }

  /// Ends a child at an instant within the first rounds of its work, of which each takes some `roundMicroseconds`.
  /// False when the child never wrote the document.
  bool KillAChild(LONGLONG roundMicroseconds) {
    ::DeleteFileW(DocumentPath(name).c_str());
    const KernelHandle child = tests::StartThisTestAsChild(folders.Root() + L"\\output.txt");
    const bool isAtWork = WaitForDocument();
    const LONGLONG instant = std::uniform_int_distribution<LONGLONG>(0, 3 * roundMicroseconds)(random);
    for (const Stopwatch watch; watch.Microseconds() < instant;)
      ::SwitchToThread();
    ::TerminateProcess(child.Get(), 1);
    std::printf("."); // a long run isn't taken for one that hangs
    std::fflush(stdout);
    ::WaitForSingleObject(child.Get(), INFINITE);
    return isAtWork;
  }

private:
  static bool WaitForDocument() {
    for (const ULONGLONG start = ::GetTickCount64(); ::GetTickCount64() - start < startMs; ::Sleep(1))
      if (DocumentExists(name))
        return true;
    return false;
  }

  const tests::TestFolders &folders;
  const unsigned seed = std::random_device{}();
  std::mt19937 random{seed};
};

/// The work of a child: lists of `count` entries, each saved over the one before.
[[noreturn]] void SaveForEver(std::size_t count) {
  const tests::ComApartment com;
  for (int list = 0;; ++list)
    SaveDocument(ListOf(count, std::to_wstring(list)), name);
}

LONGLONG DurationOfASave(std::size_t count) {
  const ElementList list = ListOf(count, L"measured");
  const Stopwatch watch;
  SaveDocument(list, name);
  return watch.Microseconds();
}

/// How many of the kills left something else than one whole list of `count` entries.
int LostLists(std::size_t count) {
  const tests::ComApartment com;
  const tests::TestFolders folders;
  const LONGLONG saveMicroseconds = DurationOfASave(count);
  Killer killer(folders);
  int lost = 0;
  for (int kill = 0; kill < Kills(); ++kill) {
    EXPECT_TRUE(killer.KillAChild(saveMicroseconds));
    const ElementList left = LoadDocument(name, false);
    lost += left.size() != count || left != ListOf(count, left.front().Head);
  }
  return lost;
}

TEST(KilledSave, OfEightEntriesLeavesOneListWhole) {
  if (tests::IsChildRun())
    SaveForEver(8);
  EXPECT_EQ(0, LostLists(8));
}

TEST(KilledSave, OfAThousandEntriesLeavesOneListWhole) {
  if (tests::IsChildRun())
    SaveForEver(1000);
  EXPECT_EQ(0, LostLists(1000));
}

// A reset, which builds the document from its stubs.

constexpr std::size_t stubCount = 8;

[[noreturn]] void ResetForEver() {
  const tests::ComApartment com;
  for (;;) {
    SaveDocument(ListOf(20, L"users"), name);
    LoadDocument(name, true);
  }
}

void WriteStubs(const tests::TestFolders &folders) {
  for (std::size_t i = 0; i < stubCount; ++i)
    tests::WriteText(folders.CommonFolder() + L"\\LangRes\\xx_xx\\" + name + L"." + std::to_wstring(i) + L".dstb",
                     L"<UIRoot><Some.Document><Elements><Element><Head>stub</Head><Position>" + std::to_wstring(i) +
                         L"</Position></Element></Elements></Some.Document></UIRoot>");
}

bool IsEither(const ElementList &list) {
  return list == ListOf(20, L"users") ||
         (list.size() == stubCount &&
          std::all_of(list.begin(), list.end(), [](const Element &element) { return element.Head == L"stub"; }));
}

TEST(KilledReset, LeavesTheUsersListOrTheOneOfTheStubs) {
  if (tests::IsChildRun())
    ResetForEver();
  const tests::ComApartment com;
  const tests::TestFolders folders;
  WriteStubs(folders);
  const Stopwatch watch;
  LoadDocument(name, true);
  const LONGLONG resetMicroseconds = watch.Microseconds();
  Killer killer(folders);
  int lost = 0;
  for (int kill = 0; kill < Kills(); ++kill) {
    EXPECT_TRUE(killer.KillAChild(resetMicroseconds));
    lost += !IsEither(LoadDocument(name, false));
  }
  EXPECT_EQ(0, lost);
}

TEST(KilledSave, IsFollowedByASaveThatLeavesNothingBeside) {
  if (tests::IsChildRun())
    SaveForEver(8);
  const tests::ComApartment com;
  const tests::TestFolders folders;
  const LONGLONG saveMicroseconds = DurationOfASave(8);
  Killer killer(folders);
  for (int kill = 0; kill < Kills(); ++kill)
    EXPECT_TRUE(killer.KillAChild(saveMicroseconds));
  SaveDocument(ListOf(1, L"last"), name);
  EXPECT_EQ(ListOf(1, L"last"), LoadDocument(name, false));
  EXPECT_EQ(std::vector<std::wstring>{L"Some.Document.xml"}, tests::ListFolder(folders.UserFolder()));
}

} // namespace
} // namespace lumenor
