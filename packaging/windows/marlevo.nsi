; The per-user installer: no administrator rights; an existing database and existing slip settings are never touched, and
; stay when the program is removed unless the operator says otherwise.
;   makensis -DVERSION=1.0.0 -DFOLDER=the-program's-folder -DOUTPUT=setup.exe marlevo.nsi
Unicode true
Target amd64-unicode
!include "MUI2.nsh"

Name "Marlevo"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Marlevo"
InstallDirRegKey HKCU "Software\Marlevo" "InstallDir"
RequestExecutionLevel user
SetCompressor /SOLID lzma

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_FINISHPAGE_RUN "$INSTDIR\marlevo.exe"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "TradChinese"

VIProductVersion "${VERSION}.0"
VIAddVersionKey /LANG=${LANG_TRADCHINESE} "ProductName" "Marlevo"
VIAddVersionKey /LANG=${LANG_TRADCHINESE} "FileDescription" "Marlevo 安裝程式"
VIAddVersionKey /LANG=${LANG_TRADCHINESE} "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=${LANG_TRADCHINESE} "LegalCopyright" ""

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Marlevo"

; Nothing is written over or removed from under a running program, which Windows keeps from being opened for writing. The
; operator ends it and tries again; a silent run gives up with the error level 2, before it changed anything.
!macro WaitForTheProgram
  wait:
  IfFileExists "$INSTDIR\marlevo.exe" 0 free
  ClearErrors
  FileOpen $0 "$INSTDIR\marlevo.exe" a
  IfErrors 0 close
  MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Marlevo 正在執行中，或這個資料夾不能寫入。$\r$\n請先結束程式，再按「重試」。" /SD IDCANCEL IDRETRY wait
  SetErrorLevel 2
  Abort "Marlevo 正在執行中：什麼都沒有改變。"
  close:
  FileClose $0
  free:
!macroend

Section
  !insertmacro WaitForTheProgram
  SetOutPath "$INSTDIR"
  File "${FOLDER}\marlevo.exe"
  File "${FOLDER}\make_database.exe"
  File "${FOLDER}\使用手冊.html"
  File /r "${FOLDER}\使用手冊"
  File "${FOLDER}\LICENSE.txt"
  SetOverwrite off
  File "${FOLDER}\4star.mdb"
  SetOverwrite on
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\Marlevo"
  CreateShortcut "$SMPROGRAMS\Marlevo\Marlevo 3、4星彩.lnk" "$INSTDIR\marlevo.exe"
  CreateShortcut "$SMPROGRAMS\Marlevo\使用手冊.lnk" "$INSTDIR\使用手冊.html"

  WriteRegStr HKCU "Software\Marlevo" "InstallDir" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Marlevo 3、4星彩"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\marlevo.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  !insertmacro WaitForTheProgram
  Delete "$INSTDIR\marlevo.exe"
  Delete "$INSTDIR\make_database.exe"
  Delete "$INSTDIR\使用手冊.html"
  RMDir /r "$INSTDIR\使用手冊"
  Delete "$INSTDIR\LICENSE.txt"
  Delete "$INSTDIR\uninstall.exe"
  ; A silent removal keeps the data.
  MessageBox MB_YESNO|MB_ICONQUESTION|MB_DEFBUTTON2 "要連同客戶資料 (4star.mdb) 及列印設定一起刪除嗎？$\r$\n選「否」會保留這些檔案。" /SD IDNO IDNO keep
    Delete "$INSTDIR\4star.mdb"
    Delete "$INSTDIR\4star.mdb-journal"
    Delete "$INSTDIR\4Star.ini"
    Delete "$INSTDIR\3Star.ini"
  keep:
  RMDir "$INSTDIR"
  Delete "$SMPROGRAMS\Marlevo\Marlevo 3、4星彩.lnk"
  Delete "$SMPROGRAMS\Marlevo\使用手冊.lnk"
  RMDir "$SMPROGRAMS\Marlevo"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  DeleteRegKey HKCU "Software\Marlevo"
SectionEnd
