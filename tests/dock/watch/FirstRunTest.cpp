#include "dock/watch/FirstRun.h"

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "support/KeptRegistryKey.h"
#include "system/Handles.h"

namespace lumenor {

namespace {

constexpr wchar_t welcomeValue[] = L"ShowWelcomePage";
constexpr wchar_t dockKey[] = L"Software\\Tarnwick\\Lumenor";

class FirstRun : public testing::Test {
protected:
  FirstRun() {
    registry.Delete();
    registry.Create();
  }

  std::optional<std::wstring> Value() const { return registry.Text(welcomeValue); }

  /// `text` as it lies in the registry, without a terminator.
  static std::string Bytes(const std::wstring &text) {
    return {reinterpret_cast<const char *>(text.data()), text.size() * sizeof(wchar_t)};
  }

  const tests::KeptRegistryKey registry{HKEY_CURRENT_USER, dockKey};
};

TEST_F(FirstRun, IsWithoutTheValueAndOnlyOnce) {
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
  EXPECT_FALSE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
}

TEST_F(FirstRun, IsOnceMoreForOne) {
  registry.SetText(welcomeValue, L"1");
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
  EXPECT_FALSE(CheckFirstRun());
}

TEST_F(FirstRun, IsNotForZero) {
  registry.SetText(welcomeValue, L"0");
  EXPECT_FALSE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
}

TEST_F(FirstRun, IsNotForAnyOtherText) {
  for (const wchar_t *text : {L"", L"2", L"01", L"1 ", L"yes", L"11"}) {
    registry.SetText(welcomeValue, text);
    EXPECT_FALSE(CheckFirstRun());
    EXPECT_EQ(text, Value());
  }
}

TEST_F(FirstRun, IsForAOneOfTheExpandingType) {
  registry.SetText(welcomeValue, L"1", REG_EXPAND_SZ);
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value()); // as a plain text
}

TEST_F(FirstRun, IsNotForAZeroOfTheExpandingType) {
  registry.SetText(welcomeValue, L"0", REG_EXPAND_SZ);
  EXPECT_FALSE(CheckFirstRun());
}

TEST_F(FirstRun, IsForAValueOfAnotherType) {
  registry.SetNumber(welcomeValue, 0);
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
  registry.SetBytes(welcomeValue, REG_MULTI_SZ, Bytes(std::wstring(L"0\0", 3)));
  EXPECT_TRUE(CheckFirstRun());
  registry.SetBytes(welcomeValue, REG_BINARY, "");
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
}

TEST_F(FirstRun, IsNotForATextWithoutItsTerminator) {
  for (const std::string &bytes : {Bytes(L"1"), Bytes(L"10"), std::string("1"), Bytes(L"1") + '\0'}) {
    registry.SetBytes(welcomeValue, REG_SZ, bytes);
    EXPECT_FALSE(CheckFirstRun());
    EXPECT_FALSE(Value().has_value() && *Value() == L"0");
  }
}

TEST_F(FirstRun, IsNotForAValueWithoutBytes) {
  registry.SetBytes(welcomeValue, REG_SZ, "");
  EXPECT_FALSE(CheckFirstRun());
}

TEST_F(FirstRun, ReadsATextUpToItsFirstNull) {
  registry.SetBytes(welcomeValue, REG_SZ, Bytes(std::wstring(L"1\0more\0", 7)));
  EXPECT_TRUE(CheckFirstRun());
  EXPECT_EQ(L"0", Value());
}

bool KeyExists() {
  RegistryKey key;
  return ::RegOpenKeyExW(HKEY_CURRENT_USER, dockKey, 0, KEY_READ, key.Put()) == ERROR_SUCCESS;
}

TEST_F(FirstRun, IsNotWithoutTheKey) {
  registry.Delete();
  EXPECT_FALSE(CheckFirstRun());
  EXPECT_FALSE(KeyExists());
}

/// In bytes, as it lies there: other operations of the platform count a terminator that isn't there.
DWORD SizeOfValue() {
  RegistryKey key;
  DWORD bytes = 0;
  ::RegOpenKeyExW(HKEY_CURRENT_USER, dockKey, 0, KEY_READ, key.Put());
  ::RegQueryValueExW(key.Get(), welcomeValue, nullptr, nullptr, nullptr, &bytes);
  return bytes;
}

TEST_F(FirstRun, IsNotedWithItsTerminator) {
  CheckFirstRun();
  EXPECT_EQ(4u, SizeOfValue());
}

TEST_F(FirstRun, IsCleared) {
  registry.SetText(welcomeValue, L"1");
  ClearFirstRun();
  EXPECT_EQ(L"0", Value());
  EXPECT_EQ(4u, SizeOfValue());
  EXPECT_FALSE(CheckFirstRun());
}

TEST_F(FirstRun, IsClearedOverAnotherType) {
  registry.SetNumber(welcomeValue, 1);
  ClearFirstRun();
  EXPECT_EQ(L"0", Value());
}

TEST_F(FirstRun, IsNotClearedWithoutTheKey) {
  registry.Delete();
  ClearFirstRun();
  EXPECT_FALSE(KeyExists());
}

} // namespace

} // namespace lumenor
