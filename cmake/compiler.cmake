# Language level, warnings, hardening and instrumentation shared by every target of the project.
set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 99)
set(CMAKE_C_STANDARD_REQUIRED ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release)
endif()

find_package(Threads REQUIRED)

add_library(qxpaf_options INTERFACE)
target_compile_options(qxpaf_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wcast-qual -Wformat=2 -Wundef
  $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wextra-semi>
  $<$<BOOL:${QXPAF_WERROR}>:-Werror>
  -ffp-contract=off)
# The wide and narrow text interfaces rely on a signed 32-bit wchar_t and IEEE arithmetic; both hold on Linux.
target_compile_definitions(qxpaf_options INTERFACE _FILE_OFFSET_BITS=64)
target_link_options(qxpaf_options INTERFACE -Wl,-z,relro -Wl,-z,now)

if(QXPAF_SANITIZE)
  # The checks of calls through pointers and of virtual tables need clang's C++ runtime, which C programs do not have.
  add_compile_options(-fsanitize=${QXPAF_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all
                      $<$<CXX_COMPILER_ID:Clang>:-fno-sanitize=function,vptr>)
  add_link_options(-fsanitize=${QXPAF_SANITIZE})
else()
  add_link_options(-Wl,--no-undefined)
endif()
if(QXPAF_COVERAGE)
  add_compile_options(--coverage -O0)
  add_link_options(--coverage)
endif()
