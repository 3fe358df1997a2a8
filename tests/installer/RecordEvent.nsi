; An NSIS installer that records its install, a run over an installed copy
; (Repair of the same version, Upgrade of another), its uninstall and a failed
; install, each as an event of its own with a new EventID, through
; ZORRecorder.dll: the installer and its uninstaller each carry the DLL in
; their plug-in folder, and nothing of the recorder is installed.
; Build: makensis -NOCD -DRECORDER_DLL=<path of ZORRecorder.dll> RecordEvent.nsi
; with ZORRecord.nsh beside this file. The DLL must match the installer: the
; x86 DLL for the usual 32-bit installer, the x64 DLL with -DAMD64.
; The product's data, ZORServer.dat, lies beside the setup; without it the
; install fails and ends with exit code 2; .onInstFailed ends the event as
; failed, for this failure and any other that aborts the install.
; The install writes its version below HKLM\${PRODUCT_KEY}, which tells the
; next run what is installed; the uninstall removes it. -DVERSION=9.3 builds
; a later version.
; Every run writes a log of its own, named after its EventID in $TEMP, and
; passes it with -l, so that ZORGetInstallLog -f stages it beside the event
; (a path that a later run wrote again would give this event that run's log).
!ifdef AMD64
  Target amd64-unicode
  !define PROGRAM_FILES "$PROGRAMFILES64"
!else
  Unicode true
  !define PROGRAM_FILES "$PROGRAMFILES"
!endif
!include "${__FILEDIR__}/ZORRecord.nsh"
!define /ifndef VERSION "9.2"
!define PRODUCT_KEY "Software\ZOR Server"

Name "ZOR Server"
OutFile "ZORServerSetup.exe"
InstallDir "${PROGRAM_FILES}\ZOR Server"
RequestExecutionLevel admin
Page instfiles
UninstPage instfiles

Var ZorEvent
Var ZorType
Var ZorResult
Var ZorLog
Var ZorLogFile
Var ZorAction
Var ZorInstalled
Var ZorFailure

; The DLL in the plug-in folder, a new EventID, the run's own log, and the
; kind of run.
!macro ZORPrepare
  InitPluginsDir
  File "/oname=$PLUGINSDIR\ZORRecorder.dll" "${RECORDER_DLL}"
  !insertmacro ZORMakeEventId $ZorEvent "ZORServer"
  StrCpy $ZorLog "$TEMP\$ZorEvent.log"
  StrCpy $ZorType "GUI"
  IfSilent 0 +2
    StrCpy $ZorType "Silent"
  StrCpy $ZorFailure "Failed"
!macroend

; Appends one line to the run's own log.
!macro ZORLog TEXT
  FileOpen $ZorLogFile $ZorLog a
  FileSeek $ZorLogFile 0 END
  FileWrite $ZorLogFile "${TEXT}$\r$\n"
  FileClose $ZorLogFile
!macroend

Section "ZOR Server"
  !insertmacro ZORPrepare
  ; The kind of run, from the version that an earlier install wrote.
  ReadRegStr $ZorInstalled HKLM "${PRODUCT_KEY}" "Version"
  StrCpy $ZorAction "Install"
  StrCmp $ZorInstalled "" action_known
  StrCpy $ZorAction "Upgrade"
  StrCmp $ZorInstalled "${VERSION}" 0 action_known
  StrCpy $ZorAction "Repair"
  action_known:
  Push "-start"
  Push $ZorEvent
  Push "-Product"
  Push "ZOR Server 9"
  Push "-Version"
  Push "${VERSION}"
  Push "-Action"
  Push $ZorAction
  Push "-Type"
  Push $ZorType
  Push "-Path"
  Push $INSTDIR
  Push "-Command"
  Push $CMDLINE
  Push "-l"
  Push $ZorLog
  Push 16
  Call ZORRecord
  Pop $ZorResult
  !insertmacro ZORLog "$ZorAction of ZOR Server ${VERSION} into $INSTDIR"

  ClearErrors
  IfFileExists "$EXEDIR\ZORServer.dat" 0 failed
  SetOutPath "$INSTDIR"
  CopyFiles /SILENT "$EXEDIR\ZORServer.dat" "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  WriteRegStr HKLM "${PRODUCT_KEY}" "Version" "${VERSION}"
  IfErrors failed
  !insertmacro ZORLog "Copied ZORServer.dat"

  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push "Success"
  Push "-l"
  Push $ZorLog
  Push 8
  Call ZORRecord
  Pop $ZorResult
  Return

  ; Every value as NSIS writes it: $\" for a quote, $$ for a dollar sign.
  failed:
  !insertmacro ZORLog "ZORServer.dat isn't beside the setup: the install fails"
  Push "-logmessage"
  Push $ZorEvent
  Push "-message"
  Push "Don't panic: $\"ZORServer.dat$\" wasn't found, so 100$$ of data is missing"
  Push 4
  Call ZORRecord
  Pop $ZorResult
  StrCpy $ZorFailure "Failed: ZORServer.dat isn't beside the setup"
  Abort "ZORServer.dat isn't beside the setup"
SectionEnd

; Every install that aborts, silent or not, ends its event here as failed,
; with the reason that the section gave, or "Failed".
Function .onInstFailed
  StrCmp $ZorEvent "" done
  !insertmacro ZORLog "The install failed"
  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push $ZorFailure
  Push "-l"
  Push $ZorLog
  Push 8
  Call ZORRecord
  Pop $ZorResult
  done:
FunctionEnd

Section "Uninstall"
  !insertmacro ZORPrepare
  Push "-start"
  Push $ZorEvent
  Push "-Product"
  Push "ZOR Server 9"
  Push "-Version"
  Push "${VERSION}"
  Push "-Action"
  Push "Uninstall"
  Push "-Type"
  Push $ZorType
  Push "-Path"
  Push $INSTDIR
  Push "-l"
  Push $ZorLog
  Push 14
  Call un.ZORRecord
  Pop $ZorResult
  !insertmacro ZORLog "Removing ZOR Server from $INSTDIR"

  Delete "$INSTDIR\ZORServer.dat"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${PRODUCT_KEY}"
  !insertmacro ZORLog "Removed the files"

  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push "Success"
  Push "-l"
  Push $ZorLog
  Push 8
  Call un.ZORRecord
  Pop $ZorResult
SectionEnd
