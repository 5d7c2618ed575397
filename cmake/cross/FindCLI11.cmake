# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake)
ipodcomm_add_host_headers(CLI11::CLI11 CLI)
set(CLI11_FOUND ${ipodcomm_host_headers_found})
if(CLI11_FIND_REQUIRED AND NOT CLI11_FOUND)
  message(FATAL_ERROR "CLI11's headers are missing; script/bootstrap installs them")
endif()
