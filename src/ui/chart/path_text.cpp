// Reading the commands of a path one after another.
// SPDX-License-Identifier: MIT
#include "ui/chart/path_text.h"

#include <QString>
#include <cmath>
#include <numbers>
#include <optional>

namespace kestrel {
namespace {

// Reads letters and numbers one after the other.
class PathReader {
 public:
  explicit PathReader(QStringView text) : text_(text) {}

  std::optional<QChar> Letter() {
    Skip();
    if (place_ >= text_.size() || !text_[place_].isLetter()) return std::nullopt;
    return text_[place_++];
  }
  // "-.5" and "1.5.5" are one and two numbers.
  std::optional<double> Number() {
    Skip();
    const qsizetype from = place_;
    bool hasPoint = false;
    while (place_ < text_.size()) {
      const QChar letter = text_[place_];
      const bool isSign = letter == u'-' && place_ == from;
      const bool isPoint = letter == u'.' && !hasPoint;
      if (!letter.isDigit() && !isSign && !isPoint) break;
      hasPoint = hasPoint || isPoint;
      ++place_;
    }
    bool isNumber = false;
    const double value = text_.mid(from, place_ - from).toString().toDouble(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
  }
  bool HasNumber() {
    Skip();
    if (place_ >= text_.size()) return false;
    const QChar letter = text_[place_];
    return letter.isDigit() || letter == u'-' || letter == u'.';
  }
  bool Has(QStringView word) const { return text_.contains(word); }

 private:
  void Skip() {
    while (place_ < text_.size() && (text_[place_].isSpace() || text_[place_] == u',')) ++place_;
  }

  QStringView text_;
  qsizetype place_ = 0;
};

// An arc between two points of a circle, which is how all arcs here are meant: the centre lies on
// the side that the flags tell.
void AddArc(QPainterPath& path, double radius, bool isLarge, bool isSweep, QPointF to) {
  const QPointF from = path.currentPosition();
  const QPointF half = (from - to) / 2;
  const double square = half.x() * half.x() + half.y() * half.y();
  const double r = std::max(radius, std::sqrt(square));
  double part = std::sqrt(std::max(0.0, (r * r - square) / square));
  if (isLarge == isSweep) part = -part;
  const QPointF centre = (from + to) / 2 + QPointF(part * half.y(), -part * half.x());
  const auto angle = [&](QPointF point) {
    return std::atan2(-(point.y() - centre.y()), point.x() - centre.x()) * 180 / std::numbers::pi;
  };
  const double start = angle(from);
  double sweep = angle(to) - start;
  if (isSweep && sweep > 0) sweep -= 360;
  if (!isSweep && sweep < 0) sweep += 360;
  path.arcTo(QRectF(centre - QPointF(r, r), centre + QPointF(r, r)), start, sweep);
}

// One command with its numbers; false when they cannot be read.
class PathBuilder {
 public:
  explicit PathBuilder(QStringView text) : reader_(text) {}

  QPainterPath Build() {
    while (const auto letter = reader_.Letter()) {
      QChar command = *letter;
      do {
        if (!Step(command)) return path_;
        if (command == u'M') command = u'L';
        if (command == u'm') command = u'l';
      } while (reader_.HasNumber());
    }
    return path_;
  }

 private:
  std::optional<QPointF> Point(bool isRelative) {
    const auto x = reader_.Number();
    const auto y = reader_.Number();
    if (!x || !y) return std::nullopt;
    return QPointF(*x, *y) + (isRelative ? path_.currentPosition() : QPointF());
  }
  bool Step(QChar command) {
    const bool isRelative = command.isLower();
    switch (command.toUpper().unicode()) {
      case u'M':
      case u'L':
        return Line(isRelative, command.toUpper() == u'M');
      case u'H':
      case u'V':
        return Along(isRelative, command.toUpper() == u'H');
      case u'C':
      case u'S':
        return Curve(isRelative, command.toUpper() == u'C');
      case u'A':
        return Arc(isRelative);
      case u'Z':
        path_.closeSubpath();
        return true;
      default:
        return false;
    }
  }
  bool Line(bool isRelative, bool isMove) {
    const auto to = Point(isRelative);
    if (!to) return false;
    isMove ? path_.moveTo(*to) : path_.lineTo(*to);
    return true;
  }
  bool Along(bool isRelative, bool isAcross) {
    const auto value = reader_.Number();
    if (!value) return false;
    QPointF to = path_.currentPosition();
    double& place = isAcross ? to.rx() : to.ry();
    place = isRelative ? place + *value : *value;
    path_.lineTo(to);
    return true;
  }
  // A smooth one begins as the last one ended.
  bool Curve(bool isRelative, bool hasFirst) {
    const QPointF start = path_.currentPosition();
    const auto first = hasFirst ? Point(isRelative) : std::optional(start + start - lastHandle_);
    const auto second = Point(isRelative);
    const auto to = Point(isRelative);
    if (!first || !second || !to) return false;
    path_.cubicTo(*first, *second, *to);
    lastHandle_ = *second;
    return true;
  }
  bool Arc(bool isRelative) {
    const auto radius = reader_.Number();
    for (int skipped = 0; skipped < 2; ++skipped) {
      if (!reader_.Number()) return false;  // the other radius, the same; the turn of a circle
    }
    const auto isLarge = reader_.Number();
    const auto isSweep = reader_.Number();
    const auto to = Point(isRelative);
    if (!radius || !isLarge || !isSweep || !to) return false;
    AddArc(path_, *radius, *isLarge != 0, *isSweep != 0, *to);
    return true;
  }

  PathReader reader_;
  QPainterPath path_;
  QPointF lastHandle_;
};

PathPart ShapeOf(QStringView text, bool isCircle) {
  PathReader reader(text);
  PathPart part;
  part.isFilled = reader.Has(u"fill");
  (void)reader.Letter();
  const double a = reader.Number().value_or(0);
  const double b = reader.Number().value_or(0);
  const double c = reader.Number().value_or(0);
  if (isCircle) {
    part.path.addEllipse(QPointF(a, b), c, c);
  } else {
    part.path.addRect(QRectF(a, b, c, reader.Number().value_or(0)));
  }
  return part;
}

}  // namespace

std::vector<PathPart> PathParts(QStringView text) {
  std::vector<PathPart> parts;
  for (const QStringView piece : text.split(u';')) {
    const QStringView part = piece.trimmed();
    if (part.isEmpty()) continue;
    if (part.front() == u'o' || part.front() == u'r') {
      parts.push_back(ShapeOf(part, part.front() == u'o'));
    } else {
      parts.push_back({PathBuilder(part).Build(), false});
    }
  }
  return parts;
}

}  // namespace kestrel
