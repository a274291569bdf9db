// Whoever may have to give up the lines to a server while another thread waits on them.
#pragma once

namespace zemo {

// Called on the thread of the line. Outlives the lines that are given to it.
class LineKeeper {
 public:
  virtual ~LineKeeper() = default;

  // Of a line that is being made: waits until the socket can be read, or written to. False: that
  // took too long, or there are to be no lines any more.
  virtual bool WaitFor(int socket, bool toWrite) = 0;
  // The line goes over this socket, up to Closed. Who shuts it down has whatever waits on it fail.
  virtual void Opened(int socket) = 0;
  virtual void Closed(int socket) = 0;
};

}  // namespace zemo
