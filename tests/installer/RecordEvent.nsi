; An NSIS installer that records its install, its uninstall and a failed
; install, each as an event of its own with a new EventID, through
; ZORRecorder.dll: the installer and its uninstaller each carry the DLL in
; their plug-in folder, and nothing of the recorder is installed.
; Build: makensis -NOCD -DRECORDER_DLL=<path of ZORRecorder.dll> RecordEvent.nsi
; with ZORRecord.nsh beside this file. The DLL must match the installer: the
; x86 DLL for the usual 32-bit installer, the x64 DLL with -DAMD64.
; The product's data, ZORServer.dat, lies beside the setup; without it the
; install fails, records the failure and ends with exit code 2.
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
  Push "-start"
  Push $ZorEvent
  Push "-Product"
  Push "ZOR Server 9"
  Push "-Action"
  Push "Install"
  Push "-Type"
  Push $ZorType
  Push "-Path"
  Push $INSTDIR
  Push "-Command"
  Push $CMDLINE
  Push "-l"
  Push $ZorLog
  Push 14
  Call ZORRecord
  Pop $ZorResult
  !insertmacro ZORLog "Installing ZOR Server into $INSTDIR"

  ClearErrors
  IfFileExists "$EXEDIR\ZORServer.dat" 0 failed
  SetOutPath "$INSTDIR"
  CopyFiles /SILENT "$EXEDIR\ZORServer.dat" "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
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
  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push "Failed: ZORServer.dat isn't beside the setup"
  Push "-l"
  Push $ZorLog
  Push 8
  Call ZORRecord
  Pop $ZorResult
  Abort "ZORServer.dat isn't beside the setup"
SectionEnd

Section "Uninstall"
  !insertmacro ZORPrepare
  Push "-start"
  Push $ZorEvent
  Push "-Product"
  Push "ZOR Server 9"
  Push "-Action"
  Push "Uninstall"
  Push "-Type"
  Push $ZorType
  Push "-Path"
  Push $INSTDIR
  Push "-l"
  Push $ZorLog
  Push 12
  Call un.ZORRecord
  Pop $ZorResult
  !insertmacro ZORLog "Removing ZOR Server from $INSTDIR"

  Delete "$INSTDIR\ZORServer.dat"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"
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
