; What the uninstaller removes. Files go by the lists of what was installed, so that others stay, and a folder goes when
; it is empty.

; Removes the files of the list $7 from the folder $8, and the folders that they leave empty. The list is sorted: files of
; one folder follow each other.
Function un.RemoveListed
  StrCpy $5 ""
  FileOpen $9 $7 r
  ${Do}
    !insertmacro ReadName
    ${GetParent} $1 $2
    ${If} $2 != $5
      Call un.RemoveEmptyBranch
      StrCpy $5 $2
    ${EndIf}
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    Delete /REBOOTOK "$8\$1"
  ${Loop}
  FileClose $9
FunctionEnd

; Removes the folder $5 of $8 and those that it is in, from the inner to the outer, as far as they are empty.
Function un.RemoveEmptyBranch
  ${DoUntil} $5 == ""
    RMDir "$8\$5"
    ${GetParent} $5 $5
  ${Loop}
FunctionEnd

Function un.RemoveFiles
  InitPluginsDir
  CopyFiles /SILENT "$INSTDIR\Dock\program.txt" "$PLUGINSDIR\program.txt"
  CopyFiles /SILENT "$INSTDIR\Dock\common.txt" "$PLUGINSDIR\common.txt"
  CopyFiles /SILENT "$INSTDIR\Dock\documents.txt" "$PLUGINSDIR\documents.txt"
  SetOutPath "$TEMP" ; the current folder couldn't be removed
  StrCpy $7 "$PLUGINSDIR\program.txt"
  StrCpy $8 $INSTDIR
  Call un.RemoveListed
  StrCpy $7 "$PLUGINSDIR\common.txt"
  StrCpy $8 $Common
  Call un.RemoveListed
FunctionEnd

; The dock's values below the key, and keys that are empty then. Values of others stay.
!macro RemoveSettings key
  DeleteRegValue HKU "${key}\Tarnwick\Lumenor" "DockPosition"
  DeleteRegValue HKU "${key}\Tarnwick\Lumenor" "ShowWelcomePage"
  DeleteRegValue HKU "${key}\Tarnwick\Lumenor" "AllowToUpdate"
  ${IfNot} ${FileExists} "$INSTDIR\Lumenor.exe" ; the main application counts its use under the same number
    DeleteRegValue HKU "${key}\Tarnwick\Lumenor" "AppID"
  ${EndIf}
  DeleteRegValue HKU "${key}\Tarnwick\Lumenor\Dock" "NextTransferTime"
  DeleteRegValue HKU "${key}\Tarnwick\Lumenor\Dock" "NextElementSeq"
  DeleteRegKey /ifempty HKU "${key}\Tarnwick\Lumenor\Dock"
  DeleteRegKey /ifempty HKU "${key}\Tarnwick\Lumenor"
  DeleteRegKey /ifempty HKU "${key}\Tarnwick"
!macroend

; What the dock has written for all users, and the settings of the users that are signed in.
Function un.RemoveTraces
  Delete "$Common\Logs\RollingDock*.log"
  RMDir "$Common\Logs"
  Delete "$Common\ImageCache\*.ico"
  Delete "$Common\ImageCache\*.hover"
  Delete "$Common\ImageCache\*.glow"
  Delete "$Common\ImageCache\*.pressed"
  Delete "$Common\ImageCache\*.new"
  RMDir "$Common\ImageCache"

  StrCpy $0 0
  ${Do}
    EnumRegKey $1 HKU "" $0
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    IntOp $0 $0 + 1
    DeleteRegValue HKU "$1\Software\Microsoft\Windows\CurrentVersion\Run" "LumenorDock"
    !insertmacro RemoveSettings "$1\Software"
    !insertmacro RemoveSettings "$1\Software\Wow6432Node"
  ${Loop}
FunctionEnd

; The jump list of the user who removes the dock: it lies with the platform.
Function un.RemoveJumpList
  System::Call 'ole32::CoCreateInstance(g "{77f10cf0-3db5-4966-b520-b7c54fd35ed6}", p 0, i 1, \
    g "{6332debf-87b5-4670-90c0-5e57b408a49e}", *p .r0) i .r1'
  ${If} $1 = 0
    System::Call '$0->10(w "com.tw.ebu.lumenor")' ; ICustomDestinationList::DeleteList
    System::Call '$0->2()'
  ${EndIf}
FunctionEnd

; The documents that the dock has made, in every profile of the machine.
Function un.RemoveDocuments
  StrCpy $0 0
  ${Do}
    EnumRegKey $1 HKLM "SOFTWARE\Microsoft\Windows NT\CurrentVersion\ProfileList" $0
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    IntOp $0 $0 + 1
    ReadRegStr $2 HKLM "SOFTWARE\Microsoft\Windows NT\CurrentVersion\ProfileList\$1" "ProfileImagePath"
    ExpandEnvStrings $2 "$2"
    StrCpy $8 "$2\AppData\Roaming\Tarnwick\Lumenor"
    ${If} $2 != ""
    ${AndIf} ${FileExists} "$8\*.*"
      Call un.RemoveDocumentsOfUser
    ${EndIf}
  ${Loop}
  ; Whose folder is elsewhere than in the profile is found for the user who removes the dock.
  SetShellVarContext current
  StrCpy $8 "$APPDATA\Tarnwick\Lumenor"
  SetShellVarContext all
  ${If} ${FileExists} "$8\*.*"
    Call un.RemoveDocumentsOfUser
  ${EndIf}
FunctionEnd

; From the folder $8.
Function un.RemoveDocumentsOfUser
  FileOpen $9 "$PLUGINSDIR\documents.txt" r
  ${Do}
    !insertmacro ReadName
    ${If} $1 == ""
      ${Break}
    ${EndIf}
    Delete "$8\$1.xml"
    Delete "$8\$1.xml.new"
    Delete "$8\$1.xml.broken*"
  ${Loop}
  FileClose $9
  Delete "$8\ruq\ruqDock.tmp"
  Delete "$8\ruq\ruqDock.tmp.new"
  RMDir "$8\ruq"
  Push $8
  Call un.RemoveEmptyParents
FunctionEnd

Function un.RemoveEmptyFolders
  Push $Common
  Call un.RemoveEmptyParents
  Push $INSTDIR
  Call un.RemoveEmptyParents
FunctionEnd
