# What can be chosen when configuring. As a subproject we cost nothing: everything but the library
# and its platform is off unless we are the top-level project.

# Which platform the library runs on: the embedded one, everywhere; Apple's, on its systems.
set(TQSTOREKIT_REALISATION_embedded EmbeddedPlatform)
set(TQSTOREKIT_REALISATION_apple ApplePlatform)
if(CMAKE_SYSTEM_NAME STREQUAL "iOS")
  set(TQSTOREKIT_PLATFORM "apple" CACHE STRING "Which platform the library runs on")
else()
  set(TQSTOREKIT_PLATFORM "embedded" CACHE STRING "Which platform the library runs on")
endif()
set_property(CACHE TQSTOREKIT_PLATFORM PROPERTY STRINGS embedded apple)
if(NOT DEFINED TQSTOREKIT_REALISATION_${TQSTOREKIT_PLATFORM})
  message(FATAL_ERROR "TQSTOREKIT_PLATFORM is '${TQSTOREKIT_PLATFORM}'; the platforms that exist are: embedded, apple")
endif()
set(TQSTOREKIT_REALISATION ${TQSTOREKIT_REALISATION_${TQSTOREKIT_PLATFORM}})

# Tests, tools and most examples play with the embedded store.
set(for_the_desk OFF)
if(PROJECT_IS_TOP_LEVEL AND TQSTOREKIT_PLATFORM STREQUAL "embedded")
  set(for_the_desk ON)
endif()
option(TQSTOREKIT_TESTS "Build the tests" ${for_the_desk})
option(TQSTOREKIT_TOOLS "Build the command-line tool tqstore" ${for_the_desk})
option(TQSTOREKIT_EXAMPLES "Build the examples" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_INSTALL "Generate the install rules" ${PROJECT_IS_TOP_LEVEL})
option(TQSTOREKIT_BENCHMARKS "Build the benchmarks" OFF)
option(TQSTOREKIT_WARNINGS_AS_ERRORS "Treat the warnings of our own sources as errors" OFF)

set(TQSTOREKIT_SANITIZER "" CACHE STRING "Sanitizer of every target: empty, 'address' (with undefined) or 'thread'")
set_property(CACHE TQSTOREKIT_SANITIZER PROPERTY STRINGS "" address thread)

if(TQSTOREKIT_PLATFORM STREQUAL "apple" AND (TQSTOREKIT_TESTS OR TQSTOREKIT_TOOLS OR TQSTOREKIT_BENCHMARKS))
  message(FATAL_ERROR "Tests, tools and benchmarks need TQSTOREKIT_PLATFORM=embedded")
endif()
