#include "system/FileReading.h"

#include <gtest/gtest.h>

#include "support/TestFolders.h"

namespace lumenor {
namespace {

class FileReading : public testing::Test {
protected:
  FileHandle Open(DWORD access, DWORD share) const {
    return FileHandle(::CreateFileW(path.c_str(), access, share, nullptr, OPEN_EXISTING, 0, nullptr));
  }

  const tests::TestFolders folders;
  const std::wstring path = folders.Root() + L"\\file";
};

TEST_F(FileReading, AMissingFileIsNotOpened) {
  EXPECT_FALSE(OpenForReading(path));
  EXPECT_FALSE(OpenForReading(L""));
  EXPECT_FALSE(tests::Exists(path));
}

TEST_F(FileReading, AFolderIsNotOpened) { EXPECT_FALSE(OpenForReading(folders.Root())); }

TEST_F(FileReading, OthersMayReadAtTheSameTimeButNotWrite) {
  tests::WriteBytes(path, "x");
  const FileHandle file = OpenForReading(path);
  ASSERT_TRUE(file);
  EXPECT_TRUE(OpenForReading(path));
  EXPECT_FALSE(Open(GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE));
}

TEST_F(FileReading, AFileThatIsBeingWrittenIsNotOpened) {
  tests::WriteBytes(path, "x");
  const FileHandle writer = Open(GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
  ASSERT_TRUE(writer);
  EXPECT_FALSE(OpenForReading(path));
}

TEST_F(FileReading, ComesInPiecesOf1024BytesUntilItEnds) {
  std::string bytes;
  for (int i = 0; i < 2500; ++i)
    bytes += static_cast<char>(i % 251); // nulls among them
  tests::WriteBytes(path, bytes);
  const FileHandle file = OpenForReading(path);
  std::string buffer;
  EXPECT_EQ(bytes.substr(0, 1024), ReadPiece(file.Get(), buffer));
  EXPECT_EQ(bytes.substr(1024, 1024), ReadPiece(file.Get(), buffer));
  EXPECT_EQ(bytes.substr(2048), ReadPiece(file.Get(), buffer));
  EXPECT_EQ("", ReadPiece(file.Get(), buffer));
  EXPECT_EQ("", ReadPiece(file.Get(), buffer));
}

TEST_F(FileReading, AnEmptyFileHasNoPiece) {
  tests::WriteBytes(path, "");
  const FileHandle file = OpenForReading(path);
  ASSERT_TRUE(file);
  std::string buffer = "from before";
  EXPECT_EQ("", ReadPiece(file.Get(), buffer));
}

TEST_F(FileReading, WhatCannotBeReadHasNoPiece) {
  tests::WriteBytes(path, "x");
  std::string buffer;
  EXPECT_EQ("", ReadPiece(Open(GENERIC_WRITE, 0).Get(), buffer));
  EXPECT_EQ("", ReadPiece(INVALID_HANDLE_VALUE, buffer));
}

} // namespace
} // namespace lumenor
