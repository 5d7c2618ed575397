# SPDX-License-Identifier: MIT
# Compiles with Clang 19, the first that counts conditions as script/coverage needs them.
set(CMAKE_CXX_COMPILER clang++-19)
