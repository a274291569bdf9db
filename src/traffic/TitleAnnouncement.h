// The announcement of coming titles ahead of a spot break: a jingle and extracts of the next two.
#pragma once

namespace zemo {

struct Station;

// Looks through PL for the first two music titles that can be heard as an extract, those with a
// start in their marks file, or any with the automatic extract, and puts copies of them in that
// row, with the jingle that announces them in front. Rows added, 0 when there is no such title.
// Throws. Thread: the logic's.
int AnnounceComingTitles(Station& station, int position);

}  // namespace zemo
