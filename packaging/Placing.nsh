; Files are put in place all or none. First all of them are unpacked into a folder beside their place, where a full disk
; or a missing right shows while the old version still stands. Then each is moved into its place, which is a change of
; names, and the file that it replaces is moved aside; if one can't be moved, all go back. A program that runs in
; another session stays open under its new name until it ends.

!define STAGING "Dock.new"
!define ASIDE "Dock.old"

Function StageFiles
  Call DropStaged
  InitPluginsDir
  SetOutPath "$INSTDIR\${STAGING}"
  File /r "${STAGED}/program/*.*"
  SetOutPath "$INSTDIR\${STAGING}\Dock"
  WriteUninstaller "$INSTDIR\${STAGING}\Dock\uninstall.exe"
  ${IfNot} ${FileExists} "$INSTDIR\${STAGING}\Dock\uninstall.exe"
    Abort "$(NotPlaced)"
  ${EndIf}
  File "${STAGED}/program.txt"
  File "${STAGED}/common.txt"
  File "${DOCUMENTS}"
  SetOutPath "$Common\${STAGING}"
  File /r "${STAGED}/common/*.*"
  SetOutPath "$PLUGINSDIR" ; a current folder can't be removed
FunctionEnd

; The folders stay where they hold something else.
Function DropStaged
  SetOutPath "$TEMP"
  RMDir /r "$INSTDIR\${STAGING}"
  RMDir /r "$Common\${STAGING}"
  Push $Common
  Call RemoveEmptyParents
  Push $INSTDIR
  Call RemoveEmptyParents
FunctionEnd

; Of a folder "...\Tarnwick\Lumenor", both; of another one, the folder alone.
!macro DefineRemoveEmptyParents prefix
Function ${prefix}RemoveEmptyParents
  Exch $0
  Push $1
  RMDir "$0"
  ${GetParent} $0 $0
  ${GetFileName} $0 $1
  ${If} $1 == "Tarnwick"
    RMDir "$0"
  ${EndIf}
  Pop $1
  Pop $0
FunctionEnd
!macroend
!insertmacro DefineRemoveEmptyParents ""
!insertmacro DefineRemoveEmptyParents "un."

; Leaves the next line of the list $9 in $1, without its end; empty at the end. Every line ends with one character.
!macro ReadName
  ClearErrors
  FileRead $9 $1
  ${If} ${Errors}
    StrCpy $1 ""
  ${Else}
    StrCpy $1 $1 -1
  ${EndIf}
!macroend

; Moves the staged files of the list $7 into the folder $8. Leaves 0 in $0, or 1 when one couldn't be moved; then the
; number of those that were is in $6.
Function PlaceTree
  StrCpy $6 0
  FileOpen $9 $7 r
  ${Do}
    !insertmacro ReadName
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    ClearErrors
    ${GetParent} "$8\$1" $2
    CreateDirectory "$2"
    ${If} ${FileExists} "$8\$1"
      ${GetParent} "$8\${ASIDE}\$1" $2
      CreateDirectory "$2"
      Rename "$8\$1" "$8\${ASIDE}\$1"
    ${EndIf}
    ; Asking for the error forgets it.
    StrCpy $0 0
    ${If} ${Errors}
      StrCpy $0 1
    ${Else}
      Rename "$8\${STAGING}\$1" "$8\$1"
      ${If} ${Errors}
        StrCpy $0 1
      ${EndIf}
    ${EndIf}
    ${If} $0 <> 0
      FileClose $9
      Return
    ${EndIf}
    IntOp $6 $6 + 1
  ${Loop}
  FileClose $9
  StrCpy $0 0
FunctionEnd

; Undoes PlaceTree for the first $6 files of the list $7, and for the one at which it stopped.
Function PutBackTree
  FileOpen $9 $7 r
  ${Do}
    !insertmacro ReadName
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    ${If} $6 > 0
      Delete "$8\$1"
    ${EndIf}
    ${If} ${FileExists} "$8\${ASIDE}\$1"
      Rename "$8\${ASIDE}\$1" "$8\$1"
    ${EndIf}
    ${If} $6 = 0
      ${Break}
    ${EndIf}
    IntOp $6 $6 - 1
  ${Loop}
  FileClose $9
  RMDir /r "$8\${ASIDE}"
FunctionEnd

; Puts all files in place; leaves 0 in $0, or 1 when all is as it was before.
Function PlaceFiles
  ; The lists of the version that is there, for what the new one doesn't have any more.
  Delete "$PLUGINSDIR\old-program.txt"
  Delete "$PLUGINSDIR\old-common.txt"
  CopyFiles /SILENT "$INSTDIR\Dock\program.txt" "$PLUGINSDIR\old-program.txt"
  CopyFiles /SILENT "$INSTDIR\Dock\common.txt" "$PLUGINSDIR\old-common.txt"
  CopyFiles /SILENT "$INSTDIR\${STAGING}\Dock\program.txt" "$PLUGINSDIR\program.txt"
  CopyFiles /SILENT "$INSTDIR\${STAGING}\Dock\common.txt" "$PLUGINSDIR\common.txt"

  StrCpy $7 "$PLUGINSDIR\common.txt"
  StrCpy $8 $Common
  Call PlaceTree
  ${If} $0 = 0
    StrCpy $5 $6 ; so many there are
    StrCpy $7 "$PLUGINSDIR\program.txt"
    StrCpy $8 $INSTDIR
    Call PlaceTree
    ${If} $0 <> 0
      Call PutBackTree
      StrCpy $7 "$PLUGINSDIR\common.txt"
      StrCpy $8 $Common
      StrCpy $6 $5
    ${EndIf}
  ${EndIf}
  ${If} $0 <> 0
    Call PutBackTree
    Call DropStaged
    StrCpy $0 1
    Return
  ${EndIf}

  StrCpy $7 "$PLUGINSDIR\old-program.txt"
  StrCpy $6 "$PLUGINSDIR\program.txt"
  StrCpy $8 $INSTDIR
  Call RemoveDropped
  StrCpy $7 "$PLUGINSDIR\old-common.txt"
  StrCpy $6 "$PLUGINSDIR\common.txt"
  StrCpy $8 $Common
  Call RemoveDropped
  Call RemoveAside
  Call DropStaged
  StrCpy $0 0
FunctionEnd

; Removes the files of the list $7 that aren't moved aside (which they were if the list $6 has them too) from $8.
Function RemoveDropped
  ${IfNot} ${FileExists} $7
    Return
  ${EndIf}
  FileOpen $9 $7 r
  ${Do}
    !insertmacro ReadName
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    ${If} ${FileExists} "$8\$1"
    ${AndIfNot} ${FileExists} "$8\${ASIDE}\$1"
      Delete "$8\$1"
      ${GetParent} "$8\$1" $2
      RMDir "$2"
    ${EndIf}
  ${Loop}
  FileClose $9
FunctionEnd

; A file that is still in use goes at the next start of the platform.
Function RemoveAside
  RMDir /r /REBOOTOK "$INSTDIR\${ASIDE}"
  RMDir /r /REBOOTOK "$Common\${ASIDE}"
  SetRebootFlag false
FunctionEnd
