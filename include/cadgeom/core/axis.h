#pragma once
/// @file
/// Names for component indices.

/// A coordinate axis; its value is the index of the component.
enum EAxis : int {
    eXAxis = 0,
    eYAxis = 1,
    eZAxis = 2
};
