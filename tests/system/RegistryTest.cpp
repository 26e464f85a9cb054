#include "system/Registry.h"

#include <gtest/gtest.h>

#include "support/KeptRegistryKey.h"
#include "system/HResultError.h"

namespace lumenor {
namespace {

constexpr wchar_t testKey[] = L"Software\\LumenorTests\\Registry";
constexpr wchar_t testPath[] = L"HKEY_CURRENT_USER\\Software\\LumenorTests\\Registry";

HKEY Root(std::uintptr_t value) { return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(value))); }

TEST(ParseRootKey, KnowsTheFivePredefinedKeys) {
  EXPECT_EQ(Root(0x80000002), ParseRootKey(L"HKEY_LOCAL_MACHINE"));
  EXPECT_EQ(Root(0x80000001), ParseRootKey(L"HKEY_CURRENT_USER"));
  EXPECT_EQ(Root(0x80000003), ParseRootKey(L"HKEY_USERS"));
  EXPECT_EQ(Root(0x80000005), ParseRootKey(L"HKEY_CURRENT_CONFIG"));
  EXPECT_EQ(Root(0x80000000), ParseRootKey(L"HKEY_CLASSES_ROOT"));
}

TEST(ParseRootKey, AnyOtherNameGivesNull) {
  EXPECT_EQ(nullptr, ParseRootKey(L"hkey_local_machine"));
  EXPECT_EQ(nullptr, ParseRootKey(L"HKLM"));
  EXPECT_EQ(nullptr, ParseRootKey(L"HKEY_LOCAL_MACHINE "));
  EXPECT_EQ(nullptr, ParseRootKey(L""));
}

TEST(SplitRegistryPath, SplitsAtTheFirstBackslash) {
  const RegistryPath path = SplitRegistryPath(L"HKEY_CURRENT_USER\\Software\\Maker");
  EXPECT_EQ(HKEY_CURRENT_USER, path.root);
  EXPECT_EQ(L"Software\\Maker", path.subkey);
}

TEST(SplitRegistryPath, WithoutABackslashTheWholeIsTheSubkeyOfNoRoot) {
  const RegistryPath path = SplitRegistryPath(L"HKEY_CURRENT_USER");
  EXPECT_EQ(nullptr, path.root);
  EXPECT_EQ(L"HKEY_CURRENT_USER", path.subkey);
}

TEST(SplitRegistryPath, AnUnknownRootIsNull) {
  const RegistryPath path = SplitRegistryPath(L"HKEY_NOWHERE\\Software");
  EXPECT_EQ(nullptr, path.root);
  EXPECT_EQ(L"Software", path.subkey);
}

void ExpectInvalid(const std::wstring &path) {
  try {
    SplitRegistryPath(path);
    FAIL() << "nothing was raised";
  } catch (const HResultError &error) {
    EXPECT_EQ(static_cast<HRESULT>(0x80070057), error.Result());
  }
}

TEST(SplitRegistryPath, AnEmptyPathIsInvalid) { ExpectInvalid(L""); }

TEST(SplitRegistryPath, APathWithNothingBehindItsBackslashIsInvalid) { ExpectInvalid(L"HKEY_CURRENT_USER\\"); }

TEST(SplitRegistryPath, OnlyTheFirstBackslashMayNotBeTheLastCharacter) {
  EXPECT_EQ(L"Software\\", SplitRegistryPath(L"HKEY_CURRENT_USER\\Software\\").subkey);
}

class OpenRegistryPathTest : public testing::Test {
protected:
  OpenRegistryPathTest() { key.Create(); }
  const tests::KeptRegistryKey key{HKEY_CURRENT_USER, testKey};
  RegistryKeyHolder holder;
};

TEST_F(OpenRegistryPathTest, OpensTheKeyIntoTheHolder) {
  key.SetText(L"Name", L"text");
  ASSERT_TRUE(OpenRegistryPath(testPath, holder, KEY_READ));
  EXPECT_EQ(L"text", ReadRegistryString(holder.key.Get(), L"Name"));
  EXPECT_EQ(0u, holder.view);
}

TEST_F(OpenRegistryPathTest, RemembersTheRegistryViewAlone) {
  ASSERT_TRUE(OpenRegistryPath(testPath, holder, KEY_READ | KEY_WOW64_64KEY));
  EXPECT_EQ(static_cast<REGSAM>(KEY_WOW64_64KEY), holder.view);
}

TEST_F(OpenRegistryPathTest, ClosesTheKeyThatTheHolderHad) {
  ASSERT_TRUE(OpenRegistryPath(testPath, holder, KEY_READ));
  const HKEY former = holder.key.Get();
  ASSERT_TRUE(OpenRegistryPath(L"HKEY_CURRENT_USER\\Software", holder, KEY_READ));
  EXPECT_NE(former, holder.key.Get());
  DWORD values = 0;
  EXPECT_EQ(ERROR_INVALID_HANDLE, ::RegQueryInfoKeyW(former, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                     &values, nullptr, nullptr, nullptr, nullptr));
}

TEST_F(OpenRegistryPathTest, AFailureLeavesTheHolderAsItIs) {
  ASSERT_TRUE(OpenRegistryPath(testPath, holder, KEY_READ));
  const HKEY former = holder.key.Get();
  EXPECT_FALSE(OpenRegistryPath(std::wstring(testPath) + L"\\Missing", holder, KEY_READ | KEY_WOW64_64KEY));
  EXPECT_EQ(former, holder.key.Get());
  EXPECT_EQ(0u, holder.view);
}

TEST_F(OpenRegistryPathTest, ARootNameAloneFails) {
  EXPECT_FALSE(OpenRegistryPath(L"HKEY_CURRENT_USER", holder, KEY_READ));
  EXPECT_FALSE(holder.key);
}

TEST_F(OpenRegistryPathTest, ALowerCaseRootFails) {
  EXPECT_FALSE(OpenRegistryPath(L"hkey_current_user\\Software", holder, KEY_READ));
}

class OpenOrCreateRegistryPathTest : public OpenRegistryPathTest {};

TEST_F(OpenOrCreateRegistryPathTest, OpensAKeyThatIsThere) {
  key.SetText(L"Name", L"text");
  ASSERT_TRUE(OpenOrCreateRegistryPath(testPath, holder, KEY_READ));
  EXPECT_EQ(L"text", ReadRegistryString(holder.key.Get(), L"Name"));
}

TEST_F(OpenOrCreateRegistryPathTest, MakesAMissingKeyWithItsParents) {
  ASSERT_TRUE(OpenOrCreateRegistryPath(std::wstring(testPath) + L"\\A\\B", holder, KEY_READ | KEY_WRITE));
  EXPECT_EQ(ERROR_SUCCESS, WriteRegistryString(holder.key.Get(), L"Name", L"made"));
  RegistryKeyHolder again;
  ASSERT_TRUE(OpenRegistryPath(std::wstring(testPath) + L"\\A\\B", again, KEY_READ));
  EXPECT_EQ(L"made", ReadRegistryString(again.key.Get(), L"Name"));
}

TEST_F(OpenOrCreateRegistryPathTest, AMadeKeyAllowsWhatWasAskedFor) {
  ASSERT_TRUE(OpenOrCreateRegistryPath(std::wstring(testPath) + L"\\A", holder, KEY_READ));
  EXPECT_EQ(ERROR_ACCESS_DENIED, WriteRegistryString(holder.key.Get(), L"Name", L"text"));
}

TEST_F(OpenOrCreateRegistryPathTest, RemembersTheRegistryViewAlone) {
  ASSERT_TRUE(OpenOrCreateRegistryPath(std::wstring(testPath) + L"\\A", holder, KEY_READ | KEY_WOW64_64KEY));
  EXPECT_EQ(static_cast<REGSAM>(KEY_WOW64_64KEY), holder.view);
}

TEST_F(OpenOrCreateRegistryPathTest, AFailureLeavesTheHolderAsItIs) {
  ASSERT_TRUE(OpenRegistryPath(testPath, holder, KEY_READ));
  const HKEY former = holder.key.Get();
  EXPECT_FALSE(OpenOrCreateRegistryPath(L"HKEY_NOWHERE\\Software", holder, KEY_READ | KEY_WOW64_64KEY));
  EXPECT_FALSE(OpenOrCreateRegistryPath(L"HKEY_CURRENT_USER", holder, KEY_READ | KEY_WOW64_64KEY));
  EXPECT_EQ(former, holder.key.Get());
  EXPECT_EQ(0u, holder.view);
}

TEST_F(OpenOrCreateRegistryPathTest, APathThatIsNoneIsInvalid) {
  EXPECT_EQ(E_INVALIDARG, HResultOf([&] { OpenOrCreateRegistryPath(L"", holder, KEY_READ); }));
}

class RegistryString : public testing::Test {
protected:
  RegistryString() {
    kept.Create();
    OpenRegistryPath(testPath, holder, KEY_READ);
    key = holder.key.Get();
  }

  static std::string Bytes(const wchar_t *text, std::size_t size) {
    return std::string(reinterpret_cast<const char *>(text), size);
  }

  const tests::KeptRegistryKey kept{HKEY_CURRENT_USER, testKey};
  RegistryKeyHolder holder;
  HKEY key = nullptr;
};

TEST_F(RegistryString, LengthCountsTheClosingNull) {
  kept.SetText(L"Name", L"abc");
  EXPECT_EQ(4u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(L"abc", ReadRegistryString(key, L"Name", 4));
  EXPECT_EQ(L"abc", ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, AnExpandableStringIsReadUnexpanded) {
  kept.SetText(L"Name", L"%TEMP%\\x", REG_EXPAND_SZ);
  EXPECT_EQ(L"%TEMP%\\x", ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, LengthOfAMissingValueIsZero) {
  EXPECT_EQ(0u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, LengthOfAValueWithoutDataIsZero) {
  kept.SetBytes(L"Name", REG_SZ, "");
  EXPECT_EQ(0u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, SecondStepOfAValueWithoutDataGivesEmptyText) {
  kept.SetBytes(L"Name", REG_SZ, "");
  EXPECT_EQ(L"", ReadRegistryString(key, L"Name", 0));
}

TEST_F(RegistryString, ATextOfNoCharactersHasItsNullForALength) {
  kept.SetText(L"Name", L"");
  EXPECT_EQ(1u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(L"", ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, AnotherTypeHasNoLengthAndIsNotRead) {
  kept.SetNumber(L"Number", 5);
  kept.SetText(L"List", L"a", REG_MULTI_SZ);
  EXPECT_EQ(0u, RegistryStringLength(key, L"Number"));
  EXPECT_EQ(0u, RegistryStringLength(key, L"List"));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Number", 4));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"List", 2));
}

TEST_F(RegistryString, WithoutAClosingNullItFailsInTheSecondStep) {
  kept.SetBytes(L"Name", REG_SZ, Bytes(L"abc", 6));
  EXPECT_EQ(3u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name", 3));
}

TEST_F(RegistryString, AnOddByteCountFailsInTheSecondStep) {
  kept.SetBytes(L"Name", REG_SZ, Bytes(L"ab", 5));
  EXPECT_EQ(2u, RegistryStringLength(key, L"Name"));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name", 2));
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name", 10));
}

TEST_F(RegistryString, AValueThatHasGrownSinceTheFirstStepFails) {
  kept.SetText(L"Name", L"longer");
  EXPECT_EQ(std::nullopt, ReadRegistryString(key, L"Name", 3));
}

TEST_F(RegistryString, TheTextEndsAtItsFirstNull) {
  kept.SetBytes(L"Name", REG_SZ, Bytes(L"ab\0cd", 12));
  EXPECT_EQ(L"ab", ReadRegistryString(key, L"Name"));
}

TEST_F(RegistryString, LongTextIsReadWhole) {
  kept.SetText(L"Name", std::wstring(32000, L'x'));
  EXPECT_EQ(std::wstring(32000, L'x'), ReadRegistryString(key, L"Name"));
}

class WrittenRegistryString : public RegistryString {
protected:
  WrittenRegistryString() { OpenRegistryPath(testPath, holder, KEY_READ | KEY_WRITE); }

  LSTATUS Write(const std::wstring &text) { return WriteRegistryString(holder.key.Get(), L"Name", text); }

  /// The value's bytes, when it is a REG_SZ.
  std::string Written() {
    DWORD type = REG_NONE, size = 64;
    std::string bytes(size, '\0');
    ::RegQueryValueExW(holder.key.Get(), L"Name", nullptr, &type, reinterpret_cast<BYTE *>(bytes.data()), &size);
    return type == REG_SZ ? bytes.substr(0, size) : "another type";
  }
};

TEST_F(WrittenRegistryString, HasItsClosingNull) {
  EXPECT_EQ(ERROR_SUCCESS, Write(L"abc"));
  EXPECT_EQ(Bytes(L"abc", 8), Written());
}

TEST_F(WrittenRegistryString, OfNoCharactersIsItsNull) {
  EXPECT_EQ(ERROR_SUCCESS, Write(L""));
  EXPECT_EQ(Bytes(L"", 2), Written());
}

TEST_F(WrittenRegistryString, TakesThePlaceOfAnotherType) {
  kept.SetNumber(L"Name", 5);
  EXPECT_EQ(ERROR_SUCCESS, Write(L"abc"));
  EXPECT_EQ(L"abc", kept.Text(L"Name"));
}

TEST_F(WrittenRegistryString, WhereNothingMayBeWrittenSaysSo) {
  RegistryKeyHolder reader;
  ASSERT_TRUE(OpenRegistryPath(testPath, reader, KEY_READ));
  EXPECT_EQ(ERROR_ACCESS_DENIED, WriteRegistryString(reader.key.Get(), L"Name", L"abc"));
  EXPECT_EQ(std::nullopt, kept.Text(L"Name"));
}

} // namespace
} // namespace lumenor
