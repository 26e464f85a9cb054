#pragma once
// The numbers of what the executable carries: one table, read by the resource compiler and by the code. The compiler
// of the resources knows macros only, so the enumerators take their values from them; code uses the enumerators.

#define DIALOG_FLYOUT 103
#define DIALOG_MAIN 129
#define DIALOG_RESET_CONFIRMATION 131
#define DIALOG_WELCOME 134
#define ICON_MAIN 128
#define CURSOR_DRAG 133

#ifndef RC_INVOKED
namespace lumenor {

/// The dialog templates that windows are made from.
enum DialogId : unsigned short {
  FlyoutDialogId = DIALOG_FLYOUT,
  MainDialogId = DIALOG_MAIN,
  ResetConfirmationDialogId = DIALOG_RESET_CONFIRMATION,
  WelcomeDialogId = DIALOG_WELCOME,
};

/// The icon of the program and of its main window.
enum IconId : unsigned short { MainIconId = ICON_MAIN };

/// The cursor of a button that is dragged off the bar.
enum CursorId : unsigned short { DragCursorId = CURSOR_DRAG };

} // namespace lumenor
#endif
