// The two titles of a join, with what the presenter reads while speaking in large figures.
#pragma once

#include <QWidget>
#include <cstdint>
#include <optional>
#include <vector>

#include "ui/Translation.h"
#include "voicetrack/VoiceTrackEditor.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;

namespace zemo {

class FitLabel;

class JoinCards : public QWidget {
 public:
  // Editor and texts outlive the cards.
  JoinCards(const VoiceTrackEditor& editor, const Translation& texts, QWidget* parent);
  void Arrange(double unit);
  struct Figures {
    std::optional<int32_t> fillMs, countdownMs;  // nothing: a dash
  };
  void Show(const Figures& figures);

 private:
  struct Card {
    FitLabel* title = nullptr;
    QLineEdit* file = nullptr;
    std::vector<QLabel*> values;
    QLabel* figure = nullptr;
  };
  QWidget* MakeFigures();
  QWidget* MakeCard(Card& card, const char* file, const char* title,
                    const std::vector<const char*>& values, const char* figure);
  QWidget* Figure(const char* name, QLabel*& figure);

  const VoiceTrackEditor& editor_;
  const Translation& texts_;
  Card before_, after_;
  QLabel *LblARemplir = nullptr, *LblDecompte = nullptr;
  QHBoxLayout* row_;
};

}  // namespace zemo
