// What a program that works on a replica sees to on the server itself: that the base there is whole
// and of this version.
#pragma once

#include <functional>
#include <string>

namespace zemo {

class LineKeeper;

// By which this program knows whether it has seen to a base.
std::string ProgramMark();

// Tables and fixed rows that are missing are made, tables of another version made anew, the side
// tables made. `told` hears a line of each change and of each fault, which stops nothing else.
// What this role may not do is left as it is, which is told in one line.
// Its own connection, closed again; `keeper` may give it up (null: nobody does). Throws StoreError
// where the base cannot be opened, kErrNoSuchFile where none of a station's tables is in it.
// Thread: any.
void BringBaseUpToDate(const std::string& url, const std::function<void(const std::string&)>& told,
                       LineKeeper* keeper = nullptr);

}  // namespace zemo
