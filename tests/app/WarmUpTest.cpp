#include "app/WarmUp.h"

#include <vector>

#include <gmock/gmock.h>

#include "support/ComApartment.h"
#include "support/Desk.h"
#include "support/ImportSlot.h"
#include "support/LogCapture.h"
#include "support/TestFolders.h"

extern "C" {
extern decltype(&::DWriteCreateFactory) __imp_DWriteCreateFactory;
extern decltype(&::CoCreateInstance) __imp_CoCreateInstance;
extern decltype(&::CreateThread) __imp_CreateThread;
}

namespace lumenor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Ne;

// Of the platform's functions, by the threads that call them. The warm-up's thread has ended when they are looked at.
std::vector<DWORD> fontThreads, parserThreads;
decltype(&::DWriteCreateFactory) platformFonts = nullptr;
decltype(&::CoCreateInstance) platformCreate = nullptr;

HRESULT WINAPI MakeFonts(DWRITE_FACTORY_TYPE type, REFIID id, IUnknown **factory) {
  fontThreads.push_back(::GetCurrentThreadId());
  return platformFonts(type, id, factory);
}

HRESULT WINAPI RefuseFonts(DWRITE_FACTORY_TYPE, REFIID, IUnknown **) {
  fontThreads.push_back(::GetCurrentThreadId());
  return E_FAIL;
}

HRESULT WINAPI CreateParser(REFCLSID classId, IUnknown *outer, DWORD context, REFIID id, void **object) {
  parserThreads.push_back(::GetCurrentThreadId());
  return platformCreate(classId, outer, context, id, object);
}

HANDLE WINAPI RefuseThread(LPSECURITY_ATTRIBUTES, SIZE_T, LPTHREAD_START_ROUTINE, LPVOID, DWORD, LPDWORD) {
  ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

class WarmUpTest : public ::testing::Test {
protected:
  WarmUpTest() {
    fontThreads.clear();
    parserThreads.clear();
    platformFonts = fonts.Former();
    platformCreate = create.Former();
  }

  const tests::ComApartment com;
  const tests::TestFolders folders;
  const tests::ImportSlot<decltype(&::DWriteCreateFactory)> fonts{&__imp_DWriteCreateFactory, &MakeFonts};
  const tests::ImportSlot<decltype(&::CoCreateInstance)> create{&__imp_CoCreateInstance, &CreateParser};
};

TEST_F(WarmUpTest, LoadsFontsAndParserOnAThreadOfItsOwn) {
  { const WarmUp warmUp; }
  EXPECT_THAT(fontThreads, ElementsAre(Ne(::GetCurrentThreadId())));
  EXPECT_THAT(parserThreads, fontThreads);
}

TEST_F(WarmUpTest, AFailureIsLeftToWhoNeedsWhatIsMissing) {
  const tests::LogCapture log(folders);
  const desk::EventLogSpy eventLog;
  const tests::ImportSlot<decltype(&::DWriteCreateFactory)> refused(&__imp_DWriteCreateFactory, &RefuseFonts);
  { const WarmUp warmUp; }
  EXPECT_THAT(fontThreads, ElementsAre(Ne(::GetCurrentThreadId())));
  EXPECT_THAT(log.Lines(), IsEmpty());
  EXPECT_THAT(desk::EventLogSpy::Reports(), IsEmpty());
}

TEST_F(WarmUpTest, WithoutAThreadNothingIsLoaded) {
  const tests::ImportSlot<decltype(&::CreateThread)> refused(&__imp_CreateThread, &RefuseThread);
  { const WarmUp warmUp; }
  EXPECT_THAT(fontThreads, IsEmpty());
  EXPECT_THAT(parserThreads, IsEmpty());
}

} // namespace
} // namespace lumenor
