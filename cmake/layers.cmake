# What every target of the project is built with, and the function that makes a layer.

add_library(tarnwell_flags INTERFACE)
target_compile_options(tarnwell_flags INTERFACE -Wall -Wextra -Wpedantic -Wshadow $<$<BOOL:${TARNWELL_WERROR}>:-Werror>)
# GCC 12 warns wrongly of every literal + std::string&& once it optimises.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  target_compile_options(tarnwell_flags INTERFACE -Wno-restrict)
endif()
target_compile_definitions(tarnwell_flags INTERFACE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS)
if(TARNWELL_SANITIZE)
  target_compile_options(tarnwell_flags INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=all
                                                  -fno-omit-frame-pointer)
  target_link_options(tarnwell_flags INTERFACE -fsanitize=address,undefined)
endif()

# tarnwell_layer(NAME SOURCES file... USES target...)
# One folder of src/ as a static library. A layer may include only what it USES: the arrows between the folders are
# these lists, and script/lint checks the #include lines against them.
function(tarnwell_layer name)
  cmake_parse_arguments(LAYER "" "" "SOURCES;USES" ${ARGN})
  add_library(tarnwell_${name} STATIC ${LAYER_SOURCES})
  target_include_directories(tarnwell_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(tarnwell_${name} PUBLIC ${LAYER_USES} PRIVATE tarnwell_flags)
endfunction()
