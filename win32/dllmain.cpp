// win32/dllmain.cpp — the load and unload notification of the Windows DLLs.
//
// (1) Loading stores the module handle in the platform layer (later asked for
//     the DLL's own file name, beside which the settings' ORTH.INI is looked
//     for) and needs nothing else: the session table starts empty. The
//     notification always succeeds.
// (2) Unloading closes no engine session: sessions that Dict handles or the
//     host still hold stay as they are, and at process exit the system takes
//     their memory and files. The client context is the one thing process
//     detach closes, in ORTH32.DLL (built with ORTH_DLL_CLIENT_LAYER), which
//     exports the client layer: closeClient writes the session's options back
//     to the settings store. There is no process-id check and no log line
//     here; the static destructor in host/client.cpp, which closes the context
//     where no unload notification does, stands aside in a DLL.
//     TMSPL32.DLL refers to nothing of the client layer, so none of it is
//     linked into that DLL.
// (3) ORTH32.DLL installs its Win32 front end at load (ui/win32/winui.h):
//     from then on the client layer's dialogs, message boxes and edit-control
//     calls are real windows, made from this module's own resources. That
//     only records function pointers; no window is made while the loader
//     holds its lock.
#include <windows.h>

#include "platform/platform.h"
#ifdef ORTH_DLL_CLIENT_LAYER
#include "host/client.h"
#include "ui/win32/winui.h"
#endif

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        platSetModuleHandle(module);
        DisableThreadLibraryCalls(module);  // no per-thread state to set up
#ifdef ORTH_DLL_CLIENT_LAYER
        winUiInstall();
#endif
    } else if (reason == DLL_PROCESS_DETACH) {
#ifdef ORTH_DLL_CLIENT_LAYER
        closeClient();
#endif
    }
    return TRUE;
}
