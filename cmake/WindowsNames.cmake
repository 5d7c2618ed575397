# SPDX-License-Identifier: MIT
# Shared libraries carry the names that Windows hosts load: ipodcomm.dll, not libipodcomm.dll.
if(WIN32)
  set(CMAKE_SHARED_LIBRARY_PREFIX "")
endif()
