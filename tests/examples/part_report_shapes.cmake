# Made-up prisms, whose sections are known.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

# prism(<x y of the corners>...): walls between z = 0 and z = 10 around a closed outline, added to the part.
set(points "")
set(facets "")
set(point_count 0)
set(facet_count 0)
macro(prism)
    set(outline ${ARGN})
    list(LENGTH outline corner_count)
    foreach(corner IN LISTS outline)
        string(REPLACE "/" " " corner "${corner}")
        string(APPEND points "${corner} 0\n${corner} 10\n")
    endforeach()
    math(EXPR last "${corner_count} - 1")
    foreach(i RANGE ${last})
        math(EXPR a "${point_count} + 2 * ${i}")
        math(EXPR b "${point_count} + 2 * ((${i} + 1) % ${corner_count})")
        math(EXPR c "${a} + 1")
        math(EXPR d "${b} + 1")
        string(APPEND facets "3 ${a} ${b} ${d}\n3 ${a} ${d} ${c}\n")
        math(EXPR facet_count "${facet_count} + 2")
    endforeach()
    math(EXPR point_count "${point_count} + 2 * ${corner_count}")
endmacro()

# The twelve points of a regular polygon with corners at (a cos k 30 degrees, b sin k 30 degrees), in thousandths.
set(cosines 1000 866 500 0 -500 -866 -1000 -866 -500 0 500 866)
# round_outline(<variable> <center x> <center y> <a> <b>): lengths are whole numbers; exact cosines would not change a shape.
function(round_outline variable x y a b)
    set(corners "")
    foreach(i RANGE 11)
        math(EXPR j "(${i} + 9) % 12")
        list(GET cosines ${i} cosine)
        list(GET cosines ${j} sine)
        math(EXPR px "${x} * 1000 + ${a} * ${cosine}")
        math(EXPR py "${y} * 1000 + ${b} * ${sine}")
        list(APPEND corners "${px}e-3/${py}e-3")
    endforeach()
    set(${variable} ${corners} PARENT_SCOPE)
endfunction()

prism(0/0 100/0 100/60 0/60)           # a plate ...
round_outline(circle 20 30 10 10)
prism(${circle})                       # ... with a round hole,
round_outline(ellipse 60 30 20 8)
prism(${ellipse})                      # an elliptic one,
prism(18/28 22/28 22/32 18/32)         # a square pin in the round hole,
prism(90/10 94/13 91/17 87/14)         # a square hole that is turned by 36.87 degrees,
prism(85/40 95/40 95/55 90/45)         # and a hole of no simple shape.
file(WRITE ${SCRATCH}/plate.off "OFF\n${point_count} ${facet_count} 0\n${points}${facets}")

run(0 plate.off --section z=3 --section z=10 --section z=0 --section x=60 --json)
expect_count(6 sections 0 outlines)
expect_fact(rectangle sections 0 outlines 0 shape)
expect_fact_between(99.9999 100.0001 sections 0 outlines 0 length_1)
expect_fact_between(59.9999 60.0001 sections 0 outlines 0 length_2)
expect_fact(6000 sections 0 outlines 0 area)

expect_fact(ellipse sections 0 outlines 1 shape)
expect_fact_between(39.99 40.01 sections 0 outlines 1 length_1)
expect_fact_between(15.99 16.01 sections 0 outlines 1 length_2)
expect_fact_between(59.999 60.001 sections 0 outlines 1 center 0)
expect_fact_between(0.9999 1.0001 sections 0 outlines 1 axis_1 0)
expect_fact(0 sections 0 outlines 1 inside)

expect_fact(circle sections 0 outlines 2 shape)
expect_fact_between(19.99 20.01 sections 0 outlines 2 diameter)
expect_fact(1 sections 0 outlines 2 depth)

expect_fact("free form" sections 0 outlines 3 shape)
# By the cross products of its corners.
expect_fact(62.5 sections 0 outlines 3 area)

expect_fact(rectangle sections 0 outlines 4 shape)
expect_fact(25 sections 0 outlines 4 area)
expect_fact_between(4.9999 5.0001 sections 0 outlines 4 length_1)
expect_fact_between(4.9999 5.0001 sections 0 outlines 4 length_2)

# The pin stands in the hole: inside two outlines, so that it is material again.
expect_fact(rectangle sections 0 outlines 5 shape)
expect_fact(2 sections 0 outlines 5 inside)
expect_fact(2 sections 0 outlines 5 depth)
# 6000, less 12-gons of 12/2 * r1 * r2 * sin 30 degrees (480 and 300), less 62.5 and 25, and 16 for the pin.
expect_fact_between(5148 5149 sections 0 material_area)

# What touches the plane counts as above it: the upper rims are cut, once, and the lower ones are not.
expect_count(6 sections 1 outlines)
expect_count(0 sections 2 outlines)

# Walls without a floor and a lid, cut along: open outlines, upright lines of length 10.
expect_count(4 sections 3 outlines)
foreach(outline RANGE 3)
    expect_fact(OFF sections 3 outlines ${outline} closed)
    expect_fact_between(9.99999 10.00001 sections 3 outlines ${outline} length)
endforeach()
