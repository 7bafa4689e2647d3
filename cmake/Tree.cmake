# Every build leaves the product as a user installs it in <build>/tree: the library, the converter and the
# host program side by side, the modules in their folders below. Tests and demos run that very tree.
set(QV_TREE ${CMAKE_BINARY_DIR}/tree)
include(${CMAKE_CURRENT_LIST_DIR}/WindowsResources.cmake)

# All that is installed, and nothing else.
add_custom_target(product)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ DESTINATION include)

# A program or the library itself, at the top of the tree: qv_place_in_tree(<target> "<description>")
function(qv_place_in_tree target description)
    qv_windows_resources(${target} "${description}")
    set_target_properties(${target} PROPERTIES
        RUNTIME_OUTPUT_DIRECTORY ${QV_TREE} LIBRARY_OUTPUT_DIRECTORY ${QV_TREE} ARCHIVE_OUTPUT_DIRECTORY ${QV_TREE})
    add_dependencies(product ${target})
    install(TARGETS ${target} RUNTIME DESTINATION . LIBRARY DESTINATION . ARCHIVE DESTINATION .)
endfunction()

# A codec or effect module: qv_module(<target> <decoder|encoder|DSPs> "<name in the folder>" sources...). The icon of its
# name, which script/draw-icons has drawn, stands beside it as forms look for it.
function(qv_module target folder name)
    add_library(${target} MODULE ${ARGN})
    target_link_libraries(${target} PRIVATE qv_build_flags qv_foundation)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME "${name}"
        LIBRARY_OUTPUT_DIRECTORY ${QV_TREE}/${folder})
    qv_windows_resources(${target} "${name} module for Quavermill (${folder})")
    add_dependencies(product ${target})
    install(TARGETS ${target} LIBRARY DESTINATION ${folder})
    configure_file("${name}.ico" "${QV_TREE}/${folder}/${name}.ico" COPYONLY)
    install(FILES "${name}.ico" DESTINATION ${folder})
endfunction()
