// Colours, type and measures of the on-air screen: calm and dark, colour only where it means
// something, everything in units that grow with the window.
#pragma once

#include <QColor>
#include <QFont>
#include <QString>
#include <cstdint>

class QSize;

namespace zemo {

namespace Theme {

inline const QColor kGround{0x12, 0x15, 0x1a};
inline const QColor kPanel{0x1a, 0x1f, 0x26};
inline const QColor kRaised{0x26, 0x2d, 0x37};
inline const QColor kLine{0x37, 0x40, 0x4d};
inline const QColor kText{0xee, 0xf1, 0xf5};
inline const QColor kDim{0xa3, 0xae, 0xbb};
inline const QColor kFocus{0x7f, 0xb4, 0xff};
inline const QColor kOnAir{0xd9, 0x2b, 0x2b};
inline const QColor kGood{0x4c, 0xc3, 0x8a};
inline const QColor kExit{0xe8, 0xea, 0xed};  // the exit point
inline const QColor kNote{0xf0, 0xb4, 0x4a};
inline const QColor kHeard{0xff, 0x5c, 0x5c};
inline const QColor kMusic{0x5f, 0xa8, 0xff};
inline const QColor kJingle{0xc7, 0x92, 0xff};
inline const QColor kSpot{0xff, 0xb8, 0x4d};
inline const QColor kNews{0x4f, 0xd1, 0xc5};
inline const QColor kIntro{0x2f, 0x5f, 0x9e};  // the bar of it, below its text
inline const QColor kPip{0xff, 0x7e, 0xb6};
inline const QColor kVoiceTrack{0x9b, 0xe1, 0x5d};
inline const QColor kOther{0xd8, 0xcf, 0x74};
inline const QColor kMarker{0x8d, 0x99, 0xa6};

// By the code of column 6.
QColor ColourOfElement(int32_t code);
QColor FromBgr(uint32_t colour);  // 0xBBGGRR
// The colour itself where it can be read on the ground, else `otherwise`.
QColor Readable(const QColor& colour, const QColor& otherwise);

// 1.0 at 1280 x 800; whole screens of 800 x 600 to 1920 x 1080 give 0.66 to 1.35.
double UnitFor(const QSize& window);
int Px(double unit, double pixels);  // to the nearest, at least 1

inline constexpr double kTableHeadPixels = 13;  // type of a table's heads
inline constexpr double kFigurePixels = 36;     // of what is read from afar

// Digits of one width.
QFont Type(double unit, double pixels, bool bold = false);

// `gradients` off: the compact graphics of the settings.
QString StyleSheet(double unit, bool gradients);

}  // namespace Theme

}  // namespace zemo
