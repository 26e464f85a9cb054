// Where on the row something lands.

#include <gtest/gtest.h>

#include "dock/dragdrop/InsertionIndex.h"

namespace lumenor {

namespace {

// Three buttons as the bar has them, four pixels apart.
const std::vector<ButtonSpan> row = {{4, 81}, {85, 162}, {166, 243}};
constexpr std::size_t none = 3;

std::vector<std::size_t> Indices(const std::vector<long> &places, std::size_t dragged = none) {
  std::vector<std::size_t> indices;
  for (const long x : places)
    indices.push_back(InsertionIndex(x, row, dragged));
  return indices;
}

using Expected = std::vector<std::size_t>;

TEST(InsertionIndex, IsZeroWithoutButtons) {
  EXPECT_EQ(0U, InsertionIndex(-5, {}, 0));
  EXPECT_EQ(0U, InsertionIndex(500, {}, 0));
}

TEST(InsertionIndex, IsZeroLeftOfTheFirstButton) { EXPECT_EQ((Expected{0, 0, 0}), Indices({-100, 0, 3})); }

TEST(InsertionIndex, IsTheCountRightOfTheLastButton) { EXPECT_EQ((Expected{3, 3}), Indices({244, 5000})); }

TEST(InsertionIndex, IsBeforeAButtonOnItsFirstHalfAndBehindItOnItsSecond) {
  // The halves meet at the left end and half of 77, rounded down.
  EXPECT_EQ((Expected{0, 0, 1, 1}), Indices({4, 4 + 37, 4 + 38, 81}));
  EXPECT_EQ((Expected{1, 1, 2, 2}), Indices({85, 85 + 37, 85 + 38, 162}));
  EXPECT_EQ((Expected{2, 2, 3, 3}), Indices({166, 166 + 37, 166 + 38, 243}));
}

TEST(InsertionIndex, IsThatOfTheGapBetweenButtons) { EXPECT_EQ((Expected{1, 1, 2, 2}), Indices({82, 84, 163, 165})); }

TEST(InsertionIndex, OnTheDraggedButtonIsItsOwn) {
  EXPECT_EQ((Expected{1, 1, 1}), Indices({85, 124, 162}, 1));
  EXPECT_EQ((Expected{0, 1, 2, 3}), Indices({10, 80, 170, 240}, 1)) << "the others keep their halves";
}

TEST(InsertionIndex, RoundsHalfOfAnEvenWidthToo) {
  EXPECT_EQ(0U, InsertionIndex(4, {{0, 10}}, 1));
  EXPECT_EQ(1U, InsertionIndex(5, {{0, 10}}, 1));
}

} // namespace

} // namespace lumenor
