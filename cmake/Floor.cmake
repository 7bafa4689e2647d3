# A floor is a folder: every source in it belongs to its library, and it links only the floors below.
# qv_floor(<target> <floors below>...)
function(qv_floor target)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h)
    if(NOT sources)
        add_library(${target} INTERFACE)
        target_link_libraries(${target} INTERFACE qv_build_flags ${ARGN})
        return()
    endif()
    add_library(${target} STATIC ${sources})
    target_link_libraries(${target} PUBLIC qv_build_flags ${ARGN})
    set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
    qv_instruction_sets()
endfunction()

# Sources named after an instruction set (sums_avx2.cpp) are compiled for it. On Windows the stack is aligned to 16 bytes
# only, and g++ still takes it for aligned to 32 and 64: there the assembler makes every vector move an unaligned one,
# which costs nothing on data that is aligned.
function(qv_instruction_sets)
    set(avx2 -mavx2 -mfma)
    set(avx512 ${avx2} -mavx512f -mavx512bw -mavx512dq -mavx512vl)
    if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
        list(APPEND avx512 -Wno-uninitialized -Wno-maybe-uninitialized)    # g++ 12 warns of what its own header leaves undefined
    endif()
    foreach(set avx2 avx512)
        file(GLOB sources CONFIGURE_DEPENDS *_${set}.cpp)
        if(sources)
            set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS
                "${${set}};$<$<BOOL:${WIN32}>:-Wa,-muse-unaligned-vector-move>")
        endif()
    endforeach()
endfunction()

# A test program from every source beside it. It fails when it finds no test to run.
# qv_test(<target> <libraries>...)
function(qv_test target)
    file(GLOB sources CONFIGURE_DEPENDS *.cpp)
    if(NOT sources)
        return()
    endif()
    add_executable(${target} ${sources})
    target_link_libraries(${target} PRIVATE qv_test_support ${ARGN})
    target_precompile_headers(${target} REUSE_FROM qv_test_headers)
    qv_run_test(${target})
endfunction()

# A program that hangs is ended; under Wine a little earlier, by what runs it there, which has then still time to hand on
# how far it came.
function(qv_run_test target)
    add_test(NAME ${target} COMMAND ${target})
    set_tests_properties(${target} PROPERTIES TIMEOUT 900 ENVIRONMENT "QV_WINE_SECONDS=880")
endfunction()
