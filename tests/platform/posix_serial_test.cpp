// SPDX-License-Identifier: MIT
// Serial ports on Linux: which device a name stands for, who keeps whom out, and what happens to a
// terminal that is blocked, full or gone.
#include <fcntl.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/posix/port_name.h"
#include "support.h"

namespace ipodcomm::test {
namespace {

using platform::DeviceOfPort;

HANDLE Open(const wchar_t* name) {
  return CreateFileW(name, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
}

class PosixSerial : public PlatformTest {
 protected:
  static std::string Device() { return std::getenv("IPODCOMM_COM2"); }
};

TEST_F(PosixSerial, NamesStandForTheKernelsPorts) {
  unsetenv("IPODCOMM_COM1");
  unsetenv("IPODCOMM_COM2");
  unsetenv("IPODCOMM_COM10");
  EXPECT_EQ(DeviceOfPort(L"COM1:"), "/dev/ttyS0");
  EXPECT_EQ(DeviceOfPort(L"com2"), "/dev/ttyS1");
  EXPECT_EQ(DeviceOfPort(L"Com10:"), "/dev/ttyS9");
}

TEST_F(PosixSerial, TheEnvironmentSaysOtherwise) {
  setenv("IPODCOMM_COM3", "/dev/ttyUSB0", 1);
  EXPECT_EQ(DeviceOfPort(L"COM3:"), "/dev/ttyUSB0");
  EXPECT_EQ(DeviceOfPort(L"com3"), "/dev/ttyUSB0");
  setenv("IPODCOMM_COM3", "", 1);
  EXPECT_EQ(DeviceOfPort(L"COM3:"), "/dev/ttyS2");
  unsetenv("IPODCOMM_COM3");
}

TEST_F(PosixSerial, OtherNamesStandForNothing) {
  for (const wchar_t* name : {L"", L"C", L"COM", L"COM:", L"COM0:", L"COM02:", L"COM2::", L"COM2:x",
                              L"COM-1:", L"COM1000:", L"LPT1:", L"/dev/ttyS0", L" COM2:"}) {
    EXPECT_EQ(DeviceOfPort(name), std::nullopt);
  }
  EXPECT_EQ(DeviceOfPort(nullptr), std::nullopt);
}

TEST_F(PosixSerial, FollowsALinkToTheDevice) {
  ASSERT_EQ(symlink(Device().c_str(), "dock"), 0);
  setenv("IPODCOMM_COM2", "dock", 1);
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(port, "x", 1, &written, nullptr));
  EXPECT_EQ(world.Receive(1), Bytes{'x'});
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PosixSerial, ALinkAndItsTargetAreOnePort) {
  ASSERT_EQ(symlink(Device().c_str(), "dock"), 0);
  setenv("IPODCOMM_COM3", "dock", 1);
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  EXPECT_EQ(Open(L"COM3:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 5U);
  EXPECT_TRUE(CloseHandle(port));
  unsetenv("IPODCOMM_COM3");
}

TEST_F(PosixSerial, WhatIsNoTerminalIsNoPort) {
  world.PlaceFile(L"file", {'x'});
  setenv("IPODCOMM_COM2", "file", 1);
  EXPECT_EQ(Open(L"COM2:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
  setenv("IPODCOMM_COM2", ".", 1);
  EXPECT_EQ(Open(L"COM2:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
}

TEST_F(PosixSerial, AMissingDeviceIsNotFound) {
  setenv("IPODCOMM_COM2", "/dev/no such device", 1);
  EXPECT_EQ(Open(L"COM2:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 2U);
}

TEST_F(PosixSerial, KeepsOtherProcessesOut) {
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  const pid_t child = fork();
  if (child == 0) {
    const HANDLE second = Open(L"COM2:");
    _exit(second == INVALID_HANDLE_VALUE ? static_cast<int>(GetLastError()) : 100);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 5);
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PosixSerial, IsKeptOutByAnotherProcessUntilThatEnds) {
  int ready[2];
  int finish[2];
  ASSERT_EQ(pipe(ready), 0);
  ASSERT_EQ(pipe(finish), 0);
  const pid_t child = fork();
  if (child == 0) {
    char answer = Open(L"COM2:") != INVALID_HANDLE_VALUE ? 'y' : 'n';
    [[maybe_unused]] ssize_t ignored = write(ready[1], &answer, 1);
    ignored = read(finish[0], &answer, 1);
    _exit(0);
  }
  char opened = 0;
  ASSERT_EQ(read(ready[0], &opened, 1), 1);
  ASSERT_EQ(opened, 'y');
  EXPECT_EQ(Open(L"COM2:"), INVALID_HANDLE_VALUE);
  EXPECT_EQ(GetLastError(), 5U);
  ASSERT_EQ(write(finish[1], "x", 1), 1);
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  const HANDLE port = Open(L"COM2:");
  EXPECT_NE(port, INVALID_HANDLE_VALUE);
  EXPECT_TRUE(CloseHandle(port));
  for (const int end : {ready[0], ready[1], finish[0], finish[1]}) close(end);
}

TEST_F(PosixSerial, TakesTheLineIntoRawMode) {
  const int line = open(Device().c_str(), O_RDWR | O_NOCTTY);
  ASSERT_GE(line, 0);
  termios settings;
  tcgetattr(line, &settings);
  settings.c_lflag |= ECHO | ICANON | ISIG;
  settings.c_iflag |= ICRNL | IXON;
  settings.c_oflag |= OPOST | ONLCR;
  tcsetattr(line, TCSANOW, &settings);
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  ASSERT_EQ(tcgetattr(line, &settings), 0);
  EXPECT_EQ(settings.c_lflag & (ECHO | ICANON | ISIG), 0U);
  EXPECT_EQ(settings.c_iflag & (ICRNL | IXON), 0U);
  EXPECT_EQ(settings.c_oflag & OPOST, 0U);
  EXPECT_TRUE(CloseHandle(port));
  close(line);
}

TEST_F(PosixSerial, OneAndAHalfStopBitsBecomeTwo) {
  const int line = open(Device().c_str(), O_RDWR | O_NOCTTY);
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  DCB state = {};
  state.DCBlength = 28;
  state.BaudRate = 57600;
  state.fBinary = 1;
  state.ByteSize = 8;
  state.StopBits = ONE5STOPBITS;
  ASSERT_TRUE(SetCommState(port, &state));
  termios settings;
  ASSERT_EQ(tcgetattr(line, &settings), 0);
  EXPECT_EQ(cfgetospeed(&settings), static_cast<speed_t>(B57600));
  EXPECT_EQ(settings.c_cflag & CSTOPB, static_cast<tcflag_t>(CSTOPB));
  EXPECT_EQ(settings.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
  EXPECT_EQ(settings.c_cflag & PARENB, 0U);
  EXPECT_TRUE(CloseHandle(port));
  close(line);
}

TEST_F(PosixSerial, ClosingEndsAWriteThatIsBlocked) {
  const HANDLE port = Open(L"COM2:");
  ASSERT_NE(port, INVALID_HANDLE_VALUE);
  const Bytes much(1000000, 0xA5);  // far more than a terminal holds, and nobody reads it
  TestThread writer([&, port] {
    DWORD written = 0;
    EXPECT_FALSE(WriteFile(port, much.data(), static_cast<DWORD>(much.size()), &written, nullptr));
    EXPECT_LT(written, much.size());
  });
  Sleep(50);
  EXPECT_TRUE(CloseHandle(port));
  EXPECT_TRUE(writer.Join());
}

TEST_F(PosixSerial, AWriteTimeoutEndsAWriteThatIsBlocked) {
  const HANDLE port = Open(L"COM2:");
  COMMTIMEOUTS timeouts = {0, 0, 0, 0, 20};
  ASSERT_TRUE(SetCommTimeouts(port, &timeouts));
  const Bytes much(1000000, 0xA5);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(port, much.data(), static_cast<DWORD>(much.size()), &written, nullptr));
  EXPECT_LT(written, much.size());
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PosixSerial, ALineThatVanishesEndsAWriteThatIsBlocked) {
  const HANDLE port = Open(L"COM2:");
  const Bytes much(1000000, 0xA5);
  TestThread writer([&, port] {
    DWORD written = 0;
    EXPECT_FALSE(WriteFile(port, much.data(), static_cast<DWORD>(much.size()), &written, nullptr));
    EXPECT_EQ(GetLastError(), 31U);
  });
  Sleep(50);
  world.Unplug();
  EXPECT_TRUE(writer.Join());
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PosixSerial, AVanishedLineFailsWith31) {
  const HANDLE port = Open(L"COM2:");
  world.Unplug();
  char byte = 0;
  DWORD count = 0;
  COMSTAT status = {};
  EXPECT_FALSE(ReadFile(port, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), 31U);
  EXPECT_FALSE(WriteFile(port, &byte, 1, &count, nullptr));
  EXPECT_EQ(GetLastError(), 31U);
  EXPECT_FALSE(ClearCommError(port, nullptr, &status));
  EXPECT_EQ(GetLastError(), 31U);
  EXPECT_TRUE(CloseHandle(port));
}

TEST_F(PosixSerial, APortOpensAgainAfterItsLineCameBack) {
  const HANDLE port = Open(L"COM2:");
  world.Unplug();
  EXPECT_EQ(Open(L"COM2:"), INVALID_HANDLE_VALUE);
  EXPECT_TRUE(CloseHandle(port));
  World replugged;
  const HANDLE again = Open(L"COM2:");
  EXPECT_NE(again, INVALID_HANDLE_VALUE);
  DWORD written = 0;
  EXPECT_TRUE(WriteFile(again, "x", 1, &written, nullptr));
  EXPECT_EQ(replugged.Receive(1), Bytes{'x'});
  EXPECT_TRUE(CloseHandle(again));
}

TEST_F(PosixSerial, ManyThreadsMayCloseAPortInUse) {
  for (int turn = 0; turn < 20; ++turn) {
    const HANDLE port = Open(L"COM2:");
    ASSERT_NE(port, INVALID_HANDLE_VALUE);
    COMMTIMEOUTS timeouts = {1, 1, 1, 0, 0};
    ASSERT_TRUE(SetCommTimeouts(port, &timeouts));
    int closed[2] = {};
    {
      TestThread reader([port] {
        char byte = 0;
        DWORD read = 0;
        while (ReadFile(port, &byte, 1, &read, nullptr)) {
        }
      });
      TestThread writer([port] {
        DWORD written = 0;
        while (WriteFile(port, "x", 1, &written, nullptr)) Sleep(1);
      });
      Sleep(2);
      TestThread one([&, port] { closed[0] = CloseHandle(port); });
      TestThread two([&, port] { closed[1] = CloseHandle(port); });
    }
    EXPECT_EQ(closed[0] + closed[1], 1);
  }
}

}  // namespace
}  // namespace ipodcomm::test
