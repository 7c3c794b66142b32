// win32/dllmain.cpp — the load and unload notification of the Windows DLLs.
//
// (1) Loading stores the module handle in the platform layer (later asked for
//     the DLL's own file name) and needs nothing else: the session table
//     starts empty. The notification always succeeds.
// (2) Unloading closes no engine session: sessions that Dict handles or the
//     host still hold stay as they are, and at process exit the system takes
//     their memory and files. The client context is the one thing process
//     detach closes, in a DLL that exports the client layer; neither of these
//     exports it yet, so nothing else happens here.
#include <windows.h>

#include "platform/platform.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        platSetModuleHandle(module);
        DisableThreadLibraryCalls(module);  // no per-thread state to set up
    }
    return TRUE;
}
