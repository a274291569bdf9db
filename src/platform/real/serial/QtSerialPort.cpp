#include "platform/real/serial/QtSerialPort.h"

#include <QSerialPort>
#include <QString>

#include "platform/Clock.h"
#include "platform/LocalValues.h"
#include "platform/real/serial/LineSetting.h"

namespace zemo {

namespace {

constexpr int64_t kRetryMs = 2000;
constexpr qint64 kMostUnsent = 64;  // a line that takes nothing must not fill the memory

QSerialPort::Parity QtParity(Parity parity) {
  switch (parity) {
    case Parity::kEven:
      return QSerialPort::EvenParity;
    case Parity::kOdd:
      return QSerialPort::OddParity;
    case Parity::kMark:
      return QSerialPort::MarkParity;
    case Parity::kSpace:
      return QSerialPort::SpaceParity;
    case Parity::kNone:
      break;
  }
  return QSerialPort::NoParity;
}

QSerialPort::StopBits QtStopBits(StopBits stopBits) {
  switch (stopBits) {
    case StopBits::kOneAndHalf:
      return QSerialPort::OneAndHalfStop;
    case StopBits::kTwo:
      return QSerialPort::TwoStop;
    case StopBits::kOne:
      break;
  }
  return QSerialPort::OneStop;
}

std::string DeviceOf(const LocalValues& localValues, int port) {
  return localValues.GetText("PortCom" + std::to_string(port),
                             "/dev/ttyS" + std::to_string(port - 1));
}

bool IsLost(const QSerialPort& line) {
  return !line.isOpen() || line.error() == QSerialPort::ResourceError ||
         line.error() == QSerialPort::WriteError;
}

}  // namespace

QtSerialPort::QtSerialPort(const LocalValues& localValues, const Clock& clock)
    : localValues_(localValues), clock_(clock) {}

QtSerialPort::~QtSerialPort() = default;

void QtSerialPort::Open(int port, const std::string& setting) {
  Close();
  device_ = DeviceOf(localValues_, port);
  setting_ = setting;
  OpenLine();
  wanted_ = true;
}

void QtSerialPort::OpenLine() {
  triedMs_ = clock_.MonotonicMs();
  const auto parameters = ParseLineSetting(setting_);
  if (!parameters)
    throw SerialError(QSerialPort::UnsupportedOperationError,
                      device_ + ": '" + setting_ + "' are no line parameters");
  auto line = std::make_unique<QSerialPort>(QString::fromStdString(device_));
  const bool open = line->open(QIODevice::ReadWrite) && line->setBaudRate(parameters->baud) &&
                    line->setParity(QtParity(parameters->parity)) &&
                    line->setDataBits(static_cast<QSerialPort::DataBits>(parameters->dataBits)) &&
                    line->setStopBits(QtStopBits(parameters->stopBits)) &&
                    line->setFlowControl(QSerialPort::NoFlowControl);
  if (!open) throw SerialError(line->error(), device_ + ": " + line->errorString().toStdString());
  line->clear();  // what came while nobody listened
  line_ = std::move(line);
}

void QtSerialPort::Close() {
  line_.reset();
  wanted_ = false;
}

void QtSerialPort::Lose(const std::string& reason) {
  line_.reset();
  throw SerialError(QSerialPort::ResourceError, device_ + ": the line is lost: " + reason);
}

void QtSerialPort::Write(std::string_view bytes) {
  if (!wanted_) throw SerialError(QSerialPort::NotOpenError, "the serial port is closed");
  if (!line_) {
    if (clock_.MonotonicMs() - triedMs_ < kRetryMs)
      throw SerialError(QSerialPort::ResourceError, device_ + ": the line is lost");
    OpenLine();
  }
  if (IsLost(*line_)) Lose(line_->errorString().toStdString());
  if (line_->bytesToWrite() > kMostUnsent) line_->clear(QSerialPort::Output);
  if (line_->write(bytes.data(), static_cast<qint64>(bytes.size())) < 0)
    Lose(line_->errorString().toStdString());
  line_->flush();
}

std::string QtSerialPort::Read() {
  return line_ ? line_->readAll().toStdString() : std::string();
}

}  // namespace zemo
