// A PostgreSQL server of the test program's own: started at the first asking in a folder of its
// own, reached over a socket in it, ended with the program however that ends.
#pragma once

#include <string>

namespace zemo::test {

class TestServer {
 public:
  static TestServer& Get();

  // Why there is none; empty where it runs.
  const std::string& Missing() const { return missing_; }
  // URL of a base of this name, or of a fresh one that is a copy of `like`.
  std::string Url(const std::string& base) const;
  std::string NewBase(const std::string& like = "template1");
  void Drop(const std::string& base);  // whoever has it open
  void Stop();                         // as a server that fails, at once; nobody is asked
  void Start();                        // again, with what it had stored
  // The first value of what the server's own SQL gives, "" for none. Throws std::runtime_error.
  std::string Ask(const std::string& base, const std::string& sql) const;
  // The server's own SQL, as another program would; what is wrong with it, "" for nothing.
  std::string Try(const std::string& base, const std::string& sql) const;

 private:
  TestServer();
  ~TestServer();

  std::string folder_;
  std::string missing_;
  int process_ = 0;
  int bases_ = 0;
};

}  // namespace zemo::test
