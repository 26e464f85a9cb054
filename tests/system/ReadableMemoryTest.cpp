#include "system/ReadableMemory.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "system/Windows.h"

namespace lumenor {

namespace {

constexpr std::size_t pageBytes = 4096;
constexpr std::size_t pageLetters = pageBytes / sizeof(wchar_t);

/// Three pages of memory full of the letter "x".
class Pages {
public:
  Pages()
      : letters(
            static_cast<wchar_t *>(::VirtualAlloc(nullptr, 3 * pageBytes, MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE))) {
    std::fill_n(letters, 3 * pageLetters, L'x');
  }
  ~Pages() { ::VirtualFree(letters, 0, MEM_RELEASE); }
  Pages(const Pages &) = delete;
  Pages &operator=(const Pages &) = delete;

  wchar_t *Page(std::size_t index) const { return letters + index * pageLetters; }

  void Protect(std::size_t page, DWORD protection) const {
    DWORD former = 0;
    ::VirtualProtect(Page(page), pageBytes, protection, &former);
  }

private:
  wchar_t *letters;
};

TEST(ReadableText, IsCopied) {
  EXPECT_EQ(L"text", CopyReadableText(L"text"));
  EXPECT_EQ(L"", CopyReadableText(L""));
}

TEST(ReadableText, MayEndWithTheLastBytesThatCanBeRead) {
  const Pages pages;
  pages.Protect(1, PAGE_NOACCESS);
  pages.Page(1)[-1] = L'\0';
  EXPECT_EQ(L"xx", CopyReadableText(pages.Page(1) - 3));
}

TEST(ReadableText, MayLieInMemoryOfSeveralKinds) {
  const Pages pages;
  pages.Page(2)[2] = L'\0';
  pages.Protect(1, PAGE_READONLY);
  EXPECT_EQ(std::wstring(1 + pageLetters + 2, L'x'), CopyReadableText(pages.Page(1) - 1));
}

TEST(UnreadableText, IsWhatRunsIntoMemoryThatCannotBeRead) {
  for (const DWORD protection : {PAGE_NOACCESS, PAGE_EXECUTE, PAGE_READWRITE | PAGE_GUARD}) {
    const Pages pages;
    pages.Page(1)[1] = L'\0';
    pages.Protect(1, protection);
    EXPECT_EQ(std::nullopt, CopyReadableText(pages.Page(1) - 3)) << protection;
    EXPECT_EQ(std::nullopt, CopyReadableText(pages.Page(1))) << protection;
  }
}

TEST(UnreadableText, IsAtAddressesWithoutMemory) {
  wchar_t *reserved = static_cast<wchar_t *>(::VirtualAlloc(nullptr, pageBytes, MEM_RESERVE, PAGE_READWRITE));
  EXPECT_EQ(std::nullopt, CopyReadableText(reserved));
  ::VirtualFree(reserved, 0, MEM_RELEASE);
  EXPECT_EQ(std::nullopt, CopyReadableText(reserved));
  for (const std::uintptr_t wild : {std::uintptr_t{2}, std::uintptr_t{0x7FFF'FFFF'0000}, ~std::uintptr_t{1}})
    EXPECT_EQ(std::nullopt, CopyReadableText(reinterpret_cast<const wchar_t *>(wild))) << wild;
}

TEST(UnreadableText, IsAtAddressesThatNoTextBeginsAt) {
  const auto odd = reinterpret_cast<std::uintptr_t>(L"text") + 1;
  EXPECT_EQ(std::nullopt, CopyReadableText(reinterpret_cast<const wchar_t *>(odd)));
}

} // namespace

} // namespace lumenor
