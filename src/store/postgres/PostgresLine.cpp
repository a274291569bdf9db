#include "store/postgres/PostgresLine.h"

#include <utility>
#include <vector>

#include "store/postgres/ClientLibrary.h"
#include "store/postgres/LineKeeper.h"
#include "store/postgres/PostgresRowStream.h"

namespace zemo {

namespace {

constexpr size_t kMostPrepared = 128;
constexpr char kConnectSeconds[] = "5";
// Of a line on which nothing is heard: a server that is waited for may be gone.
constexpr char kIdleSeconds[] = "10", kAskSeconds[] = "5", kAskTimes[] = "3";
constexpr char kUnansweredMs[] = "10000";  // of sent bytes, after which the line is given up

// As libpq takes them; null is Null. They live as long as the parameters.
std::vector<const char*> Pointers(const PostgresParameters& parameters) {
  std::vector<const char*> pointers;
  for (const auto& parameter : parameters)
    pointers.push_back(parameter ? parameter->c_str() : nullptr);
  return pointers;
}

std::string OrEmpty(const char* text) {
  return text ? text : "";
}

}  // namespace

PostgresLine::PostgresLine(const std::string& url, LineKeeper* keeper) : keeper_(keeper) {
  const char* const keys[] = {"dbname",          "connect_timeout",     "tcp_user_timeout",
                              "keepalives_idle", "keepalives_interval", "keepalives_count",
                              "client_encoding", "application_name",    nullptr};
  const char* const values[] = {url.c_str(),  kConnectSeconds, kUnansweredMs,
                                kIdleSeconds, kAskSeconds,     kAskTimes,
                                "UTF8",       kProgramName,    nullptr};
  connection_ = (keeper ? Pq().PQconnectStartParams : Pq().PQconnectdbParams)(keys, values, 1);
  if (keeper) Await();
  Pq().PQsetNoticeProcessor(
      connection_, [](void*, const char*) {}, nullptr);
}

// Until the line is up, or known not to be.
void PostgresLine::Await() {
  if (Pq().PQstatus(connection_) == CONNECTION_BAD) return;
  for (auto next = PGRES_POLLING_WRITING; next != PGRES_POLLING_OK;) {
    const bool toWrite = next == PGRES_POLLING_WRITING;
    if (!keeper_->WaitFor(Pq().PQsocket(connection_), toWrite)) return;
    next = Pq().PQconnectPoll(connection_);
    if (next == PGRES_POLLING_FAILED) return;
  }
  opened_ = Socket();
  keeper_->Opened(opened_);
}

PostgresLine::~PostgresLine() {
  LetGo();
}

void PostgresLine::Close() {
  preparedBySql_.clear();
  prepared_.clear();
  if (IsUp()) ExecuteNow("DEALLOCATE ALL");
  LetGo();
}

void PostgresLine::LetGo() {
  if (opened_ >= 0) keeper_->Closed(std::exchange(opened_, -1));
  Pq().PQfinish(connection_);
  connection_ = nullptr;
}

bool PostgresLine::IsUp() const {
  return Pq().PQstatus(connection_) == CONNECTION_OK;
}

std::string PostgresLine::Fault() const {
  const std::string told = ServerLine(Pq().PQerrorMessage(connection_));
  return told.empty() ? "it did not answer in its time" : told;
}

std::string PostgresLine::Host() const {
  return OrEmpty(Pq().PQhost(connection_));
}

std::string PostgresLine::Base() const {
  return OrEmpty(Pq().PQdb(connection_));
}

std::string PostgresLine::Setting(const char* name) const {
  return OrEmpty(Pq().PQparameterStatus(connection_, name));
}

// --- Statements ---

PostgresResult PostgresLine::ExecuteNow(const std::string& sql) {
  KeepRestOfStream();
  return PostgresResult(Pq().PQexec(connection_, sql.c_str()));
}

PostgresResult PostgresLine::Execute(const std::string& sql, const PostgresParameters& parameters) {
  KeepRestOfStream();
  PostgresResult failed;
  const std::string name = NameOf(sql, failed);
  if (name.empty()) return failed;
  const std::vector<const char*> values = Pointers(parameters);
  return PostgresResult(Pq().PQexecPrepared(connection_, name.c_str(),
                                            static_cast<int>(values.size()), values.data(), nullptr,
                                            nullptr, 0));
}

void PostgresLine::Forget(const std::string& sql) {
  preparedBySql_.erase(sql);
  prepared_.remove_if([&sql](const Prepared& kept) { return kept.sql == sql; });
}

// Empty where it cannot be prepared: `failed` says why then.
std::string PostgresLine::NameOf(const std::string& sql, PostgresResult& failed) {
  if (const auto found = preparedBySql_.find(sql); found != preparedBySql_.end()) {
    prepared_.splice(prepared_.begin(), prepared_, found->second);
    return prepared_.front().name;
  }
  std::string name = "z" + std::to_string(++names_);
  PostgresResult result(Pq().PQprepare(connection_, name.c_str(), sql.c_str(), 0, nullptr));
  if (!result.Succeeded()) {
    failed = std::move(result);
    return {};
  }
  prepared_.push_front({sql, name});
  preparedBySql_.emplace(prepared_.front().sql, prepared_.begin());
  if (prepared_.size() > kMostPrepared) {
    ExecuteNow("DEALLOCATE " + prepared_.back().name);
    preparedBySql_.erase(prepared_.back().sql);
    prepared_.pop_back();
  }
  return name;
}

// --- Answers ---

PostgresResult PostgresLine::NextAnswer() {
  return PostgresResult(Pq().PQgetResult(connection_));
}

void PostgresLine::DropRest() {
  while (NextAnswer().IsAnswer()) {
  }
}

// --- Rows that come one by one ---

bool PostgresLine::Send(const std::string& sql, const PostgresParameters& parameters,
                        PostgresResult& failed) {
  KeepRestOfStream();
  const std::string name = NameOf(sql, failed);
  if (name.empty()) return false;
  const std::vector<const char*> values = Pointers(parameters);
  return Pq().PQsendQueryPrepared(connection_, name.c_str(), static_cast<int>(values.size()),
                                  values.data(), nullptr, nullptr, 0) == 1 &&
         Pq().PQsetSingleRowMode(connection_) == 1;
}

void PostgresLine::KeepRestOfStream() {
  if (PostgresRowStream* stream = std::exchange(stream_, nullptr)) stream->KeepRest();
}

void PostgresLine::Cancel() {
  char message[256];
  if (PGcancel* cancel = Pq().PQgetCancel(connection_)) {
    Pq().PQcancel(cancel, message, sizeof message);
    Pq().PQfreeCancel(cancel);
  }
  DropRest();
}

int PostgresLine::Socket() const {
  return connection_ ? Pq().PQsocket(connection_) : -1;
}

bool PostgresLine::TakeNotices() {
  if (!connection_ || Pq().PQconsumeInput(connection_) == 0) return false;
  bool any = false;
  while (PGnotify* notice = Pq().PQnotifies(connection_)) {
    any = true;
    Pq().PQfreemem(notice);
  }
  return any;
}

// --- Rows that go out ---

bool PostgresLine::PutCopy(const std::string& rows) {
  return Pq().PQputCopyData(connection_, rows.data(), static_cast<int>(rows.size())) == 1;
}

PostgresResult PostgresLine::EndCopy() {
  Pq().PQputCopyEnd(connection_, nullptr);
  PostgresResult result = NextAnswer();
  DropRest();
  return result;
}

void PostgresLine::GiveUpCopy() {
  Pq().PQputCopyEnd(connection_, "given up");
  DropRest();
}

}  // namespace zemo
