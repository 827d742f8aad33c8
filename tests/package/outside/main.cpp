#include <VnZEL10cmn/VnZEL10cmn.h>

#include <cstdio>
#include <string>

int main() {
  VnZEL10cmn::clsHelper01 helper;
  const std::string first = helper.CreateGUID();
  const std::string second = helper.CreateGUID();
  const auto price = VnZEL10cmn::Currency::FromScaled(123400);
  std::printf("%s %s %lld\n", first.c_str(), second.c_str(), static_cast<long long>(price.Scaled()));
  return first.size() == 36 && second.size() == 36 && first != second && price.Scaled() == 123400 ? 0 : 1;
}
