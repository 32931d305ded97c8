#pragma once

/// Which lens axis a control moves: the values of an assignment variable.
enum Assignment : int {
    AssignedNone = 0,
    AssignedFocus = 1,
    AssignedIris = 2,
    AssignedZoom = 3,
    AssignedIrisSecond = 7,
    AssignedZoomSecond = 8,
};

/// The assignment of each control, as it stands in memory: any number.
struct Assignments {
    int knob = AssignedNone;
    int slider = AssignedNone;
    int forcePad = AssignedNone;

    /// The axis of a unit with one row: that of the first control that has any assignment.
    int single() const;
};

/// The x of the display column in which each lens axis stands.
struct AxisColumns {
    static constexpr int left = 0;
    static constexpr int middle = 80;
    static constexpr int right = 160;
    static constexpr int notPlaced = -80;

    int focus = notPlaced;
    int iris = notPlaced;
    int zoom = notPlaced;

    bool operator==(const AxisColumns&) const = default;
};

enum class Rows : bool { PerAxis = false, Single = true };
enum class Hand : bool { Right = false, Left = true };

/// The axis of the knob stands at the right. With a row an axis, iris or zoom on the slider, else on the force pad,
/// stands at the left and whatever is left over in the middle, where two may meet. With a single row the only other
/// axis is one that stands in for a knob without any. The left hand mirrors the columns.
AxisColumns axisColumns(const Assignments& assignments, Rows rows, Hand hand);
