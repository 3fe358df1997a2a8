; An NSIS installer that records its install, its uninstall and a failed
; install, each as an event of its own with a new EventID, through
; ZORRecorder.dll: the installer and its uninstaller each carry the DLL in
; their plug-in folder, and nothing of the recorder is installed.
; Build: makensis -NOCD -DRECORDER_DLL=<path of ZORRecorder.dll> RecordEvent.nsi
; with ZORRecord.nsh beside this file. The DLL must match the installer: the
; x86 DLL for the usual 32-bit installer, the x64 DLL with -DAMD64.
; The product's data, ZORServer.dat, lies beside the setup; without it the
; install fails, records the failure and ends with exit code 2.
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

; The DLL in the plug-in folder, a new EventID, and the kind of run.
!macro ZORPrepare
  InitPluginsDir
  File "/oname=$PLUGINSDIR\ZORRecorder.dll" "${RECORDER_DLL}"
  !insertmacro ZORMakeEventId $ZorEvent "ZORServer"
  StrCpy $ZorType "GUI"
  IfSilent 0 +2
    StrCpy $ZorType "Silent"
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
  Push 12
  Call ZORRecord
  Pop $ZorResult

  ClearErrors
  IfFileExists "$EXEDIR\ZORServer.dat" 0 failed
  SetOutPath "$INSTDIR"
  CopyFiles /SILENT "$EXEDIR\ZORServer.dat" "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"
  IfErrors failed

  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push "Success"
  Push 6
  Call ZORRecord
  Pop $ZorResult
  Return

  ; Every value as NSIS writes it: $\" for a quote, $$ for a dollar sign.
  failed:
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
  Push 6
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
  Push 10
  Call un.ZORRecord
  Pop $ZorResult

  Delete "$INSTDIR\ZORServer.dat"
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR"

  Push "-end"
  Push $ZorEvent
  Push "-CopyName"
  Push "ZORCopy1"
  Push "-Result"
  Push "Success"
  Push 6
  Call un.ZORRecord
  Pop $ZorResult
SectionEnd
