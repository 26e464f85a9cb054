#include "soak/Actions.h"

#include <algorithm>

namespace lumenor::soak {
namespace {

constexpr std::size_t fewestButtons = 6;
constexpr std::size_t mostButtons = 12;
constexpr std::size_t longestText = 20;

bool Always(const Model &) { return true; }
bool NothingOpen(const Model &model) { return model.open == List::None; }
bool SomethingOpen(const Model &model) { return !NothingOpen(model); }
bool HasText(const Model &model) { return NothingOpen(model) && !model.text.empty(); }
bool HasLongText(const Model &model) { return HasText(model) && model.text.size() > longestText; }
bool HasRoomForText(const Model &model) { return NothingOpen(model) && model.text.size() <= longestText; }
bool HasRoom(const Model &model) { return NothingOpen(model) && model.row.size() < mostButtons; }
bool HasButtonsToSpare(const Model &model) { return NothingOpen(model) && model.row.size() > fewestButtons; }

// The test platform keeps the work area that a process has asked for once. On the small display the bar would go below
// its end, so it changes its edge on the usual one only.
bool MayGoToTheOtherEdge(const Model &model) { return NothingOpen(model) && !model.isSmallDisplay; }
bool MayBeToggled(const Model &model) { return MayGoToTheOtherEdge(model) && model.IsToggleTrue(); }
bool MayTakeTheSmallDisplay(const Model &model) { return MayBeToggled(model) && model.IsAtTop(); }
bool IsOnSmallDisplay(const Model &model) { return NothingOpen(model) && model.isSmallDisplay; }

} // namespace

const std::vector<Action> &Actions() {
  static const std::vector<Action> actions = {
      {"move over the bar", 300, &Always, &MoveOverBar},
      {"move away", 10, &NothingOpen, &MoveAway},
      {"click a button that does nothing", 150, &NothingOpen, &ClickQuietButton},
      {"click the other window", 20, &NothingOpen, &ClickOtherWindow},
      {"start a program", 3, &NothingOpen, &StartProgram},
      {"scroll", 25, &NothingOpen, &Scroll},
      {"drag a button along", 6, &NothingOpen, &DragAlong},
      {"drag a button and escape", 2, &NothingOpen, &DragAndEscape},
      {"drag a button off", 3, &HasButtonsToSpare, &DragOff},
      {"drag a file in", 3, &HasRoom, &DragFileIn},
      {"open the For You list", 30, &NothingOpen, &OpenForYou},
      {"open the providers", 20, &NothingOpen, &OpenProviders},
      {"open the tools", 20, &NothingOpen, &OpenTools},
      {"move in the list", 400, &SomethingOpen, &MoveInList},
      {"choose in the list", 30, &SomethingOpen, &ChooseInList},
      {"close the list", 170, &SomethingOpen, &CloseList},
      {"write the For You list", 40, &Always, &ChangeForYou},
      {"type", 40, &HasRoomForText, &Type},
      {"paste", 5, &HasRoomForText, &Paste},
      {"erase a letter", 20, &HasText, &EraseLetter},
      {"clear the field", 100, &HasLongText, &ClearField},
      {"search by the key", 3, &HasText, &SearchByKey},
      {"search by the button", 2, &HasText, &SearchByButton},
      {"toggle the edge", 15, &MayBeToggled, &ToggleEdge},
      {"write the edge", 25, &MayGoToTheOtherEdge, &WriteEdge},
      {"take the small display", 2, &MayTakeTheSmallDisplay, &ChangeDisplay},
      {"take the usual display", 30, &IsOnSmallDisplay, &ChangeDisplay},
      {"report other settings", 10, &Always, &ReportSettings},
      {"hold files", 6, &Always, &HoldFiles},
      {"flush the counts", 5, &Always, &FlushTracking},
      {"start a second dock", 2, &NothingOpen, &StartSecondDock},
      {"ask for a reset and cancel", 3, &NothingOpen, &CancelReset},
      {"reset", 1, &NothingOpen, &Reset},
      {"announce the session's end", 2, &NothingOpen, &EndSession},
  };
  return actions;
}

const Action &ChooseAction(Scene &scene) {
  std::size_t total = 0;
  for (const Action &action : Actions())
    total += action.isPossible(scene.model) ? static_cast<std::size_t>(action.weight) : 0;
  std::size_t left = scene.random.Below(total);
  for (const Action &action : Actions()) {
    if (!action.isPossible(scene.model))
      continue;
    if (left < static_cast<std::size_t>(action.weight))
      return action;
    left -= static_cast<std::size_t>(action.weight);
  }
  return Actions().front();
}

const Action *ActionTowardsUsual(const Model &model) {
  const auto find = [](void (*run)(Scene &)) { return &*std::ranges::find(Actions(), run, &Action::run); };
  if (model.entriesForYou != 1)
    return find(&ChangeForYou);
  if (model.open != List::None)
    return find(&CloseList);
  if (model.isSmallDisplay)
    return find(&ChangeDisplay);
  if (!model.IsAtTop())
    return find(&WriteEdge);
  if (model.row.size() < FactoryRow().size())
    return find(&DragFileIn);
  if (model.row.size() > FactoryRow().size())
    return find(&DragOff);
  return model.isForYouSeen ? nullptr : find(&OpenForYou);
}

} // namespace lumenor::soak
