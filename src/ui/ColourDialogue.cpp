#include "ui/ColourDialogue.h"

#include <QColorDialog>
#include <QCoreApplication>
#include <QTranslator>
#include <utility>

#include "station/LanguageTexts.h"

namespace zemo {

namespace {

// By Qt's own words.
// clang-format off
constexpr Word kWords[] = {
    {"&Basic colors", {"Couleurs de &base", "&Basic colours", "Cores &básicas", "Colores &básicos"}},
    {"&Custom colors", {"Couleurs per&sonnelles", "&Custom colours", "Cores per&sonalizadas", "Colores per&sonalizados"}},
    {"&Add to Custom Colors", {"&Ajouter aux couleurs personnelles", "&Add to custom colours", "&Adicionar às cores personalizadas", "&Añadir a los colores personalizados"}},
    {"&Pick Screen Color", {"&Prendre à l'écran", "&Pick from the screen", "&Escolher no ecrã", "&Tomar de la pantalla"}},
    {"Hu&e:", {"T&einte :", "Hu&e:", "Mati&z:", "Tono (&e):"}},
    {"&Sat:", {"&Saturation :", "&Sat:", "&Saturação:", "&Saturación:"}},
    {"&Val:", {"&Valeur :", "&Val:", "&Valor:", "&Valor:"}},
    {"&Red:", {"&Rouge :", "&Red:", "Ve&rmelho:", "&Rojo:"}},
    {"&Green:", {"&Vert :", "&Green:", "Ver&de:", "Ver&de:"}},
    {"Bl&ue:", {"Ble&u :", "Bl&ue:", "Az&ul:", "Az&ul:"}},
    {"A&lpha channel:", {"Canal a&lpha :", "A&lpha channel:", "Canal a&lfa:", "Canal a&lfa:"}},
    {"&HTML:", {"&HTML :", "&HTML:", "&HTML:", "&HTML:"}},
    {"Cursor at %1, %2\nPress ESC to cancel", {"Curseur à %1, %2\nÉchap pour annuler", "Cursor at %1, %2\nPress ESC to cancel", "Cursor em %1, %2\nESC para cancelar", "Cursor en %1, %2\nESC para cancelar"}},
    {"OK", {"OK", "OK", "OK", "Aceptar"}},
    {"&OK", {"&OK", "&OK", "&OK", "&Aceptar"}},
    {"Cancel", {"Annuler", "Cancel", "Cancelar", "Cancelar"}},
    {"&Cancel", {"&Annuler", "&Cancel", "&Cancelar", "&Cancelar"}},
};
// clang-format on

// Qt asks it while the dialogue lives.
class Words : public QTranslator {
 public:
  Words(int langue, QObject* parent) : QTranslator(parent), langue_(langue) {
    QCoreApplication::installTranslator(this);
  }
  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char*, int) const override {
    const std::string_view of = context;
    if (of != "QColorDialog" && of != "QPlatformTheme" && of != "QDialogButtonBox") return {};
    const char* word = FindWord(kWords, source, langue_);
    return word ? QString::fromUtf8(word) : QString();
  }

 private:
  int langue_;
};

}  // namespace

void OpenColourDialogue(QWidget& over, const QString& title, const QColor& shown, int langue,
                        std::function<void(const QColor&)> take) {
  auto* words = new Words(langue, &over);
  auto* dialogue = new QColorDialog(shown, &over);
  dialogue->setObjectName(QStringLiteral("ColourDialogue"));
  dialogue->setOption(QColorDialog::DontUseNativeDialog);
  dialogue->setAttribute(Qt::WA_DeleteOnClose);
  dialogue->setWindowTitle(title);
  QObject::connect(dialogue, &QColorDialog::colorSelected, &over, std::move(take));
  QObject::connect(dialogue, &QObject::destroyed, words, &QObject::deleteLater);
  dialogue->open();
}

}  // namespace zemo
