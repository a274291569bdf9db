// Ended campaigns leave the table for the archive.
#pragma once

namespace zemo {

struct Station;

// Deletes the rows of GrillePub whose CAMPAGNEFIN lies before today; their files stay, and record
// and grid are kept before (traffic/CampaignArchive.h). Leaves the table on index PRIORITY. For the
// beginning of a composition, while Cnf SuppressionPub is 1. Some hundred rows a transaction, with
// a yield for each campaign before it. A fault is logged; what was deleted so far stays deleted.
void PurgeEndedCampaigns(Station& station);

}  // namespace zemo
