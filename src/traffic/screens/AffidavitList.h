// The crosses of an affidavit for a table, over the editor's own rows. What did not air stands out.
#pragma once

#include <QAbstractTableModel>

#include "traffic/AffidavitScreen.h"
#include "ui/Translation.h"

namespace zemo {

class AffidavitListModel : public QAbstractTableModel {
 public:
  // Editor and texts outlive the model.
  AffidavitListModel(const AffidavitEditor& editor, const Translation& texts, QObject* parent);
  void Renew();  // the editor has other rows

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation,
                      int role = Qt::DisplayRole) const override;

 private:
  const AffidavitEditor& editor_;
  const Translation& texts_;
  int rows_ = 0;
};

}  // namespace zemo
