#include "tracking/Checksum.h"

#include <gmock/gmock.h>

#include "support/TestFolders.h"
#include "system/Handles.h"

namespace lumenor {
namespace {

/// The same a bit at a time, by the definition of the polynomial's division.
std::uint32_t BitByBit(const std::string &bytes) {
  std::uint32_t checksum = 0xFFFFFFFF;
  for (const char byte : bytes) {
    checksum ^= static_cast<unsigned char>(byte);
    for (int bit = 0; bit < 8; ++bit)
      checksum = (checksum >> 1) ^ ((checksum & 1) * 0xEDB88320);
  }
  return checksum;
}

std::string AllBytes(std::size_t size) {
  std::string bytes;
  for (std::size_t i = 0; i < size; ++i)
    bytes += static_cast<char>(i * 7 + i / 256);
  return bytes;
}

class Checksum : public testing::Test {
protected:
  std::uint32_t OfFile(const std::string &bytes) const {
    tests::WriteBytes(path, bytes);
    return FileChecksum(path);
  }

  const tests::TestFolders folders;
  const std::wstring path = folders.Root() + L"\\bytes";
};

TEST_F(Checksum, OfTheNineDigitsIsTheKnownOneWithoutItsLastInversion) {
  EXPECT_EQ(0x340BC6D9u, ContinueChecksum(checksumStart, "123456789"));
  EXPECT_EQ(0x340BC6D9u, OfFile("123456789"));
}

TEST_F(Checksum, OfASingleByteIsThatOfTheDefinition) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string bytes(1, static_cast<char>(byte));
    EXPECT_EQ(BitByBit(bytes), ContinueChecksum(checksumStart, bytes));
  }
}

TEST_F(Checksum, GoesOnFromTheOneBefore) {
  EXPECT_EQ(0x340BC6D9u, ContinueChecksum(ContinueChecksum(checksumStart, "1234"), "56789"));
}

TEST_F(Checksum, OfNothingIsItsStart) {
  EXPECT_EQ(0xFFFFFFFFu, ContinueChecksum(checksumStart, ""));
  EXPECT_EQ(0xFFFFFFFFu, OfFile(""));
}

TEST_F(Checksum, OfALongFileIsOfAllItsPieces) {
  for (const std::size_t size : {1023, 1024, 1025, 2048, 5000, 70000})
    EXPECT_EQ(BitByBit(AllBytes(size)), OfFile(AllBytes(size))) << size;
}

TEST_F(Checksum, NullsCount) {
  EXPECT_EQ(BitByBit(std::string("a\0\0", 3)), OfFile(std::string("a\0\0", 3)));
  EXPECT_NE(OfFile("a"), OfFile(std::string("a\0\0", 3)));
}

TEST_F(Checksum, OfAFileThatCannotBeOpenedIsZero) {
  EXPECT_EQ(0u, FileChecksum(path));
  EXPECT_EQ(0u, FileChecksum(L""));
  EXPECT_EQ(0u, FileChecksum(folders.Root()));
  tests::WriteBytes(path, "123456789");
  const FileHandle locked(::CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(locked);
  EXPECT_EQ(0u, FileChecksum(path));
}

TEST_F(Checksum, OfAFileThatIsReadByOthersIsItsOwn) {
  tests::WriteBytes(path, "123456789");
  const FileHandle shared(
      ::CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(shared);
  EXPECT_EQ(0x340BC6D9u, FileChecksum(path));
}

} // namespace
} // namespace lumenor
