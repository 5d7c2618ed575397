// SPDX-License-Identifier: MIT
// Nothing: what the target of this file is for is its precompiled header.
