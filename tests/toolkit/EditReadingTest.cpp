#include "toolkit/EditReading.h"

#include <string>

#include <gtest/gtest.h>

#include "system/Handles.h"
#include "toolkit/TextBoxScene.h"

namespace lumenor {

namespace {

class LongEditReading : public tests::TextBoxScene {
protected:
  /// A text whose every character tells its index.
  LongEditReading() {
    Open();
    ::SendMessageW(box.handle, EM_SETLIMITTEXT, length, 0);
    std::wstring text;
    for (std::size_t i = 0; i < length; ++i)
      text += static_cast<wchar_t>(firstCharacter + i);
    SetText(text);
  }

  static std::size_t IndexOf(wchar_t character) { return static_cast<std::size_t>(character - firstCharacter); }

  /// The index of the character at `x` in the field.
  std::size_t IndexAt(int x) const { return LOWORD(::SendMessageW(box.handle, EM_CHARFROMPOS, 0, MAKELPARAM(x, 1))); }

  static constexpr std::size_t length = 3000;
  static constexpr std::size_t unseen = 256; // on each side
  static constexpr wchar_t firstCharacter = 0x4E00;
};

TEST_F(LongEditReading, HoldsWhatIsInSightAndSomeOnBothSides) {
  Select(1500, 1500);
  const std::size_t first = IndexAt(0), last = IndexAt(FieldWidth() - 1);
  ASSERT_GT(last, first);
  ASSERT_GT(first, unseen);
  const EditReading reading = ReadEdit(box.handle);
  EXPECT_EQ(first - unseen, IndexOf(reading.text.front()));
  EXPECT_EQ(last + unseen - 1, IndexOf(reading.text.back()));
  EXPECT_EQ(last - first + 2 * unseen, reading.text.size());
}

TEST_F(LongEditReading, BeginsWithTheTextWhereThatIsInSight) {
  Select(0, 0);
  const std::size_t last = IndexAt(FieldWidth() - 1);
  const EditReading reading = ReadEdit(box.handle);
  EXPECT_EQ(0u, IndexOf(reading.text.front()));
  EXPECT_EQ(last + unseen, reading.text.size());
}

TEST(EditReading, OfAnEmptyFieldHasTheLineWhereTheFieldHasIt) {
  const WindowHandle field(
      ::CreateWindowExW(0, L"EDIT", L"", WS_POPUP | WS_BORDER, 0, 0, 200, 60, nullptr, nullptr, nullptr, nullptr));
  RECT line{};
  ::SendMessageW(field.Get(), EM_GETRECT, 0, reinterpret_cast<LPARAM>(&line));
  ASSERT_GT(line.left, 0);
  ASSERT_GT(line.top, 0);
  const EditReading reading = ReadEdit(field.Get());
  EXPECT_EQ(line.left, reading.lineStart);
  EXPECT_EQ(line.top, reading.top);
}

} // namespace

} // namespace lumenor
