#pragma once
// What a user, another program or the platform does to the dock, one action a function. Each waits for its effect,
// tells the model, and raises an error when the effect doesn't come.

#include "soak/Scene.h"

namespace lumenor::soak {

struct Action {
  const char *name;
  int weight; // how often, compared with the others
  bool (*isPossible)(const Model &);
  void (*run)(Scene &);
};

/// All actions.
const std::vector<Action> &Actions();

/// An action that is possible, chosen by the scene's random numbers.
const Action &ChooseAction(Scene &scene);

/// The action that brings the dock nearer to what samples are taken in; null when it is there.
const Action *ActionTowardsUsual(const Model &model);

// The row of the user's buttons.
void DragAlong(Scene &scene);
void DragAndEscape(Scene &scene);
void DragOff(Scene &scene);
void DragFileIn(Scene &scene);
void Scroll(Scene &scene);

// The flyouts.
void OpenForYou(Scene &scene);
void OpenProviders(Scene &scene);
void OpenTools(Scene &scene);
void MoveInList(Scene &scene);
void ChooseInList(Scene &scene);
void CloseList(Scene &scene);
void ChangeForYou(Scene &scene);

// The search field.
void Type(Scene &scene);
void Paste(Scene &scene);
void EraseLetter(Scene &scene);
void ClearField(Scene &scene);
void SearchByKey(Scene &scene);
void SearchByButton(Scene &scene);

// The bar.
void MoveOverBar(Scene &scene);
void MoveAway(Scene &scene);
void ClickQuietButton(Scene &scene);
void ClickOtherWindow(Scene &scene);
void StartProgram(Scene &scene);
void ToggleEdge(Scene &scene);
void WriteEdge(Scene &scene);
void ChangeDisplay(Scene &scene);
void ReportSettings(Scene &scene);

// The life of the dock.
void HoldFiles(Scene &scene);
void FlushTracking(Scene &scene);
void StartSecondDock(Scene &scene);
void CancelReset(Scene &scene);
void Reset(Scene &scene);
void EndSession(Scene &scene);

} // namespace lumenor::soak
