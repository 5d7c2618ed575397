# SPDX-License-Identifier: MIT
if(IPODCOMM_SANITIZE)
  # More optimisation takes minutes on instrumented code and finds nothing more; lines are all that a
  # report needs to know.
  add_compile_options(-O1 -g1)
  add_compile_options(-fsanitize=${IPODCOMM_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${IPODCOMM_SANITIZE})
endif()
