// Pictures and drop-in services need COM on the thread that runs the tests.

#include <gtest/gtest.h>

#include "drawing/PaintSurface.h"
#include "system/Windows.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {
namespace {

class ComEnvironment : public ::testing::Environment {
public:
  void SetUp() override { ASSERT_TRUE(SUCCEEDED(::CoInitialize(nullptr))); }
  void TearDown() override {
    tests::PaintSurface::ReleaseTarget();
    ReleaseImagingFactory();
    ::CoUninitialize();
  }
};

[[maybe_unused]] const ::testing::Environment *const comEnvironment =
    ::testing::AddGlobalTestEnvironment(new ComEnvironment);

} // namespace
} // namespace lumenor
