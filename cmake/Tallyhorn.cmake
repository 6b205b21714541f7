# Settings and functions for all folders.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
set(THREADS_PREFER_PTHREAD_FLAG ON)
find_package(Threads REQUIRED)

find_program(TALLYHORN_CCACHE ccache)
if(TALLYHORN_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TALLYHORN_CCACHE})
endif()

add_library(tallyhorn_options INTERFACE)
target_include_directories(tallyhorn_options INTERFACE ${PROJECT_SOURCE_DIR})
if(MSVC)
  target_compile_options(tallyhorn_options INTERFACE /W4 /utf-8 /permissive- /Zc:__cplusplus)
  target_compile_definitions(tallyhorn_options INTERFACE _CRT_SECURE_NO_WARNINGS)
else()
  target_compile_options(tallyhorn_options INTERFACE -Wall -Wextra -Wconversion -Wshadow)
endif()
if(TALLYHORN_SANITIZE)
  target_compile_options(tallyhorn_options INTERFACE -fsanitize=${TALLYHORN_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(tallyhorn_options INTERFACE -fsanitize=${TALLYHORN_SANITIZE})
endif()
if(NOT WIN32 AND NOT TALLYHORN_SANITIZE)
  # The released programs read input from the network, so they are hardened.
  target_compile_options(tallyhorn_options INTERFACE
    $<$<CONFIG:Release>:-D_FORTIFY_SOURCE=2 -fstack-protector-strong -fPIE>)
  target_link_options(tallyhorn_options INTERFACE $<$<CONFIG:Release>:-pie -Wl,-z,relro -Wl,-z,now>)
endif()
if(WIN32)
  set(TALLYHORN_SYSTEM windows)
  target_compile_definitions(tallyhorn_options INTERFACE NOMINMAX WIN32_LEAN_AND_MEAN)
else()
  set(TALLYHORN_SYSTEM linux)
  # A program is linked only to those libraries that it uses.
  target_link_options(tallyhorn_options INTERFACE -Wl,--as-needed)
endif()

# tallyhorn_library(NAME [LIBRARY...]): builds the static library tallyhorn_NAME from the sources of the caller's
# folder, and from those below linux/ or windows/, depending on the target system. main.cpp and tallyhorn-*.cpp are left
# out, because they contain the `main` functions of programs.
function(tallyhorn_library name)
  file(GLOB sources CONFIGURE_DEPENDS *.cpp *.h ${TALLYHORN_SYSTEM}/*.cpp ${TALLYHORN_SYSTEM}/*.h)
  list(FILTER sources EXCLUDE REGEX "/(main|tallyhorn-[a-z]+)[.]cpp$")
  add_library(tallyhorn_${name} STATIC ${sources})
  target_link_libraries(tallyhorn_${name} PUBLIC tallyhorn_options ${ARGN})
endfunction()

# tallyhorn_forms_library(NAME [LIBRARY...]): does the same as tallyhorn_library for sources that need Qt and its
# generated code (moc).
function(tallyhorn_forms_library name)
  set(CMAKE_AUTOMOC ON)
  tallyhorn_library(${name} ${ARGN} Qt6::Widgets)
endfunction()
