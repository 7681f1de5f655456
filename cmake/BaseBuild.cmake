# Compiler settings shared by the library, its tests and its benchmarks.

set(CMAKE_LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/bin)

if(BASE_SANITIZER STREQUAL "address")
    add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
    add_link_options(-fsanitize=address,undefined)
elseif(BASE_SANITIZER STREQUAL "thread")
    add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
    add_link_options(-fsanitize=thread)
elseif(NOT BASE_SANITIZER STREQUAL "")
    message(FATAL_ERROR "BASE_SANITIZER must be address, thread or empty, not '${BASE_SANITIZER}'")
endif()

# Warnings for a target of this project.
function(base_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra $<$<BOOL:${BASE_WERROR}>:-Werror>)
endfunction()

# One test program per subsystem, labelled with the subsystem's name.
function(base_add_tests subsystem)
    set(target Base${subsystem}Tests)
    add_executable(${target} ${ARGN})
    target_link_libraries(${target} PRIVATE Base::Base GTest::gtest_main)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/Components/Base/Testing)
    base_warnings(${target})
    gtest_discover_tests(${target} PROPERTIES LABELS ${subsystem} DISCOVERY_TIMEOUT 60)
endfunction()
