if(IPODCOMM_SANITIZE)
  add_compile_options(-fsanitize=${IPODCOMM_SANITIZE} -fno-omit-frame-pointer
                      -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${IPODCOMM_SANITIZE})
endif()
