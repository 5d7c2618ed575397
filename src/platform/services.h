// SPDX-License-Identifier: MIT
// The seam: every service of the platform that the library calls, and nothing else it calls.
//
// These are Windows core services under their own names and signatures. On Windows they are the
// system's and cost nothing; elsewhere an implementation is linked in (posix/ here, and tests/world
// for tests). To port the library is to supply this list. For each service the comment says what
// the library relies on, how long the call may block, who calls it, and what failure looks like.
// Unless a comment says otherwise, a service may be called from any thread, does not block, and on
// failure returns FALSE, 0 or null and leaves a code for GetLastError, 8 when it found no memory.
// None throws.
//
// The conformance suite in tests/platform states the same promises as tests.
#pragma once

#include "ipodcomm/platform.h"

#if defined(_WIN32)

// The header would otherwise rename functions of the C library, of which the standard headers
// speak.
#define STRSAFE_NO_DEPRECATE
#include <strsafe.h>
#include <winver.h>

#else

#include <cstdarg>
#include <cstddef>
#include <cstdint>

using BOOL = int;
using BYTE = unsigned char;
using WORD = unsigned short;
/// 32 bits on the wire and in files; `unsigned long` as on Windows, so that hosts' sources agree.
using DWORD = unsigned long;
using LONG = long;
using UINT = unsigned int;
using LSTATUS = long;
using HRESULT = long;
using HKEY = struct HKEY__*;
using HLOCAL = void*;
using THREAD_START_ROUTINE = DWORD(void*);

#define TRUE 1
#define FALSE 0
#define INFINITE 0xFFFFFFFFUL

struct SECURITY_ATTRIBUTES;
struct OVERLAPPED;

#endif  // !_WIN32

// ---- Device control events: EventModify actions (a macro-like service on Windows CE) -----------

#if !defined(_WIN32) || !defined(EVENT_SET)
#define EVENT_PULSE 1
#define EVENT_RESET 2
#define EVENT_SET 3
#endif

#if !defined(_WIN32)

// ---- Codes -----------------------------------------------------------------------------------

#define ERROR_SUCCESS 0L
#define ERROR_FILE_NOT_FOUND 2L
#define ERROR_PATH_NOT_FOUND 3L
#define ERROR_ACCESS_DENIED 5L
#define ERROR_INVALID_HANDLE 6L
#define ERROR_NOT_ENOUGH_MEMORY 8L
#define ERROR_BAD_COMMAND 22L
#define ERROR_GEN_FAILURE 31L
#define ERROR_INVALID_PARAMETER 87L
#define ERROR_INSUFFICIENT_BUFFER 122L
#define ERROR_NOT_OWNER 288L
#define ERROR_MORE_DATA 234L
#define ERROR_OPERATION_ABORTED 995L
#define ERROR_NO_UNICODE_TRANSLATION 1113L
#define ERROR_RESOURCE_DATA_NOT_FOUND 1812L
#define ERROR_RESOURCE_TYPE_NOT_FOUND 1813L

#define WAIT_OBJECT_0 0UL
#define WAIT_TIMEOUT 258UL
#define WAIT_FAILED 0xFFFFFFFFUL

/// The calling thread's last error code. A service that succeeds need not change it.
DWORD GetLastError();
void SetLastError(DWORD code);

// ---- Serial port -----------------------------------------------------------------------------

#define GENERIC_READ 0x80000000UL
#define GENERIC_WRITE 0x40000000UL
#define OPEN_EXISTING 3UL

#define EV_RXCHAR 0x0001UL
#define EV_RXFLAG 0x0002UL

#define PURGE_TXABORT 0x0001UL
#define PURGE_RXABORT 0x0002UL
#define PURGE_TXCLEAR 0x0004UL
#define PURGE_RXCLEAR 0x0008UL

#define NOPARITY 0
#define ONESTOPBIT 0
#define ONE5STOPBITS 1
#define TWOSTOPBITS 2

/// Driver queues of a port.
struct COMSTAT {
  DWORD flags;
  DWORD cbInQue;   ///< received bytes not yet read
  DWORD cbOutQue;  ///< written bytes not yet sent
};

/// Opens the port `name` ("COM2:"; "COM2" and any case will do). Only existing ports with read and
/// write access and no sharing are asked for. INVALID_HANDLE_VALUE on failure: 2 no such port, 5 no
/// permission or already open (in this process or another; Wine opens a port twice), 87 unusable
/// arguments.
HANDLE CreateFileW(const wchar_t* name, DWORD access, DWORD share, SECURITY_ATTRIBUTES* security,
                   DWORD disposition, DWORD flags, HANDLE file_template);
/// Closes a port, thread or event. A thread goes on; a read, write or wait in progress on a closed
/// port ends at once and fails (under Wine a read ends with the next byte or its time-out). 6 for a
/// handle that is not open, however often it is tried.
BOOL CloseHandle(HANDLE handle);
BOOL GetCommState(HANDLE port, DCB* state);
/// 6 for a bad handle, 87 for settings that the line cannot have. Wine refuses those with 50, lets
/// a wrong length and a speed of 0 pass, and tells two stop bits where one and a half were set.
BOOL SetCommState(HANDLE port, DCB* state);
BOOL GetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts);
BOOL SetCommTimeouts(HANDLE port, COMMTIMEOUTS* timeouts);
/// Chooses the events of WaitCommEvent. A wait in progress ends with an event mask of 0.
BOOL SetCommMask(HANDLE port, DWORD events);
/// Blocks until one of the chosen events, without a limit; the port's closing and the line's going
/// away end it with failure. One thread at a time; 87 when no events are chosen. Whether bytes that
/// came before the wait and are still unread end it differs. On a pseudo-terminal Wine does not
/// wait: it returns at once, with success and no events.
BOOL WaitCommEvent(HANDLE port, DWORD* events, OVERLAPPED* overlapped);
/// Reads up to `count` bytes. Blocks at most the total time-out (multiplier x count + constant),
/// less when the gap between two bytes exceeds the interval. An empty read succeeds with 0 bytes.
/// Fails on a closed port (6) and on a line that has gone away (another code), at once; under Wine
/// a pseudo-terminal that has gone away reads as a silent line, and writes alone fail. A write of
/// another thread goes on meanwhile.
BOOL ReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped);
/// Writes all `count` bytes unless it fails or a write time-out is set and passes; blocks while the
/// driver has no room for them.
BOOL WriteFile(HANDLE port, const void* data, DWORD count, DWORD* written, OVERLAPPED* overlapped);
BOOL PurgeComm(HANDLE port, DWORD flags);
/// Fills in the port's queues. `errors` and `status` may be null.
BOOL ClearCommError(HANDLE port, DWORD* errors, COMSTAT* status);
BOOL ClearCommBreak(HANDLE port);

// ---- Threads and synchronisation -------------------------------------------------------------

/// Starts `routine(argument)` on a new thread. Null on failure.
HANDLE CreateThread(SECURITY_ATTRIBUTES* security, std::size_t stack, THREAD_START_ROUTINE* routine,
                    void* argument, DWORD flags, DWORD* id);
/// Ends a thread and returns once it has ended. Elsewhere than on Windows the thread ends at a safe
/// point only: in a sleep or a wait, holding no lock, or before its first instruction. The library
/// calls it only when a thread that has begun is at such a point or about to reach one: on Windows,
/// one that has not may hold the loader's lock. Ending an ended thread succeeds elsewhere than on
/// Windows, where the result is undefined.
BOOL TerminateThread(HANDLE thread, DWORD exit_code);
DWORD GetCurrentThreadId();

/// A recursive lock. Entering blocks until it is free. The library's own lock type asks for no
/// more. Elsewhere than on Windows leaving a lock that the thread does not hold does nothing, a
/// copy as bytes is the same lock, and a deleted lock neither blocks nor breaks. None of them
/// fails: locks made when memory is out may share one, and then wait for each other.
void InitializeCriticalSection(CRITICAL_SECTION* section);
void EnterCriticalSection(CRITICAL_SECTION* section);
void LeaveCriticalSection(CRITICAL_SECTION* section);
void DeleteCriticalSection(CRITICAL_SECTION* section);

/// Creates an event, or opens the one that already has this name, as it is. Only the process itself
/// need share it. An auto-reset event wakes one waiter per signal and keeps at most one signal. An
/// event lives until its last handle is closed; a wait in progress then goes on to its time-out.
/// Null on failure.
HANDLE CreateEventW(SECURITY_ATTRIBUTES* security, BOOL manual_reset, BOOL initially_set,
                    const wchar_t* name);
/// Sets (EVENT_SET) or resets (EVENT_RESET) an event. 87 for an unknown action.
BOOL EventModify(HANDLE event, DWORD action);
/// Waits for an event to be signalled or a thread to end. WAIT_OBJECT_0, WAIT_TIMEOUT after
/// `timeout_ms` (INFINITE: never), or WAIT_FAILED at once for a handle that is not open.
DWORD WaitForSingleObject(HANDLE handle, DWORD timeout_ms);
/// Pauses at least `duration_ms`; INFINITE sleeps for good.
void Sleep(DWORD duration_ms);
/// Milliseconds of a steady clock, in 32 bits: it wraps after 49.7 days.
DWORD GetTickCount();

// ---- Device manager and registry -------------------------------------------------------------

#define HKEY_LOCAL_MACHINE (reinterpret_cast<HKEY>(0x80000002UL))
#define REG_DWORD 4UL
#define REG_CREATED_NEW_KEY 1UL
#define REG_OPENED_EXISTING_KEY 2UL
#define KEY_ALL_ACCESS 0xF003FUL

/// Loads the driver under the registry key `driver` and returns its handle, null on failure. May
/// block for as long as the driver needs.
HANDLE ActivateDevice(const wchar_t* driver, DWORD client_info);
/// Unloads a driver.
BOOL DeactivateDevice(HANDLE device);

/// The registry's calls return their code (0, or 2 for a missing value) and set no last error.
LSTATUS RegCreateKeyExW(HKEY key, const wchar_t* sub_key, DWORD reserved, wchar_t* key_class,
                        DWORD options, DWORD access, const SECURITY_ATTRIBUTES* security,
                        HKEY* result, DWORD* disposition);
LSTATUS RegQueryValueExW(HKEY key, const wchar_t* name, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size);
LSTATUS RegSetValueExW(HKEY key, const wchar_t* name, DWORD reserved, DWORD type, const BYTE* data,
                       DWORD size);
LSTATUS RegCloseKey(HKEY key);

// ---- Version resources -----------------------------------------------------------------------

#define MEM_COMMIT 0x1000UL
#define MEM_RELEASE 0x8000UL
#define PAGE_READWRITE 0x04UL

/// Bytes of a file's version resource, 0 when it has none or cannot be read. `handle` is set to 0.
DWORD GetFileVersionInfoSizeW(const wchar_t* file, DWORD* handle);
BOOL GetFileVersionInfoW(const wchar_t* file, DWORD handle, DWORD size, void* data);
/// Finds a value in a resource read by GetFileVersionInfoW; the text at `*value` is terminated and
/// lives as long as the resource's block. `length` counts characters, terminator included.
BOOL VerQueryValueW(const void* block, const wchar_t* sub_block, void** value, UINT* length);
/// Zeroed memory, null on failure. Only fresh committed read/write blocks are asked for.
void* VirtualAlloc(void* address, std::size_t size, DWORD type, DWORD protection);
BOOL VirtualFree(void* address, std::size_t size, DWORD type);

// ---- Heap ------------------------------------------------------------------------------------

#define LMEM_FIXED 0x0000U
#define LMEM_ZEROINIT 0x0040U
#define LPTR (LMEM_FIXED | LMEM_ZEROINIT)

/// Memory from the platform heap, zeroed with LMEM_ZEROINIT; null on failure.
HLOCAL LocalAlloc(UINT flags, std::size_t size);
/// Null when released; the argument itself, with code 6, when the heap did not hand it out.
HLOCAL LocalFree(HLOCAL memory);

// ---- Text ------------------------------------------------------------------------------------

#define CP_UTF8 65001U

#define FORMAT_MESSAGE_FROM_SYSTEM 0x1000UL

/// UTF-8 to wide text. `source_bytes` counts the terminator when it is to be converted; -1 means up
/// to and with it. Returns the characters written (all of the source, terminators inside it
/// included), or those needed when `capacity` is 0. Malformed input becomes U+FFFD. Into a short
/// buffer: fails with 122. An exact fit leaves no room for a terminator that is not in the source.
/// One promise beyond Windows (the library does not rely on it there): a buffer that is too short
/// is filled as far as whole characters go and ends with a terminator.
int MultiByteToWideChar(UINT code_page, DWORD flags, const char* source, int source_bytes,
                        wchar_t* destination, int capacity);
/// Wide text to UTF-8, in the same way; no character is cut in two.
int WideCharToMultiByte(UINT code_page, DWORD flags, const wchar_t* source, int source_characters,
                        char* destination, int capacity, const char* default_character,
                        BOOL* used_default);
/// printf into at most 1024 characters, terminator included. After the Windows rules: `%s` and `%c`
/// take wide text, `%S` and `%hs` narrow. No floating point: desktop Windows has none here. Returns
/// the characters written without the terminator.
int wsprintfW(wchar_t* destination, const wchar_t* format, ...);
/// Copies and formats into `capacity` characters, always terminated. 0, or 0x8007007A when cut. No
/// floating point: on Windows its point and its rounding are the C library's, after its locale.
HRESULT StringCchCopyW(wchar_t* destination, std::size_t capacity, const wchar_t* source);
HRESULT StringCchPrintfW(wchar_t* destination, std::size_t capacity, const wchar_t* format, ...);
/// Compares two texts, telling capital from small letters. 0 when they are equal; the sign of any
/// other result is not relied on, for Windows sorts as its user's language does.
int lstrcmpW(const wchar_t* left, const wchar_t* right);
/// The system's text for an error code; only FORMAT_MESSAGE_FROM_SYSTEM is asked for. Returns the
/// characters written without the terminator, 0 for an unknown code.
DWORD FormatMessageW(DWORD flags, const void* source, DWORD message, DWORD language,
                     wchar_t* destination, DWORD capacity, std::va_list* arguments);

// ---- Debug output ----------------------------------------------------------------------------

/// Writes to the platform's debug output, formatted as wsprintfW does; text of any length.
void NKDbgPrintfW(const wchar_t* format, ...);

#elif !defined(UNDER_CE)  // from platform/windows

// What Windows CE has and the desktop lacks.

BOOL EventModify(HANDLE event, DWORD action);
void NKDbgPrintfW(const wchar_t* format, ...);
HANDLE ActivateDevice(const wchar_t* driver, DWORD client_info);
BOOL DeactivateDevice(HANDLE device);

/// LocalFree as the other platforms have it: a number that is no address is refused with code 6.
/// The desktop's own may end the process over one.
HLOCAL DesktopLocalFree(HLOCAL memory);
#define LocalFree(memory) DesktopLocalFree(memory)

// The port's services, which note what goes over a line that is recorded and pass everything on.

HANDLE DesktopCreateFile(const wchar_t* name, DWORD access, DWORD share,
                         SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                         HANDLE file_template);
BOOL DesktopCloseHandle(HANDLE handle);
BOOL DesktopSetCommState(HANDLE port, DCB* state);
BOOL DesktopReadFile(HANDLE port, void* buffer, DWORD count, DWORD* read, OVERLAPPED* overlapped);
BOOL DesktopWriteFile(HANDLE port, const void* data, DWORD count, DWORD* written,
                      OVERLAPPED* overlapped);
BOOL DesktopClearCommError(HANDLE port, DWORD* errors, COMSTAT* status);
#define CreateFileW(name, access, share, security, disposition, flags, file_template) \
  DesktopCreateFile(name, access, share, security, disposition, flags, file_template)
#define CloseHandle(handle) DesktopCloseHandle(handle)
#define SetCommState(port, state) DesktopSetCommState(port, state)
#define ReadFile(port, buffer, count, read, overlapped) \
  DesktopReadFile(port, buffer, count, read, overlapped)
#define WriteFile(port, data, count, written, overlapped) \
  DesktopWriteFile(port, data, count, written, overlapped)
#define ClearCommError(port, errors, status) DesktopClearCommError(port, errors, status)

#endif
