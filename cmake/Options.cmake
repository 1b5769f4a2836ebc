# What can be chosen when configuring. As a subproject we cost nothing: everything but the library
# and its platform is off unless we are the top-level project.

option(TQSTOREKIT_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_TOOLS "Build the command-line tool tqstore" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_EXAMPLES "Build the examples" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_INSTALL "Generate the install rules" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_BENCHMARKS "Build the benchmarks" OFF)
option(TQSTOREKIT_WARNINGS_AS_ERRORS "Treat the warnings of our own sources as errors" OFF)

set(TQSTOREKIT_PLATFORM "embedded" CACHE STRING "Which platform the library runs on")
set_property(CACHE TQSTOREKIT_PLATFORM PROPERTY STRINGS embedded)
set(TQSTOREKIT_SANITIZER "" CACHE STRING "Sanitizer of every target: empty, 'address' (with undefined) or 'thread'")
set_property(CACHE TQSTOREKIT_SANITIZER PROPERTY STRINGS "" address thread)

if(NOT TQSTOREKIT_PLATFORM STREQUAL "embedded")
  message(FATAL_ERROR "TQSTOREKIT_PLATFORM is '${TQSTOREKIT_PLATFORM}'; the platforms that exist are: embedded")
endif()
