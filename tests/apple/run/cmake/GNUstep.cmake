# GNUstep's Foundation on GCC's Objective-C runtime, as clang has to be told about them. Every
# Objective-C++ source sees the doubles' headers first, so that no source asks where it is.

find_program(TQSTOREKIT_GCC NAMES gcc-12 gcc REQUIRED)
execute_process(COMMAND ${TQSTOREKIT_GCC} -print-file-name=include
  OUTPUT_VARIABLE runtime_headers OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
find_path(TQSTOREKIT_GNUSTEP_HEADERS Foundation/Foundation.h PATH_SUFFIXES GNUstep REQUIRED)

include_directories(${root} ${root}/tests/apple/doubles)
set(objective_flags
  -DGNUSTEP -DGNUSTEP_BASE_LIBRARY=1 -DGNU_RUNTIME=1 -D_NATIVE_OBJC_EXCEPTIONS
  -fgnu-runtime -fobjc-exceptions -fconstant-string-class=NSConstantString -fblocks
  -fno-strict-aliasing
  # A method that this Foundation lacks is no more than a warning, and an exception at run time.
  -Werror=objc-method-access
  "SHELL:-isystem ${TQSTOREKIT_GNUSTEP_HEADERS}" "SHELL:-isystem ${runtime_headers}"
  "SHELL:-include ${root}/tests/apple/doubles/Prefix.h")
add_compile_options("$<$<COMPILE_LANGUAGE:OBJCXX>:${objective_flags}>")

# BlocksRuntime goes first: GNUstep exports another _Block_copy, which copies nothing.
add_library(GNUstep::Foundation INTERFACE IMPORTED GLOBAL)
target_link_libraries(GNUstep::Foundation INTERFACE
  BlocksRuntime gnustep-base objc m Threads::Threads)
