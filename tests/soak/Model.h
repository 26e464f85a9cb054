#pragma once
// What the user has made of the dock, kept beside it: the next action follows from it and from the seed alone, and the
// dock is held against it.

#include <cstddef>
#include <string>
#include <vector>

namespace lumenor::soak {

/// The flyouts of the bar, of which one is open at most.
enum class List { None, ForYou, Providers, Tools };

struct Model {
  std::vector<std::wstring> row; // the labels of the user's buttons, from left to right
  std::wstring edge = L"Top";    // the value that names the edge of the screen
  bool isToggledToTop = true;    // what the toggle remembers; it doesn't hear of other programs' changes
  bool isSmallDisplay = false;
  std::size_t provider = 0;
  std::wstring text; // of the search field
  List open = List::None;
  std::size_t entriesForYou = 1;
  bool isForYouSeen = true; // the list was open since it was written, so the dock has read it
  int filesMade = 0;        // each has another name

  bool IsAtTop() const;

  /// Another program writes the other edge.
  void ChangeEdge();

  /// Whether the toggle shows the edge at which the bar stands. When it doesn't, a click on it writes the value that is
  /// there, and a change of the display moves the bar to the edge that the toggle shows.
  bool IsToggleTrue() const { return isToggledToTop == IsAtTop(); }

  /// What a new bar has forgotten, after a reset or a start.
  void BeginAgain();

  /// What every sample is taken in, so that samples can be compared.
  bool IsUsual() const;
};

/// The row that the stubs build, and that samples are taken with.
std::vector<std::wstring> FactoryRow();

} // namespace lumenor::soak
