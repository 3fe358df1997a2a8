; An NSIS installer that records its install through ZORRecorder.dll, which it
; carries in its plug-in folder: nothing of the recorder is installed.
; Build: makensis -NOCD -DRECORDER_DLL=<path of ZORRecorder.dll> RecordEvent.nsi
; The DLL must match the installer: the x86 DLL for the usual 32-bit
; installer, the x64 DLL with -DAMD64.
!ifdef AMD64
  Target amd64-unicode
!else
  Unicode true
!endif

Name "ZOR Server"
OutFile "ZORServerSetup.exe"
InstallDir "$PROGRAMFILES\ZOR Server"
RequestExecutionLevel admin
Page instfiles

; ZORRecordEvent(5, argv): argv holds "setup", a mode, the EventID, one more
; option and its value, each as ANSI text, and a null pointer behind them.
; The result (0, 1 or 2) is left in $0.
!macro ZORRecord MODE EVENT OPTION VALUE
  System::Call "*(&m260 'setup') p .r1"
  System::Call "*(&m260 '${MODE}') p .r2"
  System::Call "*(&m260 '${EVENT}') p .r3"
  System::Call "*(&m260 '${OPTION}') p .r4"
  System::Call "*(&m260 '${VALUE}') p .r5"
  System::Call "*(p r1, p r2, p r3, p r4, p r5, p 0) p .r6"
  System::Call "$PLUGINSDIR\ZORRecorder.dll::ZORRecordEvent(i 5, p r6) i .r0"
  System::Free $1
  System::Free $2
  System::Free $3
  System::Free $4
  System::Free $5
  System::Free $6
!macroend

Section "ZOR Server"
  InitPluginsDir
  File "/oname=$PLUGINSDIR\ZORRecorder.dll" "${RECORDER_DLL}"
  !insertmacro ZORRecord "-start" "Install-ZORServer" "-Product" "ZOR Server 9"
  SetOutPath "$INSTDIR"
  ; ... the product's files ...
  !insertmacro ZORRecord "-end" "Install-ZORServer" "-Result" "Success"
SectionEnd
