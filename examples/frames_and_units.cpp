// Measures a hole in the frame of the plate that it is drilled into, and reports it in inches.

#include <cadgeom/core/point3d.h>
#include <cadgeom/core/units.h>
#include <cadgeom/transform/transform.h>

#include <cmath>
#include <cstdio>

int main()
{
    using Point = CadPoint3d<double>;
    using Vector = CadVector3d<double>;

    // The plate leans by 45 degrees: its normal is (1, 0, 1), and the world's y axis runs along its edge. The frame's
    // origin is a corner of the plate, in millimetres.
    const Point corner(100, 50, 20);
    const CCadTransform plate(Vector(1, 0, 1), Vector(0, 1, 0), corner);

    const Point hole(114.142135623730951, 75.4, 5.857864376269049);
    Point inPlate;
    plate.aaforw(hole, inPlate);
    std::printf("hole in the frame of the plate: (%.3f, %.3f, %.3f) mm\n", inPlate.x(), inPlate.y(), inPlate.z());

    Point inInches = inPlate;
    inInches.convertUnits(CADUNITS_MILLIMETERS, CADUNITS_INCHES);
    std::printf("                                (%.4f, %.4f, %.4f) in\n", inInches.x(), inInches.y(), inInches.z());

    // Directions turn with the frame but never move: the drill comes along the plate's negative normal.
    Vector drill;
    plate.aaback(Vector(0, 0, -1), drill);
    std::printf("drill direction in the world:   (%.4f, %.4f, %.4f)\n", drill.x(), drill.y(), drill.z());

    // The machine turns the plate by 90 degrees about the world's z axis. A product applies its right side first.
    CCadTransform turn = CCadTransform::GetRotateAboutVector(1.5707963267948966, Vector::zAxis(), Point::zero());
    const CCadTransform turned = turn * plate;
    Point back;
    turned.aaback(inPlate, back);
    std::printf("hole after the turn:            (%.3f, %.3f, %.3f) mm\n", back.x(), back.y(), back.z());

    const bool isRight = std::fabs(inInches.x() - 1) < 1e-9 && std::fabs(inPlate.z()) < 1e-9 &&
                         back == Point(-hole.y(), hole.x(), hole.z());
    return isRight ? 0 : 1;
}
