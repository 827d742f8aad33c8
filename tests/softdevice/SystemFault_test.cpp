// What the device does when the processor or the system misbehaves: a signature that comes out wrong, and locks that
// can't be had any more.

#include <dlfcn.h>
#include <fcntl.h>
#include <openssl/evp.h>
#include <sqlite3.h>

#include <cerrno>
#include <chrono>
#include <cstdarg>

#include "Support.h"
#include "softdevice/Check.h"
#include "softdevice/FileSystem.h"

namespace {

/// Whether the next signature comes out with its last bit wrong.
bool isNextSignatureWrong = false;

}  // namespace

/// Takes the place of libcrypto's.
extern "C" int EVP_DigestSign(EVP_MD_CTX* context, unsigned char* signature, std::size_t* length,
                              const unsigned char* message, std::size_t messageLength) {
  using Function = int (*)(EVP_MD_CTX*, unsigned char*, std::size_t*, const unsigned char*, std::size_t);
  static const auto real = reinterpret_cast<Function>(dlsym(RTLD_NEXT, "EVP_DigestSign"));
  const int result = real(context, signature, length, message, messageLength);
  if (result == 1 && signature != nullptr && isNextSignatureWrong) {
    signature[*length - 1] ^= 1;
    isNextSignatureWrong = false;
  }
  return result;
}

namespace softdevice::test {
namespace {

using Signature = DeviceTest;

TEST_F(Signature, ThatDoesNotVerifyDoesNotLeaveTheDevice) {
  Device device = Open();
  const std::string span = kDate + kTime;
  for (const auto& [command, request] : std::vector<std::pair<Command, std::string>>{
           {Command::SignBooking, kBooking}, {Command::SignDataOnly, kHash}, {Command::ReportSigned, span}}) {
    const DeviceState before = device.State();
    const std::vector<Total> totals = device.OpenTotals();
    isNextSignatureWrong = true;
    ExpectRefused(device.Execute(command, Hex(request)), RefusalCode::Internal,
                  "the signature that was made doesn't verify, nothing is recorded");
    EXPECT_FALSE(isNextSignatureWrong);
    EXPECT_EQ(device.State(), before);
    EXPECT_EQ(device.OpenTotals(), totals);
    // The next one goes well, under the number that wasn't used.
    Accepted(device, command, request);
  }
  EXPECT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 2, 2, 2}));
  EXPECT_TRUE(CheckDeviceFile(File()).IsRight());
}

TEST_F(Signature, OfTheActivationThatDoesNotVerifyLeavesNoDevice) {
  isNextSignatureWrong = true;
  EXPECT_THROW(static_cast<void>(Open()), DeviceError);
  EXPECT_EQ(std::filesystem::file_size(File()), 0U);
  EXPECT_EQ(Open().State().lifeCycle, LifeCycle::Activated);
}

/// What SQLite's calls that lock end in while this exists.
class SystemWithoutLocks {
 public:
  SystemWithoutLocks() {
    system_->xSetSystemCall(system_, "fcntl", reinterpret_cast<sqlite3_syscall_ptr>(Control));
  }
  ~SystemWithoutLocks() { system_->xSetSystemCall(system_, "fcntl", nullptr); }
  SystemWithoutLocks(const SystemWithoutLocks&) = delete;
  SystemWithoutLocks& operator=(const SystemWithoutLocks&) = delete;

 private:
  static int Control(int descriptor, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    if (command == F_SETLK || command == F_SETLKW) {
      errno = ENOLCK;
      return -1;
    }
    return fcntl(descriptor, command, argument);
  }

  sqlite3_vfs* system_ = sqlite3_vfs_find(nullptr);
};

using Locks = DeviceTest;

TEST_F(Locks, ThatCanNotBeHadAnyMoreAreNamedAtOnce) {
  Device device = Open();
  const std::string reason =
      "device file '" + File().string() + "': its file system has no locks to give (No locks available)";
  {
    const SystemWithoutLocks system;
    const auto start = std::chrono::steady_clock::now();
    ExpectRefused(device.Execute(Command::SignBooking, Hex(kBooking)), RefusalCode::Storage, reason);
    try {
      static_cast<void>(device.State());
      ADD_FAILURE();
    } catch (const DeviceError& error) {
      EXPECT_EQ(error.what(), reason);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
  }
  EXPECT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U);
}

TEST_F(Locks, AreLookedAtWithoutLeavingAFile) {
  static_cast<void>(Open());
  CheckLocks(File());
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
    names.push_back(entry.path().filename().string());
  }
  EXPECT_EQ(names, std::vector<std::string>{"till.zel"});
}

TEST_F(Locks, AreNotLookedAtWhereNoFileCanBeMade) {
  EXPECT_NO_THROW(CheckLocks(folder_ / "missing" / "till.zel"));
}

}  // namespace
}  // namespace softdevice::test
