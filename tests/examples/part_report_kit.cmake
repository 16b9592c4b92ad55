# What the scripts beside this one share. Given: PART_REPORT (the program), DATA (its parts), SCRATCH (a folder of the
# test's own, emptied here, in which the program runs).

cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${SCRATCH})
file(MAKE_DIRECTORY ${SCRATCH})

# run(<exit code> <arguments>...): runs the program and leaves its output in `out` and `err`.
function(run exit_code)
    execute_process(COMMAND ${PART_REPORT} ${ARGN} WORKING_DIRECTORY ${SCRATCH} RESULT_VARIABLE result
                    OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT result STREQUAL exit_code)
        message(SEND_ERROR "part_report ${ARGN}\nexit code ${result} instead of ${exit_code}\n${out}${err}")
    endif()
    set(out "${out}" PARENT_SCOPE)
    set(err "${err}" PARENT_SCOPE)
endfunction()

# expect(<condition>...): reports a condition that does not hold. Not for comparisons with an empty text.
function(expect)
    if(NOT (${ARGN}))
        message(SEND_ERROR "does not hold: ${ARGN}\n${out}${err}")
    endif()
endfunction()

# expect_between(<low> <value> <high>)
function(expect_between low value high)
    if(NOT (low LESS_EQUAL value AND value LESS_EQUAL high))
        message(SEND_ERROR "${value} is not between ${low} and ${high}")
    endif()
endfunction()

# fact(<variable> <member or index>...): a value of the JSON text in `out`.
function(fact variable)
    string(JSON value ERROR_VARIABLE json_error GET "${out}" ${ARGN})
    if(json_error)
        message(FATAL_ERROR "no ${ARGN} in the report: ${json_error}\n${out}${err}")
    endif()
    set(${variable} "${value}" PARENT_SCOPE)
endfunction()

# expect_fact_between(<low> <high> <member or index>...)
function(expect_fact_between low high)
    fact(value ${ARGN})
    if(NOT (low LESS_EQUAL value AND value LESS_EQUAL high))
        message(SEND_ERROR "${ARGN} is ${value}, not between ${low} and ${high}")
    endif()
endfunction()

# expect_fact(<value> <member or index>...)
function(expect_fact expected)
    fact(value ${ARGN})
    if(NOT value STREQUAL expected)
        message(SEND_ERROR "${ARGN} is ${value} instead of ${expected}")
    endif()
endfunction()

# expect_null(<member or index>...)
function(expect_null)
    string(JSON type TYPE "${out}" ${ARGN})
    if(NOT type STREQUAL "NULL")
        message(SEND_ERROR "${ARGN} is a ${type} instead of null")
    endif()
endfunction()

# expect_count(<number> <member or index>...): how many entries a list has.
function(expect_count expected)
    string(JSON count LENGTH "${out}" ${ARGN})
    if(NOT count EQUAL expected)
        message(SEND_ERROR "${ARGN} has ${count} entries instead of ${expected}")
    endif()
endfunction()

# expect_files(<name>...): the folder holds these files and nothing else.
function(expect_files)
    file(GLOB found RELATIVE ${SCRATCH} ${SCRATCH}/* ${SCRATCH}/.*)
    list(FILTER found EXCLUDE REGEX "^\\.+$")
    list(SORT found)
    list(SORT ARGN)
    if(NOT found STREQUAL "${ARGN}")
        message(SEND_ERROR "the folder holds ${found} instead of ${ARGN}")
    endif()
endfunction()
