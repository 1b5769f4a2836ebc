# Compiles for Apple's systems on another one: clang and LLD, the headers that scripts/check-apple
# fetches, and our own stand-ins for the frameworks (tests/apple/sdk). Not for a Mac.
#
# APPLE_TARGET   the compiler's name of the system: arm64-apple-ios11.2
# APPLE_SDK      the folder with the frameworks' stand-ins
# APPLE_HEADERS  the folder with libcxx/, libcxxabi/ and libc/

set(CMAKE_SYSTEM_NAME Generic)
set(CMAKE_TRY_COMPILE_TARGET_TYPE STATIC_LIBRARY)
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES APPLE_TARGET APPLE_SDK APPLE_HEADERS)

find_program(APPLE_CLANG clang++-19 REQUIRED)
find_program(APPLE_AR llvm-ar-19 REQUIRED)
find_program(APPLE_RANLIB llvm-ranlib-19 REQUIRED)
set(CMAKE_AR ${APPLE_AR})
set(CMAKE_RANLIB ${APPLE_RANLIB})

# The library's ABI macros stand in for the configuration that these headers come without; symbols
# mean nothing if they are missing.
set(flags
  -isysroot ${APPLE_SDK} -nostdinc++ -nostdlibinc
  -isystem ${APPLE_HEADERS}/libcxx/include -isystem ${APPLE_HEADERS}/libcxxabi/include
  -isystem ${APPLE_HEADERS}/libc/include/any-macos-any
  -iframework ${APPLE_SDK}/System/Library/Frameworks
  -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1 -D_LIBCPP_PSTL_CPU_BACKEND_SERIAL
  -Werror=unguarded-availability -Werror=unguarded-availability-new -Werror=objc-method-access)
list(JOIN flags " " flags)
foreach(language CXX OBJCXX)
  set(CMAKE_${language}_COMPILER ${APPLE_CLANG})
  set(CMAKE_${language}_COMPILER_TARGET ${APPLE_TARGET})
  set(CMAKE_${language}_FLAGS_INIT "${flags}")
endforeach()

set(TQSTOREKIT_FOUNDATION_FRAMEWORK "-framework Foundation" CACHE STRING "The framework's stand-in")
set(TQSTOREKIT_STOREKIT_FRAMEWORK "-framework StoreKit" CACHE STRING "The framework's stand-in")
