// What every window does to its controls: the name under which tests and style sheets find them,
// and the engine's UTF-8 as Qt's text.
#pragma once

#include <QObject>
#include <QString>
#include <string>

namespace zemo {

template <typename Control>
Control* Named(Control* control, const char* name) {
  control->setObjectName(QString::fromUtf8(name));
  return control;
}

inline QString ShownText(const std::string& text) {
  return QString::fromStdString(text);
}

}  // namespace zemo
