# What every target of ours is compiled with. Third-party code is included as SYSTEM and stays outside.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_C_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_C_VISIBILITY_PRESET hidden)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
find_package(Threads REQUIRED)
if(NOT WIN32)
    include(CheckPIESupported)
    check_pie_supported()
endif()

add_library(qv_build_flags INTERFACE)
target_include_directories(qv_build_flags INTERFACE ${PROJECT_SOURCE_DIR} ${PROJECT_SOURCE_DIR}/src ${PROJECT_SOURCE_DIR}/include)
target_compile_options(qv_build_flags INTERFACE
    -Wall -Wextra -Wshadow -Wconversion -Wsign-conversion -Werror -fstack-protector-strong)
# A product and a sum round twice wherever the code doesn't say otherwise: the same samples come out of every build.
target_compile_options(qv_build_flags INTERFACE -ffp-contract=off)
# g++ 12 takes a literal put before a string for an overlapping copy.
target_compile_options(qv_build_flags INTERFACE $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-Wno-restrict>)
target_compile_definitions(qv_build_flags INTERFACE QV_VERSION="${PROJECT_VERSION}")
target_link_libraries(qv_build_flags INTERFACE Threads::Threads)

if(WIN32)
    # Only system libraries may stand in an import table: the compiler's run-times are linked in.
    target_link_options(qv_build_flags INTERFACE -static -static-libgcc -static-libstdc++ -fstack-protector-strong)
    target_compile_definitions(qv_build_flags INTERFACE UNICODE _UNICODE _WIN32_WINNT=0x0A00 NOMINMAX WIN32_LEAN_AND_MEAN)
else()
    target_compile_options(qv_build_flags INTERFACE -fcf-protection $<$<COMPILE_LANG_AND_ID:CXX,GNU>:-fno-gnu-unique>)
    target_link_options(qv_build_flags INTERFACE -Wl,-z,relro,-z,now,-z,noexecstack)
    if(NOT QV_SANITIZE)
        target_link_options(qv_build_flags INTERFACE -Wl,-z,defs)
        target_compile_definitions(qv_build_flags INTERFACE $<$<CONFIG:Release>:_FORTIFY_SOURCE=2>)
    endif()
endif()

if(QV_SANITIZE)
    target_compile_options(qv_build_flags INTERFACE -fsanitize=${QV_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer -g1)
    target_link_options(qv_build_flags INTERFACE -fsanitize=${QV_SANITIZE})
endif()
