; The test of ZORRecord.nsh: three calls of ZORRecord with every register set
; to a mark of its own, then the results, whether the stack is empty, and the
; registers, written to check.txt beside the program.
; Build: makensis -NOCD -DRECORDER_DLL=<path of ZORRecorder.dll> ZORRecordCheck.nsi
!ifdef AMD64
  Target amd64-unicode
!else
  Unicode true
!endif
!include "${__FILEDIR__}/ZORRecord.nsh"

Name "ZORRecord check"
OutFile "ZORRecordCheck.exe"
RequestExecutionLevel admin
Page instfiles

Var Results
Var Long
Var Handle
Var Item

!macro Record COUNT
  Push ${COUNT}
  Call ZORRecord
  Pop $Item
  StrCpy $Results "$Results $Item"
!macroend

Section
  InitPluginsDir
  File "/oname=$PLUGINSDIR\ZORRecorder.dll" "${RECORDER_DLL}"
  StrCpy $Long ""
  StrCpy $Item 0
  more:
    StrCpy $Long "$Long0123456789"
    IntOp $Item $Item + 1
    IntCmp $Item 100 0 more
  StrCpy $0 r0
  StrCpy $1 r1
  StrCpy $2 r2
  StrCpy $3 r3
  StrCpy $4 r4
  StrCpy $5 r5
  StrCpy $6 r6
  StrCpy $7 r7
  StrCpy $8 r8
  StrCpy $9 r9
  StrCpy $R0 R0
  StrCpy $R1 R1
  StrCpy $R2 R2
  StrCpy $R3 R3
  StrCpy $R4 R4
  StrCpy $R5 R5
  StrCpy $R6 R6
  StrCpy $R7 R7
  StrCpy $R8 R8
  StrCpy $R9 R9
  StrCpy $Results "results"
  Push "-start"
  Push "Check-1"
  Push "-Product"
  Push "It's a $\"ZOR$\" server for 100$$ ('quoted')"
  Push "-Command"
  Push $Long
  !insertmacro Record 6
  Push "-logmessage"
  Push "Check-1"
  Push "-message"
  Push "two$\r$\nlines"
  !insertmacro Record 4
  Push "-end"
  Push "Check-1"
  Push "-Result"
  Push "Success"
  !insertmacro Record 4
  ClearErrors
  Pop $Item
  StrCpy $Results "$Results, stack empty"
  IfErrors +2
    StrCpy $Results "$Results, stack not empty"
  FileOpen $Handle "$EXEDIR\check.txt" w
  FileWriteUTF16LE /BOM $Handle "$Results$\r$\n"
  FileWriteUTF16LE $Handle "$0 $1 $2 $3 $4 $5 $6 $7 $8 $9 $R0 $R1 $R2 $R3 $R4 $R5 $R6 $R7 $R8 $R9$\r$\n"
  FileClose $Handle
SectionEnd
