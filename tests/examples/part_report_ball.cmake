# A closed ball of radius 6.93 or so around (-4, 0, 0). Its area and box are known in 15 digits from exact arithmetic on the
# same file.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

run(0 ${DATA}/ballA.off --json)
expect(NOT err)
expect_files(ballA_report.svg ballA_report.sections)
expect_fact(millimeters units)
expect_fact(1900 mesh vertices)
expect_fact(3796 mesh facets)
expect_fact(5694 mesh edges)
expect_fact(ON mesh watertight)
expect_fact_between(605.9094132887 605.9094132889 mesh area)
expect_fact_between(-10.91280000001 -10.91279999999 box min 0)
expect_fact_between(6.92650999999 6.92651000001 box max 2)

# Nothing on a ball is flat.
expect_count(0 planar_regions)
expect_fact(OFF box_on_largest_plane has_plane)

# Three cuts across z, each a circle; the middle one nearly a great circle. The vertices of the ball lie 6.894 to 6.987
# from its centre.
expect_count(3 sections)
foreach(section RANGE 2)
    expect_count(1 sections ${section} outlines)
    expect_fact(circle sections ${section} outlines 0 shape)
    expect_fact(ON sections ${section} outlines 0 closed)
    expect_null(sections ${section} outlines 0 inside)
    expect_fact_between(-4.01 -3.99 sections ${section} outlines 0 center 0)
    expect_fact_between(-0.01 0.01 sections ${section} outlines 0 center 1)
    expect_fact_between(0 0.03 sections ${section} outlines 0 rms_of_fits circle)
endforeach()
expect_fact_between(13.788 13.973 sections 1 outlines 0 diameter)
# Chords of the sphere cut at half its radius: 2 * sqrt(6.93^2 - 3.464^2) = 12.00; the polygon itself has a mean of 12.06.
expect_fact_between(12.00 12.11 sections 0 outlines 0 diameter)
expect_fact_between(12.00 12.11 sections 2 outlines 0 diameter)

# Probes of height see the upper half of the ball, pi / 4 of the grid.
expect_fact_between(1750 1870 heights hits)
expect_fact_between(13.7 13.8544 heights highest)

# The measured points lie where they were put, up to 1/10000 of the diagonal 23.974 away: no other surface is nearer.
expect_fact_between(0.0023974 0.0023975 deviations largest_applied)
fact(largest deviations largest)
string(REPLACE "-" "" largest "${largest}")
expect_between(0.0023974 ${largest} 0.0023975)
# Steps of -3/3 ... 3/3: the root of (9 + 4 + 1) * 2 / 7 / 9, times the largest.
expect_fact_between(0.00159 0.00161 deviations rms_applied)
expect_fact_between(0.00159 0.00161 deviations rms)
