// A PostgreSQL server of the test program's own: started at the first asking in a folder of its
// own, reached over a socket in it, ended with the program however that ends.
#pragma once

#include <string>
#include <vector>

namespace zemo::test {

class TestServer {
 public:
  static TestServer& Get();
  // One beside it, with more settings ("name=value"), in `folder`, which is its own and gone with
  // it. It ends with the thread that started it.
  explicit TestServer(std::string folder, std::vector<std::string> settings = {});
  ~TestServer();
  TestServer(const TestServer&) = delete;

  // That nobody listens on now, for the setting "port=".
  static std::string FreePort();

  // Why there is none; empty where it runs.
  const std::string& Missing() const { return missing_; }
  // URL of a base of this name, or of a fresh one that is a copy of `like`.
  std::string Url(const std::string& base, const std::string& role = "radio:secret") const;
  std::string NewBase(const std::string& like = "template1");
  void Drop(const std::string& base);  // whoever has it open
  void Stop();                         // as a server that fails, at once; nobody is asked
  void StopInOrder();                  // asked; whoever has a base open is sent away
  void Start();                        // again, with what it had stored
  // The first value of what the server's own SQL gives, "" for none. Throws std::runtime_error.
  std::string Ask(const std::string& base, const std::string& sql) const;
  // The server's own SQL, as another program would; what is wrong with it, "" for nothing.
  std::string Try(const std::string& base, const std::string& sql,
                  const std::string& role = "radio") const;

 private:
  void Make();
  void EndBy(int signal);

  const std::string folder_;
  const std::vector<std::string> settings_;
  std::string port_;  // empty: the usual one
  std::string missing_;
  int process_ = 0;
  int bases_ = 0;
};

}  // namespace zemo::test
