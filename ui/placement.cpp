// ui/placement.cpp — the Check Spelling dialog's placement rule.
//
// The four side cases limit the position only from above (largest left and
// top that keep the dialog inside the usable area); a control near the top
// or left edge may therefore put the dialog partly off that edge, as the
// rule says. The "above" case compares with the screen's origin, not with
// the usable area's top. In the corner case the dialog sits flush in a
// corner of the usable area; of the corners tried in the order bottom right,
// bottom left, top right, top left, the first with the least overlap wins.
#include "ui/placement.h"

#include <algorithm>

namespace {

int64_t overlapArea(const UiRect &a, const UiRect &b) {
    int64_t w = int64_t(std::min(a.right, b.right)) - std::max(a.left, b.left);
    int64_t h = int64_t(std::min(a.bottom, b.bottom)) - std::max(a.top, b.top);
    return (w > 0 && h > 0) ? w * h : 0;
}

}  // namespace

Placement placeCheckDialog(const PlacementInput &in) {
    if (in.locked) return {{in.rememberedX, in.rememberedY}, PLACE_LOCKED};
    if (!in.hasControl) return {in.current, PLACE_UNCHANGED};

    const UiRect &c = in.control;
    const UiRect &u = in.usable;
    int64_t w = in.width, h = in.height, gx = in.gapX, gy = in.gapY;
    int64_t maxLeft = u.right - (w + gx);
    int64_t maxTop = u.bottom - (gy + h);
    auto limited = [&](int64_t left, int64_t top, PlacementCase how) {
        return Placement{{int32_t(std::min(left, maxLeft)), int32_t(std::min(top, maxTop))}, how};
    };

    if (c.bottom + gy + h <= u.bottom) return limited(c.left, c.bottom + gy, PLACE_BELOW);
    if (c.top - gy >= h) return limited(c.left, c.top - (gy + h), PLACE_ABOVE);
    if (c.right + w + gx < u.right) return limited(c.right + gx, c.top, PLACE_RIGHT);
    if (w + gx < c.left) return limited(c.left - (w + gx), c.top, PLACE_LEFT);

    const UiPoint corners[4] = {
        {int32_t(u.right - w), int32_t(u.bottom - h)},  // bottom right
        {u.left, int32_t(u.bottom - h)},                // bottom left
        {int32_t(u.right - w), u.top},                  // top right
        {u.left, u.top},                                // top left
    };
    int best = 0;
    int64_t bestArea = -1;
    for (int i = 0; i < 4; ++i) {
        UiRect r{corners[i].x, corners[i].y, int32_t(corners[i].x + w), int32_t(corners[i].y + h)};
        int64_t area = overlapArea(r, c);
        if (bestArea < 0 || area < bestArea) {
            best = i;
            bestArea = area;
        }
    }
    return {corners[best], PLACE_CORNER};
}
