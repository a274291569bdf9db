// A server's base as a file of one's own, for who asks it something and changes nothing.
#pragma once

#include <string>

#include "store/BasePlace.h"

namespace zemo {

// As of one moment, into a file that must not exist; others write meanwhile. Where the machine
// folder has a replica of that base it is a copy of this, with what others have stored on the
// server since; as it is where the server is away, which a line on standard error says, or where
// the folder has a link to a replica (LinkReplica). Elsewhere it is read over from the server, as
// where the replica is of another base by now. `machine` empty: none. Throws std::exception with
// one line.
void CopyServerBase(const BasePlace& place, const std::string& machine, const std::string& to);

// The machine folder `to` has a link to the replica of `from`, of which the program that keeps it
// wants to be told something. Nothing where there is none. Throws std::exception with one line.
void LinkReplica(const BasePlace& place, const std::string& from, const std::string& to);

}  // namespace zemo
