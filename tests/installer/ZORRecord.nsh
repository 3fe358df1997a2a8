; Recording installation events from an NSIS installer through
; ZORRecorder.dll, which the installer carries in its plug-in folder:
;
;   InitPluginsDir
;   File "/oname=$PLUGINSDIR\ZORRecorder.dll" "<path of ZORRecorder.dll>"
;
; The DLL must match the installer: the x86 DLL for a 32-bit installer, the
; x64 DLL for one built with "Target amd64-unicode".
;
; ZORRecord: push the recorder's arguments in their order, then their number,
; call the function, and pop the result (0 done, 1 the history store could
; not be set up, 2 nothing recorded):
;
;   Push "-end"
;   Push $ZorEvent
;   Push "-Result"
;   Push "Don't panic: $\"quoted$\", 100$$"
;   Push 4
;   Call ZORRecord        ; Call un.ZORRecord in the uninstaller
;   Pop $0
;
; The values travel on the stack and reach the recorder as they are, as ANSI
; text: quotes, apostrophes and "$" need only NSIS's own escapes where the
; script writes them ($\" and $$), and a value in a variable needs none. The
; function cuts nothing; NSIS itself holds at most NSIS_MAX_STRLEN - 1
; characters (1023) in a string. A value with a line end is refused, since the
; history keeps each value on one line: nothing is recorded, the result is 2,
; and the installer's details say why. The function changes no register: its
; working values are variables of its own.
;
; ZORMakeEventId OUT NAME: a new EventID in OUT, e.g.
; ZORServer-20261125-130512-3fa9: NAME (write it with letters, digits, '-'
; and '_' only, at most 16 of them), the local date and time to the second,
; and four random hex digits.

!ifndef ZOR_RECORD_NSH
!define ZOR_RECORD_NSH

; An address is added to with IntPtrOp: IntOp works on 32 bits even in an
; amd64 installer, and would cut an address above 4 GB, which 64-bit Windows
; gives a program built for high-entropy ASLR.
!ifdef NSIS_AMD64
  !define /ifndef ZOR_POINTER_SIZE 8
!else
  !define /ifndef ZOR_POINTER_SIZE 4
!endif

Var ZORRecordCount
Var ZORRecordArgv
Var ZORRecordSlot
Var ZORRecordValue
Var ZORRecordSize
Var ZORRecordCopy
Var ZORRecordIndex
Var ZORRecordChar
Var ZORRecordResult

; The functions, once for the installer and once, with the prefix "un.", for
; the uninstaller. Labels are local to their function.
!macro ZORRecordFunctions PREFIX
Function ${PREFIX}ZORRecord
  Pop $ZORRecordCount
  ; Element 0 (the caller's name), the elements, and the null pointer that
  ; ends the list; System::Alloc gives zeroed memory.
  IntOp $ZORRecordSize $ZORRecordCount + 2
  IntOp $ZORRecordSize $ZORRecordSize * ${ZOR_POINTER_SIZE}
  System::Alloc $ZORRecordSize
  Pop $ZORRecordArgv
  StrCpy $ZORRecordResult 0
  ; The elements come off the stack last first: slot N down to slot 1.
  StrCpy $ZORRecordIndex $ZORRecordCount
  next:
    IntCmp $ZORRecordIndex 0 filled
    Pop $ZORRecordValue
    Call ${PREFIX}ZORRecordRefuseLineEnds
    Call ${PREFIX}ZORRecordStore
    IntOp $ZORRecordIndex $ZORRecordIndex - 1
    Goto next
  filled:
  StrCpy $ZORRecordValue "setup"
  Call ${PREFIX}ZORRecordStore
  IntCmp $ZORRecordResult 0 0 free free
  IntOp $ZORRecordSize $ZORRecordCount + 1
  System::Call "$PLUGINSDIR\ZORRecorder.dll::ZORRecordEvent(i $ZORRecordSize, p $ZORRecordArgv) i .s"
  Pop $ZORRecordResult
  free:
  Call ${PREFIX}ZORRecordFreeList
  Push $ZORRecordResult
FunctionEnd

; $ZORRecordValue as ANSI text in memory of its own, its address in slot
; $ZORRecordIndex of the list. The text goes to the System plug-in on the
; stack, never inside the text of a call.
Function ${PREFIX}ZORRecordStore
  Push $ZORRecordValue
  System::Call "kernel32::lstrlenA(m s) i .s"
  Pop $ZORRecordSize
  IntOp $ZORRecordSize $ZORRecordSize + 1
  System::Alloc $ZORRecordSize
  Pop $ZORRecordCopy
  Push $ZORRecordValue
  System::Call "kernel32::lstrcpynA(p $ZORRecordCopy, m s, i $ZORRecordSize)"
  IntOp $ZORRecordSlot $ZORRecordIndex * ${ZOR_POINTER_SIZE}
  IntPtrOp $ZORRecordSlot $ZORRecordArgv + $ZORRecordSlot
  System::Call "*$ZORRecordSlot(p $ZORRecordCopy)"
FunctionEnd

; A value with a carriage return or a line feed makes the result 2.
Function ${PREFIX}ZORRecordRefuseLineEnds
  StrCpy $ZORRecordSlot 0
  next:
    StrCpy $ZORRecordChar $ZORRecordValue 1 $ZORRecordSlot
    StrCmp $ZORRecordChar "" done
    StrCmp $ZORRecordChar "$\r" refused
    StrCmp $ZORRecordChar "$\n" refused
    IntOp $ZORRecordSlot $ZORRecordSlot + 1
    Goto next
  refused:
  DetailPrint "ZORRecord: element $ZORRecordIndex holds a line end, which the history can't keep: nothing recorded"
  StrCpy $ZORRecordResult 2
  done:
FunctionEnd

; Frees the text of every element and the list.
Function ${PREFIX}ZORRecordFreeList
  StrCpy $ZORRecordIndex $ZORRecordCount
  next:
    IntOp $ZORRecordSlot $ZORRecordIndex * ${ZOR_POINTER_SIZE}
    IntPtrOp $ZORRecordSlot $ZORRecordArgv + $ZORRecordSlot
    System::Call "*$ZORRecordSlot(p .s)"
    Pop $ZORRecordCopy
    System::Free $ZORRecordCopy
    IntOp $ZORRecordIndex $ZORRecordIndex - 1
    IntCmp $ZORRecordIndex 0 next 0 next
  System::Free $ZORRecordArgv
FunctionEnd
!macroend

!insertmacro ZORRecordFunctions ""
!insertmacro ZORRecordFunctions "un."

Var ZORMakeTime
Var ZORMakeField

; The local time from GetLocalTime, each field formatted by IntFmt, and 16
; bits of a new GUID (CoCreateGuid) as the random part.
!macro ZORMakeEventId OUT NAME
  System::Call "*(&i2, &i2, &i2, &i2, &i2, &i2, &i2, &i2) p .s"
  Pop $ZORMakeTime
  System::Call "kernel32::GetLocalTime(p $ZORMakeTime)"
  StrCpy ${OUT} "${NAME}-"
  !insertmacro ZORMakeEventIdField ${OUT} 0 "%04u"
  !insertmacro ZORMakeEventIdField ${OUT} 2 "%02u"
  !insertmacro ZORMakeEventIdField ${OUT} 6 "%02u"
  StrCpy ${OUT} "${OUT}-"
  !insertmacro ZORMakeEventIdField ${OUT} 8 "%02u"
  !insertmacro ZORMakeEventIdField ${OUT} 10 "%02u"
  !insertmacro ZORMakeEventIdField ${OUT} 12 "%02u"
  System::Free $ZORMakeTime
  System::Call "ole32::CoCreateGuid(g .s)"
  Pop $ZORMakeField
  StrCpy $ZORMakeField $ZORMakeField 4 1
  IntOp $ZORMakeField 0x$ZORMakeField + 0
  IntFmt $ZORMakeField "%04x" $ZORMakeField
  StrCpy ${OUT} "${OUT}-$ZORMakeField"
!macroend

; Appends the 16-bit field at OFFSET of a SYSTEMTIME to OUT.
!macro ZORMakeEventIdField OUT OFFSET FORMAT
  IntPtrOp $ZORMakeField $ZORMakeTime + ${OFFSET}
  System::Call "*$ZORMakeField(&i2 .s)"
  Pop $ZORMakeField
  IntFmt $ZORMakeField "${FORMAT}" $ZORMakeField
  StrCpy ${OUT} "${OUT}$ZORMakeField"
!macroend

!endif
