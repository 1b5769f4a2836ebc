# Compiler settings of our own targets. They hang on a private interface target and are never exported.

add_library(tqstorekit_settings INTERFACE)
target_compile_features(tqstorekit_settings INTERFACE cxx_std_20)
target_compile_options(tqstorekit_settings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wswitch -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wglobal-constructors>
  # GCC 12 sees overlaps in "text" + std::string, and uninitialised members of variants, that are
  # not there (its bug 105651 and its like).
  "$<$<AND:$<CXX_COMPILER_ID:GNU>,$<VERSION_LESS:$<CXX_COMPILER_VERSION>,13>>:-Wno-restrict;-Wno-maybe-uninitialized>"
  $<$<BOOL:${TQSTOREKIT_WARNINGS_AS_ERRORS}>:-Werror>)

# A program may have globals, which a library that it links may not: a test registers itself before main.
add_library(tqstorekit_program_settings INTERFACE)
target_compile_options(tqstorekit_program_settings INTERFACE
  $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-global-constructors>)

if(TQSTOREKIT_SANITIZER STREQUAL "address")
  set(sanitizer -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(TQSTOREKIT_SANITIZER STREQUAL "thread")
  set(sanitizer -fsanitize=thread -fno-omit-frame-pointer)
elseif(TQSTOREKIT_SANITIZER)
  message(FATAL_ERROR "TQSTOREKIT_SANITIZER is '${TQSTOREKIT_SANITIZER}'; use 'address', 'thread' or nothing")
endif()
if(sanitizer)
  include(CheckCXXSourceCompiles)
  set(CMAKE_REQUIRED_FLAGS "${sanitizer}")
  string(REPLACE ";" " " CMAKE_REQUIRED_FLAGS "${CMAKE_REQUIRED_FLAGS}")
  check_cxx_source_compiles("int main() { return 0; }" TQSTOREKIT_SANITIZER_WORKS_${TQSTOREKIT_SANITIZER})
  unset(CMAKE_REQUIRED_FLAGS)
  if(NOT TQSTOREKIT_SANITIZER_WORKS_${TQSTOREKIT_SANITIZER})
    message(FATAL_ERROR "This compiler has no '${TQSTOREKIT_SANITIZER}' sanitizer")
  endif()
  target_compile_options(tqstorekit_settings INTERFACE ${sanitizer})
  target_link_options(tqstorekit_settings INTERFACE ${sanitizer})
endif()
