# Results appear whole or not at all.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

# The picture is complete and needs nothing else: XML with no reference outside of itself.
run(0 ${DATA}/featuretype.off --file-units inches --svg picture.svg --archive kept.bin)
expect_files(kept.bin picture.svg)
file(READ ${SCRATCH}/picture.svg picture)
expect(picture MATCHES "^<svg xmlns=\"http://www.w3.org/2000/svg\" .*</svg>\n$")
expect(NOT picture MATCHES "href|<script|<image|nan|inf")
expect(picture MATCHES ">1\\.3 +[^0-9]+ 0\\.2660?[0-9]* in<")
expect(picture MATCHES "fitted circle")
string(REGEX MATCHALL "<ellipse " circles "${picture}")
list(LENGTH circles circle_count)
expect(circle_count EQUAL 16)
find_program(xmllint xmllint)
if(xmllint)
    execute_process(COMMAND ${xmllint} --noout ${SCRATCH}/picture.svg COMMAND_ERROR_IS_FATAL ANY)
endif()

# The same part gives the same bytes.
file(RENAME ${SCRATCH}/picture.svg ${SCRATCH}/first.svg)
file(RENAME ${SCRATCH}/kept.bin ${SCRATCH}/first.bin)
run(0 ${DATA}/featuretype.off --file-units inches --svg picture.svg --archive kept.bin)
file(SHA256 ${SCRATCH}/first.svg first)
file(SHA256 ${SCRATCH}/picture.svg second)
expect(first STREQUAL second)
file(SHA256 ${SCRATCH}/first.bin first)
file(SHA256 ${SCRATCH}/kept.bin second)
expect(first STREQUAL second)

# Where a result cannot be written, the other one is not either, and older results stay.
file(REMOVE ${SCRATCH}/first.svg ${SCRATCH}/first.bin ${SCRATCH}/picture.svg)
file(WRITE ${SCRATCH}/kept.bin "older")
run(1 ${DATA}/ballA.off --svg no/such/folder/picture.svg --archive kept.bin)
expect(NOT out)
expect(err MATCHES "^part_report: no/such/folder/picture\\.svg: [^\n]+\n$")
expect_files(kept.bin)
file(READ ${SCRATCH}/kept.bin kept)
expect(kept STREQUAL "older")
run(1 ${DATA}/ballA.off --archive no/such/folder/kept.bin --svg picture.svg)
expect(err MATCHES "^part_report: no/such/folder/kept\\.bin: [^\n]+\n$")
expect_files(kept.bin)

# A broken part leaves older results alone.
file(WRITE ${SCRATCH}/broken.off "OFF\n1 1 0\n")
run(2 broken.off --archive kept.bin --svg picture.svg)
expect_files(broken.off kept.bin)
file(READ ${SCRATCH}/kept.bin kept)
expect(kept STREQUAL "older")
