// The system's journal, where a service's output goes.
#pragma once

namespace zemo {

// That file descriptor leads into the journal, which then wants each line with its priority in
// front (sd-daemon(3)), by what JOURNAL_STREAM says. Any thread.
bool LeadsIntoJournal(int descriptor);

}  // namespace zemo
