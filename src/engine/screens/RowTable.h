// What the screens' tables have in common: whole rows are chosen, nothing is typed into a cell, and
// Tab leaves the table.
#pragma once

class QTableView;

namespace zemo {

void MakeRowTable(QTableView& table);
// Rows as high as the type needs, with that room above and below it in pixels, and smaller heads.
void ArrangeRowTable(QTableView& table, double unit, double typePixels, double roomPixels);

}  // namespace zemo
