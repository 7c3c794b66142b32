// ui/clientui.h — the client layer's front end built over a UiFrontEnd: the
// one place where the client layer's calls (host/frontend.h) meet the dialog
// controllers (controllers.h) and the surfaces.
//
// Whoever owns the process's user interface (the orth command for the
// terminal, a test for the in-memory front end, the Windows build for real
// dialogs) makes its UiFrontEnd current with uiClientFrontEnd, adds its
// edit-control calls to the record it gets back, and installs that record
// with setClientFrontEnd. From then on:
//   - runDialog starts the controller of the dialog asked for, top-level;
//   - a message box, the wait cursor or help whose owner is a running dialog
//     goes to that dialog's surface, any other to the UiFrontEnd;
//   - texts still come from the string table (loadClientString).
//
// Owners: a running dialog stands for itself as an OrthWindow
// (uiOwnerWindow), so the controllers show their messages with the client
// layer's showMessage and the dialog as owner, as the dialogs always do.
// Dialogs run through uiRunDialog, which records which surfaces are running.
#pragma once

#include <cstdint>

#include "host/frontend.h"
#include "ui/surface.h"

// Makes fe the front end in use (until the next call; null: none) and
// returns the client front end over it, its edit-control members null.
ClientFrontEnd uiClientFrontEnd(UiFrontEnd *fe);
UiFrontEnd *uiCurrentFrontEnd();

// Runs a dialog modally: owned by a running dialog (owner), or top-level
// through the front end in use when owner is null. Returns its end value, or
// ORTH_CANCEL_ERR with a log line when there is no front end, or too many
// dialogs are open.
int32_t uiRunDialog(UiSurface *owner, const DialogController *controller);

// The OrthWindow that stands for a running dialog, and back (null for a
// window that is no running dialog, such as a host's own window).
OrthWindow uiOwnerWindow(UiSurface *surface);
UiSurface *uiDialogOfWindow(OrthWindow window);

// The host's window that owns the top-level dialog or message box the front
// end is asked to show (the owner the host passed to the client-level call),
// or null. A front end with real windows makes it the owner; the UiFrontEnd
// calls themselves carry no owner.
OrthWindow uiHostWindow();
