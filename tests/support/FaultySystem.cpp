// Loaded before the C library (LD_PRELOAD), it lets a program's call number FAULTY_CALL that changes files fail,
// counted from 1 over all of them. FAULTY_KIND says how: "before" it has done anything, "late" when it is done,
// "short" when half of the bytes are written, which is no failure at all. FAULTY_ERROR is the error's number.
// The name of the call is left in the file FAULTY_MARK. What goes to standard error always succeeds.
//
// FAULTY_CLOCK is the time that the system's clock shows, in seconds since 1970. FAULTY_LOCKS is "idle" for locks
// on files that are given to whoever asks and hold nobody off, or the number of the error that asking ends in. Where
// FAULTY_THREADS is set, no more than so many threads can be made.

#include <dlfcn.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <sys/uio.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <ctime>

namespace {

std::atomic<long> calls{0};

bool IsKind(const char* kind) {
  const char* const chosen = std::getenv("FAULTY_KIND");
  return chosen != nullptr && std::strcmp(chosen, kind) == 0;
}

int ErrorNumber() {
  const char* const number = std::getenv("FAULTY_ERROR");
  return number != nullptr ? std::atoi(number) : EIO;
}

bool IsDue(const char* name) {
  const char* const number = std::getenv("FAULTY_CALL");
  const char* const mark = std::getenv("FAULTY_MARK");
  if (number == nullptr || mark == nullptr || ++calls != std::atol(number)) return false;
  const long file = syscall(SYS_openat, AT_FDCWD, mark, O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
  syscall(SYS_write, file, name, std::strlen(name));
  syscall(SYS_close, file);
  return true;
}

/// The function of that name that comes next, which is the C library's or a sanitizer's.
template <typename Function>
Function Next(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// A call that returns -1 and leaves the reason in errno.
template <typename Real>
auto Call(const char* name, Real&& real) -> decltype(real()) {
  if (!IsDue(name) || IsKind("short")) return real();
  if (IsKind("late")) static_cast<void>(real());
  errno = ErrorNumber();
  return -1;
}

/// The same for one that writes `size` bytes, given to `real`.
template <typename Real>
ssize_t Write(const char* name, int descriptor, size_t size, Real&& real) {
  if (descriptor == STDERR_FILENO || !IsDue(name)) return real(size);
  if (IsKind("short")) return real((size + 1) / 2);
  if (IsKind("late")) static_cast<void>(real(size));
  errno = ErrorNumber();
  return -1;
}

template <typename Real>
int Allocate(const char* name, Real&& real) {
  if (!IsDue(name) || IsKind("short")) return real();
  if (IsKind("late")) static_cast<void>(real());
  return ErrorNumber();
}

/// A file that isn't opened isn't made either.
template <typename Real>
int Open(int flags, Real&& real) {
  if ((flags & O_CREAT) == 0 || !IsDue("open") || IsKind("short")) return real();
  errno = ErrorNumber();
  return -1;
}

/// The time that the clock is to show, if it is not the right one.
bool HasFaultyTime(std::time_t& time) {
  const char* const seconds = std::getenv("FAULTY_CLOCK");
  if (seconds == nullptr) return false;
  time = static_cast<std::time_t>(std::atoll(seconds));
  return true;
}

bool IsLock(int command) {
  return command == F_SETLK || command == F_SETLKW || command == F_OFD_SETLK || command == F_OFD_SETLKW;
}

/// A call that locks or unlocks.
template <typename Real>
int Lock(Real&& real) {
  const char* const locks = std::getenv("FAULTY_LOCKS");
  if (locks == nullptr) return real();
  if (std::strcmp(locks, "idle") == 0) return 0;
  errno = std::atoi(locks);
  return -1;
}

int Control(const char* name, int descriptor, int command, void* argument) {
  const auto real = [=] { return Next<int (*)(int, int, ...)>(name)(descriptor, command, argument); };
  return IsLock(command) ? Lock(real) : real();
}

mode_t ModeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) == 0 ? 0 : static_cast<mode_t>(va_arg(arguments, unsigned));
}

}  // namespace

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(flags, [&] { return Next<int (*)(const char*, int, ...)>("open")(path, flags, mode); });
}

int open64(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  return Open(flags, [&] { return Next<int (*)(const char*, int, ...)>("open64")(path, flags, mode); });
}

ssize_t write(int descriptor, const void* data, size_t size) {
  return Write("write", descriptor, size, [&](size_t some) {
    return Next<ssize_t (*)(int, const void*, size_t)>("write")(descriptor, data, some);
  });
}

ssize_t writev(int descriptor, const struct iovec* parts, int count) {
  return Call("writev", [&] {
    return Next<ssize_t (*)(int, const struct iovec*, int)>("writev")(descriptor, parts, count);
  });
}

ssize_t pwrite(int descriptor, const void* data, size_t size, off_t offset) {
  return Write("pwrite", descriptor, size, [&](size_t some) {
    return Next<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite")(descriptor, data, some, offset);
  });
}

ssize_t pwrite64(int descriptor, const void* data, size_t size, off64_t offset) {
  return Write("pwrite", descriptor, size, [&](size_t some) {
    return Next<ssize_t (*)(int, const void*, size_t, off64_t)>("pwrite64")(descriptor, data, some, offset);
  });
}

int fsync(int descriptor) {
  return Call("fsync", [=] { return Next<int (*)(int)>("fsync")(descriptor); });
}

int fdatasync(int descriptor) {
  return Call("fdatasync", [=] { return Next<int (*)(int)>("fdatasync")(descriptor); });
}

int ftruncate(int descriptor, off_t size) noexcept {
  return Call("ftruncate", [=] { return Next<int (*)(int, off_t)>("ftruncate")(descriptor, size); });
}

int ftruncate64(int descriptor, off64_t size) noexcept {
  return Call("ftruncate", [=] { return Next<int (*)(int, off64_t)>("ftruncate64")(descriptor, size); });
}

int posix_fallocate(int descriptor, off_t offset, off_t size) {
  return Allocate("posix_fallocate", [=] {
    return Next<int (*)(int, off_t, off_t)>("posix_fallocate")(descriptor, offset, size);
  });
}

int posix_fallocate64(int descriptor, off64_t offset, off64_t size) {
  return Allocate("posix_fallocate", [=] {
    return Next<int (*)(int, off64_t, off64_t)>("posix_fallocate64")(descriptor, offset, size);
  });
}

int rename(const char* from, const char* to) noexcept {
  return Call("rename", [=] { return Next<int (*)(const char*, const char*)>("rename")(from, to); });
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  return Call("renameat2", [=] {
    return Next<int (*)(int, const char*, int, const char*, unsigned)>("renameat2")(fromFolder, from,
                                                                                    toFolder, to, flags);
  });
}

int link(const char* from, const char* to) noexcept {
  return Call("link", [=] { return Next<int (*)(const char*, const char*)>("link")(from, to); });
}

int unlink(const char* path) noexcept {
  return Call("unlink", [=] { return Next<int (*)(const char*)>("unlink")(path); });
}

int mknod(const char* path, mode_t mode, dev_t device) noexcept {
  return Call("mknod",
              [=] { return Next<int (*)(const char*, mode_t, dev_t)>("mknod")(path, mode, device); });
}

int fcntl(int descriptor, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return Control("fcntl", descriptor, command, argument);
}

int fcntl64(int descriptor, int command, ...) {
  va_list arguments;
  va_start(arguments, command);
  void* const argument = va_arg(arguments, void*);
  va_end(arguments);
  return Control("fcntl64", descriptor, command, argument);
}

int flock(int descriptor, int operation) noexcept {
  return Lock([=] { return Next<int (*)(int, int)>("flock")(descriptor, operation); });
}

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  if (clock == CLOCK_REALTIME && HasFaultyTime(time->tv_sec)) {
    time->tv_nsec = 0;
    return 0;
  }
  return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

int gettimeofday(timeval* time, void* zone) noexcept {
  if (HasFaultyTime(time->tv_sec)) {
    time->tv_usec = 0;
    return 0;
  }
  return static_cast<int>(syscall(SYS_gettimeofday, time, zone));
}

std::time_t time(std::time_t* out) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (out != nullptr) *out = now.tv_sec;
  return now.tv_sec;
}

int pthread_create(pthread_t* thread, const pthread_attr_t* attributes, void* (*start)(void*),
                   void* argument) noexcept {
  static std::atomic<long> threads{0};
  const char* const most = std::getenv("FAULTY_THREADS");
  if (most != nullptr && ++threads > std::atol(most)) return EAGAIN;
  using Create = int (*)(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);
  return Next<Create>("pthread_create")(thread, attributes, start, argument);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return Call("mkdir", [=] { return Next<int (*)(const char*, mode_t)>("mkdir")(path, mode); });
}

}  // extern "C"
