# A machined part, drawn in inches: 5 x 2.5 x 1.375. Its area is known in 15 digits from exact arithmetic on the same file.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

run(0 ${DATA}/featuretype.off --file-units inches --section z=0.35 --section y=0.8 --section x=9 --json)
expect(NOT err)
expect_fact(inches units)
expect_fact_between(53.8273861181 53.8273861183 mesh area)
expect_fact(OFF mesh watertight)
expect_fact(576 mesh open_edges)
expect_fact_between(4.999999 5.000001 box size 0)
expect_fact_between(2.499999 2.500001 box size 1)
expect_fact_between(1.374999 1.375001 box size 2)
# It stands on its bottom with the longest edge of that along x or y.
expect_fact(ON box_on_largest_plane has_plane)
expect_fact_between(1.374999 1.375001 box_on_largest_plane size 2)
expect_fact(1 box_on_largest_plane z_axis 2)

# Two blocks with four holes each: 0.266 inches wide, 2.25 inches apart across the part.
expect_count(10 sections 0 outlines)
foreach(block RANGE 1)
    expect_fact(rectangle sections 0 outlines ${block} shape)
    expect_null(sections 0 outlines ${block} inside)
endforeach()
expect_fact_between(2.499999 2.500001 sections 0 outlines 0 length_2)
expect_fact_between(2.499999 2.500001 sections 0 outlines 1 length_1)
set(holes_of_block_0 0)
set(holes_of_block_1 0)
foreach(hole RANGE 2 9)
    expect_fact(circle sections 0 outlines ${hole} shape)
    expect_fact(1 sections 0 outlines ${hole} depth)
    expect_fact_between(0.26597 0.26603 sections 0 outlines ${hole} diameter)
    fact(block sections 0 outlines ${hole} inside)
    math(EXPR holes_of_block_${block} "${holes_of_block_${block}} + 1")
    fact(y sections 0 outlines ${hole} center 1)
    string(REPLACE "-" "" y "${y}")
    expect_between(0.99999 ${y} 1.00001)
endforeach()
expect(holes_of_block_0 EQUAL 4)
expect(holes_of_block_1 EQUAL 4)

# Across y: a profile with slots and a chamfer, and a bore.
expect_fact(xz sections 1 local_axes)
expect_fact("free form" sections 1 outlines 0 shape)
expect_fact(circle sections 1 outlines 1 shape)
expect_fact(0 sections 1 outlines 1 inside)
expect_fact_between(0.389 0.39 sections 1 outlines 1 diameter)

# Beside the part there is nothing to cut.
expect_count(0 sections 2 outlines)
expect_fact(0 sections 2 material_area)

expect_fact_between(1.374999 1.375001 heights highest)
fact(largest deviations largest)
string(REPLACE "-" "" largest "${largest}")
expect_between(0.0005 ${largest} 0.000576)

# The same in millimetres: every length 25.4 times as large, every area 645.16 times.
run(0 ${DATA}/featuretype.off --file-units in --units mm --section z=0.35 --json)
expect_fact(millimeters units)
expect_fact(inches file_units)
expect_fact_between(34727.2764 34727.2765 mesh area)
expect_fact_between(126.99999 127.00001 box size 0)
expect_fact_between(8.88999 8.89001 sections 0 position)
expect_fact_between(6.7556 6.7572 sections 0 outlines 9 diameter)
expect_fact_between(34.92499 34.92501 heights highest)

# A part as large as a grain of dust is measured as well.
run(0 ${DATA}/featuretype.off --file-units microns --section z=0.35 --json)
expect_count(10 sections 0 outlines)
expect_fact_between(53.82738 53.82739 mesh area)
expect_fact(1110 heights hits)
expect_fact_between(1.374999 1.375001 heights highest)
expect_fact_between(0.000575 0.000576 deviations largest_applied)
expect_fact_between(0.00038 0.00039 deviations rms)

# Without --units the report is in the unit of the file, which is millimetres unless it is told.
run(0 ${DATA}/featuretype.off --json)
expect_fact(millimeters units)
expect_fact_between(4.999999 5.000001 box size 0)
expect_count(3 sections)
foreach(section RANGE 2)
    expect_fact(z sections ${section} axis)
endforeach()
expect_fact_between(0.687499 0.687501 sections 1 position)

# The report for people puts a unit behind every length.
run(0 ${DATA}/featuretype.off --file-units inches --section z=0.35)
expect(out MATCHES "along the axes +5\\.00000 in x 2\\.50000 in x 1\\.37500 in\n")
expect(out MATCHES "surface area +53\\.82739 in\\^2\n")
expect(out MATCHES "Section 1, z = 0\\.35000 in: 10 outlines, material [0-9.]+ in\\^2. positions in x and y\n")
expect(out MATCHES "circle +diameter 0\\.2660[0-9] in at \\([-0-9., ]+\\) in, length 0\\.834[0-9]+ in, RMS [0-9.e-]+ in, inside 1\\.1\n")
expect(out MATCHES "loaded again, the same bit for bit\n$")
