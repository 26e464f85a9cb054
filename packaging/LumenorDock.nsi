; The installer and the uninstaller of the dock: 64-bit, per machine. script/package compiles it and hands in
;
;   VERSION       three numbers, as CMake has them
;   STAGED        folder with program/ (what goes below the installation folder), common/ (what goes below
;                 %ProgramData%\Tarnwick\Lumenor), and program.txt and common.txt, which list their files
;   ICON, PICTURE the program's icon; the picture at the side of the first and the last page
;   TARGET        the installer to write
;   DOCUMENTS     a file with the names of the documents that the dock makes in a user's profile, for /PURGE
;   SIGN          command that signs a file, if the release is signed
;   SIZE_KB       the room that it takes, for the list of programs
;   LICENSE       the text to agree to, if there is one
;
; It ends with 0; 1 when the user cancelled; 2 when something went wrong that has no number; 3 on a version of Windows
; that is too old; 4 over a newer version of the dock; 5 when a running dock didn't close; 6 when the files couldn't be
; put in place; 7 when another installation is under way.

Target amd64-unicode
SetCompressor /SOLID lzma
ManifestSupportedOS all
ManifestDPIAware true
RequestExecutionLevel admin
SetDateSave off
AllowSkipFiles off

!include LogicLib.nsh
!include WinVer.nsh
!include WordFunc.nsh
!include FileFunc.nsh
!include nsDialogs.nsh
!include MUI2.nsh

!define NAME "Lumenor Dock"
!define MAKER "Tarnwick"
!define PROGRAM "LumenorDock.exe"
!define FOLDER "$PROGRAMFILES64\Tarnwick\Lumenor"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\LumenorDock"

Name "${NAME}"
BrandingText "${NAME} ${VERSION}"
OutFile "${TARGET}"
InstallDir "${FOLDER}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_UNWELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_WELCOMEFINISHPAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_UNWELCOMEFINISHPAGE_BITMAP_STRETCH AspectFitHeight
!define MUI_ABORTWARNING
!define MUI_UNFINISHPAGE_NOAUTOCLOSE
!define MUI_FINISHPAGE_RUN
!define MUI_FINISHPAGE_RUN_FUNCTION StartDock

!insertmacro MUI_PAGE_WELCOME
!ifdef LICENSE
  !insertmacro MUI_PAGE_LICENSE "${LICENSE}"
!endif
!insertmacro MUI_PAGE_INSTFILES
!define MUI_PAGE_CUSTOMFUNCTION_SHOW HideStartWhereItRuns
!insertmacro MUI_PAGE_FINISH

UninstPage custom un.ShowQuestion un.LeaveQuestion
!insertmacro MUI_UNPAGE_INSTFILES

; The first is the one for every language that the dock doesn't speak.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "German"
!insertmacro MUI_LANGUAGE "French"
!insertmacro MUI_LANGUAGE "Spanish"
!insertmacro MUI_LANGUAGE "Japanese"
!insertmacro MUI_LANGUAGE "Arabic"
!insertmacro MUI_LANGUAGE "PortugueseBR"
!insertmacro MUI_LANGUAGE "Italian"
!insertmacro MUI_LANGUAGE "Polish"
!insertmacro MUI_LANGUAGE "SimpChinese"
!insertmacro MUI_LANGUAGE "Korean"
!insertmacro MUI_LANGUAGE "Russian"
!include "${__FILEDIR__}\Texts.nsh"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
!macro VersionText key text
  VIAddVersionKey /LANG=${LANG_ENGLISH} "${key}" "${text}"
!macroend
!insertmacro VersionText CompanyName "${MAKER}"
!insertmacro VersionText FileDescription "${NAME} Setup"
!insertmacro VersionText FileVersion "${VERSION}.0"
!insertmacro VersionText LegalCopyright "Copyright ${MAKER}"
!insertmacro VersionText ProductName "Lumenor"
!insertmacro VersionText ProductVersion "${VERSION}.0"

!ifdef SIGN
  !uninstfinalize '${SIGN} "%1"'
  !finalize '${SIGN} "%1"'
!endif

Var Common  ; %ProgramData%\Tarnwick\Lumenor
Var WasRunning ; whether a dock was closed, and is to be started again
Var Purge   ; the uninstaller removes the users' documents too
Var PurgeBox

!include "${__FILEDIR__}\RunningDock.nsh"
!include "${__FILEDIR__}\Placing.nsh"
!include "${__FILEDIR__}\Removing.nsh"

; Fail CODE TEXT: tells why, unless silent, and ends with the code.
!macro Fail code text
  SetErrorLevel ${code}
  MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
  Quit
!macroend

; One installation at a time; the platform closes the mutex with the process.
!macro RefuseSecondSetup
  System::Call 'kernel32::CreateMutexW(p 0, i 0, w "Global\LumenorDockSetup") p .r0 ?e'
  Pop $1
  ${If} $1 = 183 ; it was there
    !insertmacro Fail 7 "$(OtherSetupRuns)"
  ${EndIf}
!macroend

; /LANG=de and so on replaces the language of the user.
!macro ChooseLanguage
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/LANG=" $1
  ${IfNot} ${Errors}
    ${Select} $1
      ${Case} "en"
        StrCpy $LANGUAGE ${LANG_ENGLISH}
      ${Case} "de"
        StrCpy $LANGUAGE ${LANG_GERMAN}
      ${Case} "fr"
        StrCpy $LANGUAGE ${LANG_FRENCH}
      ${Case} "es"
        StrCpy $LANGUAGE ${LANG_SPANISH}
      ${Case} "ja"
        StrCpy $LANGUAGE ${LANG_JAPANESE}
      ${Case} "ar"
        StrCpy $LANGUAGE ${LANG_ARABIC}
      ${Case} "pt"
        StrCpy $LANGUAGE ${LANG_PORTUGUESEBR}
      ${Case} "it"
        StrCpy $LANGUAGE ${LANG_ITALIAN}
      ${Case} "pl"
        StrCpy $LANGUAGE ${LANG_POLISH}
      ${Case} "zh"
        StrCpy $LANGUAGE ${LANG_SIMPCHINESE}
      ${Case} "ko"
        StrCpy $LANGUAGE ${LANG_KOREAN}
      ${Case} "ru"
        StrCpy $LANGUAGE ${LANG_RUSSIAN}
    ${EndSelect}
  ${EndIf}
  ClearErrors
!macroend

!macro FindFolders
  SetRegView 64
  SetShellVarContext all
  StrCpy $Common "$APPDATA\Tarnwick\Lumenor"
  StrCpy $WasRunning 0
!macroend

Function .onInit
  !insertmacro ChooseLanguage
  !insertmacro FindFolders
  ${IfNot} ${AtLeastWin7}
    !insertmacro Fail 3 "$(TooOld)"
  ${EndIf}
  !insertmacro RefuseSecondSetup

  ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "DisplayVersion"
  ${If} $0 != ""
    ${VersionCompare} $0 "${VERSION}" $1
    ${If} $1 = 1
      !insertmacro Fail 4 "$(NewerIsThere)"
    ${EndIf}
  ${EndIf}

  ; An upgrade goes where the older version is, unless the command line names another folder.
  ${If} $INSTDIR == "${FOLDER}"
    ReadRegStr $0 HKLM "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $0 != ""
    ${AndIf} ${FileExists} "$0\Dock\${PROGRAM}"
      StrCpy $INSTDIR $0
    ${EndIf}
  ${EndIf}
FunctionEnd

Section
  ; From here to the end a failure has one cause: the files.
  SetErrorLevel 6
  SetDetailsPrint textonly
  Call StageFiles
  Call CloseDock
  ${If} $0 <> 0
    SetErrorLevel 5
    Call DropStaged
    MessageBox MB_OK|MB_ICONSTOP "$(StillRuns)" /SD IDOK
    Abort "$(StillRuns)"
  ${EndIf}
  Call PlaceFiles
  ${If} $0 <> 0
    Call StartDockAgain
    MessageBox MB_OK|MB_ICONSTOP "$(NotPlaced)" /SD IDOK
    Abort "$(NotPlaced)"
  ${EndIf}
  Call Register
  Call StartDockAgain
  SetDetailsPrint both
  SetErrorLevel 0
SectionEnd

; What tells the platform and the users that the dock is there. Whether it starts with the session is what each user
; chooses on the welcome screen, which the dock shows at its first start.
Function Register
  CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\Dock\${PROGRAM}" "" "$INSTDIR\Dock\${PROGRAM}" 0

  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "${NAME}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "${MAKER}"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Dock\${PROGRAM},0"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Dock\uninstall.exe"'
  WriteRegStr HKLM "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Dock\uninstall.exe" /S'
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE_KB}
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
FunctionEnd

; What is there stays.
Function .onInstFailed
  Call DropStaged
FunctionEnd

Function HideStartWhereItRuns
  ${If} $WasRunning <> 0
    SendMessage $mui.FinishPage.Run ${BM_SETCHECK} ${BST_UNCHECKED} 0
    ShowWindow $mui.FinishPage.Run ${SW_HIDE}
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro ChooseLanguage
  !insertmacro FindFolders
  !insertmacro RefuseSecondSetup
  ; It lies in the dock's folder, and the installation is the folder above.
  ${GetParent} $INSTDIR $INSTDIR
  StrCpy $Purge 0
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/PURGE" $1
  ${IfNot} ${Errors}
    StrCpy $Purge 1
  ${EndIf}
  ClearErrors
FunctionEnd

Function un.ShowQuestion
  !insertmacro MUI_HEADER_TEXT "$(RemoveHeading)" ""
  nsDialogs::Create 1018
  Pop $0
  nsDialogs::SetRTL $(^RTL)
  ${NSD_CreateLabel} 0 0 100% 36u "$(QuestionText)"
  Pop $0
  ${NSD_CreateCheckbox} 0 48u 100% 12u "$(PurgeToo)"
  Pop $PurgeBox
  ${NSD_SetState} $PurgeBox $Purge
  nsDialogs::Show
FunctionEnd

Function un.LeaveQuestion
  ${NSD_GetState} $PurgeBox $Purge
FunctionEnd

Section Uninstall
  SetErrorLevel 5
  Call un.CloseDock
  ${If} $0 <> 0
    MessageBox MB_OK|MB_ICONSTOP "$(StillRuns)" /SD IDOK
    Abort "$(StillRuns)"
  ${EndIf}
  Call un.RemoveFiles
  Call un.RemoveTraces
  Call un.RemoveJumpList
  ${If} $Purge <> 0
    Call un.RemoveDocuments
  ${EndIf}
  Call un.RemoveEmptyFolders
  Delete "$SMPROGRAMS\${NAME}.lnk"
  DeleteRegKey HKLM "${UNINSTALL_KEY}"
  SetErrorLevel 0
SectionEnd
