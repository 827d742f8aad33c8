#include "VnZEL10cmn/errors/internal/CurrentFault.h"

#include <new>
#include <stdexcept>

namespace VnZEL10cmn::internal {

RunTimeNumber CurrentFault() noexcept {
  try {
    throw;
  } catch (const std::overflow_error&) {
    return RunTimeNumber::Overflow;
  } catch (const std::bad_alloc&) {
    return RunTimeNumber::OutOfMemory;
  } catch (const std::out_of_range&) {
    return RunTimeNumber::OutOfRange;
  } catch (const std::invalid_argument&) {
    return RunTimeNumber::TypeMismatch;
  } catch (const ObjectNotSet&) {
    return RunTimeNumber::ObjectNotSet;
  } catch (...) {
    return RunTimeNumber::InvalidCall;
  }
}

}  // namespace VnZEL10cmn::internal
