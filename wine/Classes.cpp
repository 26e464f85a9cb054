#include "Classes.h"

#include <uianimation.h>

#include "AnimationManager.h"
#include "AnimationTimer.h"
#include "AnimationTransitionLibrary.h"
#include "Annotations.h"
#include "DestinationList.h"
#include "HelpPane.h"
#include "ObjectCollection.h"
#include "ShellLink.h"

namespace lumenor::services {

namespace {

template <typename Object> HRESULT Create(REFIID id, void **object) {
  return MakeComObject<Object>()->QueryInterface(id, object);
}

struct ServedClass {
  const CLSID &id;
  Creator create;
};

// A class that is added here needs a line in script/register-services as well.
const ServedClass servedClasses[] = {
    {CLSID_UIAnimationManager, Create<AnimationManager>},
    {CLSID_UIAnimationTransitionLibrary, Create<AnimationTransitionLibrary>},
    {CLSID_UIAnimationTimer, Create<AnimationTimer>},
    {helpPaneClassId, Create<HelpPane>},
    {CLSID_DestinationList, Create<DestinationList>},
    {CLSID_EnumerableObjectCollection, Create<ObjectCollection>},
    {CLSID_ShellLink, ShellLink::Create},
    {CLSID_AccPropServices, Create<Annotations>},
};

} // namespace

Creator FindClass(REFCLSID id) {
  for (const ServedClass &served : servedClasses)
    if (::IsEqualCLSID(served.id, id))
      return served.create;
  return nullptr;
}

} // namespace lumenor::services
