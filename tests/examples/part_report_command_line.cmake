# A command line that makes no sense gets one line, a hint, exit code 2, and leaves nothing.
include(${CMAKE_CURRENT_LIST_DIR}/part_report_kit.cmake)

function(reject regex)
    run(2 ${ARGN})
    expect(NOT out)
    if(NOT err MATCHES "^part_report: ${regex}\npart_report --help says how it is used\n$")
        message(SEND_ERROR "expected ${regex}\nfound ${err}")
    endif()
    expect_files()
endfunction()

set(part ${DATA}/ballA.off)
reject("which part\\?")
reject("there is no option --unit" ${part} --unit mm)
reject("the option --units needs a value" ${part} --units)
reject("\"furlongs\" is no unit of length; expected one of millimeters \\(mm\\), [^\n]+" ${part} --units furlongs)
reject("\"furlongs\" is no unit of length; [^\n]+" ${part} --file-units=furlongs)
reject("the option --json takes no value" ${part} --json=yes)
reject("one part at a time, but there are [^\n]+" ${part} ${part})
reject("a result would replace the part [^\n]+" ${part} --svg ${part})
reject("the picture and the archive would both be same" ${part} --svg same --archive ./same)
foreach(section IN ITEMS "" z z= =1 w=1 z=1x z=one z:1 z=1e999 zz=1)
    reject("\"${section}\" is no section; expected an axis and a number, as in z=0\\.35" ${part} "--section=${section}")
endforeach()

run(0 --help)
expect(NOT err)
expect(out MATCHES "^usage: part_report PART\\.off \\[options\\]\n")
foreach(option IN ITEMS --units --file-units --section --json --svg --archive --help)
    expect(out MATCHES "\n  ${option} ")
endforeach()
run(0 ${part} --help --nonsense)

# Every unit by name and by symbol. The ball is 13.8274 mm wide.
foreach(unit IN ITEMS "inches in 0.54438 0.54439" "millimeters mm 13.827 13.828" "mils mil 544.38 544.39"
                      "feet ft 0.045365 0.045366" "centimeters cm 1.3827 1.3828" "meters m 0.013827 0.013828"
                      "miles mi 8.5919e-6 8.5920e-6" "kilometers km 1.3827e-5 1.3828e-5" "microns um 13827 13828"
                      "microinches uin 544385 544387")
    separate_arguments(unit UNIX_COMMAND "${unit}")
    list(POP_FRONT unit name symbol low high)
    run(0 ${part} --units ${name} --section z=1 --json)
    expect_fact(${name} units)
    expect_fact_between(${low} ${high} box size 0)
    run(0 ${part} --units=${symbol} --section=z=1)
    expect(out MATCHES "along the axes +[0-9.]+ ${symbol} x ")
endforeach()
