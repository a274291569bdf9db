// The orders that a script, and whoever else has a station's ear, can give: the one table of them,
// and how they are carried out.
#pragma once

#include <span>
#include <stdexcept>
#include <string>

#include "app/OrderForms.h"

namespace zemo {

std::span<const Order> Orders();

// Why an order could not be carried out; the number is SQLite's, 0 for all else.
struct OrderError : std::runtime_error {
  explicit OrderError(const std::string& text, int givenNumber = 0)
      : std::runtime_error(text), number(givenNumber) {}
  int number;
};

// Why an operator who is not at the machine cannot give the order to a station on air; empty: he
// can.
std::string WhyNotFromElsewhere(const Order& order);

// An order of the operator, on any station. Throws OrderError for one that needs a simulation, and
// std::exception for what could not be done.
void CarryOut(Station& station, const GivenOrder& given);

// Any order. Never throws: one that cannot be carried out is one event `error` with the order as
// its place.
void ServeOrder(SimStation& sim, const GivenOrder& given);

}  // namespace zemo
