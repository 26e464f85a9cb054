#include <optional>
#include <thread>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/ImportSlot.h"
#include "support/OperationSpy.h"
#include "system/HResultError.h"
#include "system/Xml.h"

#include <combaseapi.h>

extern "C" {
extern decltype(&::CoCreateInstance) __imp_CoCreateInstance;
extern decltype(&::CoGetClassObject) __imp_CoGetClassObject;
}

namespace lumenor {
namespace {

int created = 0, lookedUp = 0, locks = 0;
HRESULT lookUpResult = S_OK, lockResult = S_OK;
decltype(&::CoCreateInstance) platformCreate = nullptr;
decltype(&::CoGetClassObject) platformLookUp = nullptr;
HRESULT(STDMETHODCALLTYPE *platformLock)(IClassFactory *, BOOL) = nullptr;

HRESULT WINAPI CountCreation(REFCLSID classId, IUnknown *outer, DWORD context, REFIID id, void **object) {
  ++created;
  return platformCreate(classId, outer, context, id, object);
}

HRESULT WINAPI CountLookUp(REFCLSID classId, DWORD context, void *server, REFIID id, void **factory) {
  ++lookedUp;
  return FAILED(lookUpResult) ? lookUpResult : platformLookUp(classId, context, server, id, factory);
}

HRESULT STDMETHODCALLTYPE CountLock(IClassFactory *factory, BOOL isLocked) {
  locks += isLocked ? 1 : -1;
  return FAILED(lockResult) ? lockResult : platformLock(factory, isLocked);
}

/// With the numbers of documents that were made in the platform's way, and of look-ups of the parser.
class XmlParserHoldTest : public testing::Test {
protected:
  XmlParserHoldTest() {
    created = lookedUp = locks = 0;
    lookUpResult = lockResult = S_OK;
    platformCreate = create.Former();
    platformLookUp = lookUp.Former();
  }

  static std::wstring Read() { return ChildText(LoadXmlString(L"<a>text</a>"), L"/a"); }

  const tests::ComApartment com;
  const tests::ImportSlot<decltype(&::CoCreateInstance)> create{&__imp_CoCreateInstance, &CountCreation};
  const tests::ImportSlot<decltype(&::CoGetClassObject)> lookUp{&__imp_CoGetClassObject, &CountLookUp};
};

TEST_F(XmlParserHoldTest, LooksTheParserUpAtTheFirstDocumentAlone) {
  const XmlParserHold hold;
  EXPECT_EQ(0, lookedUp);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(L"text", Read());
  EXPECT_EQ(1, lookedUp);
  EXPECT_EQ(0, created);
}

TEST_F(XmlParserHoldTest, ChangesNothingOnceItHasEnded) {
  {
    const XmlParserHold hold;
    Read();
  }
  EXPECT_EQ(L"text", Read());
  EXPECT_EQ(1, created);
  EXPECT_EQ(1, lookedUp);
}

TEST_F(XmlParserHoldTest, GoesOnAfterOneWithinIt) {
  const XmlParserHold hold;
  Read();
  {
    const XmlParserHold inner;
    EXPECT_EQ(L"text", Read());
  }
  EXPECT_EQ(2, lookedUp);
  EXPECT_EQ(L"text", Read());
  EXPECT_EQ(2, lookedUp);
  EXPECT_EQ(0, created);
}

/// Counts how often the parser is kept in memory.
class LockedParser : public XmlParserHoldTest {
protected:
  LockedParser() { platformLock = spy.Exchange(4, &CountLock); }

  static Microsoft::WRL::ComPtr<IClassFactory> LookUp() {
    Microsoft::WRL::ComPtr<IClassFactory> parsers;
    ::CoGetClassObject(xmlParserClass, CLSCTX_INPROC_SERVER, nullptr, IID_PPV_ARGS(&parsers));
    return parsers;
  }

  tests::OperationSpy spy{LookUp().Get()};
  std::optional<XmlParserHold> hold{std::in_place};
};

TEST_F(LockedParser, IsKeptInMemoryFromTheFirstDocumentToTheEnd) {
  EXPECT_EQ(0, locks);
  Read();
  Read();
  EXPECT_EQ(1, locks);
  hold.reset();
  EXPECT_EQ(0, locks);
}

TEST_F(LockedParser, ThatCantBeKeptServesAndIsNotLetGo) {
  lockResult = E_FAIL;
  EXPECT_EQ(L"text", Read());
  EXPECT_EQ(1, locks);
  hold.reset();
  EXPECT_EQ(1, locks);
}

TEST_F(LockedParser, ThatWasNeverUsedIsNotLetGo) {
  hold.reset();
  EXPECT_EQ(0, locks);
}

TEST_F(XmlParserHoldTest, WithoutAParserRaisesWhatThePlatformSaysAndLooksAgain) {
  const XmlParserHold hold;
  lookUpResult = REGDB_E_CLASSNOTREG;
  EXPECT_EQ(REGDB_E_CLASSNOTREG, HResultOf([] { Read(); }));
  lookUpResult = S_OK;
  EXPECT_EQ(L"text", Read());
  EXPECT_EQ(2, lookedUp);
}

TEST_F(XmlParserHoldTest, RaisesTheFailureOfAParser) {
  const tests::FailingClass parsers(xmlParserClass, E_OUTOFMEMORY);
  const XmlParserHold hold;
  EXPECT_EQ(E_OUTOFMEMORY, HResultOf([] { Read(); }));
  EXPECT_EQ(1, parsers.Creations());
}

TEST_F(XmlParserHoldTest, IsNotOfOtherThreads) {
  const XmlParserHold hold;
  Read();
  std::wstring text;
  std::thread([&] {
    const tests::ComApartment itsOwn;
    text = Read();
  }).join();
  EXPECT_EQ(L"text", text);
  EXPECT_EQ(1, created);
  EXPECT_EQ(1, lookedUp);
}

} // namespace
} // namespace lumenor
