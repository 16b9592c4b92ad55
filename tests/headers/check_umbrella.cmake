# cadgeom/cadgeom.h consists of one include for every public header, in alphabetical order, and of nothing else.

file(GLOB_RECURSE headers RELATIVE ${INCLUDE_DIR} ${INCLUDE_DIR}/*.h)
list(REMOVE_ITEM headers cadgeom/cadgeom.h)
list(SORT headers)

file(STRINGS ${INCLUDE_DIR}/cadgeom/cadgeom.h lines REGEX "^[^/]")
list(REMOVE_ITEM lines "#pragma once")
list(TRANSFORM lines REPLACE "^#include <(.*)>$" "\\1")

if(NOT lines STREQUAL headers)
    list(JOIN headers ">\n#include <" expected)
    message(FATAL_ERROR "cadgeom/cadgeom.h must hold exactly:\n#include <${expected}>")
endif()
