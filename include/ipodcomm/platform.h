// SPDX-License-Identifier: MIT
// The platform types that the exported interface names. On Windows they are the system's own;
// elsewhere they are declared here, alike in name and use, so that one host source compiles on
// every platform.
#pragma once

#if defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#if defined(IPODCOMM_BUILDING)
#define IPODCOMM_API __declspec(dllexport)
#elif defined(IPODCOMM_STATIC)
#define IPODCOMM_API
#else
#define IPODCOMM_API __declspec(dllimport)
#endif

#else  // !_WIN32

#define IPODCOMM_API __attribute__((visibility("default")))

/// Calling convention of a thread's entry; this platform has only one.
#define WINAPI
/// The 64-bit integer of the interface, under the name that Windows compilers know.
#define __int64 long long

/// An object of the platform (port, thread, event). Never a pointer to one: a stale handle is
/// refused with "invalid handle" (6).
using HANDLE = void*;

/// A host's window. Kept for the host, never used.
using HWND = struct HWND__*;

#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<long>(-1)))

/// The platform's recursive lock. Leaving one that is not held does nothing.
struct CRITICAL_SECTION {
  void* impl;
};

#endif
