# What holds for every target: language level, warnings, sanitizers, where results go.

set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)

# The program finds its resources relative to its own place, so the build tree has the shape of an
# installation.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(TESSEL_STAGE_DATADIR ${CMAKE_BINARY_DIR}/share/tessel)
set(TESSEL_INSTALL_DATADIR ${CMAKE_INSTALL_DATADIR}/tessel)

set(TESSEL_SANITIZE "" CACHE STRING "address (with undefined), thread, or empty")
if(TESSEL_SANITIZE STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=undefined
                        -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(TESSEL_SANITIZE STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(NOT TESSEL_SANITIZE STREQUAL "")
    message(FATAL_ERROR "TESSEL_SANITIZE must be address, thread or empty")
endif()

add_library(tessel-warnings INTERFACE)
target_compile_options(tessel-warnings INTERFACE -Wall -Wextra -Werror)

# The device's compiler knows C++14.
function(tessel_program_target target)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 14)
    target_link_libraries(${target} PRIVATE tessel-warnings)
endfunction()

function(tessel_host_target target)
    set_target_properties(${target} PROPERTIES CXX_STANDARD 20)
    target_link_libraries(${target} PRIVATE tessel-warnings)
endfunction()

# A test's own code is compiled for a short build: what the sanitizers are to watch is the code that
# it calls, and the undefined behaviour sanitizer triples what the compiler does to a test.
function(tessel_test_target target)
    tessel_host_target(${target})
    target_compile_options(${target} PRIVATE -O0)
    if(TESSEL_SANITIZE STREQUAL "address")
        target_compile_options(${target} PRIVATE -fno-sanitize=undefined)
    endif()
endfunction()
