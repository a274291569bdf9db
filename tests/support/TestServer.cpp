#include "support/TestServer.h"

#include <libpq-fe.h>
#include <netinet/in.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <utility>
#include <vector>

namespace zemo::test {

namespace {

constexpr char kPrograms[] = "/usr/lib/postgresql/15/bin/";
constexpr int kNobody = 65534;

// The server refuses to run as root.
std::vector<std::string> AsServerUser() {
  std::vector<std::string> words = {"setpriv", "--pdeathsig", "QUIT"};
  if (getuid() == 0)
    words.insert(words.end(), {"--reuid", std::to_string(kNobody), "--regid",
                               std::to_string(kNobody), "--clear-groups"});
  return words;
}

int Begin(std::vector<std::string> words, const std::string& log) {
  const int child = fork();
  if (child != 0) return child;
  if (!freopen(log.c_str(), "a", stdout) || !freopen(log.c_str(), "a", stderr)) _exit(126);
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  if (chdir("/") != 0) _exit(126);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

// Programs that were killed left theirs; their servers ended with them.
void RemoveLeftFolders(const std::filesystem::path& place) {
  std::error_code none;
  const std::string head = "zemo_server_";
  for (const auto& entry : std::filesystem::directory_iterator(place, none)) {
    const std::string name = entry.path().filename().string();
    if (name.rfind(head, 0) != 0) continue;
    const int owner = std::atoi(name.c_str() + head.size());
    if (owner > 0 && kill(owner, 0) != 0 && errno == ESRCH)
      std::filesystem::remove_all(entry.path(), none);
  }
}

std::string FolderOfThisProgram() {
  const std::string place = access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/var/tmp";
  RemoveLeftFolders(place);
  return place + "/zemo_server_" + std::to_string(getpid());
}

}  // namespace

TestServer& TestServer::Get() {
  static TestServer server(FolderOfThisProgram());
  return server;
}

TestServer::TestServer(std::string folder, std::vector<std::string> settings)
    : folder_(std::move(folder)), settings_(std::move(settings)) {
  for (const std::string& setting : settings_)
    if (setting.starts_with("port=")) port_ = setting.substr(5);
  std::error_code none;
  if (std::filesystem::exists(std::string(kPrograms) + "postgres", none))
    Make();
  else
    missing_ = "the package postgresql is not installed";
}

std::string TestServer::FreePort() {
  const int free = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof address;
  auto* any = reinterpret_cast<sockaddr*>(&address);
  const bool bound = bind(free, any, size) == 0 && getsockname(free, any, &size) == 0;
  close(free);
  if (!bound) throw std::runtime_error("no free port");
  return std::to_string(ntohs(address.sin_port));
}

void TestServer::Make() {
  std::error_code none;
  std::filesystem::remove_all(folder_, none);
  std::filesystem::create_directories(folder_ + "/base");
  if (getuid() == 0)
    for (const char* path : {"", "/base"})
      if (chown((folder_ + path).c_str(), kNobody, kNobody) != 0) missing_ = "chown failed";
  std::ofstream(folder_ + "/log").put('\n');
  std::filesystem::permissions(folder_ + "/log", std::filesystem::perms::all);
  auto words = AsServerUser();
  words.insert(words.end(), {std::string(kPrograms) + "initdb", "-D", folder_ + "/base", "-U",
                             "radio", "-A", "trust", "-E", "UTF8", "--no-sync", "--locale=C.UTF-8",
                             "--locale-provider=icu", "--icu-locale=fr"});
  int status = 1;
  waitpid(Begin(words, folder_ + "/log"), &status, 0);
  if (status != 0)
    missing_ = "initdb failed, see " + folder_ + "/log";
  else
    Start();
}

TestServer::~TestServer() {
  Stop();
  std::error_code none;
  if (missing_.empty()) std::filesystem::remove_all(folder_, none);
}

void TestServer::Start() {
  if (process_ > 0) return;
  auto words = AsServerUser();
  words.insert(words.end(), {std::string(kPrograms) + "postgres", "-D", folder_ + "/base"});
  for (const std::string setting : {"listen_addresses=", "fsync=off", "full_page_writes=off",
                                    "autovacuum=off", "shared_buffers=64MB", "max_connections=40",
                                    "log_min_messages=fatal", "log_min_error_statement=panic"})
    words.insert(words.end(), {"-c", setting});
  for (const std::string& setting : settings_) words.insert(words.end(), {"-c", setting});
  words.insert(words.end(), {"-c", "unix_socket_directories=" + folder_});
  process_ = Begin(words, folder_ + "/log");
  for (int i = 0; i < 600; ++i) {
    const bool there = PQping(Url("postgres").c_str()) == PQPING_OK;
    if (there) return;
    usleep(50'000);
  }
  missing_ = "the server does not start, see " + folder_ + "/log";
}

void TestServer::EndBy(int signal) {
  if (process_ > 0) {
    kill(process_, signal);
    waitpid(process_, nullptr, 0);
  }
  process_ = 0;
}

void TestServer::Stop() {
  EndBy(SIGQUIT);
}

void TestServer::StopInOrder() {
  EndBy(SIGINT);
}

std::string TestServer::Url(const std::string& base, const std::string& role) const {
  return "postgresql://" + role + "@/" + base + "?host=" + folder_ +
         (port_.empty() ? "" : "&port=" + port_);
}

std::string TestServer::NewBase(const std::string& like) {
  const std::string name = "base" + std::to_string(++bases_);
  const std::string failed = Try("postgres", "CREATE DATABASE " + name + " TEMPLATE " + like);
  return failed.empty() ? name : failed;
}

void TestServer::Drop(const std::string& base) {
  Try("postgres", "DROP DATABASE " + base + " WITH (FORCE)");
}

std::string TestServer::Ask(const std::string& base, const std::string& sql) const {
  PGconn* connection = PQconnectdb(Url(base).c_str());
  PGresult* result = PQexec(connection, sql.c_str());
  const ExecStatusType status = PQresultStatus(result);
  const bool done = status == PGRES_COMMAND_OK || status == PGRES_TUPLES_OK;
  const std::string text = !done                   ? PQerrorMessage(connection)
                           : PQntuples(result) > 0 ? PQgetvalue(result, 0, 0)
                                                   : "";
  PQclear(result);
  PQfinish(connection);
  if (!done) throw std::runtime_error(text + " in: " + sql);
  return text;
}

std::string TestServer::Try(const std::string& base, const std::string& sql,
                            const std::string& role) const {
  PGconn* connection = PQconnectdb(Url(base, role).c_str());
  std::string text;
  if (PQstatus(connection) != CONNECTION_OK) {
    text = PQerrorMessage(connection);
  } else {
    PQsetNoticeProcessor(
        connection, [](void*, const char*) {}, nullptr);
    PGresult* result = PQexec(connection, sql.c_str());
    const ExecStatusType status = PQresultStatus(result);
    if (status != PGRES_COMMAND_OK && status != PGRES_TUPLES_OK) text = PQerrorMessage(connection);
    PQclear(result);
  }
  PQfinish(connection);
  return text;
}

}  // namespace zemo::test
