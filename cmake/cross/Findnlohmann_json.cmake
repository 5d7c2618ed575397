# SPDX-License-Identifier: MIT
include(${CMAKE_CURRENT_LIST_DIR}/HostHeaders.cmake)
ipodcomm_add_host_headers(nlohmann_json::nlohmann_json nlohmann)
set(nlohmann_json_FOUND ${ipodcomm_host_headers_found})
if(nlohmann_json_FIND_REQUIRED AND NOT nlohmann_json_FOUND)
  message(FATAL_ERROR "nlohmann's JSON headers are missing; script/bootstrap installs them")
endif()
