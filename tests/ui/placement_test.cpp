// Where the Check Spelling dialog opens.
// Groups: Placement (the lock, no control, the four sides with their
// limits, the corner with the least overlap and its tie order).
#include <gtest/gtest.h>

#include "ui/placement.h"

namespace {

// A 1024x768 usable area, a 300x150 dialog, frame gaps of 4 and 3.
PlacementInput input(UiRect control) {
    PlacementInput in{};
    in.width = 300;
    in.height = 150;
    in.usable = {0, 0, 1024, 768};
    in.hasControl = true;
    in.control = control;
    in.gapX = 4;
    in.gapY = 3;
    in.current = {11, 22};
    return in;
}

TEST(Placement, EachCaseInItsOrder) {
    struct Row {
        const char *name;
        UiRect control;
        PlacementCase how;
        int32_t x, y;
    } rows[] = {
        {"below", {100, 100, 400, 200}, PLACE_BELOW, 100, 203},
        {"below, exactly fitting, top limited", {100, 100, 400, 615}, PLACE_BELOW, 100, 615},
        {"below, left limited to the largest left", {900, 100, 1000, 200}, PLACE_BELOW, 720, 203},
        {"above when below does not fit", {100, 600, 400, 700}, PLACE_ABOVE, 100, 447},
        {"above, exactly fitting", {100, 153, 400, 700}, PLACE_ABOVE, 100, 0},
        {"right when neither fits", {100, 100, 600, 700}, PLACE_RIGHT, 604, 100},
        {"left when right does not fit", {400, 100, 1000, 700}, PLACE_LEFT, 96, 100},
        {"corner: bottom left overlaps least", {200, 0, 1024, 700}, PLACE_CORNER, 0, 618},
        {"corner: top left overlaps least", {100, 100, 1024, 768}, PLACE_CORNER, 0, 0},
        {"corner: top right wins its tie with top left", {0, 100, 1024, 768}, PLACE_CORNER, 724, 0},
        {"corner: bottom right wins its tie", {0, 0, 1024, 700}, PLACE_CORNER, 724, 618},
        {"corner: a control filling the screen", {0, 0, 1024, 768}, PLACE_CORNER, 724, 618},
    };
    for (const Row &row : rows) {
        Placement p = placeCheckDialog(input(row.control));
        EXPECT_EQ(p.how, row.how) << row.name;
        EXPECT_EQ(p.topLeft.x, row.x) << row.name;
        EXPECT_EQ(p.topLeft.y, row.y) << row.name;
    }
}

TEST(Placement, LockAndNoControl) {
    PlacementInput in = input({100, 100, 400, 200});
    in.locked = true;
    in.rememberedX = -20;
    in.rememberedY = 5000;
    Placement p = placeCheckDialog(in);
    EXPECT_EQ(p.how, PLACE_LOCKED);
    EXPECT_EQ(p.topLeft.x, -20);
    EXPECT_EQ(p.topLeft.y, 5000);

    in.locked = false;
    in.hasControl = false;
    p = placeCheckDialog(in);
    EXPECT_EQ(p.how, PLACE_UNCHANGED);
    EXPECT_EQ(p.topLeft.x, 11);
    EXPECT_EQ(p.topLeft.y, 22);

    // The limits come from the usable area's right and bottom edges.
    struct Row {
        UiRect usable, control;
        PlacementCase how;
        int32_t x, y;
    } rows[] = {
        {{1024, 0, 2048, 768}, {1500, 300, 1600, 320}, PLACE_BELOW, 1500, 323},
        {{1024, 0, 2048, 768}, {1900, 300, 2000, 320}, PLACE_BELOW, 1744, 323},
        {{0, 0, 1024, 200}, {100, 100, 500, 150}, PLACE_RIGHT, 504, 47},
    };
    for (const Row &row : rows) {
        in = input(row.control);
        in.usable = row.usable;
        p = placeCheckDialog(in);
        EXPECT_EQ(p.how, row.how);
        EXPECT_EQ(p.topLeft.x, row.x);
        EXPECT_EQ(p.topLeft.y, row.y);
    }
}

}  // namespace
