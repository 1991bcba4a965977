# The hardening of the distributions, for builds with optimisation (the library functions of
# _FORTIFY_SOURCE need it). Sanitizers bring checks of their own; Windows and the browser have other
# means. -fPIE and not -fPIC, which would keep the library's functions from being inlined.
include(CheckCXXCompilerFlag)
include(CheckLinkerFlag)

function(tessel_harden_linking flag)
  string(MAKE_C_IDENTIFIER "TESSEL_LINKS${flag}" known)
  check_linker_flag(CXX "${flag}" ${known})
  if(${known})
    target_link_options(tessel_flags INTERFACE "${flag}")
  endif()
endfunction()

function(tessel_harden_code flag)
  string(MAKE_C_IDENTIFIER "TESSEL_KNOWS${flag}" known)
  set(CMAKE_REQUIRED_FLAGS "${CMAKE_REQUIRED_FLAGS} -Werror")  # Clang warns of flags of other processors
  check_cxx_compiler_flag("${flag}" ${known})
  if(${known})
    target_compile_options(tessel_flags INTERFACE "${flag}")
  endif()
endfunction()

tessel_harden_code(-fPIE)
tessel_harden_code(-fstack-protector-strong)
tessel_harden_code(-fstack-clash-protection)
tessel_harden_code(-fcf-protection)               # x86 alone
tessel_harden_code(-mbranch-protection=standard)  # arm64 alone
if(NOT CMAKE_CXX_FLAGS MATCHES _FORTIFY_SOURCE)  # which may ask for more
  target_compile_options(tessel_flags INTERFACE -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2)
endif()
if(TESSEL_STATIC)
  tessel_harden_linking(-static-pie)
elseif(NOT APPLE AND NOT CMAKE_EXE_LINKER_FLAGS MATCHES "-static")  # Apple's programs are so already
  tessel_harden_linking(-pie)
endif()
if(NOT APPLE)
  tessel_harden_linking(-Wl,-z,relro)
  tessel_harden_linking(-Wl,-z,now)
endif()
