# Every kind of broken file gets one line that names file, line and what was expected, exit code 2, and leaves nothing.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

function(expect_one_line regex)
    expect(NOT out)
    if(NOT err MATCHES "^part_report: ${regex}\n$")
        message(SEND_ERROR "expected part_report: ${regex}\nfound ${err}")
    endif()
endfunction()

# reject(<line> <regex> <text>): the program refuses a file with this text.
function(reject line regex text)
    file(WRITE ${SCRATCH}/part.off "${text}")
    run(2 part.off)
    expect_one_line("part\\.off:${line}: expected ${regex}")
    expect_files(part.off)
endfunction()

run(2 missing.off)
expect_one_line("missing\\.off:1: expected a mesh in OFF format, but the file cannot be read: [^\n]+")
run(2 .)
expect_one_line("\\.:1: expected a mesh in OFF format, but the file cannot be read: [^\n]+")
expect_files()

# The whole real part, cut off in the middle of its vertices, in the middle of a line, and in the middle of its facets.
file(STRINGS ${DATA}/featuretype.off lines)
list(SUBLIST lines 0 1000 head)
string(REPLACE ";" "\n" head "${head}")
reject(1001 "the 3 coordinates of vertex 999 of 2010, found the end of the file" "${head}\n")
reject(1001 "y of vertex 999 of 2010, a number between -1e9 and 1e9, found the end of the line" "${head}\n0.25")
list(SUBLIST lines 0 3000 head)
string(REPLACE ";" "\n" head "${head}")
reject(3001 "the 3 corners of facet 989 of 3476, found the end of the file" "${head}\n")
reject(3001 "a vertex index below 2010 of facet 989 of 3476, found the end of the line" "${head}\n3 17")

set(points "0 0 0\n1 0 0\n0 1 0\n0 0 1\n")
set(facets "3 0 1 2\n3 0 1 3\n")
reject(1 "the word OFF, found the end of the file" "")
reject(1 "the word OFF, found \"solid\"" "solid cube\n")
reject(1 "the word OFF, found \"OFFSET\"" "OFFSET\n4 2 0\n${points}${facets}")
reject(3 "the numbers of vertices and facets, found the end of the file" "OFF\n# nothing more\n")
reject(2 "the number of facets, found the end of the line" "OFF\n4\n${points}${facets}")
reject(2 "the number of vertices, found \"-4\"" "OFF\n-4 2 0\n${points}${facets}")
reject(2 "the number of vertices, found \"four\"" "OFF\nfour 2 0\n${points}${facets}")
# 2^32 + 4 would be 4 to a reader that wraps.
reject(2 "the number of vertices, found \"4294967300\"" "OFF\n4294967300 2 0\n${points}${facets}")
reject(2 "a mesh with at least one facet" "OFF\n4 0 0\n${points}")
# Wrong counts: too many and too few vertices, too many and too few facets, more than any file holds.
reject(7 "the end of the line, found \"2\"" "OFF\n5 2 0\n${points}${facets}")
reject(6 "3, the number of corners of facet 1 of 2: only triangles are understood" "OFF\n3 2 0\n${points}${facets}")
reject(9 "the 3 corners of facet 3 of 3, found the end of the file" "OFF\n4 3 0\n${points}${facets}")
reject(8 "the end of the file after 1 facets, found \"3\"" "OFF\n4 1 0\n${points}${facets}")
reject(9 "the 3 coordinates of vertex 7 of 999999999, found the end of the file" "OFF\n999999999 2 0\n${points}0 0 0\n1 1 1\n")
# Indices out of range.
reject(7 "a vertex index below 4 of facet 1 of 1, found \"4\"" "OFF\n4 1 0\n${points}3 0 1 4\n")
reject(7 "a vertex index below 4 of facet 1 of 1, found \"-1\"" "OFF\n4 1 0\n${points}3 0 -1 2\n")
reject(7 "a vertex index below 4 of facet 1 of 1, found \"4294967296\"" "OFF\n4 1 0\n${points}3 0 1 4294967296\n")
reject(7 "a vertex index below 4 of facet 1 of 1, found \"1\\.5\"" "OFF\n4 1 0\n${points}3 0 1.5 2\n")
# Letters where numbers should be, and numbers that are none.
reject(4 "x of vertex 2 of 4, a number between -1e9 and 1e9, found \"one\"" "OFF\n4 1 0\n0 0 0\none 0 0\n")
reject(3 "z of vertex 1 of 4, a number between -1e9 and 1e9, found \"0mm\"" "OFF\n4 1 0\n0 0 0mm\n")
reject(3 "y of vertex 1 of 4, a number between -1e9 and 1e9, found \"nan\"" "OFF\n4 1 0\n0 nan 0\n")
reject(3 "x of vertex 1 of 4, a number between -1e9 and 1e9, found \"1e999\"" "OFF\n4 1 0\n1e999 0 0\n")
reject(7 "a vertex index below 4 of facet 1 of 1, found \"a\"" "OFF\n4 1 0\n${points}3 a b c\n")
reject(7 "3, the number of corners of facet 1 of 1: only triangles are understood" "OFF\n4 1 0\n${points}2 0 1\n")
reject(7 "3, the number of corners of facet 1 of 1, found \"4\"" "OFF\n4 1 0\n${points}4 0 1 2 3\n")
reject(7 "the end of the line or a colour, found \"red\"" "OFF\n4 1 0\n${points}3 0 1 2 red\n")
reject(2 "a part with an extent: all corners are one point" "OFF\n1 1 0\n5 5 5\n3 0 0 0\n")
# A message stays on its line whatever the file holds.
string(ASCII 1 27 7 control)
reject(1 "the word OFF, found \"\\?\\?\\?[a]+\"" "${control}aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\n")

# What the format allows is read: comments, blank lines, counts behind the word, no number of edges, Windows' line ends,
# colours, no line end at the end.
file(WRITE ${SCRATCH}/part.off "# a corner\n\nOFF 4 2 # counts\r\n${points}\n\t${facets}3 0 2 3 255 0 0 # red")
run(2 part.off)
expect_one_line("part\\.off:11: expected the end of the file after 2 facets, found \"3\"")
file(WRITE ${SCRATCH}/part.off "# a corner\n\nOFF 4 3 # counts\r\n${points}\n\t${facets}3 0 2 3 255 0 0 # red")
run(0 part.off --json)
expect_fact(3 mesh facets)
expect_fact(1.5 mesh area)
