#include "station/OnAirElement.h"

namespace zemo {

std::string TitleOf(const OnAirElement& element) {
  return element.title + "  " + element.secondLine;
}

}  // namespace zemo
