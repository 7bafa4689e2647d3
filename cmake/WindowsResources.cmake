# What Windows wants to know of each file we ship: a version resource, and for a program a manifest (long paths, sharp
# forms, UTF-8 as its code page, no elevation, the Windows versions it knows, the current common controls). Nothing elsewhere.
# qv_windows_resources(<target> "<description, as file properties show it>")
set(qv_resources ${CMAKE_CURRENT_LIST_DIR}/windows)

function(qv_windows_resources target description)
    if(NOT WIN32)
        return()
    endif()
    set(file_type VFT_DLL)
    set(manifest "")
    get_target_property(type ${target} TYPE)
    if(type STREQUAL EXECUTABLE)
        set(file_type VFT_APP)
        set(manifest "1 24 \"${qv_resources}/program.manifest\"")
    endif()
    set(script ${CMAKE_CURRENT_BINARY_DIR}/${target}.rc)
    configure_file(${qv_resources}/version.rc.in ${script}.in @ONLY)
    file(GENERATE OUTPUT ${script} INPUT ${script}.in)
    set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS ${qv_resources}/program.manifest)
    # Apart from the target, whose compiler options the resource compiler does not know.
    add_library(${target}_resources OBJECT ${script})
    target_sources(${target} PRIVATE $<TARGET_OBJECTS:${target}_resources>)
endfunction()
