// The overview of the campaigns: a line each, over the editor's own rows.
#pragma once

#include <QAbstractTableModel>
#include <QTableView>
#include <functional>
#include <string>

#include "traffic/CampaignEditor.h"
#include "ui/Translation.h"

namespace zemo {

class CampaignOverviewModel : public QAbstractTableModel {
 public:
  // Editor and texts outlive the model.
  CampaignOverviewModel(const CampaignEditor& editor, const Translation& texts, QObject* parent);
  void Renew();  // the editor has other rows, or in another order

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  static constexpr int kColumns = 7;

 private:
  const CampaignEditor& editor_;
  const Translation& texts_;
  int rows_ = 0;
};

// A head sorts, and so does Ctrl with its number from 1; a double click or Return chooses the line.
// Thread: the screen's.
class CampaignOverview : public QTableView {
 public:
  CampaignOverview(const CampaignEditor& editor, const Translation& texts, QWidget* parent);
  std::function<void(int column)> sorted;
  std::function<void(size_t line)> chosen;

  void Arrange(double unit);
  void ShowRows();
  std::string ChosenCode() const;  // of the line chosen; empty for none
  // The rows as they are now, on the line of that code, or where it stood; none moves below the
  // hand.
  void ShowRowsAnew(const std::string& chosen);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void ArrangeColumns();

  const CampaignEditor& editor_;
  const Translation& texts_;
  CampaignOverviewModel* model_;
};

}  // namespace zemo
