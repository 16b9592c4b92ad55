# How cadgeom's own code is compiled and linked, and what it asks of the code that uses it.

include(CheckCXXCompilerFlag)

set(cadgeom_is_gnu_like $<CXX_COMPILER_ID:GNU,Clang,AppleClang>)

# A product must never be fused with the sum that follows it: results are the same bits whoever compiled the inline code.
# The definition tells the headers that they need no guard of their own.
function(cadgeom_forbid_contraction target scope)
    target_compile_options(
        ${target} ${scope} $<${cadgeom_is_gnu_like}:-ffp-contract=off> $<$<CXX_COMPILER_ID:MSVC>:/fp:precise>)
    target_compile_definitions(${target} ${scope} CADGEOM_FP_CONTRACT_OFF)
endfunction()

# Flags of the developer's switches, for every target of the tree.
function(cadgeom_set_developer_options target)
    target_compile_features(${target} PUBLIC cxx_std_17)
    set_target_properties(${target} PROPERTIES CXX_STANDARD_REQUIRED ON CXX_EXTENSIONS OFF)
    if(CADGEOM_DEVELOPER)
        target_compile_options(
            ${target}
            PRIVATE
                $<${cadgeom_is_gnu_like}:-Wall;-Wextra;-Wpedantic;-Wconversion;-Wshadow;-Wdouble-promotion;-Wfloat-conversion;-Werror>
                $<$<CXX_COMPILER_ID:MSVC>:/W4;/WX>)
    endif()
    if(CADGEOM_SANITIZE)
        set(instrumentation -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    elseif(CADGEOM_THREAD_SANITIZE)
        set(instrumentation -fsanitize=thread -fno-omit-frame-pointer)
    elseif(CADGEOM_COVERAGE)
        set(instrumentation --coverage)
    endif()
    target_compile_options(${target} PRIVATE ${instrumentation})
    target_link_options(${target} PRIVATE ${instrumentation})
endfunction()

function(cadgeom_set_library_options target)
    cadgeom_set_developer_options(${target})
    set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
    cadgeom_forbid_contraction(${target} PUBLIC)
    target_compile_options(${target} PRIVATE $<${cadgeom_is_gnu_like}:-fno-math-errno>)
    check_cxx_compiler_flag(-fno-semantic-interposition CADGEOM_HAS_NO_SEMANTIC_INTERPOSITION)
    if(CADGEOM_HAS_NO_SEMANTIC_INTERPOSITION)
        target_compile_options(${target} PRIVATE -fno-semantic-interposition)
    endif()
endfunction()

function(cadgeom_set_link_options target)
    cadgeom_set_developer_options(${target})
    if(NOT CMAKE_EXECUTABLE_FORMAT STREQUAL "ELF")
        return()
    endif()
    set(export_map ${PROJECT_SOURCE_DIR}/cmake/cadgeom.map)
    set_target_properties(${target} PROPERTIES LINK_DEPENDS ${export_map})
    target_link_options(${target} PRIVATE -Wl,--version-script=${export_map} -Wl,-Bsymbolic-functions)
    # A sanitizer's symbols come from the executable, so only the plain library can insist on having every symbol.
    if(NOT CADGEOM_SANITIZE AND NOT CADGEOM_THREAD_SANITIZE)
        target_link_options(${target} PRIVATE -Wl,-z,defs)
    endif()
endfunction()
