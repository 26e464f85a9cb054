#include "app/Cycles.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/ComApartment.h"
#include "support/FailingClass.h"
#include "support/OperationSpy.h"
#include "toolkit/AnimationServices.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {

namespace {

using tests::OperationSpy;

using ReleaseFunction = ULONG(STDMETHODCALLTYPE *)(IUnknown *);

std::vector<std::string> released;
ReleaseFunction releaseManager, releaseTimer, releaseLibrary, releaseImaging;

ULONG STDMETHODCALLTYPE HearManager(IUnknown *self) {
  released.emplace_back("manager");
  return releaseManager(self);
}

ULONG STDMETHODCALLTYPE HearTimer(IUnknown *self) {
  released.emplace_back("timer");
  return releaseTimer(self);
}

ULONG STDMETHODCALLTYPE HearLibrary(IUnknown *self) {
  released.emplace_back("library");
  return releaseLibrary(self);
}

ULONG STDMETHODCALLTYPE HearImaging(IUnknown *self) {
  released.emplace_back("imaging");
  return releaseImaging(self);
}

class SharedServicesTest : public ::testing::Test {
protected:
  ~SharedServicesTest() override { ReleaseSharedServices(); }

  const tests::ComApartment com;
};

TEST_F(SharedServicesTest, GoAnimationsFirst) {
  OperationSpy manager(GetAnimationServices().Manager().Get()), timer(GetAnimationServices().Timer().Get()),
      library(GetAnimationServices().TransitionLibrary().Get()), imaging(GetImagingFactory().Get());
  releaseManager = manager.Exchange(2, &HearManager);
  releaseTimer = timer.Exchange(2, &HearTimer);
  releaseLibrary = library.Exchange(2, &HearLibrary);
  releaseImaging = imaging.Exchange(2, &HearImaging);
  released.clear();
  ReleaseSharedServices();
  EXPECT_EQ(released, (std::vector<std::string>{"manager", "timer", "library", "imaging"}));
}

TEST_F(SharedServicesTest, GoWithoutTheAnimationsThatAMachineLacks) {
  const tests::FailingClass noManager(CLSID_UIAnimationManager, E_FAIL);
  OperationSpy imaging(GetImagingFactory().Get());
  releaseImaging = imaging.Exchange(2, &HearImaging);
  released.clear();
  ReleaseSharedServices();
  EXPECT_EQ(released, std::vector<std::string>{"imaging"});
  EXPECT_EQ(noManager.Creations(), 1);
}

} // namespace

} // namespace lumenor
