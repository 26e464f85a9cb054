#include "system/WholeFile.h"

#include <gmock/gmock.h>

#include "support/FailingDisk.h"
#include "support/HeldFile.h"
#include "support/TestFolders.h"
#include "system/FileReading.h"
#include "system/Handles.h"
#include "system/HResultError.h"

extern "C" decltype(&::MoveFileExW) __imp_MoveFileExW;

namespace lumenor {
namespace {

using namespace tests;
using testing::ElementsAre;

class WholeFile : public testing::Test {
protected:
  WholeFile() { MakeFolders(folder); }
  ~WholeFile() override { ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_NORMAL); }

  HRESULT Write(std::string_view bytes) const {
    return HResultOf([&] { WriteWholeFile(path, bytes); });
  }

  /// After a failed write: what was there is there, and nothing else.
  void ExpectOldAlone() const {
    EXPECT_EQ("old", ReadBytes(path));
    EXPECT_THAT(ListFolder(folder), ElementsAre(L"kept.xml"));
  }

  const TestFolders folders;
  const std::wstring folder = folders.Root() + L"\\folder";
  const std::wstring path = folder + L"\\kept.xml";
  const std::wstring beside = path + L".new";
};

TEST_F(WholeFile, IsMade) {
  EXPECT_EQ(S_OK, Write("bytes"));
  EXPECT_EQ("bytes", ReadBytes(path));
  EXPECT_THAT(ListFolder(folder), ElementsAre(L"kept.xml"));
}

TEST_F(WholeFile, ReplacesALongerOneAndAShorterOne) {
  for (const std::size_t size : {20000, 1, 0, 5000, 3 << 20}) {
    const std::string bytes(size, static_cast<char>('a' + size % 7));
    EXPECT_EQ(S_OK, Write(bytes));
    EXPECT_TRUE(bytes == ReadBytes(path)) << size;
  }
}

TEST_F(WholeFile, TakesTheNameOfALeftover) {
  for (const DWORD attributes : {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_READONLY}) {
    WriteBytes(beside, std::string(1000, 'x'));
    ::SetFileAttributesW(beside.c_str(), attributes);
    EXPECT_EQ(S_OK, Write("bytes")) << attributes;
    EXPECT_EQ("bytes", ReadBytes(path));
    EXPECT_THAT(ListFolder(folder), ElementsAre(L"kept.xml"));
  }
}

TEST_F(WholeFile, OfAFailedWriteIsTheOldOne) {
  WriteBytes(path, "old");
  {
    const FullDisk full(2);
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_DISK_FULL), Write("bytes"));
  }
  ExpectOldAlone();
}

TEST_F(WholeFile, OfAWriteThatComesUpShortIsTheOldOne) {
  WriteBytes(path, "old");
  {
    const HalfDisk half;
    EXPECT_LT(Write("bytes"), 0);
  }
  ExpectOldAlone();
}

TEST_F(WholeFile, OfAFailedFlushIsTheOldOne) {
  WriteBytes(path, "old");
  {
    const LossyDisk lossy;
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_IO_DEVICE), Write("bytes"));
  }
  ExpectOldAlone();
}

TEST_F(WholeFile, OfAFailedMoveIsTheOldOne) {
  WriteBytes(path, "old");
  {
    const ImportSlot slot(
        &__imp_MoveFileExW, +[](LPCWSTR, LPCWSTR, DWORD) WINAPI -> BOOL {
          ::SetLastError(ERROR_NOT_READY);
          return FALSE;
        });
    EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_NOT_READY), Write("bytes"));
  }
  ExpectOldAlone();
}

TEST_F(WholeFile, ThatCantBeMadeBesideIsTheOldOne) {
  WriteBytes(path, "old");
  MakeFolders(beside);
  EXPECT_LT(Write("bytes"), 0);
  EXPECT_EQ("old", ReadBytes(path));
  EXPECT_TRUE(Exists(beside));
}

TEST_F(WholeFile, NeedsItsFolder) {
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND),
            HResultOf([&] { WriteWholeFile(folder + L"\\missing\\a.xml", "bytes"); }));
  EXPECT_THAT(ListFolder(folder), testing::IsEmpty());
}

TEST_F(WholeFile, IsFlushedBeforeItTakesItsPlace) {
  static bool isFlushed;
  static bool wasFlushed;
  static DWORD flags;
  isFlushed = wasFlushed = false;
  static decltype(&::FlushFileBuffers) platformFlush;
  static decltype(&::MoveFileExW) platformMove;
  const ImportSlot flush(
      &__imp_FlushFileBuffers, +[](HANDLE file) WINAPI -> BOOL {
        isFlushed = platformFlush(file) != FALSE;
        return isFlushed;
      });
  const ImportSlot move(
      &__imp_MoveFileExW, +[](LPCWSTR from, LPCWSTR to, DWORD moveFlags) WINAPI -> BOOL {
        wasFlushed = isFlushed;
        flags = moveFlags;
        return platformMove(from, to, moveFlags);
      });
  platformFlush = flush.Former();
  platformMove = move.Former();
  EXPECT_EQ(S_OK, Write("bytes"));
  EXPECT_TRUE(wasFlushed);
  EXPECT_EQ(static_cast<DWORD>(MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH), flags);
}

TEST_F(WholeFile, StaysHidden) {
  WriteBytes(path, "old");
  for (const DWORD attributes : {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_NORMAL}) {
    ::SetFileAttributesW(path.c_str(), attributes);
    EXPECT_EQ(S_OK, Write("bytes"));
    EXPECT_EQ(attributes & FILE_ATTRIBUTE_HIDDEN, ::GetFileAttributesW(path.c_str()) & FILE_ATTRIBUTE_HIDDEN);
    EXPECT_EQ("bytes", ReadBytes(path));
  }
}

TEST_F(WholeFile, DoesNotReplaceAReadOnlyOneOrAFolderAndDoesNotWaitForThem) {
  WriteBytes(path, "old");
  ::SetFileAttributesW(path.c_str(), FILE_ATTRIBUTE_READONLY);
  {
    const HeldFile waits(L"none");
    EXPECT_EQ(E_ACCESSDENIED, Write("bytes"));
    EXPECT_EQ(E_ACCESSDENIED, HResultOf([&] { WriteWholeFile(folder, "bytes"); }));
    EXPECT_EQ(0u, HeldFile::WaitedMs());
  }
  ExpectOldAlone();
  EXPECT_FALSE(Exists(folder + L".new"));
}

TEST_F(WholeFile, WaitsForOneThatIsInUse) {
  for (const DWORD share : {0, FILE_SHARE_READ}) {
    WriteBytes(path, "old");
    const HeldFile held(path, 5, share);
    EXPECT_EQ(S_OK, Write("bytes"));
    EXPECT_EQ(250u, HeldFile::WaitedMs());
    EXPECT_EQ("bytes", ReadBytes(path));
  }
}

TEST_F(WholeFile, WaitsForALeftoverThatIsInUse) {
  WriteBytes(beside, "leftover");
  const HeldFile held(beside, 1);
  EXPECT_EQ(S_OK, Write("bytes"));
  EXPECT_EQ("bytes", ReadBytes(path));
}

TEST_F(WholeFile, ThatStaysInUseIsTheOldOne) {
  WriteBytes(path, "old");
  {
    const HeldFile held(path);
    EXPECT_LT(Write("bytes"), 0);
    EXPECT_EQ(250u, HeldFile::WaitedMs());
  }
  ExpectOldAlone();
}

// Reading.

class ReadingWhenFree : public WholeFile {};

TEST_F(ReadingWhenFree, OpensAFileThatIsInUseForAMoment) {
  WriteBytes(path, "old");
  const HeldFile held(path, 5);
  EXPECT_TRUE(OpenForReadingWhenFree(path));
  EXPECT_EQ(250u, HeldFile::WaitedMs());
}

TEST_F(ReadingWhenFree, GivesUpAfterAQuarterOfASecond) {
  WriteBytes(path, "old");
  const HeldFile held(path);
  EXPECT_FALSE(OpenForReadingWhenFree(path));
  EXPECT_EQ(static_cast<DWORD>(ERROR_SHARING_VIOLATION), ::GetLastError());
  EXPECT_EQ(250u, HeldFile::WaitedMs());
}

TEST_F(ReadingWhenFree, DoesNotWaitForAFileThatIsMissing) {
  const HeldFile waits(L"none");
  EXPECT_FALSE(OpenForReadingWhenFree(path));
  EXPECT_EQ(0u, HeldFile::WaitedMs());
}

TEST_F(ReadingWhenFree, GivesAllBytes) {
  for (const std::size_t size : {0, 1, 65535, 65536, 65537, 200000}) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
      bytes[i] = static_cast<char>(i % 251);
    WriteBytes(path, bytes);
    EXPECT_TRUE(bytes == ReadWholeFile(path)) << size;
  }
}

TEST_F(ReadingWhenFree, RaisesForWhatCantBeRead) {
  EXPECT_EQ(HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND), HResultOf([&] { ReadWholeFile(path); }));
  EXPECT_LT(HResultOf([&] { ReadWholeFile(folder); }), 0);
}

} // namespace
} // namespace lumenor
