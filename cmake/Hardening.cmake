# SPDX-License-Identifier: MIT
# What is shipped is hardened as distributions harden their packages. script/check-hardening tells of a
# build whether it is.
include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported()  # programs are position-independent, as CMAKE_POSITION_INDEPENDENT_CODE asks
check_cxx_compiler_flag(-fcf-protection IPODCOMM_COMPILER_HAS_CF_PROTECTION)

# Hardens the release builds of the directory that calls it and those below it.
macro(ipodcomm_harden)
  if(CMAKE_BUILD_TYPE STREQUAL Release AND NOT WIN32)
    # A function with a buffer on its stack notices when it was overrun, and so do the C library's
    # functions where the compiler knows the size of a buffer. Both end the program.
    add_compile_options(-fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
    if(IPODCOMM_COMPILER_HAS_CF_PROTECTION)
      # Processors that watch where calls and returns lead find marks at the right places.
      add_compile_options(-fcf-protection)
    endif()
    # Addresses of other libraries' functions are looked up at the start and are read-only from then
    # on. A call then needs no stub that looks them up at the first time.
    add_compile_options(-fno-plt)
    add_link_options(-Wl,-z,relro,-z,now)
  endif()
endmacro()
