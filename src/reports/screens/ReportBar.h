// The head of the report's window: the days of the span and the filters.
#pragma once

#include <functional>
#include <string>

#include "reports/ReportEditor.h"
#include "ui/FieldPage.h"

namespace zemo {

// What the bar asks of its window.
struct ReportBarOrders {
  std::function<void()> pickFirst, pickLast;  // a day in the calendar
  std::function<void()> firstAlone;
  std::function<void()> read;
  std::function<void()> filter;  // something was typed
};

struct TypedFilters {
  std::string artist, genre, variety;
  bool operator==(const TypedFilters&) const = default;
};

class ReportBar : public FieldPage {
 public:
  // Editor and texts outlive the bar.
  ReportBar(const ReportEditor& editor, ReportBarOrders orders, const Translation& texts,
            QWidget* parent);
  TypedFilters Typed() const;
  void EmptyFilters();
  void Arrange(double unit) override;

 private:
  QWidget* Filter(const char* name, QLineEdit*& box);

  const ReportEditor& editor_;
  const ReportBarOrders orders_;
  QLabel *LblDate = nullptr, *LblDateFin = nullptr, *LblLecture = nullptr, *LblCompteur = nullptr;
  QLineEdit *FiltreArtiste = nullptr, *FiltreGenre = nullptr, *FiltreVariete = nullptr;
};

}  // namespace zemo
