// The forecast as a second process: this program's own simulation, of a private copy of the
// station, at a low priority. It cannot touch the air.
#pragma once

#include <QProcess>
#include <QTemporaryDir>
#include <memory>
#include <string>

#include "app/ForecastTrace.h"
#include "engine/Forecast.h"

namespace zemo {

// Needs Qt's application. Thread: the logic's.
class ForecastProcess : public ForecastSource {
 public:
  ForecastProcess(std::string program, std::string stationFolder, std::string machineFolder);
  ~ForecastProcess() override;  // ends what runs
  void Start(const ForecastWish& wish) override;
  State Now() const override { return state_; }
  const std::vector<ForecastLine>& Lines() const override { return trace_.Lines(); }
  const std::string& Fault() const override { return fault_; }

 private:
  void LetGo();
  void Read();
  void Finished(int exitCode, QProcess::ExitStatus status);
  void Fail(std::string fault);

  std::string program_, stationFolder_, machineFolder_;
  std::unique_ptr<QTemporaryDir> scriptFolder_;
  std::unique_ptr<QProcess> process_;
  QByteArray unread_;  // of a line that is not whole yet
  ForecastTrace trace_;
  State state_ = State::kIdle;
  std::string fault_;
};

}  // namespace zemo
