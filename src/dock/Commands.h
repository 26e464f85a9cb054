#pragma once
// The dock's own commands, which any button may name in its ActionParams, and the start of the main application.
// User-interface thread.

#include <optional>
#include <string>

namespace lumenor {

/// What a button does instead of starting something.
enum class Command {
  Flyout,            // nothing: a document's word for an entry without an action
  ForYou,            // opens and closes the For You flyout
  ResetConfirmation, // asks whether the bar is to be reset
  SearchProvider,    // opens and closes the list of search providers
  Search,            // searches for the text of the search field
  Close,             // closes the dock
};

/// The word by which an element names `command`; it lives as long as the program.
const wchar_t *CommandName(Command command);

/// The command whose word `program` is, case included; empty for everything that is to be launched.
std::optional<Command> FindCommand(const std::wstring &program);

/// True once the dock has started the main application two minutes after its own start. Process-wide: a bar that was
/// built anew in the same process doesn't start it again at its end.
inline bool mainApplicationStarted = false;

/// Starts the main application without a window. What comes of it isn't looked at.
void StartMainApplication(const wchar_t *arguments);

} // namespace lumenor
