#pragma once
/// @file
/// Answers and axis names of the boxes.

/// Where a point lies with respect to a box.
enum EBoundingBoxPointLocation : int {
    ePointOutsideBox = 0,
    ePointInsideBox = 1,
    ePointOnBoxBoundary = 2
};

/// An axis of the plane; its value is the index of the coordinate.
enum EUvAxis : int {
    eUAxis = 0,
    eVAxis = 1
};
