#include "printing/memo_sheet.h"

#include <QFont>
#include <QGuiApplication>
#include <QPainter>
#include <array>

#include "tickets/tickets.h"

namespace marlevo {

namespace {

// Twips on a quarter of A4.
constexpr double kWidth = 5950;
constexpr double kHeight = 8420;
constexpr double kBorder = 460;
constexpr double kLeft = kBorder;
constexpr double kRight = kWidth - kBorder;
constexpr double kThick = 30;
constexpr double kThin = 12;

// Opaque greys: some drivers turn a page with anything transparent into a bitmap.
constexpr QRgb kInk = 0xff222222;
constexpr QRgb kRule = 0xff8a8a8a;
constexpr QRgb kShade = 0xffececec;

class Sheet {
 public:
  explicit Sheet(QPainter& painter) : painter_(painter) {}

  // Lines are filled rectangles, because screens and printers draw the same pen in different widths.
  void Horizontal(double x1, double x2, double y, double thickness, QRgb colour) {
    painter_.fillRect(QRectF(x1, y - thickness / 2, x2 - x1, thickness), QColor::fromRgb(colour));
  }
  void Vertical(double x, double y1, double y2, double thickness, QRgb colour) {
    painter_.fillRect(QRectF(x - thickness / 2, y1, thickness, y2 - y1), QColor::fromRgb(colour));
  }
  void Frame(const QRectF& box, double thickness, QRgb colour) {
    Horizontal(box.left() - thickness / 2, box.right() + thickness / 2, box.top(), thickness, colour);
    Horizontal(box.left() - thickness / 2, box.right() + thickness / 2, box.bottom(), thickness, colour);
    Vertical(box.left(), box.top(), box.bottom(), thickness, colour);
    Vertical(box.right(), box.top(), box.bottom(), thickness, colour);
  }
  void Shade(const QRectF& box) { painter_.fillRect(box, QColor::fromRgb(kShade)); }

  void Text(const QRectF& box, int alignment, int height, const QString& text, bool bold = false) {
    QFont font = QGuiApplication::font();
    font.setPixelSize(height);
    font.setBold(bold);
    painter_.setFont(font);
    painter_.setPen(QColor::fromRgb(kInk));
    painter_.drawText(box, alignment | Qt::AlignVCenter | Qt::TextDontClip, text);
  }
  // A caption and a line to write on, together from x1 to x2.
  void Blank(double x1, double x2, double y, const QString& caption, double caption_width) {
    Text(QRectF(x1, y - 340, caption_width, 340), Qt::AlignLeft, 210, caption);
    Horizontal(x1 + caption_width, x2, y, kThin, kRule);
  }

 private:
  QPainter& painter_;
};

// Four columns, one for each position, of ten boxes, one for each digit, to tick or to circle.
void DrawPositions(Sheet& sheet, double top, double bottom) {
  constexpr double kTitleHeight = 330;
  constexpr double kSide = 560;  // width of the column of digits at the left
  const double row = (bottom - top - kTitleHeight) / 10;
  const double column = (kRight - kLeft - kSide) / 4;
  sheet.Shade(QRectF(kLeft, top, kRight - kLeft, kTitleHeight));
  sheet.Shade(QRectF(kLeft, top, kSide, bottom - top));
  sheet.Text(QRectF(kLeft, top, kSide, kTitleHeight), Qt::AlignHCenter, 190, "號碼");
  for (int digit = 0; digit < 10; ++digit) {
    const double y = top + kTitleHeight + digit * row;
    sheet.Horizontal(kLeft, kRight, y, kThin, kRule);
    sheet.Text(QRectF(kLeft, y, kSide, row), Qt::AlignHCenter, 190, QString::number(digit), true);
  }
  for (int i = 0; i < 4; ++i) {
    const double x = kLeft + kSide + i * column;
    sheet.Vertical(x, top, bottom, kThin, kRule);
    sheet.Text(QRectF(x, top, column, kTitleHeight), Qt::AlignHCenter, 200, QString::fromUtf8(kPositionNames[i]), true);
  }
  sheet.Frame(QRectF(kLeft, top, kRight - kLeft, bottom - top), kThick, kInk);
}

// A line for each bet kind with a box to tick and room for multiple, number of tickets and amount.
void DrawKinds(Sheet& sheet, double top, double bottom) {
  constexpr std::array kTitles = {"玩  法", "倍  數", "張  數", "金  額"};
  constexpr std::array kColumns = {0.0, 1500.0, 2500.0, 3500.0};
  constexpr double kTick = 150;
  const double width = kRight - kLeft;
  const double row = (bottom - top) / 7;  // the heading, five kinds, the total
  sheet.Shade(QRectF(kLeft, top, width, row));
  for (std::size_t i = 0; i < kTitles.size(); ++i) {
    const double x = kLeft + kColumns[i];
    const double right = i + 1 < kColumns.size() ? kLeft + kColumns[i + 1] : kRight;
    sheet.Text(QRectF(x, top, right - x, row), Qt::AlignHCenter, 180, kTitles[i], true);
    if (i > 0) {
      sheet.Vertical(x, top, i + 1 < kColumns.size() ? bottom - row : bottom, kThin, kRule);
    }
  }
  for (int kind = 0; kind < kBetKinds; ++kind) {
    const double y = top + (kind + 1) * row;
    sheet.Horizontal(kLeft, kRight, y, kThin, kRule);
    sheet.Frame(QRectF(kLeft + 130, y + (row - kTick) / 2, kTick, kTick), kThin, kInk);
    sheet.Text(QRectF(kLeft + 400, y, kColumns[1] - 400, row), Qt::AlignLeft, 185,
               QString::fromUtf8(kBetKindNames[kind]));
    sheet.Text(QRectF(kLeft, y, width - 120, row), Qt::AlignRight, 160, "元");
  }
  const double total = bottom - row;
  sheet.Shade(QRectF(kLeft, total, kColumns[3], row));
  sheet.Horizontal(kLeft, kRight, total, kThick, kInk);
  sheet.Text(QRectF(kLeft, total, kColumns[3] - 200, row), Qt::AlignRight, 185, "合  計", true);
  sheet.Text(QRectF(kLeft, total, width - 120, row), Qt::AlignRight, 160, "元");
  sheet.Frame(QRectF(kLeft, top, width, bottom - top), kThick, kInk);
}

void DrawMemoSheet(QPainter& painter) {
  Sheet sheet(painter);
  sheet.Text(QRectF(kLeft, kBorder, kRight - kLeft, 430), Qt::AlignHCenter, 330, "４星彩包牌便條紙", true);
  sheet.Horizontal(kLeft, kRight, 970, kThick, kInk);
  sheet.Blank(kLeft, 3300, 1420, "客戶姓名", 950);
  sheet.Blank(3450, kRight, 1420, "日期", 500);
  sheet.Blank(kLeft, 3300, 1860, "開獎期數", 950);
  sheet.Blank(3450, kRight, 1860, "電話", 500);
  DrawPositions(sheet, 2060, 5280);
  DrawKinds(sheet, 5460, 7440);
  sheet.Blank(kLeft, kRight, 7900, "備註", 500);
}

}  // namespace

Picture MemoSheet() {
  return {kWidth, kHeight, DrawMemoSheet};
}

}  // namespace marlevo
