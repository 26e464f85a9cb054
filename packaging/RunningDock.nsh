; A dock that runs: found by its window, asked to close by it, and started again.

; Closes the dock of this session, which saves the user's buttons; leaves 0 in $0 when none runs any more, else 1.
!macro DefineCloseDock prefix
Function ${prefix}CloseDock
  StrCpy $5 0
  ${Do}
    ; Any dialog may have this title: it is a dock's if its process runs the dock's program.
    FindWindow $5 "#32770" "${NAME}" 0 $5
    ${If} $5 = 0
      StrCpy $0 0
      Return
    ${EndIf}
    System::Call 'user32::GetWindowThreadProcessId(p r5, *i .r1)'
    System::Call 'kernel32::OpenProcess(i 0x101000, i 0, i r1) p .r2' ; to wait for it, and to ask for its program
    ${If} $2 <> 0
      StrCpy $4 ""
      System::Call 'kernel32::QueryFullProcessImageNameW(p r2, i 0, w .r4, *i ${NSIS_MAX_STRLEN}) i .r3'
      ${GetFileName} $4 $4
      ${If} $4 == "${PROGRAM}"
        StrCpy $WasRunning 1
        DetailPrint "$(Closing)"
        System::Call 'user32::PostMessageW(p r5, i ${WM_CLOSE}, p 0, p 0)'
        System::Call 'kernel32::WaitForSingleObject(p r2, i 30000) i .r3'
        System::Call 'kernel32::CloseHandle(p r2)'
        ${If} $3 <> 0
          StrCpy $0 1
          Return
        ${EndIf}
        StrCpy $5 0 ; the window is gone: look from the first again
      ${Else}
        System::Call 'kernel32::CloseHandle(p r2)'
      ${EndIf}
    ${EndIf}
  ${Loop}
FunctionEnd
!macroend
!insertmacro DefineCloseDock ""
!insertmacro DefineCloseDock "un."

; By the shell, so that it gets the rights of the user and not those of the installer: others couldn't drop on the bar.
Function StartDock
  Exec '"$WINDIR\explorer.exe" "$INSTDIR\Dock\${PROGRAM}"'
FunctionEnd

Function StartDockAgain
  ${If} $WasRunning <> 0
    Call StartDock
  ${EndIf}
FunctionEnd
