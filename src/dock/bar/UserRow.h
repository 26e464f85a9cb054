#pragma once
// The user's row of buttons: two parallel lists, the records and the buttons, of which the records are what is saved.
//
// A record whose button couldn't be made leaves the lists out of step: every operation by one index then acts on the
// records behind it with an index one too small. The bar has always behaved so with such documents, and the lists are
// not to be repaired. An index is held to the bounds of each list all the same.
//
// A member of the dock. User-interface thread.

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

#include "content/Element.h"
#include "content/UserDocument.h"
#include "dock/bar/Bar.h"
#include "dock/bar/ButtonMaker.h"
#include "dock/DockMessages.h"
#include "dock/dragdrop/InsertionIndex.h"
#include "dock/flyouts/DockButton.h"
#include "system/Windows.h"
#include "toolkit/drawing/Window.h"

namespace lumenor {

class UserRow {
public:
  /// Loads the user's records; raises HResultError as UserDocument::Load does. All three are borrowed: the dock's
  /// window, the tree whose panel holds the buttons, and what makes them.
  UserRow(Window &window, const Bar &bar, const ButtonMaker &maker);

  /// The records, in the order in which they are saved.
  const ElementList &GetElements() const { return elements; }

  /// The buttons in their order on the bar; a record that makes no button has none.
  const std::vector<std::shared_ptr<DockButton>> &GetButtons() const { return buttons; }

  /// Lets `listener` hear of every drag of a button that is made from now on. Borrowed.
  void SetDragListener(EventListener<ButtonEventArgs> *listener) { dragListener = listener; }

  /// Makes the buttons of the records.
  void MakeButtons();
  void AssignControlIds();

  /// False for a position behind the end, and when all ids are taken.
  bool CanAdd(std::size_t position) const;

  /// Puts a button for `element` at `position`. Does nothing where CanAdd is false. Raises what making the button
  /// raises: the record is then in the list, without a button.
  void Add(const Element &element, std::size_t position);

  /// Takes a button off the row, and asks the dock to take it out a message later, when nothing of it is on the stack
  /// any more. Null is ignored.
  void Remove(HWND buttonWindow);

  /// Takes a removed button and its record out of the lists.
  void TakeOut(HWND buttonWindow);

  /// Moves a button and its record; `to` is the index after the removal.
  void Move(std::size_t from, std::size_t to);

  /// The number of buttons when the window is null or isn't one of theirs.
  std::size_t IndexOf(HWND buttonWindow) const;

  /// The extents of the buttons on the row, from left to right.
  std::vector<ButtonSpan> GetSpans() const;

  /// Writes the records. Raises HResultError when that fails; the document is then as it was.
  void Save() { savedButtons.Save(elements); }

  void DestroyButtonWindows() const;

private:
  std::shared_ptr<DockButton> MakeButton(const Element &element) const;

  Window &window;
  const Bar &bar;
  const ButtonMaker &maker;
  UserDocument savedButtons; // what the records come from and go back to
  ElementList elements;
  std::vector<std::shared_ptr<DockButton>> buttons;
  std::array<bool, maxUserButtons> idInUse{};
  EventListener<ButtonEventArgs> *dragListener = nullptr;
};

} // namespace lumenor
