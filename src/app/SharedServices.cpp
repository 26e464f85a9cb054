#include "app/SharedServices.h"

#include "toolkit/AnimationServices.h"
#include "toolkit/drawing/WICHelper.h"

namespace lumenor {

void ReleaseSharedServices() {
  ShutDownAnimationServices();
  ReleaseImagingFactory();
}

} // namespace lumenor
