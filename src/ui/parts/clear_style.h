// The toolkit's own style with flat controls whose edges stand out.
// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

namespace kestrel {

// The toolkit's own style with flat controls, like the analyser's own, whose edges can be seen: in
// it, boxes to tick and to type in hardly stand out from a dark window, and selected text hardly
// from its ground, and the focus of the default button is not shown. It reads no picture files
// before one is seen: to read the first one the toolkit loads all its readers of pictures.
class ClearStyle : public QProxyStyle {
 public:
  ClearStyle();

  // Puts it over the toolkit's own style; a style of the desktop stays as it is.
  static void Use();

  void polish(QPalette& palette) override;
  using QProxyStyle::polish;

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  [[nodiscard]] QIcon standardIcon(StandardPixmap picture, const QStyleOption* option,
                                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;

 private:
  void DrawGroup(const QStyleOption& option, QPainter* painter, const QWidget* widget) const;
};

}  // namespace kestrel
