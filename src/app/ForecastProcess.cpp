#include "app/ForecastProcess.h"

#include <unistd.h>

#include <QDir>
#include <QFile>
#include <utility>

#include "app/PrivateCopy.h"
#include "app/ServerBaseCopy.h"
#include "platform/LocalValues.h"
#include "platform/real/files/LocalFolder.h"
#include "station/BasePlaces.h"
#include "station/IsoMoments.h"

namespace zemo {

namespace {
constexpr int kBehindTheAir = 10;  // nice: the air and its decoders come first

// The machine as one that does not go on air by itself: the script starts it, when the list stands
// as it does on air, and a start of its own would ask for another list first.
void CopyIdleMachine(const std::string& from, const std::string& to) {
  QDir().mkpath(QString::fromStdString(to));
  CopyMachine(from, to);
  LocalFolder machine(to);
  machine.Remove("ZemoPlay.Ini");
  LocalValues(machine).Set("AutoPlay", "False");
}
}  // namespace

ForecastProcess::ForecastProcess(std::string program, std::string stationFolder,
                                 std::string machineFolder)
    : program_(std::move(program)),
      stationFolder_(std::move(stationFolder)),
      machineFolder_(std::move(machineFolder)) {}

ForecastProcess::~ForecastProcess() {
  LetGo();
}

// Its end is nobody's business any more, and nobody waits for it.
void ForecastProcess::LetGo() {
  if (!process_) return;
  process_->disconnect();
  if (process_->state() == QProcess::NotRunning) return process_.reset();
  QProcess* const ending = process_.release();
  QObject::connect(ending, &QProcess::finished, ending, &QObject::deleteLater);
  ending->kill();
}

void ForecastProcess::Fail(std::string fault) {
  state_ = State::kFailed;
  fault_ = std::move(fault);
}

void ForecastProcess::Start(const ForecastWish& wish) {
  LetGo();
  trace_ = {};
  unread_.clear();
  fault_.clear();
  scriptFolder_ = std::make_unique<QTemporaryDir>();
  const std::string machine = scriptFolder_->filePath(QStringLiteral("machine")).toStdString();
  try {
    CopyIdleMachine(machineFolder_, machine);
    LinkReplica(PlaceOfBase(LocalFolder(stationFolder_)), machineFolder_, machine);
  } catch (const std::exception& error) {
    return Fail(error.what());
  }
  QFile script(scriptFolder_->filePath(QStringLiteral("script.txt")));
  if (!script.open(QIODevice::WriteOnly) ||
      script.write(wish.script.data(), static_cast<qint64>(wish.script.size())) < 0)
    return Fail(script.errorString().toStdString());
  script.close();
  process_ = std::make_unique<QProcess>();
  process_->setChildProcessModifier([] { [[maybe_unused]] const int now = ::nice(kBehindTheAir); });
  QObject::connect(process_.get(), &QProcess::readyReadStandardOutput, process_.get(),
                   [this] { Read(); });
  QObject::connect(process_.get(), &QProcess::finished, process_.get(),
                   [this](int code, QProcess::ExitStatus status) { Finished(code, status); });
  QObject::connect(process_.get(), &QProcess::errorOccurred, process_.get(),
                   [this](QProcess::ProcessError error) {
                     if (error == QProcess::FailedToStart)
                       Fail(process_->errorString().toStdString());
                   });
  state_ = State::kRunning;
  process_->start(QString::fromStdString(program_),
                  {QStringLiteral("simulate"), QStringLiteral("--station"),
                   QString::fromStdString(stationFolder_), QStringLiteral("--machine"),
                   QString::fromStdString(machine), QStringLiteral("--from"),
                   QString::fromStdString(IsoMoment(wish.from)), QStringLiteral("--for"),
                   QStringLiteral("%1h").arg(wish.hours), QStringLiteral("--script"),
                   script.fileName(), QStringLiteral("--no-start")},
                  QIODevice::ReadOnly);
}

void ForecastProcess::Read() {
  unread_ += process_->readAllStandardOutput();
  qsizetype begin = 0;
  for (qsizetype end = unread_.indexOf('\n'); end >= 0; end = unread_.indexOf('\n', begin)) {
    trace_.Take({unread_.constData() + begin, static_cast<size_t>(end - begin)});
    begin = end + 1;
  }
  unread_.remove(0, begin);
}

void ForecastProcess::Finished(int exitCode, QProcess::ExitStatus status) {
  Read();
  trace_.End();
  if (status == QProcess::NormalExit && exitCode == 0) {
    state_ = State::kDone;
    return;
  }
  const std::string told = process_->readAllStandardError().trimmed().toStdString();
  Fail(told.empty() ? "the simulation ended with status " + std::to_string(exitCode) : told);
}

}  // namespace zemo
