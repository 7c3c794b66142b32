// ui/placement.h — where the Check Spelling dialog opens: a pure function of
// the dialog's size, the screen's usable area, the checked control's
// rectangle, the sizing-frame gaps, the remembered position and the lock.
// The Win32 front end gathers the inputs (work area or desktop rectangle,
// SM_CXFRAME and SM_CYFRAME) and moves the dialog to the result.
#pragma once

#include <cstdint>

// A screen rectangle: right and bottom are exclusive.
struct UiRect {
    int32_t left, top, right, bottom;
};

struct UiPoint {
    int32_t x, y;
};

struct PlacementInput {
    int32_t width, height;      // the dialog's own size
    UiRect usable;              // the screen's usable area
    bool hasControl;            // checking a host edit control
    UiRect control;             // that control's screen rectangle
    int32_t gapX, gapY;         // horizontal and vertical sizing-frame widths
    bool locked;                // position lock
    int16_t rememberedX, rememberedY;  // the remembered position
    UiPoint current;            // where the dialog is before placement
};

// Which rule placed the dialog.
enum PlacementCase : uint8_t {
    PLACE_LOCKED,     // moved to the remembered position
    PLACE_UNCHANGED,  // no control: left where it is
    PLACE_BELOW,
    PLACE_ABOVE,
    PLACE_RIGHT,
    PLACE_LEFT,
    PLACE_CORNER,     // the corner of the usable area covering the control least
};

struct Placement {
    UiPoint topLeft;
    PlacementCase how;
};

Placement placeCheckDialog(const PlacementInput &in);
