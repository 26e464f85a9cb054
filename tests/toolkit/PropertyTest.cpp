#include "toolkit/Property.h"

#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "system/Windows.h"

#include <dwrite.h>
#include <gtest/gtest.h>

#include "toolkit/AllocationCount.h"
#include "toolkit/Geometry.h"

namespace lumenor {

namespace {

template <typename T> struct Change {
  Property<T> *source;
  T oldValue;
  T newValue;
  bool operator==(const Change &) const = default;
};

/// Keeps the changes of one property.
template <typename T> class Changes {
public:
  explicit Changes(Property<T> &property) : listener(MakeListener(this, &Changes::OnChange)) {
    property.changed.AddListener(listener.get());
  }
  void OnChange(PropertyChangeEventArgs<T> *args) { seen.push_back({args->source, args->oldValue, args->newValue}); }

  std::vector<Change<T>> seen;

private:
  std::shared_ptr<TypedEventListener<Changes, PropertyChangeEventArgs<T>>> listener;
};

template <typename T> void ExpectFiresOnlyOnADifference(T first, T second) {
  Property<T> property(first);
  Changes<T> changes(property);
  property.Set(first);
  EXPECT_EQ(changes.seen.size(), 0U);
  property.Set(second);
  property.Set(second);
  EXPECT_EQ(changes.seen, (std::vector<Change<T>>{{&property, first, second}}));
  EXPECT_EQ(property.Get(), second);
}

TEST(Property, FiresOnlyWhenTheValueDiffers) {
  ExpectFiresOnlyOnADifference<int>(1, 2);
  ExpectFiresOnlyOnADifference<long>(-1, 0x7FFFFFFF);
  ExpectFiresOnlyOnADifference<unsigned char>(255, 254);
  ExpectFiresOnlyOnADifference<float>(1.5F, 1.25F);
  ExpectFiresOnlyOnADifference<std::wstring>(L"ab", std::wstring(L"ab\0c", 4));
  ExpectFiresOnlyOnADifference(Visibility::Visible, Visibility::Collapsed);
  ExpectFiresOnlyOnADifference(Orientation::Horizontal, Orientation::Vertical);
  ExpectFiresOnlyOnADifference(DWRITE_TEXT_ALIGNMENT_LEADING, DWRITE_TEXT_ALIGNMENT_CENTER);
  ExpectFiresOnlyOnADifference(DWRITE_FONT_WEIGHT_NORMAL, DWRITE_FONT_WEIGHT_BOLD);
}

TEST(Property, EqualMarginFiresOnceWithOldAndNewAlike) {
  const Margin margin{1, 2, 3, 4};
  Property<Margin> property(margin);
  Changes<Margin> changes(property);
  property.Set(margin);
  EXPECT_EQ(changes.seen, (std::vector<Change<Margin>>{{&property, margin, margin}}));
}

TEST(Property, EqualColorFiresOnceWithOldAndNewAlike) {
  const Color color{0.25F, 0.5F, 0.75F, 1.0F};
  Property<Color> property(color);
  Changes<Color> changes(property);
  property.Set(color);
  EXPECT_EQ(changes.seen, (std::vector<Change<Color>>{{&property, color, color}}));
}

TEST(Property, NotANumberAlwaysFires) {
  Property<float> property(std::numeric_limits<float>::quiet_NaN());
  Changes<float> changes(property);
  property.Set(property.Get());
  property.Set(property.Get());
  EXPECT_EQ(changes.seen.size(), 2U);
}

TEST(Property, NameOfItsEventIsPropertyChange) {
  const Property<int> property;
  EXPECT_STREQ(property.changed.Name(), L"PropertyChange");
}

/// Raises a property to 10 from within its event, one step a firing.
class Climber {
public:
  explicit Climber(Property<int> &property) : listener(MakeListener(this, &Climber::OnChange)) {
    property.changed.AddListener(listener.get());
  }
  void OnChange(PropertyChangeEventArgs<int> *args) {
    valuesRead.push_back(args->source->Get());
    if (args->newValue < 10)
      args->source->Set(args->newValue + 1);
  }

  std::vector<int> valuesRead;

private:
  std::shared_ptr<TypedEventListener<Climber, PropertyChangeEventArgs<int>>> listener;
};

TEST(Property, SetWithinAListenerNestsAndTheNewValueIsAlreadyThere) {
  Property<int> property(7);
  Climber climber(property);
  Changes<int> changes(property);
  property.Set(8);
  EXPECT_EQ(climber.valuesRead, (std::vector<int>{8, 9, 10}));
  EXPECT_EQ(changes.seen, (std::vector<Change<int>>{{&property, 9, 10}, {&property, 8, 9}, {&property, 7, 8}}));
}

TEST(Property, UnchangedValueTakesNoMemory) {
  Property<long> property(5);
  Changes<long> changes(property);
  const std::size_t before = tests::AllocationCount();
  property.Set(5);
  EXPECT_EQ(tests::AllocationCount(), before);
}

TEST(Property, ChangeWithoutListenersTakesAndGivesBackTheArguments) {
  Property<long> property(5);
  const std::size_t before = tests::AllocationCount();
  const std::ptrdiff_t living = tests::LivingAllocations();
  property.Set(6);
  EXPECT_EQ(tests::AllocationCount(), before + 1);
  EXPECT_EQ(tests::LivingAllocations(), living);
}

class Silent {
public:
  explicit Silent(Property<long> &property) : listener(MakeListener(this, &Silent::OnChange)) {
    property.changed.AddListener(listener.get());
  }
  void OnChange(PropertyChangeEventArgs<long> *) {}

private:
  std::shared_ptr<TypedEventListener<Silent, PropertyChangeEventArgs<long>>> listener;
};

TEST(Property, FiringWithoutDeadListenersTakesTheArgumentsOnly) {
  Property<long> property(5);
  const Silent first(property), second(property);
  const std::size_t before = tests::AllocationCount();
  property.Set(6);
  EXPECT_EQ(tests::AllocationCount(), before + 1);
}

TEST(Geometry, EnumeratorsHaveTheNumbersThatOthersStore) {
  EXPECT_EQ(std::vector<int>({static_cast<int>(Visibility::Visible), static_cast<int>(Visibility::Hidden),
                              static_cast<int>(Visibility::Collapsed)}),
            std::vector<int>({0, 1, 2}));
  EXPECT_EQ(
      std::vector<int>({static_cast<int>(HorizontalAlignment::Left), static_cast<int>(HorizontalAlignment::Center),
                        static_cast<int>(HorizontalAlignment::Right), static_cast<int>(HorizontalAlignment::Stretch)}),
      std::vector<int>({0, 1, 2, 3}));
  EXPECT_EQ(
      std::vector<int>({static_cast<int>(VerticalAlignment::Top), static_cast<int>(VerticalAlignment::Center),
                        static_cast<int>(VerticalAlignment::Bottom), static_cast<int>(VerticalAlignment::Stretch)}),
      std::vector<int>({0, 1, 2, 3}));
  EXPECT_EQ(std::vector<int>({static_cast<int>(Orientation::Horizontal), static_cast<int>(Orientation::Vertical)}),
            std::vector<int>({0, 1}));
  EXPECT_EQ(std::vector<int>({static_cast<int>(Dock::Top), static_cast<int>(Dock::Bottom), static_cast<int>(Dock::Left),
                              static_cast<int>(Dock::Right), static_cast<int>(Dock::Fill)}),
            std::vector<int>({0, 1, 2, 3, 4}));
}

TEST(Geometry, MarginIsLeftRightTopBottom) {
  const Margin margin{1, 2, 3, 4};
  EXPECT_EQ(std::vector<int>({margin.left, margin.right, margin.top, margin.bottom}), std::vector<int>({1, 2, 3, 4}));
}

} // namespace

} // namespace lumenor
