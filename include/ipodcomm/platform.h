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
/// A class inside an exported one that only the library uses.
#define IPODCOMM_INNER

#else  // !_WIN32

#include <cstdint>

#define IPODCOMM_API __attribute__((visibility("default")))
/// A class inside an exported one that only the library uses.
#define IPODCOMM_INNER __attribute__((visibility("hidden")))

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

/// Line settings of a port; 28 bytes, as drivers check.
struct DCB {
  std::uint32_t DCBlength;
  std::uint32_t BaudRate;
  std::uint32_t fBinary : 1;
  std::uint32_t fParity : 1;
  std::uint32_t fOutxCtsFlow : 1;
  std::uint32_t fOutxDsrFlow : 1;
  std::uint32_t fDtrControl : 2;
  std::uint32_t fDsrSensitivity : 1;
  std::uint32_t fTXContinueOnXoff : 1;
  std::uint32_t fOutX : 1;
  std::uint32_t fInX : 1;
  std::uint32_t fErrorChar : 1;
  std::uint32_t fNull : 1;
  std::uint32_t fRtsControl : 2;
  std::uint32_t fAbortOnError : 1;
  std::uint32_t fDummy2 : 17;
  std::uint16_t wReserved;
  std::uint16_t XonLim;
  std::uint16_t XoffLim;
  std::uint8_t ByteSize;
  std::uint8_t Parity;
  std::uint8_t StopBits;
  char XonChar;
  char XoffChar;
  char ErrorChar;
  char EofChar;
  char EvtChar;
  std::uint16_t wReserved1;
};

/// Time-outs of a port, in milliseconds. 0 for both write fields: a write never times out. 0 for
/// all read fields: a read waits for all its bytes. An interval of 0xFFFFFFFF: a read takes what is
/// there already, at once; with a total multiplier of 0xFFFFFFFF too, it waits the constant for the
/// first byte.
struct COMMTIMEOUTS {
  unsigned long ReadIntervalTimeout;
  unsigned long ReadTotalTimeoutMultiplier;
  unsigned long ReadTotalTimeoutConstant;
  unsigned long WriteTotalTimeoutMultiplier;
  unsigned long WriteTotalTimeoutConstant;
};

#endif
