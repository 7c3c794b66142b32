// ui/win32/winui.h — the Windows front end: the four dialogs as real Win32
// dialogs, made by the dialog manager from the templates in the library's
// own resources (the script orth_rcgen writes from templates.h) and driven
// by the controllers of ui/ through a surface over the dialog's windows.
// Message boxes, the common file dialogs, the wait cursor and help are the
// system's; texts come from the library's string table; the host's edit
// control is reached through its EM_ messages.
//
// ORTH32.DLL installs it when it loads, so a Win32 host gets real dialogs
// from ORTH_CheckBlockDlg, ORTH_CheckCtrlDlg, ORTH_EditLexDlg and
// ORTH_OptionsDlg without doing anything itself. Resources come from the
// module stored at load (platModuleHandle); a program that links the engine
// statically and calls winUiInstall gets them from its own executable.
#pragma once

// Makes the Win32 front end the client layer's front end (setClientFrontEnd).
void winUiInstall();
