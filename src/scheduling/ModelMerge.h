// The day on the model editor's screen beside what others store of it meanwhile. An hour is one
// field: its shares make a whole, and so do its positions. Throw StoreError. Thread: the logic's.
#pragma once

namespace zemo {

struct Station;

// Ahead of storing the day: the grid becomes what is to be stored, asked for where both changed one
// hour. False: nothing is to be stored. Where nobody else has stored anything it looks no further.
bool MergeShownDay(Station& station);

namespace Models {

// Others have stored something: the hours of the day that the operator has not changed, and the
// shares of the varieties, as they are now.
void TakeOver(Station& station);

}  // namespace Models

}  // namespace zemo
