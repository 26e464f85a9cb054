// A collection of objects, here of collections.

#include <objectarray.h>
#include <shobjidl.h>

#include "wine/Animations.h"

namespace lumenor::services {

namespace {

class ObjectCollectionTest : public ::testing::Test {
protected:
  static Ptr<IObjectCollection> New() { return Create<IObjectCollection>(CLSID_EnumerableObjectCollection); }

  UINT Count() const {
    UINT count = 99;
    EXPECT_EQ(collection->GetCount(&count), S_OK);
    return count;
  }

  /// Held by the collection.
  IObjectCollection *At(UINT index) const {
    Ptr<IObjectCollection> object;
    EXPECT_EQ(collection->GetAt(index, IID_PPV_ARGS(&object)), S_OK);
    return object.Get();
  }

  const tests::ComApartment com;
  const Ptr<IObjectCollection> first = New(), second = New(), third = New();
  const Ptr<IObjectCollection> collection = New();
};

TEST_F(ObjectCollectionTest, IsServedWhereAHandlerWouldDoAsWell) {
  Ptr<IObjectCollection> object;
  EXPECT_EQ(::CoCreateInstance(CLSID_EnumerableObjectCollection, nullptr, CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER,
                               IID_PPV_ARGS(&object)),
            S_OK);
  EXPECT_EQ(object->AddObject(first.Get()), S_OK);
}

TEST_F(ObjectCollectionTest, HoldsObjectsInTheirOrder) {
  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(collection->AddObject(second.Get()), S_OK);
  EXPECT_EQ(collection->AddObject(first.Get()), S_OK);
  EXPECT_EQ(collection->AddObject(third.Get()), S_OK);
  EXPECT_EQ(collection->AddObject(second.Get()), S_OK);
  EXPECT_EQ(Count(), 4U);
  EXPECT_EQ(At(0), second.Get());
  EXPECT_EQ(At(1), first.Get());
  EXPECT_EQ(At(2), third.Get());
  EXPECT_EQ(At(3), second.Get());
}

TEST_F(ObjectCollectionTest, HoldsObjectsThatNobodyElseHolds) {
  Ptr<IObjectCollection> object = New();
  ASSERT_EQ(object->AddObject(first.Get()), S_OK);
  ASSERT_EQ(collection->AddObject(object.Get()), S_OK);
  object.Reset();
  UINT count = 0;
  EXPECT_EQ(At(0)->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  ASSERT_EQ(collection->Clear(), S_OK);
  first.Get()->AddRef();
  EXPECT_EQ(first.Get()->Release(), 1U) << "what was cleared let it go";
}

TEST_F(ObjectCollectionTest, IsAnArrayAndOneObject) {
  Ptr<IObjectArray> array;
  ASSERT_EQ(collection.As(&array), S_OK);
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  UINT count = 0;
  EXPECT_EQ(array->GetCount(&count), S_OK);
  EXPECT_EQ(count, 1U);
  Ptr<IUnknown> identity, identityOfArray;
  ASSERT_EQ(collection.As(&identity), S_OK);
  ASSERT_EQ(array.As(&identityOfArray), S_OK);
  EXPECT_EQ(identity.Get(), identityOfArray.Get());
}

TEST_F(ObjectCollectionTest, AddsAllOfAnArray) {
  ASSERT_EQ(third->AddObject(first.Get()), S_OK);
  ASSERT_EQ(third->AddObject(second.Get()), S_OK);
  ASSERT_EQ(collection->AddObject(third.Get()), S_OK);
  EXPECT_EQ(collection->AddFromArray(third.Get()), S_OK);
  ASSERT_EQ(Count(), 3U);
  EXPECT_EQ(At(1), first.Get());
  EXPECT_EQ(At(2), second.Get());
}

TEST_F(ObjectCollectionTest, AddsWhatItHoldsOnceMore) {
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  ASSERT_EQ(collection->AddObject(second.Get()), S_OK);
  EXPECT_EQ(collection->AddFromArray(collection.Get()), S_OK);
  ASSERT_EQ(Count(), 4U);
  EXPECT_EQ(At(2), first.Get());
  EXPECT_EQ(At(3), second.Get());
}

TEST_F(ObjectCollectionTest, RemovesTheOneObject) {
  for (const auto &object : {first, second, third})
    ASSERT_EQ(collection->AddObject(object.Get()), S_OK);
  EXPECT_EQ(collection->RemoveObjectAt(1), S_OK);
  ASSERT_EQ(Count(), 2U);
  EXPECT_EQ(At(0), first.Get());
  EXPECT_EQ(At(1), third.Get());
}

TEST_F(ObjectCollectionTest, ClearedItMayBeFilledAgain) {
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  EXPECT_EQ(collection->Clear(), S_OK);
  EXPECT_EQ(Count(), 0U);
  EXPECT_EQ(collection->AddObject(second.Get()), S_OK);
  EXPECT_EQ(At(0), second.Get());
}

TEST_F(ObjectCollectionTest, RefusesNothingAsObjectOrArray) {
  EXPECT_EQ(collection->AddObject(nullptr), E_INVALIDARG);
  EXPECT_EQ(collection->AddFromArray(nullptr), E_INVALIDARG);
  EXPECT_EQ(Count(), 0U);
}

TEST_F(ObjectCollectionTest, RefusesPlacesBeyondItsEnd) {
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  void *object = first.Get();
  EXPECT_EQ(collection->GetAt(1, __uuidof(IUnknown), &object), E_INVALIDARG);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(collection->RemoveObjectAt(1), E_INVALIDARG);
  EXPECT_EQ(Count(), 1U);
}

TEST_F(ObjectCollectionTest, RefusesAnInterfaceThatTheObjectHasNot) {
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  void *object = first.Get();
  EXPECT_EQ(collection->GetAt(0, __uuidof(IShellLinkW), &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
}

TEST_F(ObjectCollectionTest, RefusesToAnswerToNowhere) {
  ASSERT_EQ(collection->AddObject(first.Get()), S_OK);
  EXPECT_EQ(collection->GetCount(nullptr), E_POINTER);
  EXPECT_EQ(collection->GetAt(0, __uuidof(IUnknown), nullptr), E_POINTER);
}

} // namespace

} // namespace lumenor::services
