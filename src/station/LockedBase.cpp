#include "station/LockedBase.h"

#include "store/StoreError.h"

namespace zemo {

bool IsOfLockedBase(const std::exception& fault) {
  const auto* store = dynamic_cast<const StoreError*>(&fault);
  return store && store->Number() == kErrLocked;
}

}  // namespace zemo
