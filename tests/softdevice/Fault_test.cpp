// Each call to the operating system that can fail while something is recorded, made to fail.

#include <cstddef>
#include <ostream>

#include "Support.h"
#include "softdevice/Check.h"
#include "softdevice/Verify.h"

namespace softdevice::test {
namespace {

/// A file system for SQLite that goes through to the real one until a call is due to fail.
class FaultySystem {
 public:
  enum class Kind {
    FullDisk,    ///< writing fails for lack of space
    BrokenDisk,  ///< the call fails before it has done anything
    LateFailure  ///< the call is done and then reports a failure
  };

  FaultySystem() {
    vfs_ = *real_;
    vfs_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
    vfs_.zName = "faulty";
    vfs_.xOpen = [](sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* outFlags) {
      return Opened(name, file, flags, outFlags);
    };
    vfs_.xDelete = [](sqlite3_vfs*, const char* name, int syncFolder) {
      return current_->Call(SQLITE_IOERR_DELETE,
                            [&] { return current_->real_->xDelete(current_->real_, name, syncFolder); });
    };
    vfs_.xAccess = [](sqlite3_vfs*, const char* name, int flags, int* result) {
      return current_->real_->xAccess(current_->real_, name, flags, result);
    };
    vfs_.xFullPathname = [](sqlite3_vfs*, const char* name, int size, char* out) {
      return current_->real_->xFullPathname(current_->real_, name, size, out);
    };
    current_ = this;
    sqlite3_vfs_register(&vfs_, 1);
  }

  ~FaultySystem() {
    sqlite3_vfs_unregister(&vfs_);
    sqlite3_vfs_register(real_, 1);
  }

  FaultySystem(const FaultySystem&) = delete;
  FaultySystem& operator=(const FaultySystem&) = delete;

  /// The call number `number`, counted from 1, is due to fail, or that one and all after it.
  void FailAt(int number, Kind kind, bool forGood) {
    countdown_ = number;
    kind_ = kind;
    forGood_ = forGood;
    failed_ = false;
  }

  /// Nothing fails any more; returns whether anything did.
  bool Stop() {
    countdown_ = 0;
    return failed_;
  }

 private:
  struct File {
    sqlite3_file base;

    [[nodiscard]] sqlite3_file* Real() {
      return reinterpret_cast<sqlite3_file*>(reinterpret_cast<std::byte*>(this) + sizeof(File));
    }
  };

  static sqlite3_file* Real(sqlite3_file* file) { return reinterpret_cast<File*>(file)->Real(); }

  template <typename Do>
  int Call(int error, Do&& doIt) {
    if (countdown_ != 1) {
      countdown_ -= countdown_ > 1 ? 1 : 0;
      return doIt();
    }
    failed_ = true;
    countdown_ = forGood_ ? 1 : 0;
    if (kind_ == Kind::LateFailure) {
      static_cast<void>(doIt());
    }
    return kind_ == Kind::FullDisk ? SQLITE_FULL : error;
  }

  static int Opened(const char* name, sqlite3_file* file, int flags, int* outFlags) {
    static const sqlite3_io_methods kMethods = Methods();
    sqlite3_vfs* real = current_->real_;
    file->pMethods = nullptr;
    const auto open = [&] { return real->xOpen(real, name, Real(file), flags, outFlags); };
    const int result = (flags & SQLITE_OPEN_MAIN_DB) != 0 ? open() : current_->Call(SQLITE_CANTOPEN, open);
    if (result == SQLITE_OK) {
      file->pMethods = &kMethods;
    } else if (Real(file)->pMethods != nullptr) {
      Real(file)->pMethods->xClose(Real(file));
    }
    return result;
  }

  static sqlite3_io_methods Methods() {
    sqlite3_io_methods methods{};
    methods.iVersion = 1;
    methods.xClose = [](sqlite3_file* file) { return Real(file)->pMethods->xClose(Real(file)); };
    methods.xRead = [](sqlite3_file* file, void* data, int size, sqlite3_int64 offset) {
      return Real(file)->pMethods->xRead(Real(file), data, size, offset);
    };
    methods.xWrite = [](sqlite3_file* file, const void* data, int size, sqlite3_int64 offset) {
      return current_->Call(SQLITE_IOERR_WRITE,
                            [&] { return Real(file)->pMethods->xWrite(Real(file), data, size, offset); });
    };
    methods.xTruncate = [](sqlite3_file* file, sqlite3_int64 size) {
      return current_->Call(SQLITE_IOERR_TRUNCATE,
                            [&] { return Real(file)->pMethods->xTruncate(Real(file), size); });
    };
    methods.xSync = [](sqlite3_file* file, int flags) {
      return current_->Call(SQLITE_IOERR_FSYNC,
                            [&] { return Real(file)->pMethods->xSync(Real(file), flags); });
    };
    methods.xFileSize = [](sqlite3_file* file, sqlite3_int64* size) {
      return Real(file)->pMethods->xFileSize(Real(file), size);
    };
    methods.xLock = [](sqlite3_file* file, int lock) {
      return Real(file)->pMethods->xLock(Real(file), lock);
    };
    methods.xUnlock = [](sqlite3_file* file, int lock) {
      return Real(file)->pMethods->xUnlock(Real(file), lock);
    };
    methods.xCheckReservedLock = [](sqlite3_file* file, int* result) {
      return Real(file)->pMethods->xCheckReservedLock(Real(file), result);
    };
    methods.xFileControl = [](sqlite3_file* file, int what, void* data) {
      return Real(file)->pMethods->xFileControl(Real(file), what, data);
    };
    methods.xSectorSize = [](sqlite3_file* file) { return Real(file)->pMethods->xSectorSize(Real(file)); };
    methods.xDeviceCharacteristics = [](sqlite3_file* file) {
      return Real(file)->pMethods->xDeviceCharacteristics(Real(file));
    };
    return methods;
  }

  static inline FaultySystem* current_ = nullptr;

  sqlite3_vfs* real_ = sqlite3_vfs_find(nullptr);
  sqlite3_vfs vfs_{};
  int countdown_ = 0;
  Kind kind_ = Kind::FullDisk;
  bool forGood_ = false;
  bool failed_ = false;
};

struct Fault {
  const char* name;
  FaultySystem::Kind kind;
  bool forGood;
};

void PrintTo(const Fault& value, std::ostream* out) { *out << value.name; }

class StorageFault : public DeviceTest, public testing::WithParamInterface<Fault> {};

TEST_P(StorageFault, LeavesABookingWholeOrNotAtAll) {
  const Bytes request = Hex(kBooking);
  const std::string start = "device file '" + File().string() + "': ";
  static_cast<void>(Open());
  FaultySystem system;
  int refusals = 0;
  std::uint32_t last = 0;
  for (int call = 1;; ++call) {
    Device device = Device::Open(File());
    system.FailAt(call, GetParam().kind, GetParam().forGood);
    const Answer answer = device.Execute(Command::SignBooking, request);
    if (!system.Stop()) {
      EXPECT_TRUE(answer.accepted) << answer.reason;
      break;
    }
    const std::uint32_t now = Device::Open(File()).LastSequenceNumber();
    if (answer.accepted) {
      ASSERT_EQ(answer.sequenceNumber, last + 1);
      ASSERT_EQ(now, last + 1) << "call " << call;
      ASSERT_EQ(device.Find(now)->response, answer.response);
    } else {
      ++refusals;
      EXPECT_EQ(answer.code, RefusalCode::Storage) << answer.reason;
      EXPECT_EQ(answer.reason.substr(0, start.size()), start);
      if (GetParam().kind == FaultySystem::Kind::FullDisk) {
        EXPECT_NE(answer.reason.find("the disk is full"), std::string::npos) << answer.reason;
      }
      if (answer.reason.find("can't be said") == std::string::npos) {
        ASSERT_EQ(now, last) << "call " << call << ": " << answer.reason;
        ASSERT_FALSE(device.Find(last + 1).has_value());
      }
    }
    last = now;
    // The same object goes on once the disk is well again.
    const Answer next = device.Execute(Command::SignBooking, request);
    ASSERT_TRUE(next.accepted) << "call " << call << ": " << next.reason;
    ASSERT_EQ(next.sequenceNumber, ++last);
  }
  EXPECT_GT(refusals, 5);
  EXPECT_EQ(CheckDeviceFile(File()).damages, std::vector<std::string>{});
  const Device device = Device::Open(File());
  for (std::uint32_t number = 1; number <= device.LastSequenceNumber(); ++number) {
    ASSERT_TRUE(VerifyBooking(request, device.Find(number)->response, device.PublicKeyPem()).ok);
  }
  EXPECT_EQ(device.Totals().at(0).bookings, device.LastSequenceNumber());
}

TEST_P(StorageFault, LeavesAClosingWholeOrNotAtAll) {
  const Bytes request = Hex(kDate + kTime);
  static_cast<void>(Open());
  FaultySystem system;
  int refusals = 0;
  for (int call = 1;; ++call) {
    Device device = Device::Open(File());
    ASSERT_TRUE(device.Execute(Command::SignBooking, Hex(kBooking)).accepted);
    const std::vector<Total> openBefore = device.OpenTotals();
    const DeviceState before = device.State();
    system.FailAt(call, GetParam().kind, GetParam().forGood);
    const Answer answer = device.Execute(Command::ReportSigned, request);
    if (!system.Stop()) {
      EXPECT_TRUE(answer.accepted) << answer.reason;
      break;
    }
    const DeviceState now = Device::Open(File()).State();
    const bool isClosed = now.lastReportNumber == before.lastReportNumber + 1;
    if (answer.accepted) {
      ASSERT_TRUE(isClosed) << "call " << call;
      ASSERT_EQ(answer.sequenceNumber, now.lastReportNumber);
      ASSERT_EQ(device.FindReport(answer.sequenceNumber)->response, answer.response);
    } else {
      ++refusals;
      EXPECT_EQ(answer.code, RefusalCode::Storage) << answer.reason;
      if (answer.reason.find("can't be said") == std::string::npos) {
        ASSERT_FALSE(isClosed) << "call " << call << ": " << answer.reason;
      } else {
        EXPECT_NE(answer.reason.find("; whether report " + std::to_string(before.lastReportNumber + 1) +
                                     " is recorded can't be said"),
                  std::string::npos)
            << answer.reason;
      }
    }
    // The closing, its numbers, and the totals that it begins anew belong together.
    if (isClosed) {
      ASSERT_EQ(now.lastReportedNumber, now.lastSequenceNumber);
      ASSERT_TRUE(device.OpenTotals().empty());
      const std::optional<SignedRequest> recorded = device.FindReport(now.lastReportNumber);
      ASSERT_TRUE(VerifyReport(request, recorded->response, device.PublicKeyPem()).ok);
    } else {
      ASSERT_EQ(now, before);
      ASSERT_EQ(device.OpenTotals(), openBefore);
      ASSERT_FALSE(device.FindReport(before.lastReportNumber + 1).has_value());
    }
  }
  EXPECT_GT(refusals, 5);
  EXPECT_EQ(CheckDeviceFile(File()).damages, std::vector<std::string>{});
}

TEST_P(StorageFault, NeverSaysThatAPinIsWrongWithoutCountingIt) {
  const Bytes wrong = MakeActivationRequest("000000");
  static_cast<void>(OpenInactive());
  FaultySystem system;
  int refusals = 0;
  for (int call = 1;; ++call) {
    RunSqlAndSeal("UPDATE device SET wrong_pins = 0");
    Device device = Device::Open(File());
    system.FailAt(call, GetParam().kind, GetParam().forGood);
    const Answer answer = device.Execute(Command::ReportActivate, wrong);
    const bool failed = system.Stop();
    const int counted = Device::Open(File()).State().wrongPins;
    if (answer.code == RefusalCode::WrongPin) {
      ASSERT_EQ(counted, 1) << "call " << call;
    } else {
      ++refusals;
      ASSERT_EQ(answer.code, RefusalCode::Storage) << answer.reason;
    }
    if (!failed) {
      break;
    }
  }
  EXPECT_GT(refusals, 5);
  EXPECT_EQ(CheckDeviceFile(File()).damages, std::vector<std::string>{});
}

TEST_P(StorageFault, LeavesADeviceWholeOrNotAtAllWhenItIsMade) {
  FaultySystem system;
  int failures = 0;
  for (int call = 1;; ++call) {
    std::filesystem::remove(File());
    std::filesystem::remove(File().string() + "-journal");
    system.FailAt(call, GetParam().kind, GetParam().forGood);
    try {
      static_cast<void>(Open());
    } catch (const DeviceError& error) {
      EXPECT_EQ(std::string(error.what()).find("device file '" + File().string() + "': "), 0U);
      ++failures;
    }
    const bool failed = system.Stop();
    Device device = Open();
    ASSERT_EQ(device.State(), (DeviceState{LifeCycle::Activated, 0, 0, 1, 0})) << "call " << call;
    ASSERT_EQ(device.Execute(Command::SignBooking, Hex(kBooking)).sequenceNumber, 1U) << "call " << call;
    if (!failed) {
      break;
    }
  }
  EXPECT_GT(failures, 5);
}

INSTANTIATE_TEST_SUITE_P(AnyCall, StorageFault,
                         testing::Values(Fault{"FullDisk", FaultySystem::Kind::FullDisk, false},
                                         Fault{"DiskThatStaysFull", FaultySystem::Kind::FullDisk, true},
                                         Fault{"OneFailure", FaultySystem::Kind::BrokenDisk, false},
                                         Fault{"BrokenDisk", FaultySystem::Kind::BrokenDisk, true},
                                         Fault{"OneLateFailure", FaultySystem::Kind::LateFailure, false},
                                         Fault{"LateFailures", FaultySystem::Kind::LateFailure, true}),
                         [](const testing::TestParamInfo<Fault>& info) { return info.param.name; });

}  // namespace
}  // namespace softdevice::test
