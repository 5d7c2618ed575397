# SPDX-License-Identifier: MIT
if(IPODCOMM_SANITIZE)
  # More optimisation takes minutes on instrumented code and finds nothing more, except where the speed
  # is what finds: in the fuzzers. Lines are all that a report needs to know.
  if(IPODCOMM_FUZZ)
    add_compile_options(-O2 -g1)
  else()
    add_compile_options(-O1 -g1)
  endif()
  add_compile_options(-fsanitize=${IPODCOMM_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${IPODCOMM_SANITIZE})
  # Compilers tell their sources in different ways.
  if(IPODCOMM_SANITIZE MATCHES thread)
    add_compile_definitions(IPODCOMM_THREAD_SANITIZER)
  elseif(IPODCOMM_SANITIZE MATCHES address)
    add_compile_definitions(IPODCOMM_ADDRESS_SANITIZER)
  endif()
endif()
if(IPODCOMM_FUZZ)
  # What a fuzzer's input reaches is counted everywhere; only its own program has libFuzzer's main.
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
