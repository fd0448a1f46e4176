# What every target of ours is compiled with. Generated code and Qt's headers are spared the warnings.

add_library(daybrix_options INTERFACE)
target_compile_definitions(daybrix_options INTERFACE DAYBRIX_VERSION="${PROJECT_VERSION}")
target_compile_options(daybrix_options INTERFACE
  -Wall -Wextra -Wconversion -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wimplicit-fallthrough
  -fno-exceptions -fno-rtti)
target_include_directories(daybrix_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

if(DAYBRIX_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
    message(FATAL_ERROR "DAYBRIX_FUZZ needs clang: -DCMAKE_CXX_COMPILER=clang++-14")
  endif()
  set(DAYBRIX_SANITIZE ON)
  add_compile_options(-fsanitize=fuzzer-no-link)
  target_compile_definitions(daybrix_options INTERFACE DAYBRIX_SLOTS_PER_READ=3)
endif()
if(DAYBRIX_SANITIZE)
  # The vptr check needs run-time type information, which the project does without.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=vptr -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
  # Instrumented code hides from this GCC 12 warning what is initialised: it fires inside <regex>. The other builds keep it.
  target_compile_options(daybrix_options INTERFACE $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)
endif()

# daybrix_library(NAME SOURCES ... USES ...): one library a floor. USES names the floors it may include.
function(daybrix_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;USES" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC daybrix_options ${ARG_USES})
endfunction()
